#pragma once

// Keeps what a page asked for and was given, frame by frame, and makes an archive of it.

#include "Platform/Engine/DevTools/DevToolsClient.h"
#include "Platform/WebArchive/WebArchive.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace qrv::engine {

/// Names of encodings, by the engine's names of frames.
using FrameEncodings = std::map<std::string, std::string>;

class PageRecorder {
public:
    /// Learns the types that the engine finds out by itself from this session's events.
    void attach(DevToolsClient& devTools, const std::string& session);

    /// A request was answered. The frame is empty for a worker's; the URLs are the engine's and the
    /// archive's.
    struct Answer {
        std::string frame;
        std::string engineURL;
        std::string url;
        bool isDocument = false;
        WebResource resource;
    };

    /// Of answers to one frame under the same address the last one counts.
    void answered(const Answer& answer);

    /// The archive of the page: `tree` is the engine's tree of frames, `encodings` what their documents were
    /// read in. A frame that was given no document, since its contents are in an attribute or made by a
    /// script, leaves its resources to the frame around it; what frames had that are gone, or are nested too
    /// deep to be read again, is with the main page. nil when the main page was not given.
    WebArchive archive(const Json& tree, const FrameEncodings& encodings) const;

private:
    struct Entry {
        std::string engineURL;
        std::string url;
        WebResource resource;
    };

    struct Frame {
        std::vector<Entry> documents;
        std::vector<Entry> resources;
    };

    struct Parts {
        std::vector<id> resources;
        std::vector<id> frames;
    };

    static void keep(std::vector<Entry>& entries, const Answer& answer);
    WebArchive archiveOf(const Json& node, const FrameEncodings& encodings,
                         std::map<std::string, Frame>& left, Parts& outer, int depth) const;
    WebResource mainResource(const Json& frame, const std::vector<Entry>& documents,
                             const std::string& encoding) const;
    WebResource stored(const Entry& entry, const std::string& encoding = {},
                       const std::string& name = {}) const;
    void collect(const std::vector<Entry>& entries, Parts& parts) const;

    std::map<std::string, Frame> frames_;
    std::map<std::string, std::string> types_; // by the engine's addresses
    std::vector<DevToolsClient::Subscription> subscriptions_;
};

} // namespace qrv::engine
