#include "Platform/Engine/Archive/MissingResources.h"

#include "Platform/Foundation/PercentEscapes.h"

#include <algorithm>
#include <array>

namespace qrv::engine {

namespace {

constexpr std::size_t mostNamed = 20;
constexpr std::size_t mostCounted = 1000;
constexpr std::size_t longestURL = 200;

/// Returns an empty text for what is only sent.
std::string_view kindOf(std::string_view type) {
    constexpr std::array<std::pair<std::string_view, std::string_view>, 14> kinds{{
        {"Document", "document"},
        {"Stylesheet", "style sheet"},
        {"Image", "image"},
        {"Media", "video or sound"},
        {"Font", "font"},
        {"Script", "script"},
        {"TextTrack", "text track"},
        {"XHR", "data"},
        {"Fetch", "data"},
        {"EventSource", "data"},
        {"Manifest", "manifest"},
        {"Ping", ""},
        {"CSPViolationReport", ""},
        {"Preflight", ""},
    }};
    const auto* const found =
        std::find_if(kinds.begin(), kinds.end(), [&](const auto& kind) { return kind.first == type; });
    return found == kinds.end() ? "other" : found->second;
}

std::string shortened(std::string_view url) {
    std::string text = percentEscaped(url.substr(0, longestURL));
    const bool isCut = url.size() > longestURL || text.size() > longestURL;
    text.resize(std::min(text.size(), longestURL));
    return isCut ? text + "..." : text;
}

/// A full browser asks by itself for the icon of its tab, where the page names none.
bool isIconOfTab(std::string_view type, std::string_view url) {
    return type == "Other" && url.ends_with("/favicon.ico");
}

/// Returns an empty text for what does not count.
std::string entryFor(std::string_view type, std::string_view url) {
    if (isIconOfTab(type, url)) return {};
    const std::string_view kind = kindOf(type);
    return kind.empty() ? std::string() : std::string(kind) + " " + shortened(url);
}

} // namespace

bool MissingResources::isOnlySent(std::string_view type) {
    return kindOf(type).empty();
}

void MissingResources::add(std::string_view type, std::string_view url) {
    std::string entry = entryFor(type, url);
    if (entry.empty() || entries_.size() >= mostCounted || !known_.insert(entry).second) return;
    entries_.push_back(std::move(entry));
}

void MissingResources::remove(std::string_view type, std::string_view url) {
    const std::string entry = entryFor(type, url);
    known_.erase(entry);
    std::erase(entries_, entry);
}

bool MissingResources::hasImages() const {
    const std::string image = entryFor("Image", "");
    return std::any_of(entries_.begin(), entries_.end(),
                       [&](const std::string& entry) { return entry.starts_with(image); });
}

std::string MissingResources::description() const {
    if (entries_.empty()) return {};
    std::string text = "the archive does not hold ";
    if (entries_.size() >= mostCounted) text += "at least ";
    text += std::to_string(entries_.size()) + (entries_.size() == 1 ? " resource" : " resources");
    text += " that the page asked for: ";
    for (std::size_t i = 0; i < std::min(entries_.size(), mostNamed); ++i) {
        text += (i == 0 ? "" : ", ") + entries_[i];
    }
    return entries_.size() > mostNamed ? text + ", and more" : text;
}

} // namespace qrv::engine
