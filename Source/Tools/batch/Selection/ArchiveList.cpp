#include "Source/Tools/batch/Selection/ArchiveList.h"

#include "Platform/Foundation/ASCII.h"
#include "Source/Tools/Common/Failure.h"

#include <algorithm>
#include <filesystem>
#include <istream>
#include <tuple>

namespace qrv::batch {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view extension = ".webarchive";

bool isNamedLikeAnArchive(const std::string& name) {
    return lowered(name).ends_with(extension);
}

/// "a/b.webarchive" becomes "a/b.pdf", "a/b" too.
std::string pdfOf(std::string path) {
    if (isNamedLikeAnArchive(path)) path.resize(path.size() - extension.size());
    return path + ".pdf";
}

/// The path below the output folder that a listed one has: without "..", and from its first folder on.
std::string placeOf(const fs::path& path) {
    fs::path place = path.lexically_normal();
    if (!place.empty() && *place.begin() == "..") place = fs::absolute(path).lexically_normal();
    return place.relative_path().string();
}

std::string placeBelow(const fs::path& base, const fs::path& path) {
    const fs::path place =
        fs::absolute(path).lexically_normal().lexically_relative(fs::absolute(base / "").lexically_normal());
    if (place.empty() || *place.begin() == "..")
        throw Failure(path.string() + " is not below " + base.string());
    return place.string();
}

bool isFolder(const std::string& path) {
    std::error_code unknown;
    return fs::is_directory(path, unknown);
}

/// The last name of the way to a folder, also where that ends with "/" or "..".
std::string nameOf(const fs::path& folder) {
    return fs::absolute(folder / "").lexically_normal().parent_path().filename().string();
}

std::string joined(const std::string& folder, const std::string& name) {
    return folder.empty() ? name : (fs::path(folder) / name).string();
}

} // namespace

void ArchiveList::addSource(const std::string& path) {
    std::error_code error;
    if (!fs::exists(path, error))
        throw Failure(path + ": " + (error ? error.message() : "there is no such file"));
    if (isFolder(path)) {
        addFolder(path, "");
    } else {
        items_.push_back({path, pdfOf(fs::path(path).filename().string())});
    }
}

void ArchiveList::addListed(std::istream& list, char end, const std::optional<std::string>& base) {
    for (std::string path; std::getline(list, path, end);) {
        if (path.empty()) continue;
        if (path.find('\0') != std::string::npos)
            throw Failure("the list holds NUL characters; --null is for a list whose paths end with them");
        const std::string place = base ? placeBelow(*base, path) : placeOf(path);
        if (isFolder(path)) {
            addFolder(path, place == "." ? "" : place);
        } else {
            items_.push_back({path, pdfOf(place)});
        }
    }
    if (list.bad()) throw Failure("the list cannot be read");
}

void ArchiveList::addFolder(const std::string& folder, const std::string& place) {
    std::error_code error;
    fs::directory_iterator entries(folder, error);
    for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
        const std::string name = entries->path().filename().string();
        std::error_code unknown;
        if (entries->is_directory(unknown) && !entries->is_symlink(unknown)) {
            addFolder(entries->path().string(), joined(place, name));
        } else if (isNamedLikeAnArchive(name) && !entries->is_directory(unknown)) {
            items_.push_back({entries->path().string(), pdfOf(joined(place, name))});
        }
    }
    if (error) items_.push_back({folder, joined(place.empty() ? nameOf(folder) : place, ".pdf")});
}

std::vector<Item> ArchiveList::items() && {
    std::sort(items_.begin(), items_.end(), [](const Item& one, const Item& other) {
        return std::tie(one.pdf, one.archive) < std::tie(other.pdf, other.archive);
    });
    const auto isSame = [](const Item& one, const Item& other) {
        return one.pdf == other.pdf &&
               fs::path(one.archive).lexically_normal() == fs::path(other.archive).lexically_normal();
    };
    items_.erase(std::unique(items_.begin(), items_.end(), isSame), items_.end());
    const auto same =
        std::adjacent_find(items_.begin(), items_.end(),
                           [](const Item& one, const Item& other) { return one.pdf == other.pdf; });
    if (same != items_.end())
        throw Failure(same->archive + " and " + std::next(same)->archive + " would both become " + same->pdf);
    return std::move(items_);
}

} // namespace qrv::batch
