#include "Platform/Foundation/LiteralSearch.h"
#include "Platform/Foundation/Unicode.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <unicode/uchar.h>
#include <unicode/ucol.h>
#include <unicode/uloc.h>
#include <unicode/unorm2.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>
#include <vector>

namespace qrv::unicode {

namespace {

const UNormalizer2* canonicalDecomposition() {
    UErrorCode status = U_ZERO_ERROR;
    return unorm2_getNFDInstance(&status);
}

const UNormalizer2* compatibilityDecomposition() {
    UErrorCode status = U_ZERO_ERROR;
    return unorm2_getNFKDInstance(&status);
}

/// A text reduced to what counts in a comparison, character by character (each with its marks).
class FoldedText {
public:
    /// Folds up to about `enough` units.
    FoldedText(std::u16string_view text, Indifference indifference,
               std::size_t enough = static_cast<std::size_t>(-1))
        : text_(text), indifference_(indifference) {
        for (std::size_t start = 0; start < text.size();) {
            const std::size_t end = endOfCharacter(start);
            const std::size_t before = units_.size();
            append(text.substr(start, end - start));
            // A character that consists of ignored marks only belongs to the one before it.
            if (units_.size() > before || starts_.empty()) starts_.push_back({before, start});
            start = end;
            consumed_ = end;
            if (units_.size() > enough) break;
        }
    }

    std::u16string_view units() const { return units_; }

    /// Returns the position in the text of the character that starts at this folded unit; nullopt inside a
    /// character.
    std::optional<std::size_t> startOfCharacter(std::size_t unit) const {
        if (unit == units_.size()) return consumed_;
        const auto found = std::lower_bound(starts_.begin(), starts_.end(), unit,
                                            [](const Start& s, std::size_t u) { return s.folded < u; });
        if (found == starts_.end() || found->folded != unit) return std::nullopt;
        return found->original;
    }

private:
    struct Start {
        std::size_t folded;
        std::size_t original;
    };

    std::size_t endOfCharacter(std::size_t start) const {
        std::size_t end = start;
        UChar32 character = 0;
        U16_NEXT(text_.data(), end, text_.size(), character);
        while (end < text_.size() && text_[end] >= 0x300) {
            std::size_t next = end;
            U16_NEXT(text_.data(), next, text_.size(), character);
            if (unorm2_hasBoundaryBefore(canonicalDecomposition(), character)) break;
            end = next;
        }
        return end;
    }

    void append(std::u16string_view character) {
        if (character.size() == 1 && character[0] < 0x80) {
            const char16_t c = character[0];
            const bool capital = indifference_.letterCase && c >= u'A' && c <= u'Z';
            units_.push_back(capital ? static_cast<char16_t>(c + 0x20) : c);
            return;
        }
        const std::u16string pieces = decomposed(character);
        std::u16string kept;
        for (std::size_t i = 0; i < pieces.size();) {
            UChar32 piece = 0;
            U16_NEXT(pieces.data(), i, pieces.size(), piece);
            if (!(indifference_.diacritics && isDiacritic(piece))) appendWidthFolded(kept, piece);
        }
        units_.append(indifference_.letterCase ? decomposed(caseFolded(kept)) : kept);
    }

    /// Marks that modify the character before them. The virama is none: it forms another syllable.
    static bool isDiacritic(UChar32 c) {
        constexpr uint8_t virama = 9;
        const uint8_t combiningClass = u_getCombiningClass(c);
        return combiningClass != 0 && combiningClass != virama;
    }

    void appendWidthFolded(std::u16string& out, UChar32 c) const {
        std::array<UChar, 32> units{};
        const int32_t type =
            indifference_.width ? u_getIntPropertyValue(c, UCHAR_DECOMPOSITION_TYPE) : U_DT_NONE;
        if (type == U_DT_WIDE || type == U_DT_NARROW) {
            UErrorCode status = U_ZERO_ERROR;
            const int32_t count =
                unorm2_getDecomposition(compatibilityDecomposition(), c, units.data(), units.size(), &status);
            out.append(units.data(), static_cast<std::size_t>(std::max(count, 0)));
            return;
        }
        int32_t count = 0;
        U16_APPEND_UNSAFE(units.data(), count, c);
        out.append(units.data(), static_cast<std::size_t>(count));
    }

    static std::u16string caseFolded(const std::u16string& text) {
        std::u16string result(text.size() * 3, u'\0'); // no character folds to more
        UErrorCode status = U_ZERO_ERROR;
        const int32_t length = u_strFoldCase(result.data(), static_cast<int32_t>(result.size()), text.data(),
                                             static_cast<int32_t>(text.size()), U_FOLD_CASE_DEFAULT, &status);
        result.resize(U_SUCCESS(status) ? static_cast<std::size_t>(length) : 0);
        return result;
    }

    std::u16string_view text_;
    Indifference indifference_;
    std::u16string units_;
    std::vector<Start> starts_;
    std::size_t consumed_ = 0;
};

struct CloseCollator {
    void operator()(UCollator* collator) const { ucol_close(collator); }
};

using Collator = std::unique_ptr<UCollator, CloseCollator>;

Collator makeCollator(bool caseInsensitive, bool numeric) {
    // Without a locale set, texts would sort by code point, capitals first; people expect alphabetical order.
    const char* locale = uloc_getDefault();
    if (std::strstr(locale, "POSIX")) locale = "";
    UErrorCode status = U_ZERO_ERROR;
    Collator collator(ucol_open(locale, &status));
    if (caseInsensitive) ucol_setStrength(collator.get(), UCOL_SECONDARY);
    ucol_setAttribute(collator.get(), UCOL_NUMERIC_COLLATION, numeric ? UCOL_ON : UCOL_OFF, &status);
    ucol_setAttribute(collator.get(), UCOL_NORMALIZATION_MODE, UCOL_ON, &status);
    return collator;
}

} // namespace

std::optional<Span> find(std::u16string_view text, std::u16string_view pattern, Indifference indifference,
                         bool anchored) {
    const FoldedText needle(pattern, indifference);
    if (needle.units().empty()) return std::nullopt;
    const std::size_t enough = anchored ? needle.units().size() : static_cast<std::size_t>(-1);
    const FoldedText folded(text, indifference, enough);
    const LiteralSearch search(needle.units());
    std::optional<Span> result;
    const auto isWholeCharacters = [&](std::size_t at) {
        const auto start = folded.startOfCharacter(at);
        const auto end = folded.startOfCharacter(at + needle.units().size());
        if (start && end) result = Span{*start, *end};
        return result.has_value() || anchored;
    };
    if (anchored) {
        if (folded.units().starts_with(needle.units())) isWholeCharacters(0);
    } else {
        search.find(folded.units(), 0, isWholeCharacters);
    }
    return result;
}

int compare(std::u16string_view a, std::u16string_view b, Indifference indifference) {
    const FoldedText left(a, indifference);
    const FoldedText right(b, indifference);
    return left.units().compare(right.units());
}

int compareLocalized(std::u16string_view a, std::u16string_view b, bool caseInsensitive, bool numeric) {
    // Never destroyed.
    static const auto& collators =
        *new std::array<Collator, 4>{makeCollator(false, false), makeCollator(false, true),
                                     makeCollator(true, false), makeCollator(true, true)};
    const Collator& collator = collators[(caseInsensitive ? 2U : 0U) + (numeric ? 1U : 0U)];
    return ucol_strcoll(collator.get(), a.data(), static_cast<int32_t>(a.size()), b.data(),
                        static_cast<int32_t>(b.size()));
}

} // namespace qrv::unicode
