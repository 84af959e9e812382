#include "Platform/Foundation/Unicode.h"

#include <unicode/ubrk.h>

namespace qrv::unicode {

std::vector<std::size_t> composedSequenceEnds(std::u16string_view text) {
    std::vector<std::size_t> ends;
    if (text.empty()) return ends;
    UErrorCode status = U_ZERO_ERROR;
    UBreakIterator* boundaries =
        ubrk_open(UBRK_CHARACTER, "", text.data(), static_cast<int32_t>(text.size()), &status);
    if (U_SUCCESS(status)) {
        for (int32_t end = ubrk_next(boundaries); end != UBRK_DONE; end = ubrk_next(boundaries)) {
            ends.push_back(static_cast<std::size_t>(end));
        }
    }
    ubrk_close(boundaries);
    // Without the library's data nothing is known about boundaries: better none than a wrong one.
    if (ends.empty()) ends.push_back(text.size());
    return ends;
}

} // namespace qrv::unicode
