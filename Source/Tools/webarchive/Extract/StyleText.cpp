#include "Source/Tools/webarchive/Extract/StyleText.h"

#include "Platform/Foundation/ASCII.h"
#include "Source/Tools/webarchive/Extract/CharacterReferences.h"

#include <algorithm>

namespace qrv::webarchive {

namespace {

constexpr std::string_view blanks = " \t\r\n\f";

bool isNameCharacter(char c) {
    return isASCIIAlphanumeric(c) || c == '-' || c == '_' || c == '\\' ||
           static_cast<unsigned char>(c) >= 0x80;
}

/// The text that a string or an unquoted address stands for.
std::string withoutEscapes(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const std::size_t plain = std::min(text.find('\\'), text.size());
        result += text.substr(0, plain);
        text.remove_prefix(plain);
        if (text.size() < 2) break;
        text.remove_prefix(1);
        std::size_t digits = 0;
        while (digits < std::min<std::size_t>(6, text.size()) && hexDigitValue(text[digits])) ++digits;
        if (digits > 0) {
            result += withoutReferences("&#x" + std::string(text.substr(0, digits)) + ";");
            if (digits < text.size() && blanks.find(text[digits]) != blanks.npos) ++digits;
        } else if (text.front() == '\n') {
            digits = 1;
        } else {
            result += text.front();
            digits = 1;
        }
        text.remove_prefix(digits);
    }
    return result;
}

class Rewriter {
public:
    Rewriter(std::string_view text, const Replacement& replacement)
        : text_(text), replacement_(replacement) {}

    std::string run() {
        while (at_ < text_.size()) step();
        return std::move(result_);
    }

private:
    void step() {
        const char c = text_[at_];
        if (text_.substr(at_).starts_with("/*")) {
            const std::size_t end = text_.find("*/", at_ + 2);
            copyUpTo(end == text_.npos ? end : end + 2);
        } else if (c == '"' || c == '\'') {
            string(isReference_ || isInImageSet());
        } else if (c == '@' || isNameCharacter(c)) {
            name();
        } else {
            if (c == '(' && imageSetDepth_ > 0) ++imageSetDepth_;
            if (c == ')' && imageSetDepth_ > 0) --imageSetDepth_;
            if (c == '{' || c == '}' || c == ';') imageSetDepth_ = 0;
            if (blanks.find(c) == blanks.npos) isReference_ = false;
            copyUpTo(at_ + 1);
        }
    }

    /// Behind the name of an image set its strings are references, but for what stands in functions.
    bool isInImageSet() const { return imageSetDepth_ == 1; }

    void name() {
        std::size_t end = at_ + 1;
        while (end < text_.size() && isNameCharacter(text_[end])) end += text_[end] == '\\' ? 2 : 1;
        end = std::min(end, text_.size());
        const std::string word = lowered(text_.substr(at_, end - at_));
        const bool isFunction = end < text_.size() && text_[end] == '(';
        isReference_ = word == "@import";
        if (isFunction && word == "url") {
            copyUpTo(end + 1);
            address();
        } else if (isFunction && word.ends_with("image-set") && imageSetDepth_ == 0) {
            copyUpTo(end + 1);
            imageSetDepth_ = 1;
        } else {
            copyUpTo(end);
        }
    }

    /// Behind "url(".
    void address() {
        copyUpTo(text_.find_first_not_of(blanks, at_));
        if (at_ >= text_.size()) return;
        if (text_[at_] == '"' || text_[at_] == '\'') {
            if (imageSetDepth_ > 0) ++imageSetDepth_;
            return string(true);
        }
        std::size_t end = at_;
        while (end < text_.size() && text_[end] != ')') end += text_[end] == '\\' ? 2 : 1;
        end = std::min(end, text_.size());
        std::size_t last = end;
        while (last > at_ && blanks.find(text_[last - 1]) != blanks.npos) --last;
        replaceUpTo(last);
        copyUpTo(std::min(end + 1, text_.size()));
    }

    void string(bool isReference) {
        const char quote = text_[at_];
        copyUpTo(at_ + 1);
        std::size_t end = at_;
        while (end < text_.size() && text_[end] != quote && text_[end] != '\n')
            end += text_[end] == '\\' ? 2 : 1;
        end = std::min(end, text_.size());
        isReference&& end < text_.size() && text_[end] == quote ? replaceUpTo(end) : copyUpTo(end);
        copyUpTo(end + 1);
        isReference_ = false;
    }

    void replaceUpTo(std::size_t end) {
        const auto replaced = replacement_(withoutEscapes(text_.substr(at_, end - at_)));
        if (!replaced) return copyUpTo(end);
        result_ += *replaced;
        at_ = end;
    }

    void copyUpTo(std::size_t end) {
        end = std::min(end, text_.size());
        result_ += text_.substr(at_, end - at_);
        at_ = end;
    }

    std::string_view text_;
    const Replacement& replacement_;
    std::size_t at_ = 0;
    bool isReference_ = false;      // the next string, behind @import
    std::size_t imageSetDepth_ = 0; // of parentheses; 0 outside of an image set
    std::string result_;
};

} // namespace

std::string withStyleReferences(std::string_view style, const Replacement& replacement) {
    return Rewriter(style, replacement).run();
}

} // namespace qrv::webarchive
