#include "Platform/Engine/Archive/ReferenceRewriter.h"

#include "Platform/Foundation/ASCII.h"

#include <algorithm>
#include <array>

namespace qrv::engine {

namespace {

constexpr auto npos = std::string_view::npos;
constexpr std::string_view blanks = " \t\r\n\f";

bool isReference(std::string_view attribute) {
    constexpr std::array<std::string_view, 13> names{
        "src",   "href",    "srcset",     "poster",      "data", "action",  "background",
        "style", "content", "xlink:href", "imagesrcset", "cite", "longdesc"};
    return std::find(names.begin(), names.end(), lowered(attribute)) != names.end() ||
           attribute.starts_with("data-");
}

class Rewriter {
public:
    Rewriter(std::string_view text, const std::vector<std::string>& stems, std::string_view replacement)
        : text_(text), stems_(stems), replacement_(replacement) {}

    std::string everywhere() {
        replaceUpTo(text_.size());
        return std::move(result_);
    }

    std::string inMarkup() {
        while (at_ < text_.size()) {
            copyUpTo(text_.find('<', at_));
            if (text_.substr(at_).starts_with("<!--")) {
                copyUpTo(text_.find("-->", at_));
            } else if (at_ + 1 < text_.size() && isASCIILetter(text_[at_ + 1])) {
                tag();
            } else {
                copyUpTo(at_ + 1);
            }
        }
        return std::move(result_);
    }

private:
    void copyUpTo(std::size_t end) {
        end = std::min(end, text_.size());
        result_ += text_.substr(at_, end - at_);
        at_ = end;
    }

    /// All stems have the same scheme, and so the same first letter.
    void replaceUpTo(std::size_t end) {
        end = std::min(end, text_.size());
        while (at_ < end) {
            copyUpTo(std::min(text_.substr(0, end).find(stems_.front().front(), at_), end));
            const std::string_view rest = text_.substr(at_, end - at_);
            const auto stem = std::find_if(stems_.begin(), stems_.end(), [&](const std::string& candidate) {
                return rest.starts_with(candidate);
            });
            if (stem == stems_.end()) {
                copyUpTo(std::min(at_ + 1, end));
            } else {
                result_ += replacement_;
                at_ += stem->size();
            }
        }
    }

    void tag() {
        const std::size_t nameEnd = text_.find_first_of(" \t\r\n\f/>", at_);
        const std::string name = lowered(text_.substr(at_ + 1, std::min(nameEnd, text_.size()) - at_ - 1));
        copyUpTo(nameEnd);
        while (at_ < text_.size() && text_[at_] != '>') attribute();
        copyUpTo(at_ + 1);
        if (name == "style" || name == "script") replaceUpTo(endOfElement(name));
    }

    void attribute() {
        copyUpTo(text_.find_first_not_of(" \t\r\n\f/", at_));
        const std::size_t nameEnd = text_.find_first_of(" \t\r\n\f/>=", at_ + 1);
        if (at_ >= text_.size() || text_[at_] == '>') return;
        const bool counts = isReference(text_.substr(at_, std::min(nameEnd, text_.size()) - at_));
        copyUpTo(nameEnd);
        const std::size_t equals = text_.find_first_not_of(blanks, at_);
        if (equals == npos || text_[equals] != '=') return;
        copyUpTo(text_.find_first_not_of(blanks, equals + 1));
        const std::size_t end = endOfValue();
        counts ? replaceUpTo(end) : copyUpTo(end);
    }

    std::size_t endOfValue() const {
        if (at_ >= text_.size()) return at_;
        const char quote = text_[at_];
        if (quote != '"' && quote != '\'') return text_.find_first_of(" \t\r\n\f>", at_);
        const std::size_t end = text_.find(quote, at_ + 1);
        return end == npos ? npos : end + 1;
    }

    std::size_t endOfElement(const std::string& name) const {
        for (std::size_t end = text_.find("</", at_); end != npos; end = text_.find("</", end + 2)) {
            if (lowered(text_.substr(end + 2, name.size())) == name) return end;
        }
        return npos;
    }

    std::string_view text_;
    const std::vector<std::string>& stems_;
    std::string_view replacement_;
    std::size_t at_ = 0;
    std::string result_;
};

} // namespace

ReferenceSyntax referenceSyntax(const MIMEType& type) {
    if (type.isMarkup()) return ReferenceSyntax::markup;
    return type.isStyleSheet() || type.isScript() ? ReferenceSyntax::anywhere : ReferenceSyntax::none;
}

std::string withReplacedReferences(std::string_view text, ReferenceSyntax syntax,
                                   const std::vector<std::string>& stems, std::string_view replacement) {
    if (syntax == ReferenceSyntax::none || stems.empty()) return std::string(text);
    Rewriter rewriter(text, stems, replacement);
    return syntax == ReferenceSyntax::markup ? rewriter.inMarkup() : rewriter.everywhere();
}

} // namespace qrv::engine
