#include "Platform/Foundation/Unicode.h"

#include <unicode/uchar.h>
#include <unicode/utf16.h>

namespace qrv::unicode {

namespace {

/// Calls visit(character, start, end) for each character; an unpaired surrogate is one of its own.
template <class Visit>
void visitCharacters(std::u16string_view text, Visit visit) {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t start = at;
        UChar32 character = 0;
        U16_NEXT(text.data(), at, text.size(), character);
        visit(character, start, at);
    }
}

/// Persian, the scripts of India and families of emoji are not spelt without them.
bool isJoiner(UChar32 character) {
    return character == 0x200C || character == 0x200D;
}

} // namespace

std::u16string withoutControls(std::u16string_view text) {
    constexpr uint32_t controls = U_GC_CC_MASK | U_GC_CF_MASK | U_GC_ZL_MASK | U_GC_ZP_MASK | U_GC_CS_MASK;
    std::u16string result;
    visitCharacters(text, [&](UChar32 character, std::size_t start, std::size_t end) {
        const bool isHarmless = (U_GET_GC_MASK(character) & controls) == 0 || isJoiner(character);
        result += isHarmless ? text.substr(start, end - start) : u"\uFFFD";
    });
    return result;
}

std::size_t columns(std::u16string_view text) {
    constexpr uint32_t marks = U_GC_MN_MASK | U_GC_ME_MASK | U_GC_CF_MASK | U_GC_CC_MASK;
    std::size_t count = 0;
    visitCharacters(text, [&](UChar32 character, std::size_t, std::size_t) {
        if (U_GET_GC_MASK(character) & marks) return;
        const int width = u_getIntPropertyValue(character, UCHAR_EAST_ASIAN_WIDTH);
        count += width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
    });
    return count;
}

} // namespace qrv::unicode
