#pragma once

// The report that a run makes of its results when it is asked for one.

#include "Source/Tools/batch/Interruption.h"
#include "Source/Tools/batch/Options.h"
#include "Source/Tools/batch/Selection/ArchiveList.h"

#include <cstddef>

namespace qrv::batch {

/// Throws UsageError for a report that cannot be written where it is asked for, before there is anything to
/// report.
void requireReport(const Options& options);

/// Of what this run and those before it have made of the archives. Throws Failure. A signal ends it, and then
/// nothing is written.
void reportOn(const std::vector<Item>& items, const Options& options, std::size_t jobs,
              Interruption& interruption);

/// Of all that is in the folder; gives the exit status. Throws Failure.
int reportOnFolder(const Options& options, std::size_t jobs);

} // namespace qrv::batch
