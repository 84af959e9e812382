#include "Source/Tools/webarchive/Creating/PageFile.h"

#include "Source/Tools/Common/Failure.h"
#include "Source/Tools/webarchive/Creating/FileTypes.h"

#include <algorithm>
#include <filesystem>
#include <vector>

namespace qrv::webarchive {

namespace {

namespace fs = std::filesystem;

bool isPage(const fs::path& file) {
    const std::string type = typeOfFile(file.filename().native());
    return type == "text/html" || type == "application/xhtml+xml";
}

bool isIndex(const fs::path& file) {
    return file.stem() == "index";
}

bool hasFiles(const fs::path& file) {
    std::error_code error;
    return fs::is_directory(fs::path(file).replace_extension().concat("_files"), error);
}

/// Those among which a choice is to be made; all of them when none is so.
template <class Predicate>
std::vector<fs::path> narrowed(const std::vector<fs::path>& pages, Predicate isSo) {
    std::vector<fs::path> those;
    std::copy_if(pages.begin(), pages.end(), std::back_inserter(those), isSo);
    return those.empty() ? pages : those;
}

} // namespace

std::string pageFileAt(const std::string& path) {
    std::error_code error;
    if (!fs::is_directory(path, error)) return path;
    std::vector<fs::path> pages;
    for (fs::directory_iterator entry(path, error), end; !error && entry != end; entry.increment(error)) {
        if (isPage(entry->path()) && fs::is_regular_file(entry->path())) pages.push_back(entry->path());
    }
    if (error) throw Failure(path + ": " + error.message());
    const std::vector<fs::path> left = narrowed(narrowed(pages, isIndex), hasFiles);
    if (left.empty()) throw Failure(path + " has no page");
    if (left.size() > 1) throw Failure(path + " has several pages: name one of its files");
    return left.front();
}

} // namespace qrv::webarchive
