#include "Platform/PDFKit/UnreadObjects.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <qpdf/QPDF.hh>
#include <string>
#include <utility>
#include <vector>

namespace qrv {

namespace {

constexpr std::string_view blanks("\0\t\n\f\r ", 6);

std::string_view trimmed(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

/// What is between the object's number and its end; empty if that is anything but one object's text. `part`
/// reaches from the object to the next one.
std::string_view textOf(QPDFObjGen object, std::string_view part) {
    constexpr std::string_view end = "endobj";
    const std::string number = object.unparse(' ') + " obj";
    part = trimmed(part);
    if (!part.starts_with(number) || !part.ends_with(end)) return {};
    const std::string_view text = part.substr(number.size(), part.size() - number.size() - end.size());
    return text.find(end) == std::string_view::npos ? trimmed(text) : std::string_view();
}

/// Where each object is that is not in an object stream, in the order of the file.
std::vector<std::pair<std::size_t, QPDFObjGen>> placesOf(QPDF& document) {
    std::vector<std::pair<std::size_t, QPDFObjGen>> places;
    for (auto [object, entry] : document.getXRefTable()) {
        if (entry.getType() == 1) places.emplace_back(static_cast<std::size_t>(entry.getOffset()), object);
    }
    std::sort(places.begin(), places.end());
    return places;
}

/// Takes a number and the blanks after it off the end of the text; nothing where there is none.
std::optional<int> takeNumber(std::string_view& text) {
    text = text.substr(0, text.find_last_not_of(blanks) + 1);
    const std::size_t before = text.find_last_not_of("0123456789");
    const std::size_t start = before == std::string_view::npos ? 0 : before + 1;
    int number = 0;
    const auto [end, error] = std::from_chars(text.data() + start, text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    text = text.substr(0, start);
    return number;
}

} // namespace

UnreadObjects::UnreadObjects(QPDF& document, const NSData& bytes, std::string_view beginning,
                             const std::set<int>& others)
    : bytes_(bytes) {
    const std::string_view file = bytes.bytes();
    const auto places = placesOf(document);
    for (std::size_t i = 0; i + 1 < places.size(); ++i) {
        const auto& [start, object] = places[i];
        const std::size_t end = std::min(places[i + 1].first, file.size());
        if (start >= end || object.getGen() != 0 || others.contains(object.getObj())) continue;
        const std::string_view text = textOf(object, file.substr(start, end - start));
        if (!text.starts_with(beginning) || text.ends_with("endstream")) continue;
        texts_[object.getObj()] = text;
        document.replaceObject(object, QPDFObjectHandle::newInteger(0));
    }
}

std::string_view UnreadObjects::text(int number) const {
    if (const auto replaced = replaced_.find(number); replaced != replaced_.end()) return replaced->second;
    const auto found = texts_.find(number);
    return found == texts_.end() ? std::string_view() : found->second;
}

std::vector<int> UnreadObjects::numbersWith(std::string_view part) const {
    std::vector<int> numbers;
    for (const auto& [number, original] : texts_)
        if (text(number).find(part) != std::string_view::npos) numbers.push_back(number);
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

void UnreadObjects::replaceText(int number, std::string text) {
    if (texts_.contains(number)) replaced_[number] = std::move(text);
}

void forEachReference(std::string_view text, const std::function<void(int, int)>& handle) {
    for (std::size_t at = text.find('R'); at != std::string_view::npos; at = text.find('R', at + 1)) {
        std::string_view before = text.substr(0, at);
        const auto generation = takeNumber(before);
        const auto number = generation ? takeNumber(before) : std::nullopt;
        if (number) handle(*number, *generation);
    }
}

} // namespace qrv
