#pragma once

// Questions about the system by four-character selector.

#include <cstdint>

namespace qrv {

inline constexpr std::uint32_t gestaltSystemVersionMajor = 0x73797331;  // 'sys1'
inline constexpr std::uint32_t gestaltSystemVersionMinor = 0x73797332;  // 'sys2'
inline constexpr std::uint32_t gestaltSystemVersionBugFix = 0x73797333; // 'sys3'
inline constexpr int gestaltUndefSelectorErr = -5551;

/// Stores the answer and returns 0, or leaves the place alone and returns an error. Any thread.
int Gestalt(std::uint32_t selector, std::int32_t* response);

} // namespace qrv
