#pragma once

// What a run tells while it is under way: a bar on a terminal, lines in a log, or nothing.

#include "Source/Tools/batch/Progress/Tally.h"
#include "Source/Tools/batch/Results/Record.h"

#include <memory>
#include <string>

namespace qrv::batch {

/// One call at a time.
class Progress {
public:
    virtual ~Progress() = default;

    /// Work on an archive begins.
    virtual void started(const std::string& archive) = 0;
    virtual void finished(const Record& record, Outcome outcome, const Tally& tally) = 0;
    /// Called several times in a second.
    virtual void passed(const Tally& tally, std::chrono::duration<double> elapsed) = 0;
    /// The run is over; the text is for people.
    virtual void ended(const std::string& summary) = 0;
};

/// How standard output is written to.
struct Terminal {
    bool isTerminal; ///< one that can move its cursor
    bool hasColours; ///< and nobody objects (NO_COLOR)
    bool hasUnicode; ///< the locale's characters are those of Unicode

    /// Standard output as it is.
    static Terminal ofStandardOutput();
};

/// The way that fits the terminal.
std::unique_ptr<Progress> makeProgress(const Terminal& terminal, bool isQuiet);

} // namespace qrv::batch
