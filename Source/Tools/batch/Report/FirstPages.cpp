#include "Source/Tools/batch/Report/FirstPages.h"

#include "Platform/Engine/Process/EngineLocator.h"
#include "Source/Tools/batch/Children/PDFReader.h"

#include <algorithm>
#include <atomic>
#include <thread>

namespace qrv::batch {

namespace {

// Twice the size in which the report shows them, for displays with small dots.
constexpr const char* width = "192";
constexpr const char* mostHeight = "256";

std::string pictureOf(const std::string& program, const std::string& path, const std::stop_token& stop) {
    std::vector<std::string> arguments = {"-q",          "-f",       "1",
                                          "-l",          "1",        "-singlefile",
                                          "-jpeg",       "-jpegopt", "quality=60,optimize=y",
                                          "-scale-to-x", width,      "-scale-to-y",
                                          "-1",          "-x",       "0",
                                          "-y",          "0",        "-W",
                                          width,         "-H",       mostHeight,
                                          path};
    ChildEnd end = runPDFReader(program, std::move(arguments), path, stop);
    const bool isWhole = end.output.starts_with("\xFF\xD8") && end.output.ends_with("\xFF\xD9");
    return end.succeeded() && isWhole ? std::move(end.output) : std::string();
}

} // namespace

std::optional<std::string> pictureProgram() {
    return engine::programInPath("pdftoppm");
}

std::vector<std::string> picturesOfFirstPages(const std::string& program,
                                              const std::vector<std::string>& paths, std::size_t jobs,
                                              const std::stop_token& stop) {
    std::vector<std::string> pictures(paths.size());
    std::atomic<std::size_t> next = 0;
    const auto work = [&] {
        for (std::size_t at; (at = next++) < paths.size() && !stop.stop_requested();) {
            if (!paths[at].empty()) pictures[at] = pictureOf(program, paths[at], stop);
        }
    };
    {
        std::vector<std::jthread> workers;
        while (workers.size() < std::min(std::max<std::size_t>(jobs, 1), paths.size()))
            workers.emplace_back(work);
    }
    return pictures;
}

} // namespace qrv::batch
