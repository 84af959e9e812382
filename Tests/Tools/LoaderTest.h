#pragma once

// A loader with its insides open to tests, over a scripted page.

#include "Source/Tools/loader.h"
#include "Tests/Tools/ToolTest.h"

namespace qrv {

class TestLoader final : public Loader {
public:
    using Loader::_error;
    using Loader::_finishDate;
    using Loader::_justTitle;
    using Loader::_objectsLoading;
    using Loader::_receivedTitle;
    using Loader::_timeoutDate;
    using Loader::_view;

    NSString logArea() const override { return u"LogTest"; }

    void postProgress(double progress) override { progresses.push_back(progress); }

    std::vector<double> progresses;
};

inline NSError urlError(long long code) {
    return NSError::errorWithDomain_code_userInfo(NSURLErrorDomain, code, {});
}

class LoaderTest : public ToolTest {
protected:
    static NSURL url(const char16_t* text) { return NSURL::URLWithString(text); }

    engine::PageClient& client() const { return ScriptedPage::latest->client; }

    void startMainFrame() const { client().loadStarted(engine::mainFrame, url(u"https://a.example/")); }

    void finishMainFrame() const { ScriptedPage::latest->loadPage(u"https://a.example/"); }

    void attachChild() const { client().frameAttached("child", engine::mainFrame); }

    WebFramePtr child() const { return loader._view->mainFrame()->childFrames().at(0); }

    static std::string text(const WebFramePtr& frame) { return id(frame).description().utf8(); }

    std::string mainFrameText() const { return text(loader._view->mainFrame()); }

    TestLoader loader;
};

} // namespace qrv
