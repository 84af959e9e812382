#pragma once

// System information by its well-known names, read from the kernel's /proc and /sys.

#include <optional>
#include <string>
#include <string_view>

namespace qrv {

/// Returns the value's bytes as the platform lays them out: text with a terminating zero, or an integer of 4
/// or 8 bytes. nullopt for names and values that this system does not have. Any thread.
///
/// Text: hw.machine, hw.model, kern.bootsessionuuid, kern.hostname, kern.osrelease, kern.ostype,
/// kern.version, machdep.cpu.brand_string. 4 bytes: hw.activecpu, hw.logicalcpu, hw.logicalcpu_max, hw.ncpu,
/// hw.physicalcpu, hw.physicalcpu_max, kern.argmax, kern.maxfiles, kern.maxproc. 8 bytes: hw.cpufrequency,
/// hw.cpufrequency_max (hertz), hw.memsize, hw.pagesize (bytes).
std::optional<std::string> sysctlByName(std::string_view name);

/// Replaces the system's folders by a test folder with its own "proc" and "sys"; empty restores them.
void setSystemFolderForTesting(const std::string& folder = {});

} // namespace qrv
