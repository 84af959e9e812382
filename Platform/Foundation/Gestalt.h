#pragma once

// System information by four-character selector.

#include <cstdint>

namespace qrv {

inline constexpr std::uint32_t gestaltSystemVersionMajor = 0x73797331;  // 'sys1'
inline constexpr std::uint32_t gestaltSystemVersionMinor = 0x73797332;  // 'sys2'
inline constexpr std::uint32_t gestaltSystemVersionBugFix = 0x73797333; // 'sys3'
inline constexpr int gestaltUndefSelectorErr = -5551;

/// Stores the answer and returns 0; on failure leaves the response untouched and returns an error code. Any
/// thread.
int Gestalt(std::uint32_t selector, std::int32_t* response);

} // namespace qrv
