#include "Source/Tools/webarchive/Extract/PictureChoice.h"

#include <algorithm>

namespace qrv::webarchive {

namespace {

constexpr std::string_view blanks = " \t\r\n\f";

/// Takes up to one of these characters, or all, from the text.
std::string_view takeUpTo(std::string_view& text, std::string_view ends) {
    const std::size_t end = std::min(text.find_first_of(ends), text.size());
    const std::string_view taken = text.substr(0, end);
    text.remove_prefix(end);
    return taken;
}

/// Takes up to the comma before the next picture: one in parentheses is none.
std::string_view takeDescriptor(std::string_view& text) {
    std::size_t end = 0;
    for (int depth = 0; end < text.size() && (text[end] != ',' || depth > 0); ++end) {
        if (text[end] == '(') ++depth;
        if (text[end] == ')') --depth;
    }
    std::string_view taken = text.substr(0, end);
    text.remove_prefix(end);
    while (!taken.empty() && blanks.find(taken.front()) != blanks.npos) taken.remove_prefix(1);
    while (!taken.empty() && blanks.find(taken.back()) != blanks.npos) taken.remove_suffix(1);
    return taken;
}

} // namespace

std::string withPictures(std::string_view choice, const Replacement& replacement) {
    std::string result;
    while (true) {
        choice.remove_prefix(std::min(choice.find_first_not_of(" \t\r\n\f,"), choice.size()));
        if (choice.empty()) return result;
        std::string_view address = takeUpTo(choice, blanks);
        const bool isWhole = address.ends_with(',');
        while (address.ends_with(',')) address.remove_suffix(1);
        const std::string_view descriptor = isWhole ? std::string_view() : takeDescriptor(choice);
        const auto picture = replacement(std::string(address));
        if (!picture) continue;
        result += (result.empty() ? "" : ", ") + *picture;
        if (!descriptor.empty()) result.append(" ").append(descriptor);
    }
}

} // namespace qrv::webarchive
