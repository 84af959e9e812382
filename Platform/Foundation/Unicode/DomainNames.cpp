// Host names in other scripts than ASCII.

#include "Platform/Foundation/ASCII.h"
#include "Platform/Foundation/Unicode.h"

#include <algorithm>
#include <unicode/uidna.h>

namespace qrv::unicode {

namespace {

/// The conversion's time grows with the square of a label's length; names have at most 253 characters.
constexpr std::size_t longestName = 1024;

const UIDNA* domainNames() {
    static const UIDNA* const names = [] {
        UErrorCode status = U_ZERO_ERROR;
        return uidna_openUTS46(UIDNA_CHECK_BIDI | UIDNA_CHECK_CONTEXTJ | UIDNA_NONTRANSITIONAL_TO_ASCII,
                               &status);
    }();
    return names;
}

bool isASCII(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= 0; });
}

} // namespace

std::optional<std::string> domainToASCII(std::string_view name) {
    if (isASCII(name)) return lowered(name);
    if (name.size() > longestName) return std::nullopt;
    // Lengths and hyphens are the registries' business.
    constexpr std::uint32_t accepted = UIDNA_ERROR_EMPTY_LABEL | UIDNA_ERROR_LABEL_TOO_LONG |
                                       UIDNA_ERROR_DOMAIN_NAME_TOO_LONG | UIDNA_ERROR_LEADING_HYPHEN |
                                       UIDNA_ERROR_TRAILING_HYPHEN | UIDNA_ERROR_HYPHEN_3_4;
    // A character takes at most five letters of the ASCII form, a label four more.
    std::string result(name.size() * 10, '\0');
    UErrorCode status = U_ZERO_ERROR;
    UIDNAInfo info = UIDNA_INFO_INITIALIZER;
    const int32_t length =
        uidna_nameToASCII_UTF8(domainNames(), name.data(), static_cast<int32_t>(name.size()), result.data(),
                               static_cast<int32_t>(result.size()), &info, &status);
    if (U_FAILURE(status) || (info.errors & ~accepted) != 0) return std::nullopt;
    result.resize(static_cast<std::size_t>(length));
    return result;
}

} // namespace qrv::unicode
