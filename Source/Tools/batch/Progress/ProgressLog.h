#pragma once

// A line for each archive, for logs.

#include "Source/Tools/batch/Progress/Progress.h"

#include <iosfwd>

namespace qrv::batch {

/// What became of an archive, for people: "a/b.webarchive (3 pages, 45 kB, 2.4 s)", or the reason of its
/// failure.
std::string outcomeText(const Record& record, Outcome outcome);

/// "[ 12/500] converted a/b.webarchive (3 pages, 45 kB, 2.4 s)"
class ProgressLog : public Progress {
public:
    explicit ProgressLog(std::ostream& stream) : stream_(stream) {}

    void started(const std::string& archive) override;
    void finished(const Record& record, Outcome outcome, const Tally& tally) override;
    void passed(const Tally& tally, std::chrono::duration<double> elapsed) override;
    void ended(const std::string& summary) override;

private:
    std::ostream& stream_;
};

} // namespace qrv::batch
