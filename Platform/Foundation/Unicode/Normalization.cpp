#include "Platform/Foundation/Unicode.h"

#include <algorithm>
#include <array>
#include <unicode/unorm2.h>
#include <unicode/utf16.h>

namespace qrv::unicode {

namespace {

const UNormalizer2* canonicalDecomposition() {
    static const UNormalizer2* const normalizer = [] {
        UErrorCode status = U_ZERO_ERROR;
        return unorm2_getNFDInstance(&status);
    }();
    return normalizer;
}

} // namespace

std::u16string decomposed(std::u16string_view text) {
    std::u16string result(decomposedLength(text), u'\0');
    UErrorCode status = U_ZERO_ERROR;
    unorm2_normalize(canonicalDecomposition(), text.data(), static_cast<int32_t>(text.size()), result.data(),
                     static_cast<int32_t>(result.size()), &status);
    return result;
}

/// Each character decomposes by itself; only the order of marks depends on the neighbours, which does not
/// affect the length.
std::size_t decomposedLength(std::u16string_view text) {
    std::size_t length = 0;
    for (std::size_t i = 0; i < text.size();) {
        UChar32 character = 0;
        const std::size_t start = i;
        U16_NEXT(text.data(), i, text.size(), character);
        std::array<UChar, 32> pieces{};
        UErrorCode status = U_ZERO_ERROR;
        const int32_t count = character < 0xC0
                                  ? -1
                                  : unorm2_getDecomposition(canonicalDecomposition(), character,
                                                            pieces.data(), pieces.size(), &status);
        length += count < 0 ? i - start : static_cast<std::size_t>(count);
    }
    return length;
}

std::u16string compatibilityForm(std::u16string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    const UNormalizer2* const normalizer = unorm2_getNFKCInstance(&status);
    const auto length = static_cast<int32_t>(text.size());
    const int32_t needed = unorm2_normalize(normalizer, text.data(), length, nullptr, 0, &status);
    std::u16string result(static_cast<std::size_t>(needed), u'\0');
    status = U_ZERO_ERROR;
    unorm2_normalize(normalizer, text.data(), length, result.data(), needed, &status);
    return result;
}

} // namespace qrv::unicode
