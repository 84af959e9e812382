#pragma once

// Whether this program is built with a sanitizer, which needs memory without measure and files for its
// reports.

namespace qrv {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool isSanitized = true;
#elif defined(__clang__)
inline constexpr bool isSanitized = __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
inline constexpr bool isSanitized = false;
#endif

} // namespace qrv
