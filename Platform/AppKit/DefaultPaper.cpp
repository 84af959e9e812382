#include "Platform/AppKit/DefaultPaper.h"

#include <cmath>
#include <cstdlib>
#include <memory>
#include <paper.h>
#include <sys/stat.h>

namespace qrv {

namespace {

constexpr NSSize usLetter{612, 792};

/// The library would wait for the other end of a pipe.
bool isPreferenceReadable() {
    const char* const file = std::getenv("PAPERCONF");

    struct stat status {};

    return std::getenv("PAPERSIZE") || !file || ::stat(file, &status) != 0 || S_ISREG(status.st_mode);
}

/// Keeps the paper library initialised while it is read.
class PaperLibrary {
public:
    PaperLibrary() { ::paperinit(); }

    PaperLibrary(const PaperLibrary&) = delete;
    PaperLibrary& operator=(const PaperLibrary&) = delete;

    ~PaperLibrary() { ::paperdone(); }

    const paper* preferred() const {
        const auto release = [](char* name) { std::free(name); };
        const std::unique_ptr<char, decltype(release)> name(
            isPreferenceReadable() ? ::systempapername() : nullptr, release);
        const paper* found = name ? ::paperinfo(name.get()) : nullptr;
        return found ? found : ::paperinfo(::defaultpapername());
    }
};

} // namespace

NSSize defaultPaperSize() {
    const PaperLibrary library;
    const paper* const preferred = library.preferred();
    if (!preferred) return usLetter;
    const NSSize size{std::round(::paperpswidth(preferred)), std::round(::paperpsheight(preferred))};
    return NSRect{{}, size}.isEmpty() ? usLetter : size;
}

} // namespace qrv
