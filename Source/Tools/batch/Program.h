#pragma once

// The program, from its options to its exit status.

#include "Source/Tools/batch/Options.h"

namespace qrv::batch {

/// How the program ends besides those of ExitStatus.
enum : int {
    /// A signal has ended the run.
    interrupted = 130,
};

/// Does what the options say. Throws UsageError, and Failure where results cannot be kept. The calling thread
/// must be the only one.
int runProgram(const Options& options);

} // namespace qrv::batch
