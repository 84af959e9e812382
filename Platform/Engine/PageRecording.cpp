#include "Platform/Engine/PageRecording.h"

namespace qrv::engine {

namespace {

/// A size in CSS px, and device pixels for each.
struct Look {
    NSSize view;
    double density;
    const char* media;
    const char* colorScheme;
};

// By growing density: an image never goes back to a choice of less.
constexpr Look looks[] = {
    {{1280, 960}, 1, "screen", "light"}, {{1280, 960}, 1, "screen", "dark"},
    {{794, 1123}, 1, "print", "light"},  {{1920, 1080}, 1, "screen", "light"},
    {{1280, 960}, 2, "screen", "light"}, {{390, 844}, 3, "screen", "light"},
};

} // namespace

WebArchive recordPage(PageWorld& world, PageReadiness& readiness, const PageRecorder& recorder) {
    for (const Look& look : looks) {
        const Json scheme = Json::object({{"name", "prefers-color-scheme"}, {"value", look.colorScheme}});
        world.command("Emulation.setEmulatedMedia",
                      Json::object({{"media", look.media}, {"features", Json::array({scheme})}}));
        readiness.visit(look.view, look.density);
    }
    FrameEncodings encodings;
    for (const auto& [frame, answer] : world.callInFrames(scripts::encoding)) {
        encodings.emplace(frame, answer.string());
    }
    const DevToolsReply tree = world.command("Page.getFrameTree", {});
    return tree.ok() ? recorder.archive(tree.result["frameTree"], encodings) : WebArchive();
}

} // namespace qrv::engine
