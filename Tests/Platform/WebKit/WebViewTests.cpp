#include "Platform/WebKit/WebView.h"

#include "Platform/Foundation/NSNotificationCenter.h"
#include "Platform/Foundation/NSNumber.h"
#include "Tests/Platform/WebArchive/TestArchive.h"

#include <gmock/gmock.h>

namespace qrv {
namespace {

using engine::mainFrame;
using engine::NavigationType;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A page without an engine: keeps what it is asked for, and the test plays its part.
class FakePage final : public engine::Page {
public:
    explicit FakePage(engine::PageClient& owner) : client(owner) { last = this; }

    ~FakePage() override { last = nullptr; }

    void loadArchive(const WebArchive& archive) override { archives.push_back(archive); }

    void setViewSize(NSSize size) override { viewSize = size; }

    void prepareForScreenPDF(NSSize paper) override { expected = {paper, std::nullopt}; }

    void prepareForPaginatedPDF(NSSize paper, double margin) override { expected = {paper, margin}; }

    void setMediaStyle(const NSString& style) override { mediaStyle = style; }

    void setPrintsBackgrounds(bool prints) override { printsBackgrounds = prints; }

    void setUnrollsScrollers(bool unrolls) override { unrollsScrollers = unrolls; }

    void waitForLoad() override {
        if (onWait) std::exchange(onWait, nullptr)();
    }

    NSString ownerElementName(const engine::FrameID& frame) override {
        return frame == mainFrame ? NSString() : NSString::fromUTF8(frame);
    }

    NSSize documentSize() override {
        ++measurements;
        return {700, 1500};
    }

    NSData screenPDF() override { return NSData("screen"); }

    NSData paginatedPDF(NSSize paperSize, double margin) override {
        return NSData("pages " + std::to_string(static_cast<int>(paperSize.width)) + " " +
                      std::to_string(static_cast<int>(margin)));
    }

    static inline FakePage* last = nullptr;

    engine::PageClient& client;
    std::vector<WebArchive> archives;
    NSSize viewSize;
    std::pair<NSSize, std::optional<double>> expected; // the paper, and the margin of a print
    NSString mediaStyle;
    bool printsBackgrounds = false;
    bool unrollsScrollers = false;

    std::function<void()> onWait;
    int measurements = 0;
};

/// All delegates in one: writes down what it is told.
class RecordingDelegate : public WebFrameLoadDelegate,
                          public WebPolicyDelegate,
                          public WebResourceLoadDelegate {
public:
    void webView_didStartProvisionalLoadForFrame(WebView&, const WebFramePtr& frame) override {
        record("start " + urlOf(frame->provisionalDataSource()), frame);
    }

    void webView_didFinishLoadForFrame(WebView&, const WebFramePtr& frame) override {
        record("finish", frame);
    }

    void webView_didFailProvisionalLoadWithError_forFrame(WebView&, const NSError& error,
                                                          const WebFramePtr& frame) override {
        record("failProvisional " + std::to_string(error.code()), frame);
    }

    void webView_didFailLoadWithError_forFrame(WebView&, const NSError& error,
                                               const WebFramePtr& frame) override {
        record("fail " + std::to_string(error.code()), frame);
    }

    void webView_didReceiveTitle_forFrame(WebView&, const NSString& title,
                                          const WebFramePtr& frame) override {
        record("title " + title.utf8(), frame);
    }

    void webView_decidePolicyForNavigationAction_request_frame_decisionListener(
        WebView&, const NSDictionary& actionInformation, const NSURLRequest& request,
        const WebFramePtr& frame, WebPolicyDecisionListener& listener) override {
        const auto type = as<NSNumber>(actionInformation.objectForKey(NSString(WebActionNavigationTypeKey)));
        record("policy " + std::to_string(type.integerValue()) + " " + request.URL().absoluteString().utf8(),
               frame);
        if (answers) allows ? listener.use() : listener.ignore();
    }

    void webView_decidePolicyForNewWindowAction_request_newFrameName_decisionListener(
        WebView&, const NSDictionary&, const NSURLRequest& request, const NSString& name,
        WebPolicyDecisionListener& listener) override {
        record("window " + request.URL().absoluteString().utf8() + " " + name.utf8(), nullptr);
        listener.use();
    }

    void webView_resource_didReceiveAuthenticationChallenge_fromDataSource(
        WebView&, const id& identifier, const NSURLAuthenticationChallenge& challenge,
        const std::shared_ptr<WebDataSource>& dataSource) override {
        record("challenge " + challenge.URL().absoluteString().utf8() + " in " + urlOf(dataSource), nullptr);
        EXPECT_TRUE(identifier);
        challenge.sender().cancelAuthenticationChallenge(challenge);
    }

    static std::string urlOf(const std::shared_ptr<WebDataSource>& source) {
        return source ? source->request().URL().absoluteString().utf8() : "nothing";
    }

    void record(const std::string& call, const WebFramePtr& frame) {
        calls.push_back(call);
        frames.push_back(frame);
        if (onCall) onCall(call);
    }

    std::vector<std::string> calls;
    std::vector<WebFramePtr> frames; // of the calls, one for each
    bool answers = true;
    bool allows = true;
    std::function<void(const std::string& call)> onCall;
};

NSURL url(const char* text) {
    return NSURL::URLWithString(NSString::fromUTF8(text));
}

NSError failure(long long code) {
    return NSError::errorWithDomain_code_userInfo(NSURLErrorDomain, code, {});
}

class WebViewTest : public ::testing::Test {
protected:
    WebViewTest() {
        WebView::setPageFactoryForTesting(
            [](engine::PageClient& client) { return std::make_unique<FakePage>(client); });
        view_ = std::make_unique<WebView>(NSRect{{0, 0}, {612, 792}}, NSString(), NSString());
        view_->setFrameLoadDelegate(&delegate_);
        view_->setPolicyDelegate(&delegate_);
        view_->setResourceLoadDelegate(&delegate_);
        NSNotificationCenter::defaultCenter().addObserver_selector_name_object(
            this, [this](const NSNotification&) { delegate_.record("progress finished", nullptr); },
            WebViewProgressFinishedNotification, view_.get());
    }

    ~WebViewTest() override {
        NSNotificationCenter::defaultCenter().removeObserver(this);
        view_.reset();
        WebView::setPageFactoryForTesting({});
    }

    engine::PageClient& page() { return FakePage::last->client; }

    void load() { view_->mainFrame()->loadArchive(makeArchive({{"http://a/", "page"}})); }

    void commitMainFrame() { page().loadCommitted(mainFrame, url("http://a/"), u"text/html"); }

    void loadAndFinish() {
        load();
        commitMainFrame();
        page().loadFinished(mainFrame);
        forget();
    }

    WebFramePtr addFrame(const char* frame, const char* parent = mainFrame) {
        page().frameAttached(frame, parent);
        const auto& siblings = *parent == 0 ? view_->mainFrame()->childFrames()
                                            : view_->mainFrame()->childFrames().at(0)->childFrames();
        return siblings.empty() ? nullptr : siblings.back();
    }

    void forget() {
        delegate_.calls.clear();
        delegate_.frames.clear();
    }

    RecordingDelegate delegate_;
    std::unique_ptr<WebView> view_;
};

// Loading an archive

TEST_F(WebViewTest, TheStartIsToldBeforeLoadArchiveReturns) {
    load();
    EXPECT_THAT(delegate_.calls, ElementsAre("policy 5 http://a/", "start http://a/"));
    EXPECT_EQ(delegate_.frames[0], view_->mainFrame());
    EXPECT_EQ(delegate_.frames[1], view_->mainFrame());
    ASSERT_EQ(FakePage::last->archives.size(), 1u);
    EXPECT_EQ(FakePage::last->archives[0].mainResource().data().bytes(), "page");
}

TEST_F(WebViewTest, ARefusedLoadLoadsNothing) {
    delegate_.allows = false;
    load();
    EXPECT_THAT(delegate_.calls, ElementsAre("policy 5 http://a/"));
    EXPECT_THAT(FakePage::last->archives, IsEmpty());
    EXPECT_EQ(view_->mainFrame()->provisionalDataSource(), nullptr);
}

TEST_F(WebViewTest, NoAnswerIsARefusal) {
    delegate_.answers = false;
    load();
    EXPECT_THAT(FakePage::last->archives, IsEmpty());
}

TEST_F(WebViewTest, WithoutAPolicyDelegateEverythingIsAllowed) {
    view_->setPolicyDelegate(nullptr);
    load();
    EXPECT_EQ(FakePage::last->archives.size(), 1u);
    EXPECT_TRUE(page().shouldNavigate(mainFrame, NavigationType::linkClicked, url("http://b/")));
}

TEST_F(WebViewTest, NilAndSubframesLoadNothing) {
    view_->mainFrame()->loadArchive({});
    loadAndFinish();
    const WebFramePtr child = addFrame("F");
    child->loadArchive(makeArchive({{"http://b/", "page"}}));
    EXPECT_THAT(delegate_.calls, IsEmpty());
    EXPECT_EQ(FakePage::last->archives.size(), 1u);
}

TEST_F(WebViewTest, AnArchiveWithoutAnAddressIsLoaded) {
    view_->mainFrame()->loadArchive(makeArchive({{"", "page"}}));
    EXPECT_EQ(FakePage::last->archives.size(), 1u);
}

TEST_F(WebViewTest, AStoredPDFIsLoadedWithoutThePagesEngine) {
    view_->mainFrame()->loadArchive(makeArchive({{"http://a/f.pdf", "bytes", "application/pdf"}}));
    EXPECT_EQ(FakePage::last, nullptr);
    EXPECT_THAT(delegate_.calls, ElementsAre("policy 5 http://a/f.pdf", "start http://a/f.pdf"));
    view_->page().waitForLoad();
    EXPECT_THAT(delegate_.calls, ElementsAre("policy 5 http://a/f.pdf", "start http://a/f.pdf", "finish",
                                             "progress finished"));
    EXPECT_EQ(view_->mainFrame()->dataSource()->mainResource().MIMEType(), NSString(u"application/pdf"));
    EXPECT_TRUE(view_->mainFrame()->dataSource()->pageTitle().isNil());
    EXPECT_EQ(view_->page().documentSize(), (NSSize{612, 792}));
}

// Data sources

TEST_F(WebViewTest, TheProvisionalSourceBecomesTheSource) {
    const WebFramePtr frame = view_->mainFrame();
    EXPECT_EQ(frame->dataSource(), nullptr);
    load();
    const auto provisional = frame->provisionalDataSource();
    ASSERT_NE(provisional, nullptr);
    EXPECT_EQ(provisional->request().URL().absoluteString(), NSString(u"http://a/"));
    EXPECT_TRUE(provisional->mainResource().isNil());
    EXPECT_EQ(frame->dataSource(), nullptr);
    commitMainFrame();
    EXPECT_EQ(frame->dataSource(), provisional);
    EXPECT_EQ(frame->provisionalDataSource(), nullptr);
    EXPECT_EQ(provisional->mainResource().MIMEType(), NSString(u"text/html"));
    EXPECT_EQ(provisional->mainResource().URL().absoluteString(), NSString(u"http://a/"));
    EXPECT_TRUE(provisional->pageTitle().isNil());
}

TEST_F(WebViewTest, ACommitThatWasNotStartedMakesASource) {
    page().loadCommitted(mainFrame, url("http://b/"), u"text/plain");
    ASSERT_NE(view_->mainFrame()->dataSource(), nullptr);
    EXPECT_EQ(RecordingDelegate::urlOf(view_->mainFrame()->dataSource()), "http://b/");
}

TEST_F(WebViewTest, AFailedProvisionalLoadLeavesTheOldSource) {
    loadAndFinish();
    const auto source = view_->mainFrame()->dataSource();
    page().loadStarted(mainFrame, url("http://b/"));
    page().loadFailed(mainFrame, failure(-999));
    EXPECT_EQ(view_->mainFrame()->dataSource(), source);
    EXPECT_EQ(view_->mainFrame()->provisionalDataSource(), nullptr);
    EXPECT_THAT(delegate_.calls, ElementsAre("start http://b/", "failProvisional -999", "progress finished"));
}

// The ends of loads

TEST_F(WebViewTest, FinishesOnceAndThenAnnouncesTheEndOfProgress) {
    load();
    commitMainFrame();
    page().progressChanged(0.25);
    EXPECT_EQ(view_->estimatedProgress(), 0.25);
    page().loadFinished(mainFrame);
    page().loadFinished(mainFrame);
    EXPECT_EQ(view_->estimatedProgress(), 1);
    EXPECT_THAT(delegate_.calls,
                ElementsAre("policy 5 http://a/", "start http://a/", "finish", "progress finished"));
}

TEST_F(WebViewTest, ProgressStaysWithinItsBounds) {
    EXPECT_EQ(view_->estimatedProgress(), 0);
    page().progressChanged(7);
    EXPECT_EQ(view_->estimatedProgress(), 1);
    page().progressChanged(-1);
    EXPECT_EQ(view_->estimatedProgress(), 0);
}

TEST_F(WebViewTest, ALoadThatIsNotUnderWayNeitherFinishesNorFails) {
    page().loadFinished(mainFrame);
    page().loadFailed(mainFrame, failure(-999));
    page().loadFinished("F");
    page().loadFailed("F", failure(-999));
    page().loadStarted("F", url("http://b/"));
    page().loadCommitted("F", url("http://b/"), u"text/html");
    page().titleChanged("F", u"T");
    EXPECT_THAT(delegate_.calls, IsEmpty());
}

TEST_F(WebViewTest, FailingBeforeTheCommitIsProvisional) {
    load();
    forget();
    page().loadFailed(mainFrame, failure(-1003));
    EXPECT_THAT(delegate_.calls, ElementsAre("failProvisional -1003", "progress finished"));
}

TEST_F(WebViewTest, FailingAfterTheCommitIsNot) {
    load();
    commitMainFrame();
    forget();
    page().loadFailed(mainFrame, failure(-1005));
    EXPECT_THAT(delegate_.calls, ElementsAre("fail -1005", "progress finished"));
}

TEST_F(WebViewTest, APageThatIsLostHasFailedAfterAll) {
    loadAndFinish();
    page().pageLost(failure(-1005));
    page().loadFailed(mainFrame, failure(-1005));
    EXPECT_THAT(delegate_.calls, ElementsAre("fail -1005"));
}

TEST_F(WebViewTest, APageThatIsLostWhileItLoadsFailsOnce) {
    load();
    forget();
    page().pageLost(failure(-1005));
    page().loadFailed(mainFrame, failure(-1005));
    EXPECT_THAT(delegate_.calls, ElementsAre("failProvisional -1005", "progress finished"));
}

TEST_F(WebViewTest, TheEndOfProgressWaitsForAllFrames) {
    load();
    commitMainFrame();
    addFrame("F");
    addFrame("G");
    page().loadStarted("F", url("http://f/"));
    page().loadStarted("G", url("http://g/"));
    forget();
    page().loadFailed("F", failure(-999));
    page().loadFinished(mainFrame);
    page().loadFinished("G");
    EXPECT_THAT(delegate_.calls,
                ElementsAre("failProvisional -999", "finish", "finish", "progress finished"));
}

TEST_F(WebViewTest, EachPhaseOfLoadingHasItsOwnEnd) {
    loadAndFinish();
    addFrame("F");
    page().loadStarted("F", url("http://f/"));
    page().loadFinished("F");
    EXPECT_THAT(delegate_.calls, ElementsAre("start http://f/", "finish", "progress finished"));
}

// Titles

TEST_F(WebViewTest, TitlesAreToldWhenTheyChange) {
    loadAndFinish();
    page().titleChanged(mainFrame, {});
    page().titleChanged(mainFrame, u"One");
    page().titleChanged(mainFrame, u"One");
    EXPECT_EQ(view_->mainFrame()->dataSource()->pageTitle(), NSString(u"One"));
    page().titleChanged(mainFrame, u"");
    EXPECT_TRUE(view_->mainFrame()->dataSource()->pageTitle().isNil());
    page().titleChanged(mainFrame, u"Two");
    EXPECT_THAT(delegate_.calls, ElementsAre("title One", "title Two"));
}

TEST_F(WebViewTest, ATitleBeforeThePageIsDropped) {
    load();
    forget();
    page().titleChanged(mainFrame, u"Early");
    EXPECT_THAT(delegate_.calls, IsEmpty());
}

TEST_F(WebViewTest, ANewPageHasNoTitleAtFirst) {
    loadAndFinish();
    page().titleChanged(mainFrame, u"Old");
    page().loadStarted(mainFrame, url("http://b/"));
    EXPECT_EQ(view_->mainFrame()->dataSource()->pageTitle(), NSString(u"Old"));
    page().loadCommitted(mainFrame, url("http://b/"), u"text/html");
    EXPECT_TRUE(view_->mainFrame()->dataSource()->pageTitle().isNil());
}

// Frames

TEST_F(WebViewTest, TheChildrenAreThoseOfThePageThatIsStillBeingLoaded) {
    load();
    FakePage::last->onWait = [this] {
        commitMainFrame();
        page().frameAttached("F", mainFrame);
        page().loadFailed(mainFrame, failure(-1003));
    };
    EXPECT_EQ(view_->mainFrame()->childFrames().size(), 1u);
    EXPECT_THAT(delegate_.calls,
                ElementsAre("policy 5 http://a/", "start http://a/", "fail -1003", "progress finished"));
}

TEST_F(WebViewTest, FramesAreObjectsOfTheirOwn) {
    loadAndFinish();
    const WebFramePtr first = addFrame("F");
    const WebFramePtr second = addFrame("G");
    const WebFramePtr nested = addFrame("H", "F");
    EXPECT_THAT(view_->mainFrame()->childFrames(), ElementsAre(first, second));
    EXPECT_THAT(first->childFrames(), ElementsAre(nested));
    EXPECT_NE(first, second);
    EXPECT_TRUE(id(first).isEqual(id(first)));
    EXPECT_FALSE(id(first).isEqual(id(second)));
    page().loadStarted("G", url("http://g/"));
    EXPECT_EQ(delegate_.frames.back(), second);
    EXPECT_EQ(first->provisionalDataSource(), nullptr);
}

TEST_F(WebViewTest, FramesOfUnknownParentsAndTwicetoldOnesAreNotAdded) {
    loadAndFinish();
    page().frameAttached("G", "F");
    addFrame("F");
    addFrame("F");
    page().frameAttached(mainFrame, mainFrame);
    EXPECT_EQ(view_->mainFrame()->childFrames().size(), 1u);
}

TEST_F(WebViewTest, AFrameThatLeavesWhileLoadingHasFailed) {
    load();
    commitMainFrame();
    addFrame("F");
    page().loadStarted("F", url("http://f/"));
    addFrame("G");
    page().loadStarted("G", url("http://g/"));
    page().loadCommitted("G", url("http://g/"), u"text/html");
    forget();
    page().frameDetached("F");
    page().frameDetached("G");
    EXPECT_THAT(delegate_.calls, ElementsAre("failProvisional -999", "fail -999"));
    EXPECT_THAT(view_->mainFrame()->childFrames(), IsEmpty());
}

TEST_F(WebViewTest, DescendantsLeaveFirst) {
    loadAndFinish();
    const WebFramePtr outer = addFrame("F");
    const WebFramePtr inner = addFrame("G", "F");
    page().loadStarted("F", url("http://f/"));
    page().loadStarted("G", url("http://g/"));
    forget();
    page().frameDetached("F");
    EXPECT_THAT(delegate_.calls,
                ElementsAre("failProvisional -999", "failProvisional -999", "progress finished"));
    EXPECT_EQ(delegate_.frames[0], inner);
    EXPECT_EQ(delegate_.frames[1], outer);
    EXPECT_THAT(outer->childFrames(), IsEmpty());
}

TEST_F(WebViewTest, ANewPageTakesTheOldOnesFramesAway) {
    loadAndFinish();
    for (const char* frame : {"F", "G", "H"}) addFrame(frame);
    page().loadStarted("G", url("http://g/"));
    page().loadStarted(mainFrame, url("http://b/"));
    EXPECT_EQ(view_->mainFrame()->childFrames().size(), 3u);
    forget();
    page().loadCommitted(mainFrame, url("http://b/"), u"text/html");
    EXPECT_THAT(delegate_.calls, ElementsAre("failProvisional -999"));
    EXPECT_THAT(view_->mainFrame()->childFrames(), IsEmpty());
    page().loadFinished("G");
    EXPECT_EQ(delegate_.calls.size(), 1u);
}

TEST_F(WebViewTest, TheMainFrameNeverLeaves) {
    loadAndFinish();
    page().frameDetached(mainFrame);
    page().frameDetached("F");
    EXPECT_NE(view_->mainFrame()->frameView(), nullptr);
}

TEST_F(WebViewTest, AFrameThatIsHeldOutlivesItsPlaceInTheView) {
    loadAndFinish();
    const WebFramePtr child = addFrame("F");
    page().loadStarted("F", url("http://f/"));
    page().loadCommitted("F", url("http://f/"), u"text/html");
    EXPECT_TRUE(child->frameElement().isKindOfClass(DOMElement::classInfo()));
    EXPECT_NE(child->frameView(), nullptr);
    page().frameDetached("F");
    EXPECT_EQ(RecordingDelegate::urlOf(child->dataSource()), "http://f/");
    EXPECT_TRUE(child->frameElement().isNil());
    EXPECT_EQ(child->frameView(), nullptr);
    const WebFramePtr again = addFrame("F");
    EXPECT_NE(again, child);
}

TEST_F(WebViewTest, FramesOutliveTheView) {
    loadAndFinish();
    const WebFramePtr main = view_->mainFrame();
    const WebFramePtr child = addFrame("F");
    page().loadStarted("F", url("http://f/"));
    forget();
    NSNotificationCenter::defaultCenter().removeObserver(this);
    view_.reset();
    EXPECT_THAT(delegate_.calls, IsEmpty());
    EXPECT_EQ(FakePage::last, nullptr);
    EXPECT_EQ(main->frameView(), nullptr);
    EXPECT_TRUE(child->frameElement().isNil());
    EXPECT_THAT(main->childFrames(), ElementsAre(child));
    main->loadArchive(makeArchive({{"http://a/", "page"}}));
    EXPECT_THAT(delegate_.calls, IsEmpty());
}

TEST_F(WebViewTest, AFrameMayBeDroppedByItsLastHolderWhenItLeaves) {
    loadAndFinish();
    std::weak_ptr<WebFrame> child = addFrame("F");
    page().frameDetached("F");
    EXPECT_TRUE(child.expired());
}

TEST_F(WebViewTest, DelegatesMayDropTheFramesTheyAreTold) {
    loadAndFinish();
    addFrame("F");
    page().loadStarted("F", url("http://f/"));
    delegate_.onCall = [this](const std::string& call) {
        if (call == "failProvisional -999") page().frameDetached("F");
    };
    page().frameDetached("F");
    EXPECT_THAT(view_->mainFrame()->childFrames(), IsEmpty());
}

TEST_F(WebViewTest, OwnerElementsHaveTheirClass) {
    loadAndFinish();
    EXPECT_TRUE(view_->mainFrame()->frameElement().isNil());
    EXPECT_TRUE(addFrame("FRAME")->frameElement().isKindOfClass(DOMHTMLFrameElement::classInfo()));
    EXPECT_TRUE(addFrame("IFRAME")->frameElement().isKindOfClass(DOMHTMLIFrameElement::classInfo()));
    EXPECT_TRUE(addFrame("OBJECT")->frameElement().isKindOfClass(DOMElement::classInfo()));
    EXPECT_FALSE(addFrame("EMBED")->frameElement().isKindOfClass(DOMHTMLFrameElement::classInfo()));
}

// Questions

TEST_F(WebViewTest, NavigationsAreAskedAbout) {
    loadAndFinish();
    const WebFramePtr child = addFrame("F");
    for (const bool allows : {true, false}) {
        delegate_.allows = allows;
        EXPECT_EQ(page().shouldNavigate("F", NavigationType::reload, url("http://b/")), allows);
    }
    EXPECT_THAT(delegate_.calls, ElementsAre("policy 3 http://b/", "policy 3 http://b/"));
    EXPECT_EQ(delegate_.frames[0], child);
    EXPECT_FALSE(page().shouldNavigate("unknown", NavigationType::other, url("http://b/")));
}

TEST_F(WebViewTest, NavigationsHaveTheTypesOfThePlatform) {
    loadAndFinish();
    for (const auto type :
         {NavigationType::linkClicked, NavigationType::formSubmitted, NavigationType::backForward,
          NavigationType::reload, NavigationType::formResubmitted, NavigationType::other}) {
        page().shouldNavigate(mainFrame, type, url("http://b/"));
    }
    EXPECT_THAT(delegate_.calls,
                ElementsAre("policy 0 http://b/", "policy 1 http://b/", "policy 2 http://b/",
                            "policy 3 http://b/", "policy 4 http://b/", "policy 5 http://b/"));
}

TEST_F(WebViewTest, WindowsAreAskedAbout) {
    loadAndFinish();
    page().windowRequested(url("http://b/"), u"name");
    EXPECT_THAT(delegate_.calls, ElementsAre("window http://b/ name"));
    view_->setPolicyDelegate(nullptr);
    page().windowRequested(url("http://b/"), {});
    EXPECT_EQ(delegate_.calls.size(), 1u);
}

TEST_F(WebViewTest, ChallengesAreHandedOnWithTheirSource) {
    loadAndFinish();
    page().authenticationRequired(mainFrame, url("http://a/secret"));
    page().authenticationRequired("unknown", url("http://b/secret"));
    EXPECT_THAT(delegate_.calls, ElementsAre("challenge http://a/secret in http://a/",
                                             "challenge http://b/secret in nothing"));
    view_->setResourceLoadDelegate(nullptr);
    page().authenticationRequired(mainFrame, url("http://a/secret"));
    EXPECT_EQ(delegate_.calls.size(), 2u);
}

TEST_F(WebViewTest, WithoutALoadDelegateLoadsGoOn) {
    view_->setFrameLoadDelegate(nullptr);
    load();
    commitMainFrame();
    page().titleChanged(mainFrame, u"T");
    page().loadFinished(mainFrame);
    page().loadStarted(mainFrame, url("http://b/"));
    page().loadFailed(mainFrame, failure(-999));
    EXPECT_EQ(view_->mainFrame()->dataSource()->pageTitle(), NSString(u"T"));
    EXPECT_THAT(delegate_.calls, ElementsAre("policy 5 http://a/", "progress finished", "progress finished"));
}

// The view and what it draws

TEST_F(WebViewTest, ADelegateNeedImplementNothing) {
    WebFrameLoadDelegate load;
    WebPolicyDelegate policy;
    WebResourceLoadDelegate resources;
    view_->setFrameLoadDelegate(&load);
    view_->setPolicyDelegate(&policy);
    view_->setResourceLoadDelegate(&resources);
    loadAndFinish();
    EXPECT_TRUE(
        page().shouldNavigate(engine::mainFrame, engine::NavigationType::linkClicked, url("http://a/")));
    page().windowRequested(url("http://a/"), u"name");
    page().authenticationRequired(engine::mainFrame, url("http://a/"));
    page().titleChanged(engine::mainFrame, u"Title");
    EXPECT_EQ(view_->mainFrame()->dataSource()->pageTitle(), NSString(u"Title"));
    page().loadStarted(engine::mainFrame, url("http://a/"));
    page().loadFailed(engine::mainFrame, failure(-1));
    page().loadStarted(engine::mainFrame, url("http://a/"));
    page().loadCommitted(engine::mainFrame, url("http://a/"), u"text/html");
    page().loadFailed(engine::mainFrame, failure(-1));
    EXPECT_EQ(view_->mainFrame()->dataSource()->request().URL().absoluteString(), NSString(u"http://a/"));
}

TEST_F(WebViewTest, ThePageIsToldWhatItIsGoingToBeDrawnAs) {
    view_->prepareForPDF({500, 700});
    EXPECT_EQ(FakePage::last->expected, std::pair(NSSize{500, 700}, std::optional<double>()));
    view_->prepareForPrinting({600, 800}, 40);
    EXPECT_EQ(FakePage::last->expected, std::pair(NSSize{600, 800}, std::optional<double>(40)));
}

TEST_F(WebViewTest, ThePageIsLaidOutInTheViewsSize) {
    EXPECT_EQ(FakePage::last->viewSize.width, 612);
    EXPECT_EQ(FakePage::last->viewSize.height, 792);
    view_->setFrame({{0, 0}, {800, 600}});
    EXPECT_EQ(FakePage::last->viewSize.width, 800);
    EXPECT_EQ(FakePage::last->viewSize.height, 600);
    view_->setFrameSize({300, 200});
    EXPECT_EQ(FakePage::last->viewSize.width, 300);
}

TEST_F(WebViewTest, TheMediaStyleReachesThePage) {
    view_->setMediaStyle(u"screen");
    EXPECT_EQ(FakePage::last->mediaStyle, NSString(u"screen"));
}

TEST_F(WebViewTest, ThePreferencesReachThePageBeforeItDraws) {
    loadAndFinish();
    view_->preferences().setShouldPrintBackgrounds(true);
    NSView* document = view_->mainFrame()->frameView()->documentView();
    ASSERT_NE(document, nullptr);
    document->layout();
    EXPECT_TRUE(FakePage::last->printsBackgrounds);
    EXPECT_TRUE(FakePage::last->unrollsScrollers);
    view_->preferences().setUnrollsScrollers(false);
    view_->page();
    EXPECT_FALSE(FakePage::last->unrollsScrollers);
}

TEST_F(WebViewTest, OnlyTheMainFramesDocumentHasAView) {
    EXPECT_EQ(view_->mainFrame()->frameView()->documentView(), nullptr);
    loadAndFinish();
    NSView* document = view_->mainFrame()->frameView()->documentView();
    ASSERT_NE(document, nullptr);
    EXPECT_EQ(view_->mainFrame()->frameView()->documentView(), document);
    const WebFramePtr child = addFrame("F");
    page().loadStarted("F", url("http://f/"));
    page().loadCommitted("F", url("http://f/"), u"text/html");
    EXPECT_EQ(child->frameView()->documentView(), nullptr);
}

TEST_F(WebViewTest, TheDocumentHasItsSizeAndDrawsItself) {
    loadAndFinish();
    NSView* document = view_->mainFrame()->frameView()->documentView();
    ASSERT_NE(document, nullptr);
    EXPECT_TRUE(document->bounds().isEmpty());
    document->layout();
    EXPECT_EQ(document->frame().size, (NSSize{700, 1500}));
    EXPECT_EQ(document->dataWithPDFInsideRect(document->bounds()).bytes(), "screen");
    EXPECT_TRUE(document->dataWithPDFInsideRect({}).isNil());
    document->setFrameSize({1, 1});
    document->layout();
    EXPECT_EQ(document->frame().size.height, 1500);
}

TEST_F(WebViewTest, ThePageIsMeasuredForTheLayoutOnly) {
    loadAndFinish();
    NSView* document = view_->mainFrame()->frameView()->documentView();
    EXPECT_EQ(FakePage::last->measurements, 0);
    document->layout();
    document->dataWithPDFInsideRect(document->bounds());
    EXPECT_EQ(FakePage::last->measurements, 1);
}

} // namespace
} // namespace qrv
