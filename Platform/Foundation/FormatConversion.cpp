#include "Platform/Foundation/FormatConversion.h"

#include "Platform/Foundation/ASCII.h"

#include <algorithm>

namespace qrv {

namespace {

class Parser {
public:
    explicit Parser(std::u16string_view text) : all_(text) {}

    FormatConversion parse() {
        FormatConversion c;
        at_ = 1;
        if (const std::optional<int> number = this->number(); number && peek() == u'$') {
            ++at_;
            c.position = static_cast<std::size_t>(std::max(*number, 1) - 1);
        } else {
            at_ = 1;
        }
        while (flag(c)) ++at_;
        field(c.width, c.widthFromArgument);
        if (peek() == u'.') {
            ++at_;
            field(c.precision, c.precisionFromArgument);
            if (!c.precision && !c.precisionFromArgument) c.precision = 0;
        }
        const std::size_t start = at_;
        while (peek() && std::u16string_view(u"hlqLztj").find(peek()) != std::u16string_view::npos) ++at_;
        c.length = all_.substr(start, at_ - start);
        if (peek()) c.letter = all_[at_++];
        c.source = all_.substr(0, at_);
        return c;
    }

private:
    char16_t peek() const { return at_ < all_.size() ? all_[at_] : u'\0'; }

    bool flag(FormatConversion& c) const {
        switch (peek()) {
        case u'-':
            return c.isLeft = true;
        case u'+':
            return c.hasPlus = true;
        case u' ':
            return c.hasBlank = true;
        case u'#':
            return c.isAlternative = true;
        case u'0':
            return c.hasZeros = true;
        case u'\'': // digits are grouped as the locale says, and formats are of none
            return true;
        default:
            return false;
        }
    }

    std::optional<int> number() {
        if (!isASCIIDigit(peek())) return std::nullopt;
        int value = 0;
        for (; isASCIIDigit(peek()); ++at_)
            value = std::min(value * 10 + (peek() - u'0'), FormatConversion::maximumWidth);
        return value;
    }

    void field(std::optional<int>& value, bool& fromArgument) {
        if (peek() == u'*') {
            ++at_;
            fromArgument = true;
        } else {
            value = number();
        }
    }

    std::u16string_view all_;
    std::size_t at_ = 0;
};

} // namespace

FormatConversion FormatConversion::parse(std::u16string_view text) {
    return Parser(text).parse();
}

unsigned FormatConversion::lengthInBytes() const {
    if (letter == u'D' || letter == u'U' || letter == u'O') return 8;
    if (length == u"hh") return 1;
    if (length == u"h") return 2;
    return length.empty() ? 4 : 8;
}

} // namespace qrv
