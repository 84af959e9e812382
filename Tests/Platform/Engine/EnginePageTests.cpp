// Pages in the engine that is installed, and in engines that misbehave.

#include "Platform/Engine/EnginePage.h"

#include "Platform/Foundation/NSRunLoop.h"
#include "Tests/Platform/Engine/EngineTestSupport.h"
#include "Tests/Platform/Engine/RecordingClient.h"
#include "Tests/Platform/PDFKit/SamplePDF.h"
#include "Tests/Platform/WebArchive/TestArchive.h"

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <gmock/gmock.h>
#include <unistd.h>

namespace qrv::engine {
namespace {

using std::chrono::seconds;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

class EnginePageTest : public ::testing::Test {
protected:
    ~EnginePageTest() override {
        page_.reset();
        ::unsetenv("WEB2PDF_ENGINE");
        ::unsetenv("WEB2PDF_ENGINE_START_TIMEOUT");
    }

    void open() {
        page_ = makeEnginePage(owner_);
        page_->setViewSize({612, 792});
    }

    bool waitFor(const std::string& call) {
        return loop().runUntil(
            [&] { return std::find(owner_.calls.begin(), owner_.calls.end(), call) != owner_.calls.end(); },
            std::chrono::steady_clock::now() + patience);
    }

    /// Lets what is on its way arrive.
    void linger() {
        loop().runUntil([] { return false; },
                        std::chrono::steady_clock::now() + std::chrono::milliseconds(300));
    }

    static NSRunLoop& loop() { return NSRunLoop::currentRunLoop(); }

    void load(const TestArchive& archive) {
        if (!page_) open();
        page_->loadArchive(makeArchive(archive));
        EXPECT_TRUE(waitFor("finished main")) << ::testing::PrintToString(owner_.calls);
    }

    void load(const std::string& html) { load({{"http://a.example/", "<!DOCTYPE html>" + html}}); }

    std::string infoOf(const NSData& pdf) const { return output("pdfinfo", pdf, "-"); }

    std::string textOf(const NSData& pdf) const { return output("pdftotext -layout", pdf, "- -"); }

    std::string output(const std::string& program, const NSData& pdf, const std::string& arguments) const {
        const std::string path = directory_.path() / "page.pdf";
        std::ofstream(path, std::ios::binary) << pdf.bytes();
        return outputOf(program + " " + arguments + " < '" + path + "'");
    }

    void useEngine(const std::string& path) const { ::setenv("WEB2PDF_ENGINE", path.c_str(), 1); }

    OpenDirectory directory_;
    RecordingClient owner_;
    std::unique_ptr<Page> page_;
};

// Loading

TEST_F(EnginePageTest, LoadsAnArchive) {
    load("<title>A page</title><p>Text");
    EXPECT_THAT(owner_.calls, ElementsAre("committed main http://a.example/ text/html", "title main A page",
                                          "finished main"));
    ASSERT_FALSE(owner_.progress.empty());
    EXPECT_EQ(owner_.progress.back(), 1);
}

TEST_F(EnginePageTest, LoadsAnArchiveThatComesLate) {
    open();
    linger();
    EXPECT_THAT(owner_.calls, IsEmpty());
    load("<p>Text");
    EXPECT_EQ(owner_.calls.back(), "finished main");
}

TEST_F(EnginePageTest, AddressesThatTheEngineCannotLoadAreStoodInFor) {
    for (const char* url : {"about:blank", "odd://host/page", ""}) {
        page_.reset();
        owner_.calls.clear();
        load({{url, "<!DOCTYPE html><title>T</title><img src=i.png>"}});
        EXPECT_THAT(owner_.calls, Contains("title main T")) << url;
        const std::string committed = *url == 0 ? "about:blank" : url;
        EXPECT_THAT(owner_.calls, Contains("committed main " + committed + " text/html")) << url;
    }
}

TEST_F(EnginePageTest, LoadsPagesThatWereLocalFiles) {
    load({{"file:///nowhere/page.html", "<!DOCTYPE html><title>T</title><script src=s.js></script>"},
          {{"file:///nowhere/s.js", "document.title = 'Scripted'", "text/javascript"}}});
    EXPECT_THAT(owner_.calls, ElementsAre("committed main file:///nowhere/page.html text/html",
                                          "title main Scripted", "finished main"));
}

TEST_F(EnginePageTest, TheStoredEncodingCounts) {
    load({{"http://a.example/", "<!DOCTYPE html><meta charset=utf-8><title>caf\xE9</title>", "text/html", "",
           "ISO-8859-1"}});
    EXPECT_THAT(owner_.calls, Contains("title main caf\xC3\xA9"));
}

TEST_F(EnginePageTest, TextIsShownAsText) {
    load({{"http://a.example/", "a,b", "text/csv"}});
    EXPECT_THAT(textOf(page_->screenPDF()), HasSubstr("a,b"));
}

TEST_F(EnginePageTest, WhatTheEngineWouldSaveFails) {
    open();
    page_->loadArchive(makeArchive({{"http://a.example/", "bytes", "application/octet-stream"}}));
    EXPECT_TRUE(waitFor("failed main -999")) << ::testing::PrintToString(owner_.calls);
}

TEST_F(EnginePageTest, AResourceThatIsMissingDoesNotHoldUpThePage) {
    load(
        "<img src=missing.png><link rel=stylesheet href=missing.css><script src=missing.js></script><p>Text");
    EXPECT_THAT(textOf(page_->screenPDF()), HasSubstr("Text"));
}

TEST_F(EnginePageTest, AnAddressThatIsNoneIsStoodInFor) {
    load({{"http://[half/page.html", "<!DOCTYPE html><title>T</title><script src=s.js></script>"},
          {{"http://[half/s.js", "document.title = 'Scripted'", "text/javascript"}}});
    EXPECT_THAT(owner_.calls, Contains("title main Scripted"));
}

TEST_F(EnginePageTest, ALoadThatNobodyWaitedForIsWaitedForWhenAsked) {
    open();
    page_->waitForLoad(); // nothing to wait for
    page_->loadArchive(makeArchive({{"http://a.example/", "<!DOCTYPE html><title>T</title><p>Text"}}));
    page_->waitForLoad();
    EXPECT_EQ(owner_.calls.back(), "finished main");
    page_->waitForLoad();
}

TEST_F(EnginePageTest, MediaTypeAndBackgroundsAreAsAsked) {
    const std::string page = "<style>.p{display:none}@media print{.s{display:none}.p{display:block}}"
                             "body{background:red}</style><p class=s>Screen<p class=p>Print";
    load(page);
    page_->setMediaStyle(u"screen");
    page_->setPrintsBackgrounds(true);
    const NSData withBackground = page_->screenPDF();
    EXPECT_THAT(textOf(withBackground), HasSubstr("Screen"));
    EXPECT_THAT(textOf(withBackground), Not(HasSubstr("Print")));
    page_.reset();
    owner_.calls.clear();
    load(page);
    page_->setMediaStyle(u"print");
    page_->setPrintsBackgrounds(false);
    const NSData without = page_->paginatedPDF({612, 792}, 36);
    EXPECT_THAT(textOf(without), HasSubstr("Print"));
    EXPECT_THAT(textOf(without), Not(HasSubstr("Screen")));
}

TEST_F(EnginePageTest, TellsTheEnginesVersionWhileThereIsOne) {
    load("<p>x");
    EXPECT_THAT(page_->engineVersion().utf8(), ::testing::MatchesRegex("[A-Za-z]*Chrome/[0-9]+\\.[0-9.]+"));
    page_.reset();
    useEngine("/nonexistent");
    open();
    EXPECT_TRUE(page_->engineVersion().isNil());
}

// Frames

TEST_F(EnginePageTest, FramesAreLoadedWithTheirArchives) {
    load({{"http://a.example/",
           "<!DOCTYPE html><iframe name=n src=f.html></iframe><iframe src=missing></iframe>"},
          {},
          {{{"http://a.example/f.html", "<title>Inner</title>inside", "text/html", "n"}}}});
    EXPECT_THAT(owner_.calls, Contains(StartsWith("committed ")).Times(::testing::Ge(2u)));
    EXPECT_THAT(owner_.calls, Contains(::testing::EndsWith("http://a.example/f.html text/html")));
    EXPECT_THAT(owner_.calls, Contains(::testing::EndsWith(" -999")));
    EXPECT_THAT(textOf(page_->screenPDF()), HasSubstr("inside"));
}

TEST_F(EnginePageTest, BlankFramesGetTheirStoredPages) {
    load({{"http://a.example/", "<!DOCTYPE html><iframe></iframe>"},
          {},
          {{{"about:blank", "outer<iframe></iframe>"}, {}, {{{"about:blank", "inner"}}}}}});
    const std::string text = textOf(page_->screenPDF());
    EXPECT_THAT(text, HasSubstr("outer"));
    EXPECT_THAT(text, HasSubstr("inner"));
}

TEST_F(EnginePageTest, NamesTheOwnersOfFrames) {
    load({{"http://a.example/", "<!DOCTYPE html><iframe></iframe>"}});
    ASSERT_THAT(owner_.calls[0], StartsWith("committed"));
    std::string frame;
    for (const std::string& call : owner_.calls) {
        if (call.starts_with("attached")) frame = call.substr(9, call.find(' ', 9) - 9);
    }
    EXPECT_EQ(page_->ownerElementName(frame), NSString(u"IFRAME"));
    EXPECT_TRUE(page_->ownerElementName(mainFrame).isNil());
    EXPECT_TRUE(page_->ownerElementName("unknown").isNil());
}

TEST_F(EnginePageTest, NamesTheOwnersOfFramesThatDoNotKnowThem) {
    load(
        {{"http://a.example/", "<iframe src=f.html sandbox></iframe><iframe src=http://b.example/></iframe>"},
         {},
         {{{"http://a.example/f.html", "inside"}}, {{"http://b.example/", "elsewhere"}}}});
    std::vector<NSString> owners;
    for (const std::string& call : owner_.calls) {
        if (call.starts_with("attached"))
            owners.push_back(page_->ownerElementName(call.substr(9, call.find(' ', 9) - 9)));
    }
    EXPECT_THAT(owners, ElementsAre(NSString(u"IFRAME"), NSString(u"IFRAME")));
}

TEST_F(EnginePageTest, NamesTheOwnersInAFrameset) {
    load({{"http://a.example/", "<frameset cols=*><frame src=f.html></frameset>"},
          {},
          {{{"http://a.example/f.html", "inside"}}}});
    std::string frame;
    for (const std::string& call : owner_.calls) {
        if (call.starts_with("attached")) frame = call.substr(9, call.find(' ', 9) - 9);
    }
    EXPECT_EQ(page_->ownerElementName(frame), NSString(u"FRAME"));
}

TEST_F(EnginePageTest, AFrameThatIsRemovedWhileItLoadsDoesNotHoldUpThePage) {
    load("<iframe id=f src=f.html></iframe><script>f.remove()</script>");
    EXPECT_THAT(owner_.calls, Contains(StartsWith("detached")));
}

// Navigations

TEST_F(EnginePageTest, AScriptedNavigationIsAllowedOther) {
    load({{"http://a.example/",
           "<!DOCTYPE html><script>onload = () => setTimeout(() => location = 'b')</script>"},
          {{"http://a.example/b", "<!DOCTYPE html><title>Second</title>"}}});
    EXPECT_TRUE(waitFor("title main Second"));
    EXPECT_THAT(owner_.calls, Contains("asked main other http://a.example/b"));
}

TEST_F(EnginePageTest, RefusedNavigationsLeaveThePage) {
    owner_.allows = false;
    load({{"http://a.example/",
           "<!DOCTYPE html><title>First</title><a id=l href=b>x</a>"
           "<script>onload = () => { l.click(); setTimeout(() => location.reload(), 100); }</script>"},
          {{"http://a.example/b", "<!DOCTYPE html><title>Second</title>"}}});
    EXPECT_TRUE(waitFor("asked main linkClicked http://a.example/b"));
    EXPECT_TRUE(waitFor("asked main reload http://a.example/"));
    linger();
    EXPECT_THAT(owner_.calls, Not(Contains("title main Second")));
    EXPECT_THAT(owner_.calls, Contains(StartsWith("committed main")).Times(1));
    page_->documentSize();
    EXPECT_EQ(owner_.calls.back(), "title main First");
}

TEST_F(EnginePageTest, FormsAreRefusedWithoutAQuestion) {
    load({{"http://a.example/",
           "<!DOCTYPE html><title>First</title><form id=f action=b method=post></form><form id=g "
           "action='file:///etc'></form><script>g.submit(); f.submit(); onload = () => f.submit()</script>"},
          {{"http://a.example/b", "<!DOCTYPE html><title>Second</title>"}}});
    linger();
    EXPECT_THAT(owner_.calls, ElementsAre("committed main http://a.example/ text/html", "title main First",
                                          "finished main"));
}

TEST_F(EnginePageTest, APageIsNotLeftForWhatNeedsNoRequest) {
    load("<title>First</title><script>const blob = URL.createObjectURL(new Blob(['x'], {type: 'text/html'}));"
         "const goes = [() => location = 'about:blank', () => location = blob,"
         "() => Object.assign(document.createElement('a'), {href: blob}).click(),"
         "() => location = '/' + 'x'.repeat(3e6)];"
         "onload = () => goes.forEach((go, i) => setTimeout(go, 10 * i))</script>");
    linger();
    page_->documentSize();
    EXPECT_THAT(owner_.calls, Contains(StartsWith("committed main")).Times(1));
    EXPECT_EQ(owner_.calls.back(), "title main First");
}

TEST_F(EnginePageTest, AFrameLoadsWhatNeedsNoRequestButNotByALink) {
    load("<iframe id=f></iframe><script>const blob = text => URL.createObjectURL(new Blob([text], {type: "
         "'text/html'}));"
         "f.src = blob('<title>Framed</title><a href=' + blob('<title>Elsewhere</title>') + '></a>');"
         "f.onload = () => f.contentDocument.querySelector('a')?.click()</script>");
    linger();
    EXPECT_THAT(owner_.calls, Contains(HasSubstr("Framed")));
    EXPECT_THAT(owner_.calls, Not(Contains(HasSubstr("Elsewhere"))));
}

// Takes over a navigation for ever.
constexpr char takesOver[] =
    "<script>navigation.onnavigate = e => e.intercept({handler: () => new Promise(() => 0)});"
    "onload = () => location = 'next.html'</script>";

TEST_F(EnginePageTest, ATakenOverNavigationIsNotWaitedFor) {
    load(takesOver);
}

TEST_F(EnginePageTest, ATakenOverNavigationOfAFrameIsNotWaitedFor) {
    load("<iframe srcdoc=\"" + std::string(takesOver) + "\"></iframe>");
}

TEST_F(EnginePageTest, ATakenOverNavigationIsHandledByThePage) {
    load("<script>navigation.onnavigate = e => e.intercept({async handler() { document.title = 'Routed' }});"
         "onload = () => location = 'next.html'</script>");
    linger();
    page_->documentSize();
    EXPECT_EQ(owner_.calls.back(), "title main Routed");
}

TEST_F(EnginePageTest, NoWorkerOfThePageAnswersForTheArchive) {
    load({{"https://a.example/",
           "<!DOCTYPE html><script>navigator.serviceWorker.register('sw.js').then(async () => {"
           "await navigator.serviceWorker.ready; location = 'b' })</script>"},
          {{"https://a.example/b", "<!DOCTYPE html><title>Stored</title>"},
           {"https://a.example/sw.js",
            "onfetch = e => e.respondWith(new Response('<title>Made up</title>', "
            "{headers: {'Content-Type': 'text/html'}}))",
            "text/javascript"}}});
    EXPECT_TRUE(waitFor("title main Stored")) << ::testing::PrintToString(owner_.calls);
}

TEST_F(EnginePageTest, FragmentsAndHistoryEntriesAreNoLoads) {
    load("<a id=l href='#x'>x</a><script>onload = () => { l.click(); history.pushState(0, '', 'p');"
         "location.hash = 'y'; location = 'javascript:void 0'; }</script>");
    linger();
    EXPECT_THAT(owner_.calls, ElementsAre("committed main http://a.example/ text/html", "finished main"));
}

TEST_F(EnginePageTest, WindowsAreAskedForAndNotOpened) {
    load("<p>Text<script>onload = () => open('http://b.example/', 'w')</script>");
    EXPECT_TRUE(waitFor("window http://b.example/ w"));
    EXPECT_THAT(textOf(page_->screenPDF()), HasSubstr("Text"));
}

TEST_F(EnginePageTest, NothingEverAsksForCredentials) {
    load("<img src='http://u:p@b.example/i.png'><script>fetch('/secret', {headers: {Authorization: 'x'}})"
         ".catch(() => document.title = 'failed')</script>");
    page_->documentSize();
    EXPECT_EQ(owner_.calls.back(), "title main failed");
    EXPECT_THAT(owner_.calls, Not(Contains(StartsWith("challenge"))));
}

TEST_F(EnginePageTest, DialogsAreDismissed) {
    load("<script>alert(1); document.title = [confirm(2), prompt(3)].join()</script>");
    EXPECT_THAT(owner_.calls, Contains("title main false,"));
}

TEST_F(EnginePageTest, WorkersGetWhatIsStored) {
    load({{"http://a.example/", "<!DOCTYPE html><title>No</title><script>"
                                "new Worker('w.js').onmessage = (e) => document.title = e.data</script>"},
          {{"http://a.example/w.js", "fetch('d.txt').then((r) => r.text()).then(postMessage)",
            "text/javascript"},
           {"http://a.example/d.txt", "Fetched", "text/plain"}}});
    for (int i = 0; i < 50 && owner_.calls.back() != "title main Fetched"; ++i)
        linger(), page_->documentSize();
    EXPECT_EQ(owner_.calls.back(), "title main Fetched");
}

// Printing

TEST_F(EnginePageTest, TheScreenPDFHasOnePageOfTheDocumentsSize) {
    load("<body style='margin:0'><div style='height:1500px;width:700px'>Text</div>");
    EXPECT_EQ(page_->documentSize(), (NSSize{700, 1500}));
    const std::string info = infoOf(page_->screenPDF());
    EXPECT_THAT(info, HasSubstr("Pages:           1\n"));
    EXPECT_THAT(info, HasSubstr("Page size:       700 x 1500 pts"));
}

TEST_F(EnginePageTest, ADocumentIsAtLeastAsLargeAsTheView) {
    load("Text");
    EXPECT_EQ(page_->documentSize(), (NSSize{612, 792}));
}

TEST_F(EnginePageTest, TheViewMayBeResizedAfterMeasuring) {
    load("Text");
    page_->documentSize();
    page_->setViewSize({500, 400});
    EXPECT_THAT(infoOf(page_->screenPDF()), HasSubstr("Page size:       500 x 400 pts"));
}

TEST_F(EnginePageTest, ThePaginatedPDFHasThePapersSize) {
    load("<div style='height:3000px'>Text</div>End");
    const std::string info = infoOf(page_->paginatedPDF({612, 792}, 36));
    EXPECT_THAT(info, HasSubstr("Pages:           4\n"));
    EXPECT_THAT(info, HasSubstr("Page size:       612 x 792 pts"));
}

TEST_F(EnginePageTest, LinksLeadToTheStoredAddresses) {
    load({{"odd://host/page", "<!DOCTYPE html><a href=other>x</a>"}});
    EXPECT_THAT(output("pdfinfo -url", page_->screenPDF(), "-"), HasSubstr("odd://host/other"));
}

TEST_F(EnginePageTest, ATitleThatChangesAfterTheLoadIsToldWithTheSize) {
    load(
        "<title>Before</title><script>onload = () => setTimeout(() => document.title = 'After', 1)</script>");
    linger();
    page_->documentSize();
    EXPECT_EQ(owner_.calls.back(), "title main After");
}

// Pages that do not answer

TEST_F(EnginePageTest, APageThatLoopsAfterItsLoadIsPrinted) {
    load("<title>T</title><p>Text<script>onload = () => setTimeout(() => { for (;;); }, 300)</script>");
    linger();
    linger();
    const auto start = std::chrono::steady_clock::now();
    EXPECT_THAT(textOf(page_->screenPDF()), HasSubstr("Text"));
    EXPECT_LT(std::chrono::steady_clock::now() - start, seconds(20));
}

TEST_F(EnginePageTest, APageThatLoopsAgainAndAgainIsPrinted) {
    load("<title>T</title><p>Text<script>onload = () => setInterval(() => { for (;;); }, 10)</script>");
    linger();
    const auto start = std::chrono::steady_clock::now();
    page_->documentSize();
    EXPECT_THAT(textOf(page_->screenPDF()), HasSubstr("Text"));
    EXPECT_THAT(owner_.calls, Contains("title main T"));
    EXPECT_THAT(owner_.calls, Not(Contains("title main nil")));
    EXPECT_LT(std::chrono::steady_clock::now() - start, seconds(40));
}

TEST_F(EnginePageTest, APageThatLoopsWithABlankFrameFinishes) {
    load({{"http://a.example/", "<!DOCTYPE html><p>Text<iframe></iframe>"
                                "<script>onload = () => setTimeout(() => { for (;;); })</script>"},
          {},
          {{{"about:blank", "stored"}}}});
    EXPECT_THAT(textOf(page_->screenPDF()), HasSubstr("Text"));
}

TEST_F(EnginePageTest, APageOfEndlessDialogsIsPrinted) {
    load("<p>Text<script>onload = () => setTimeout(() => { for (;;) alert(1); }, 10)</script>");
    linger();
    EXPECT_THAT(textOf(page_->screenPDF()), HasSubstr("Text"));
}

// Engines that are not there or go away

/// The page's processes: the descendants of this one that were given such an argument.
std::vector<pid_t> processesOf(const std::string& argument) {
    std::vector<pid_t> found;
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        const std::string name = entry.path().filename();
        if (name.find_first_not_of("0123456789") != std::string::npos) continue;
        std::ifstream file(entry.path() / "cmdline");
        std::string line;
        std::getline(file, line); // no exception when the process ends meanwhile
        if (line.find(argument) == std::string::npos) continue;
        for (pid_t pid = std::stoi(name); pid > 1;) {
            if (pid == ::getpid()) found.push_back(std::stoi(name));
            std::ifstream status("/proc/" + std::to_string(pid) + "/stat");
            std::string text;
            std::getline(status, text);
            if (text.empty()) break;
            pid = std::stoi(text.substr(text.rfind(')') + 4));
        }
    }
    return found;
}

TEST_F(EnginePageTest, ARendererThatDiesFailsThePage) {
    load("<p>Text");
    const auto renderers = processesOf("--type=renderer");
    ASSERT_THAT(renderers, Not(IsEmpty()));
    for (const pid_t pid : renderers) ::kill(pid, SIGKILL);
    EXPECT_TRUE(waitFor("failed main -1005"));
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(page_->documentSize(), NSSize());
    EXPECT_TRUE(page_->screenPDF().isNil());
    EXPECT_TRUE(page_->paginatedPDF({612, 792}, 36).isNil());
    EXPECT_TRUE(page_->ownerElementName("x").isNil());
    EXPECT_LT(std::chrono::steady_clock::now() - start, seconds(3));
}

TEST_F(EnginePageTest, ARendererThatDiesWhileItIsAskedEndsTheQuestion) {
    load("<p>Text<script>onload = () => setTimeout(() => { for (;;); }, 10)</script>");
    linger();
    const auto renderers = processesOf("--type=renderer");
    ASSERT_THAT(renderers, Not(IsEmpty()));
    const auto timer = loop().scheduleTimer(std::chrono::milliseconds(200), [&] {
        for (const pid_t pid : renderers) ::kill(pid, SIGKILL);
    });
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(page_->screenPDF().isNil());
    EXPECT_LT(std::chrono::steady_clock::now() - start, seconds(10));
    EXPECT_THAT(owner_.calls, Contains("failed main -1005"));
}

TEST_F(EnginePageTest, AnEngineThatDiesFailsThePage) {
    load("<p>Text");
    const auto processes = processesOf("--remote-debugging-pipe");
    ASSERT_THAT(processes, Not(IsEmpty()));
    for (const pid_t pid : processes) ::kill(pid, SIGKILL);
    EXPECT_TRUE(waitFor("failed main -1005"));
    EXPECT_TRUE(page_->screenPDF().isNil());
    EXPECT_THAT(owner_.lastError.localizedDescription().utf8(), HasSubstr("web engine ended"));
}

TEST_F(EnginePageTest, AnEngineThatDiesWhileThePageIsAskedForItsTitleDoesNotFinishTheLoad) {
    open();
    const std::string loops = "<p>Text<script>onload = () => setTimeout(() => { for (;;); })</script>";
    page_->loadArchive(makeArchive({{"http://a.example/", "<!DOCTYPE html>" + loops}}));
    ASSERT_TRUE(waitFor("committed main http://a.example/ text/html"));
    linger(); // the load has ended and the question waits
    for (const pid_t pid : processesOf("--remote-debugging-pipe")) ::kill(pid, SIGKILL);
    EXPECT_TRUE(waitFor("failed main -1005"));
    EXPECT_THAT(owner_.calls, Not(Contains("finished main")));
}

TEST_F(EnginePageTest, AnEngineThatIsNotInstalledFailsThePage) {
    useEngine(directory_.path() / "nothing");
    open();
    EXPECT_THAT(owner_.calls, IsEmpty());
    page_->loadArchive(makeArchive({{"http://a.example/", "x"}}));
    EXPECT_THAT(owner_.calls, IsEmpty()); // not inside the call
    EXPECT_TRUE(waitFor("failed main 4"));
    EXPECT_EQ(owner_.lastError.domain(), NSString(NSCocoaErrorDomain));
    EXPECT_EQ(page_->documentSize(), NSSize());
    EXPECT_TRUE(page_->screenPDF().isNil());
}

TEST_F(EnginePageTest, AnEngineThatEndsAtOnceFailsThePage) {
    useEngine(directory_.addScript("dies", "exit 1"));
    open();
    page_->loadArchive(makeArchive({{"http://a.example/", "x"}}));
    EXPECT_TRUE(waitFor("failed main -1005"));
    EXPECT_EQ(owner_.lastError.domain(), NSString(NSURLErrorDomain));
}

TEST_F(EnginePageTest, AnEngineThatEndedBeforeTheLoadFailsIt) {
    useEngine(directory_.addScript("dies", "exit 1"));
    open();
    linger();
    linger();
    EXPECT_THAT(owner_.calls, IsEmpty());
    page_->loadArchive(makeArchive({{"http://a.example/", "x"}}));
    EXPECT_TRUE(waitFor("failed main -1005"));
}

TEST_F(EnginePageTest, AnEngineThatNeverAnswersTimesOut) {
    useEngine(directory_.addScript("mute", "sleep 100"));
    ::setenv("WEB2PDF_ENGINE_START_TIMEOUT", "0.5", 1);
    open();
    page_->loadArchive(makeArchive({{"http://a.example/", "x"}}));
    EXPECT_TRUE(waitFor("failed main -1001"));
    EXPECT_THAT(processesOf("mute"), IsEmpty());
}

TEST_F(EnginePageTest, APageMayGoBeforeItsEngineAnswers) {
    open();
    page_->loadArchive(makeArchive({{"http://a.example/", "x"}}));
    page_.reset();
    linger();
    EXPECT_THAT(owner_.calls, IsEmpty());
    EXPECT_THAT(processesOf("--remote-debugging-pipe"), IsEmpty());
}

} // namespace
} // namespace qrv::engine
