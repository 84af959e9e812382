#pragma once

// What an examination of the machine found.

#include "Source/Tools/Common/JsonText.h"

#include <string>
#include <utility>
#include <vector>

namespace qrv::batch {

enum class Mark {
    ok,
    note,    ///< conversions work, and something could be better or should be known
    problem, ///< conversions will not work, or not as they must
};

struct Finding {
    /// What was looked at, "fonts", and what of it, "Thai". Both together stay the same from one examination
    /// to the next.
    std::string area;
    std::string check;
    Mark mark;
    /// What was found, in any characters.
    std::string text;
    /// What to do about it, in lines without an end of the last; empty where there is nothing to do.
    std::string advice = {};
    /// The same for scripts, besides the fields that every finding has.
    std::vector<std::pair<std::string, JsonValue>> facts = {};
};

using Findings = std::vector<Finding>;

inline void append(Findings& findings, Findings others) {
    findings.insert(findings.end(), std::make_move_iterator(others.begin()),
                    std::make_move_iterator(others.end()));
}

} // namespace qrv::batch
