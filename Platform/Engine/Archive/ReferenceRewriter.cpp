#include "Platform/Engine/Archive/ReferenceRewriter.h"

#include "Platform/Engine/Archive/MarkupReader.h"
#include "Platform/Foundation/ASCII.h"

#include <algorithm>
#include <array>

namespace qrv::engine {

namespace {

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
        MarkupReader reader(text_);
        while (const auto tag = reader.next()) {
            for (const auto& [name, value, whole] : tag->attributes) {
                if (value && isReference(name.in(text_))) replaceIn(*value);
            }
            if (tag->name == "style" || tag->name == "script") replaceIn(tag->text);
        }
        copyUpTo(text_.size());
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

    void replaceIn(const TextRange& range) {
        copyUpTo(range.start);
        replaceUpTo(range.end);
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
