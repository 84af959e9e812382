#pragma once

// What earlier runs save this one.

#include "Source/Tools/batch/Conversion/Conversion.h"
#include "Source/Tools/batch/Progress/Tally.h"
#include "Source/Tools/batch/Results/History.h"

#include <optional>

namespace qrv::batch {

/// What is done again, though an earlier run has done it.
enum class Repeats { nothing, failures, everything };

class Resumption {
public:
    /// Both have to live as long as it does.
    Resumption(const History& history, const ConversionOptions& conversion, Repeats repeats)
        : history_(history), conversion_(conversion), repeats_(repeats) {}

    struct Known {
        Record record;
        Outcome outcome;
    };

    /// What there is to tell of an archive that need not be converted, since its PDF is there and whole, or
    /// since it failed; nothing for one that is to be converted. Any thread.
    std::optional<Known> known(const Record& wanted) const;

    /// The record of a whole PDF of the same content, for an archive that was moved or is there twice. Any
    /// thread.
    std::optional<Record> sameContent(const Record& wanted) const;

    /// Removes the text that an earlier run has written beside the PDF that this one replaces, if it has none
    /// of its own: it would be another PDF's. Any thread.
    void removeEarlierText(const Record& converted) const;

private:
    bool suffices(const Record& converted) const;
    bool failsAgain(const Record& failed) const;

    const History& history_;
    const ConversionOptions& conversion_;
    Repeats repeats_;
};

} // namespace qrv::batch
