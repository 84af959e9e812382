#include "Platform/Engine/EnginePage.h"

#include "Platform/Engine/Address/ResourceURL.h"
#include "Platform/Engine/Archive/RequestServer.h"
#include "Platform/Engine/Loading/FrameTracker.h"
#include "Platform/Engine/Loading/NetErrors.h"
#include "Platform/Engine/Loading/RequestsUnderWay.h"
#include "Platform/Engine/PageRecording.h"
#include "Platform/Engine/Print/PageRenderer.h"
#include "Platform/Engine/Print/PrintLayout.h"
#include "Platform/Engine/Process/EngineProcess.h"
#include "Platform/Engine/Process/EnginePulse.h"
#include "Platform/Engine/Process/Sandbox/EngineFiles.h"
#include "Platform/Foundation/NSRunLoop.h"
#include "Platform/Logging/NSLog.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <list>
#include <random>
#include <utility>

namespace qrv::engine {

namespace {

using std::chrono::milliseconds;

// What the page has to answer before a load counts as finished (titles, blank frames) is waited for this
// long.
constexpr milliseconds answerLimit{2000};

// A page that is drawn before it has loaded is waited for this long.
constexpr milliseconds loadLimit{60'000};

// The page is asked for the elements of all its frames for this long, from the first question on.
constexpr milliseconds ownersLimit{10'000};

milliseconds startLimit() {
    constexpr double defaultSeconds = 30;
    const char* text = std::getenv("WEB2PDF_ENGINE_START_TIMEOUT");
    const double seconds = text ? std::strtod(text, nullptr) : 0;
    return milliseconds(static_cast<long long>((seconds > 0 ? seconds : defaultSeconds) * 1000));
}

void tell(const std::string& line) {
    NSLog(u"%s", line.c_str());
}

/// nil for a page without a title.
NSString titleOf(const Json& answer) {
    return answer.stringView().empty() ? NSString() : NSString::fromUTF8(answer.stringView());
}

NSError lostError(const std::string& reason) {
    return urlError(NSURLErrorNetworkConnectionLost, {},
                    NSString::stringWithFormat(u"The web engine ended unexpectedly: %s", reason.c_str()));
}

NSError notInstalledError(const std::string& message) {
    return NSError::errorWithDomain_code_userInfo(
        NSCocoaErrorDomain, NSFileNoSuchFileError,
        {{NSString(NSLocalizedDescriptionKey), NSString::fromUTF8(message)}});
}

NSError outOfMemoryError(std::size_t limit) {
    return NSError::errorWithDomain_code_userInfo(
        NSPOSIXErrorDomain, ENOMEM,
        {{NSString(NSLocalizedDescriptionKey),
          NSString::stringWithFormat(u"The page needs more memory than the web engine may use (%lu MiB).",
                                     static_cast<unsigned long>(limit >> 20))}});
}

/// A host label that no page can have guessed when it was saved.
std::string randomToken() {
    std::random_device device;
    std::string token;
    for (int i = 0; i < 4; ++i) token += "abcdefghijklmnopqrstuvwxyz234567"[device() % 32];
    return token + std::to_string(device());
}

/// The client of a page that is loaded once more, of which nobody is told but its loss.
class SilentClient final : public PageClient {
public:
    explicit SilentClient(PageClient& owner) : owner_(owner) {}

    void frameAttached(const FrameID& /*frame*/, const FrameID& /*parent*/) override {}

    void frameDetached(const FrameID& /*frame*/) override {}

    void loadStarted(const FrameID& /*frame*/, const NSURL& /*url*/) override {}

    void loadCommitted(const FrameID& /*frame*/, const NSURL& /*url*/,
                       const NSString& /*mimeType*/) override {}

    void titleChanged(const FrameID& /*frame*/, const NSString& /*title*/) override {}

    void loadFinished(const FrameID& /*frame*/) override {}

    void loadFailed(const FrameID& /*frame*/, const NSError& /*error*/) override {}

    bool shouldNavigate(const FrameID& /*frame*/, NavigationType type, const NSURL& /*url*/) override {
        return type == NavigationType::other;
    }

    void windowRequested(const NSURL& /*url*/, const NSString& /*frameName*/) override {}

    void authenticationRequired(const FrameID& /*frame*/, const NSURL& /*url*/) override {}

    void progressChanged(double /*estimated*/) override {}

    void pageLost(const NSError& error) override { owner_.pageLost(error); }

private:
    PageClient& owner_;
};

// A page that is recorded is at rest when it has asked for nothing for so long, and is waited for at most the
// longer time.
constexpr milliseconds restTime{1000};
constexpr milliseconds restLimit{10'000};

class EnginePage final : public RecordedPage {
public:
    explicit EnginePage(PageClient& client, int paintLevel = 0);

    void loadArchive(const WebArchive& archive) override;
    void setViewSize(NSSize size) override;
    void prepareForScreenPDF(NSSize paper) override;
    void prepareForPaginatedPDF(NSSize paper, double margin) override;
    void setMediaStyle(const NSString& mediaStyle) override;
    void setPrintsBackgrounds(bool prints) override;
    void setUnrollsScrollers(bool unrolls) override;
    void waitForLoad() override;
    NSString engineVersion() override;
    NSString ownerElementName(const FrameID& frame) override;
    NSSize documentSize() override;
    NSData screenPDF() override;
    NSData paginatedPDF(NSSize paper, double margin) override;
    void setSource(Source source) override;
    WebArchive recordedArchive() override;

private:
    using Handler = void (EnginePage::*)(const Json&);

    void start();
    void connect();
    void targetCreated(const Json& event);
    void attached(const std::string& target, const std::string& session);
    void listen(const std::string& session, const char* method, Handler handler);
    void workerAttached(const Json& event);
    void dialogOpened(const Json& event);
    void pageCrashed(const Json& event);
    void resourceDone(const Json& event);
    void enter();
    void enterAt(const StandInAddress& address);
    void fail(const NSError& error);
    void giveUp(const NSError& error);
    void learnOfEnd();

    bool isAlive() const { return renderer_ && failure_.isNil(); }

    void expectView(NSSize view);
    bool isReadyToRender();
    void updateTitle();
    using Drawing = std::function<NSData(PageRenderer&)>;
    NSData drawn(const Drawing& draw);
    NSData drawnWithLessPaint(const Drawing& draw);
    std::function<void(NSString)> onceInTime(std::function<void(NSString)> answer);
    void completeMainFrame(const std::function<void()>& done);
    void queryTitle(const std::string& engineFrame, std::function<void(NSString)> answer);
    NSURL storedURL(std::string_view engineURL) const;
    std::string storedLink(const std::string& link) const;
    bool isBusy() const;
    void awaitRest();

    PageClient& client_;
    NSRunLoop& loop_;
    std::unique_ptr<EngineProcess> process_;
    std::unique_ptr<DevToolsClient> devTools_;
    std::optional<EnginePulse> pulse_; // none until the page is attached to
    FrameTracker frames_;
    std::optional<PageRecorder> recorder_; // of a page that has a source
    RequestServer::Source source_;
    std::unique_ptr<RequestServer> requests_;
    std::unique_ptr<PageWorld> world_;
    std::unique_ptr<PageRenderer> renderer_;
    std::string session_; // empty until the page is attached to
    std::string mainFrameID_;
    std::map<FrameID, NSString> owners_; // names of the elements, as far as they were told of
    std::optional<StandInAddress> address_;
    WebArchive archive_;
    NSError failure_; // why the engine is not there
    NSSize viewSize_;
    std::optional<NSSize> expectedView_; // of the PDF that is going to be asked for
    NSString mediaStyle_;
    bool printsBackgrounds_ = false;
    bool unrollsScrollers_ = true;
    int paintLevel_;
    RequestsUnderWay underWay_;
    bool titleIsFinal_ = false;
    bool toldOfMissing_ = false;
    std::optional<std::chrono::steady_clock::time_point> ownersDeadline_; // none before the first question
    std::vector<DevToolsClient::Subscription> subscriptions_;
    NSRunLoop::Timer startTimer_;
    std::list<NSRunLoop::Timer> answerTimers_; // of the questions that are open
    NSRunLoop::Posted failing_;                // of a load without an engine
};

EnginePage::EnginePage(PageClient& client, int paintLevel)
    : client_(client), loop_(NSRunLoop::currentRunLoop()),
      frames_(client,
              {.queryTitle =
                   [this](const FrameID& frame, std::function<void(NSString)> answer) {
                       queryTitle(frame, std::move(answer));
                   },
               .completeMainFrame = [this](const std::function<void()>& done) { completeMainFrame(done); },
               .storedURL = [this](std::string_view url) { return storedURL(url); },
               .haltPage = [this] { world_->halt(); }}),
      paintLevel_(paintLevel) {
    start();
}

void EnginePage::start() {
    EngineOptions options;
    options.log = tell;
    auto launched = EngineProcess::launch(std::move(options), loop_);
    if (const auto* error = std::get_if<EngineLaunchError>(&launched)) {
        failure_ = error->kind == EngineLaunchError::Kind::notInstalled
                       ? notInstalledError(error->message)
                       : urlError(NSURLErrorNetworkConnectionLost, {}, NSString::fromUTF8(error->message));
        return;
    }
    process_ = std::move(std::get<std::unique_ptr<EngineProcess>>(launched));
    devTools_ = std::make_unique<DevToolsClient>(*process_, loop_);
    devTools_->setClosedHandler([this](const std::string& reason) {
        fail(process_->exceededMemory() ? outOfMemoryError(process_->memoryLimit()) : lostError(reason));
    });
    startTimer_ = loop_.scheduleTimer(startLimit(), [this] {
        giveUp(urlError(NSURLErrorTimedOut, {}, u"The web engine did not answer in time."));
    });
    connect();
}

/// For an engine that does not answer.
void EnginePage::giveUp(const NSError& error) {
    process_->terminate();
    devTools_->disconnect("the engine did not answer in time");
    fail(error);
}

void EnginePage::connect() {
    listen({}, "Target.targetCreated", &EnginePage::targetCreated);
    devTools_->send({}, "Target.setDiscoverTargets", Json::object({{"discover", true}}));
    // A page that the engine cannot show would be saved instead, to no use.
    devTools_->send({}, "Browser.setDownloadBehavior", Json::object({{"behavior", "deny"}}));
}

void EnginePage::listen(const std::string& session, const char* method, Handler handler) {
    subscriptions_.push_back(
        devTools_->listen(session, method, [this, handler](const Json& event) { (this->*handler)(event); }));
}

/// The engine opens one page by itself; it is the one to use.
void EnginePage::targetCreated(const Json& event) {
    const Json target = event["targetInfo"];
    if (target["type"].string() != "page" || !mainFrameID_.empty()) return;
    mainFrameID_ = target["targetId"].string();
    devTools_->send({}, "Target.attachToTarget",
                    Json::object({{"targetId", mainFrameID_}, {"flatten", true}}),
                    [this](const DevToolsReply& reply) {
                        // Without a session the start has failed, which is told when its time is over.
                        const std::string session = reply.result["sessionId"].string();
                        if (!session.empty()) attached(mainFrameID_, session);
                    });
}

void EnginePage::attached(const std::string& target, const std::string& session) {
    startTimer_.cancel();
    pulse_.emplace(*devTools_, loop_, [this] { giveUp(lostError("it does not answer any more")); });
    session_ = session;
    frames_.attach(*devTools_, session_, target);
    requests_ = std::make_unique<RequestServer>(*devTools_, frames_, client_);
    underWay_.attach(*devTools_, session_);
    world_ = std::make_unique<PageWorld>(*devTools_, session_, target, tell);
    renderer_ = std::make_unique<PageRenderer>(*devTools_, loop_, session_, *world_);
    renderer_->readiness().setBusyCheck([this] { return isBusy(); });
    renderer_->readiness().setSubstitution(
        [this](const std::string& chosen, const std::vector<std::string>& candidates) {
            return requests_->substitutesFor(chosen, candidates);
        });
    renderer_->readiness().setPictures(
        {.mayBeOthers = [this] { return requests_->mayHaveOtherPictures(); },
         .canBeHad = [this](const std::string& address) { return requests_->holds(address); },
         .dismiss = [this](const std::string& address) { requests_->dismissPicture(address); }});
    renderer_->setViewSize(viewSize_);
    if (expectedView_) renderer_->expectView(*expectedView_);
    renderer_->setLinkMapping([this](const std::string& link) { return storedLink(link); });

    listen(session_, "Target.attachedToTarget", &EnginePage::workerAttached);
    listen(session_, "Page.javascriptDialogOpening", &EnginePage::dialogOpened);
    listen(session_, "Inspector.targetCrashed", &EnginePage::pageCrashed);
    listen(session_, "Network.loadingFinished", &EnginePage::resourceDone);
    listen(session_, "Network.loadingFailed", &EnginePage::resourceDone);
    devTools_->send(session_, "Page.enable");
    devTools_->send(session_, "Inspector.enable");
    world_->runInNewDocuments(scripts::keepOpen, PageWorld::Place::pagesWorld);
    world_->runInNewDocuments(scripts::ignoreDomain, PageWorld::Place::pagesWorld);
    world_->runInNewDocuments(scripts::awaitNoTakeover, PageWorld::Place::pagesWorld);
    world_->runInNewDocuments(scripts::watchView, PageWorld::Place::ownWorld);
    world_->runInNewDocuments(scripts::refuseSilentNavigations, PageWorld::Place::ownWorld);
    devTools_->send(session_, "Network.enable",
                    Json::object({{"maxTotalBufferSize", 0}, {"maxResourceBufferSize", 0}}));
    // The archive answers, not a worker of the page's.
    devTools_->send(session_, "Network.setBypassServiceWorker", Json::object({{"bypass", true}}));
    requests_->setPage(session_, target);
    // Workers stop until their requests are intercepted as well.
    devTools_->send(
        session_, "Target.setAutoAttach",
        Json::object({{"autoAttach", true}, {"waitForDebuggerOnStart", true}, {"flatten", true}}));
    if (archive_) enter();
}

void EnginePage::workerAttached(const Json& event) {
    const std::string session = event["sessionId"].string();
    requests_->attach(session);
    listen(session, "Target.attachedToTarget", &EnginePage::workerAttached);
    devTools_->send(
        session, "Target.setAutoAttach",
        Json::object({{"autoAttach", true}, {"waitForDebuggerOnStart", true}, {"flatten", true}}));
    devTools_->send(session, "Runtime.runIfWaitingForDebugger");
}

void EnginePage::dialogOpened(const Json& /*event*/) {
    devTools_->send(session_, "Page.handleJavaScriptDialog", Json::object({{"accept", false}}));
}

/// After a crash every further command would hang or bring the rest of the engine down.
void EnginePage::pageCrashed(const Json& /*event*/) {
    fail(urlError(NSURLErrorNetworkConnectionLost, {}, u"The web engine's page process ended unexpectedly."));
    devTools_->disconnect("the page process ended");
}

void EnginePage::resourceDone(const Json& /*event*/) {
    const std::size_t asked = std::max(requests_->asked(), underWay_.ended());
    client_.progressChanged(static_cast<double>(underWay_.ended()) / static_cast<double>(asked));
}

void EnginePage::fail(const NSError& error) {
    if (failure_) return;
    failure_ = error;
    startTimer_.cancel();
    if (!archive_) return;
    client_.pageLost(error);
    frames_.failAll(error);
}

void EnginePage::loadArchive(const WebArchive& archive) {
    archive_ = archive;
    if (failure_) {
        failing_ = loop_.performSoon([this] { frames_.failAll(failure_); });
    } else if (!session_.empty()) {
        enter();
    }
}

void EnginePage::enter() {
    if (recorder_) {
        recorder_->attach(*devTools_, session_);
        requests_->setSource(source_);
        requests_->setRecorder(&*recorder_);
    }
    const std::string stored = archive_.mainResource().URL().absoluteString().utf8();
    enterAt(StandInAddress(stored.empty() ? "about:blank" : stored, randomToken()));
}

// An address that the engine finds to be none gets a stand-in.
void EnginePage::enterAt(const StandInAddress& address) {
    address_ = address;
    requests_->serve(archive_, address);
    frames_.expectOwnLoad();
    world_->callInFrame(mainFrameID_, scripts::enter, {address.engineURL()},
                        [this](const std::optional<Json>& entered) {
                            if (!entered || entered->boolean(true)) return;
                            enterAt(StandInAddress(archive_.mainResource().URL().absoluteString().utf8(),
                                                   randomToken(), StandInAddress::Use::always));
                        });
}

NSURL EnginePage::storedURL(std::string_view engineURL) const {
    return NSURL::URLWithString(
        NSString::fromUTF8(address_ ? address_->storedURL(engineURL) : std::string(engineURL)));
}

std::string EnginePage::storedLink(const std::string& link) const {
    return address_ ? address_->storedURL(link) : link;
}

/// Makes a function that hands on what it is called with first: the answer or, after answerLimit, nil. What
/// an engine that has ended did not answer is not handed on: the load has failed, which is told next.
std::function<void(NSString)> EnginePage::onceInTime(std::function<void(NSString)> answer) {
    const auto once = std::make_shared<std::function<void(NSString)>>(std::move(answer));
    const auto timer = answerTimers_.emplace(answerTimers_.end());
    auto reply = [this, once, timer](const NSString& text) {
        const auto waiting = std::exchange(*once, nullptr);
        if (!waiting) return;
        answerTimers_.erase(timer);
        if (!devTools_->isClosed()) waiting(text);
    };
    *timer = loop_.scheduleTimer(answerLimit, [reply] { reply({}); });
    return reply;
}

/// A page whose script never ends does not take what is stored for its blank frames.
void EnginePage::completeMainFrame(const std::function<void()>& done) {
    const auto reply = onceInTime([done](const NSString&) { done(); });
    requests_->fillBlankFrames([reply] { reply({}); });
}

/// What does not answer in time has no title.
void EnginePage::queryTitle(const std::string& engineFrame, std::function<void(NSString)> answer) {
    const auto reply = onceInTime(std::move(answer));
    world_->callInFrame(engineFrame, scripts::titleAndOwner, {},
                        [this, engineFrame, reply](const std::optional<Json>& told) {
                            if (told)
                                owners_[engineFrame] = NSString::fromUTF8((*told)["owner"].stringView());
                            reply(told ? titleOf((*told)["title"]) : NSString());
                        });
}

void EnginePage::setViewSize(NSSize size) {
    viewSize_ = size;
    if (renderer_) renderer_->setViewSize(size);
}

void EnginePage::prepareForScreenPDF(NSSize paper) {
    expectView(screenView(paper));
}

void EnginePage::prepareForPaginatedPDF(NSSize paper, double margin) {
    expectView(paginatedView(paper, margin));
}

void EnginePage::expectView(NSSize view) {
    expectedView_ = view;
    if (renderer_) renderer_->expectView(view);
}

void EnginePage::setMediaStyle(const NSString& mediaStyle) {
    mediaStyle_ = mediaStyle;
}

void EnginePage::setPrintsBackgrounds(bool prints) {
    printsBackgrounds_ = prints;
}

void EnginePage::setUnrollsScrollers(bool unrolls) {
    unrollsScrollers_ = unrolls;
}

void EnginePage::waitForLoad() {
    const auto done = [this] { return failure_ || (!session_.empty() && !frames_.isMainFrameLoading()); };
    if (archive_) loop_.runUntil(done, std::chrono::steady_clock::now() + loadLimit);
}

NSString EnginePage::engineVersion() {
    if (!isAlive()) return {};
    const DevToolsReply reply = devTools_->call({}, "Browser.getVersion", {}, answerLimit);
    return reply.ok() ? NSString::fromUTF8(reply.result["product"].stringView()) : NSString();
}

NSString EnginePage::ownerElementName(const FrameID& frame) {
    if (!isAlive() || frame == mainFrame) return {};
    if (const auto told = owners_.find(frame); told != owners_.end() && told->second.length() > 0)
        return told->second;
    const auto now = std::chrono::steady_clock::now();
    if (!ownersDeadline_) ownersDeadline_ = now + ownersLimit;
    if (now > *ownersDeadline_) return {};
    devTools_->send(session_, "DOM.enable");
    const DevToolsReply owner = world_->ask("DOM.getFrameOwner", Json::object({{"frameId", frame}}));
    if (!owner.ok()) return {};
    const DevToolsReply node =
        world_->ask("DOM.describeNode", Json::object({{"backendNodeId", owner.result["backendNodeId"]}}));
    const std::string name = node.result["node"]["nodeName"].string();
    return name.empty() ? NSString() : NSString::fromUTF8(name);
}

/// A page may have changed its title since it was loaded. Once it is being drawn, its scripts stand still.
void EnginePage::updateTitle() {
    if (titleIsFinal_) return;
    titleIsFinal_ = true;
    if (const std::optional<Json> title = world_->call(scripts::title)) {
        client_.titleChanged(mainFrame, titleOf(*title));
    }
}

/// The end of the connection is told in a turn of its own, after the answers to what was asked.
void EnginePage::learnOfEnd() {
    constexpr milliseconds turnLimit{1000};
    if (!devTools_ || !devTools_->isClosed()) return;
    loop_.runUntil([this] { return !failure_.isNil(); }, std::chrono::steady_clock::now() + turnLimit);
}

/// Asks the page, which may show that it is not alive any more.
bool EnginePage::isReadyToRender() {
    if (isAlive()) updateTitle();
    learnOfEnd();
    if (!isAlive()) return false;
    renderer_->setMediaStyle(mediaStyle_.utf8());
    renderer_->setPrintsBackgrounds(printsBackgrounds_);
    renderer_->setUnrollsScrollers(unrollsScrollers_);
    renderer_->setPaintLevel(paintLevel_);
    return true;
}

NSSize EnginePage::documentSize() {
    const NSSize size = isReadyToRender() ? renderer_->documentSize() : NSSize();
    learnOfEnd();
    return size;
}

NSData EnginePage::screenPDF() {
    return drawn([](PageRenderer& renderer) { return renderer.screenPDF(); });
}

NSData EnginePage::paginatedPDF(NSSize paper, double margin) {
    return drawn([=](PageRenderer& renderer) { return renderer.paginatedPDF(paper, margin); });
}

/// Once the page has been drawn, it has asked for everything that it shows.
NSData EnginePage::drawn(const Drawing& draw) {
    if (!isReadyToRender()) return {};
    NSData pdf = draw(*renderer_);
    learnOfEnd();
    if (renderer_->needsLessPaint()) return drawnWithLessPaint(draw);
    const std::string missing = requests_->missing().description();
    if (!missing.empty() && !toldOfMissing_) NSLog(u"%s", missing.c_str());
    toldOfMissing_ = true;
    return pdf;
}

/// An engine that prints cannot be told to stop: another one gets the page.
NSData EnginePage::drawnWithLessPaint(const Drawing& draw) {
    NSLog(paintLevel_ == 0 ? u"printing takes too long: the page is printed without blurs, filters and masks"
                           : u"printing takes too long: the page is printed without shadows");
    failure_ = urlError(NSURLErrorTimedOut, {}, u"The web engine took too long to print.");
    devTools_->setClosedHandler({});
    process_->terminate();
    SilentClient silent(client_);
    EnginePage again(silent, paintLevel_ + 1);
    again.setViewSize(viewSize_);
    if (expectedView_) again.expectView(*expectedView_);
    again.setMediaStyle(mediaStyle_);
    again.setPrintsBackgrounds(printsBackgrounds_);
    again.setUnrollsScrollers(unrollsScrollers_);
    again.loadArchive(archive_);
    again.waitForLoad();
    return again.drawn(draw);
}

bool EnginePage::isBusy() const {
    return !underWay_.isEmpty() || requests_->answered() < requests_->asked();
}

void EnginePage::setSource(Source source) {
    recorder_.emplace();
    source_ = [source = std::move(source)](const std::string& url) {
        return source(NSURL::URLWithString(NSString::fromUTF8(url)));
    };
}

void EnginePage::awaitRest() {
    const auto end = std::chrono::steady_clock::now() + restLimit;
    std::size_t asked = 0;
    do {
        asked = requests_->asked();
        loop_.runUntil([this] { return !failure_.isNil(); }, std::chrono::steady_clock::now() + restTime);
    } while (isAlive() && (isBusy() || requests_->asked() > asked) && std::chrono::steady_clock::now() < end);
}

WebArchive EnginePage::recordedArchive() {
    if (!recorder_ || !isAlive()) return {};
    awaitRest();
    if (!isAlive()) return {};
    WebArchive archive = recordPage(*world_, renderer_->readiness(), *recorder_);
    learnOfEnd();
    return isAlive() ? archive : WebArchive();
}

} // namespace

std::unique_ptr<RecordedPage> makeRecordedPage(PageClient& client) {
    return std::make_unique<EnginePage>(client);
}

std::unique_ptr<Page> makeEnginePage(PageClient& client) {
    return std::make_unique<EnginePage>(client);
}

void allowEnginePages(FileRules& rules) {
    if (const auto program = locateEngine(EngineSearch::fromEnvironment())) allowEngine(rules, *program);
}

} // namespace qrv::engine
