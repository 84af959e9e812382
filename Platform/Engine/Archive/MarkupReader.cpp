#include "Platform/Engine/Archive/MarkupReader.h"

#include "Platform/Foundation/ASCII.h"

#include <algorithm>
#include <array>

namespace qrv::engine {

namespace {

constexpr std::string_view blanks = " \t\r\n\f";

bool holdsTextOnly(std::string_view element) {
    constexpr std::array<std::string_view, 8> names{"script", "style",  "textarea", "title",
                                                    "xmp",    "iframe", "noembed",  "noframes"};
    return std::find(names.begin(), names.end(), element) != names.end();
}

} // namespace

std::optional<MarkupTag> MarkupReader::next() {
    while (at_ < text_.size()) {
        at_ = std::min(text_.find('<', at_), text_.size());
        const std::string_view rest = text_.substr(at_);
        if (rest.starts_with("<!--")) {
            at_ = find("-->");
        } else if (rest.starts_with("<![CDATA[")) {
            at_ = find("]]>");
        } else if (rest.size() > 1 && isASCIILetter(rest[1])) {
            return readTag();
        } else {
            at_ = std::min(at_ + 1, text_.size());
        }
    }
    return std::nullopt;
}

MarkupTag MarkupReader::readTag() {
    MarkupTag tag;
    tag.nameRange = {at_ + 1, findFirstOf(" \t\r\n\f/>", at_ + 1)};
    tag.name = lowered(tag.nameRange.in(text_));
    at_ = tag.nameRange.end;
    while (auto attribute = readAttribute()) tag.attributes.push_back(*attribute);
    // In XML any element may be empty; in HTML these are not, but what follows then is read without harm.
    const std::size_t last = tag.attributes.empty() ? tag.nameRange.end : tag.attributes.back().whole.end;
    const bool isEmpty = text_.substr(last, at_ - last).ends_with('/');
    at_ = std::min(at_ + 1, text_.size());
    tag.text = {at_, !isEmpty && holdsTextOnly(tag.name) ? endOfElement(tag.name) : at_};
    at_ = tag.text.end;
    return tag;
}

/// Stops at the tag's end.
std::optional<MarkupAttribute> MarkupReader::readAttribute() {
    at_ = findFirstNotOf(" \t\r\n\f/", at_);
    if (at_ >= text_.size() || text_[at_] == '>') return std::nullopt;
    MarkupAttribute attribute;
    attribute.name = {at_, findFirstOf(" \t\r\n\f/>=", at_ + 1)};
    at_ = attribute.name.end;
    const std::size_t equals = findFirstNotOf(blanks, at_);
    if (equals < text_.size() && text_[equals] == '=') {
        at_ = findFirstNotOf(blanks, equals + 1);
        attribute.value = readValue();
    }
    attribute.whole = {attribute.name.start, at_};
    return attribute;
}

TextRange MarkupReader::readValue() {
    if (at_ >= text_.size()) return {at_, at_};
    const char quote = text_[at_];
    const bool isQuoted = quote == '"' || quote == '\'';
    const std::size_t start = isQuoted ? at_ + 1 : at_;
    const std::size_t end =
        isQuoted ? std::min(text_.find(quote, start), text_.size()) : findFirstOf(" \t\r\n\f>", start);
    at_ = std::min(isQuoted ? end + 1 : end, text_.size());
    return {start, end};
}

std::size_t MarkupReader::endOfElement(std::string_view name) const {
    constexpr auto npos = std::string_view::npos;
    for (std::size_t end = text_.find("</", at_); end != npos; end = text_.find("</", end + 2)) {
        if (lowered(text_.substr(end + 2, name.size())) == name) return end;
    }
    return text_.size();
}

std::size_t MarkupReader::find(std::string_view what) const {
    return std::min(text_.find(what, at_), text_.size());
}

std::size_t MarkupReader::findFirstOf(std::string_view what, std::size_t from) const {
    return std::min(text_.find_first_of(what, from), text_.size());
}

std::size_t MarkupReader::findFirstNotOf(std::string_view what, std::size_t from) const {
    return std::min(text_.find_first_not_of(what, from), text_.size());
}

} // namespace qrv::engine
