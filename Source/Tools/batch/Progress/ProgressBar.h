#pragma once

// One line of a terminal that is drawn again and again, and above it what failed.

#include "Source/Tools/batch/Progress/Progress.h"

#include <cstddef>
#include <iosfwd>
#include <vector>

namespace qrv::batch {

/// The line, at most so many columns wide: how much is done, what failed, how many in a second, the time that
/// is left, and an archive under way.
std::string barText(const Tally& tally, std::chrono::duration<double> elapsed, const std::string& archive,
                    std::size_t columns, const Terminal& terminal);

class ProgressBar : public Progress {
public:
    ProgressBar(std::ostream& stream, const Terminal& terminal) : stream_(stream), terminal_(terminal) {}

    void started(const std::string& archive) override;
    void finished(const Record& record, Outcome outcome, const Tally& tally) override;
    void passed(const Tally& tally, std::chrono::duration<double> elapsed) override;
    void ended(const std::string& summary) override;

private:
    std::ostream& stream_;
    Terminal terminal_;
    std::vector<std::string> underWay_;
};

} // namespace qrv::batch
