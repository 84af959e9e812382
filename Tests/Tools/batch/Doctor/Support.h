#pragma once

// Finds findings.

#include "Source/Tools/batch/Doctor/Finding.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace qrv::batch {

/// The first one of this name.
inline const Finding& findingOf(const Findings& findings, const std::string& check) {
    const auto found = std::find_if(findings.begin(), findings.end(),
                                    [&](const Finding& finding) { return finding.check == check; });
    if (found == findings.end()) throw std::runtime_error("no finding " + check);
    return *found;
}

} // namespace qrv::batch
