#pragma once

// The owner of a page that writes down what it is told, one line for each call.

#include "Platform/Engine/Loading/PageClient.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace qrv::engine {

inline std::string nameOf(NavigationType type) {
    switch (type) {
    case NavigationType::linkClicked:
        return "linkClicked";
    case NavigationType::formSubmitted:
        return "formSubmitted";
    case NavigationType::backForward:
        return "backForward";
    case NavigationType::reload:
        return "reload";
    case NavigationType::formResubmitted:
        return "formResubmitted";
    case NavigationType::other:
        return "other";
    }
    return {};
}

class RecordingClient : public PageClient {
public:
    void frameAttached(const FrameID& frame, const FrameID& parent) override {
        record("attached " + name(frame) + " to " + name(parent));
    }

    void frameDetached(const FrameID& frame) override { record("detached " + name(frame)); }

    void loadStarted(const FrameID& frame, const NSURL& url) override {
        record("started " + name(frame) + " " + text(url));
    }

    void loadCommitted(const FrameID& frame, const NSURL& url, const NSString& mimeType) override {
        record("committed " + name(frame) + " " + text(url) + " " + mimeType.utf8());
    }

    void titleChanged(const FrameID& frame, const NSString& title) override {
        record("title " + name(frame) + " " + (title ? title.utf8() : "nil"));
    }

    void loadFinished(const FrameID& frame) override { record("finished " + name(frame)); }

    void loadFailed(const FrameID& frame, const NSError& error) override {
        lastError = error;
        record("failed " + name(frame) + " " + std::to_string(error.code()));
    }

    bool shouldNavigate(const FrameID& frame, NavigationType type, const NSURL& url) override {
        record("asked " + name(frame) + " " + nameOf(type) + " " + text(url));
        return allows;
    }

    void windowRequested(const NSURL& url, const NSString& frameName) override {
        record("window " + text(url) + " " + frameName.utf8());
    }

    void authenticationRequired(const FrameID& frame, const NSURL& url) override {
        record("challenge " + name(frame) + " " + text(url));
    }

    void pageLost(const NSError& error) override {
        lastError = error;
        record("lost " + std::to_string(error.code()));
    }

    void progressChanged(double estimated) override { progress.push_back(estimated); }

    /// What was told since the last time.
    std::vector<std::string> take() { return std::exchange(calls, {}); }

    std::vector<std::string> calls;
    std::vector<double> progress;
    NSError lastError;
    bool allows = true;
    /// Called in each call, after it was written down.
    std::function<void(const std::string& call)> onCall;

private:
    static std::string name(const FrameID& frame) { return frame == mainFrame ? "main" : frame; }

    static std::string text(const NSURL& url) { return url.absoluteString().utf8(); }

    void record(const std::string& call) {
        calls.push_back(call);
        if (onCall) onCall(call);
    }
};

} // namespace qrv::engine
