#pragma once

// The errors that are the batch's own, and which errors another attempt may not meet.

#include "Source/Tools/batch/Results/Record.h"

#include <string>

namespace qrv::batch {

/// The domain of the errors below; all others are the tool's.
inline constexpr char BatchErrorDomain[] = "org.quillvane.quillvane.web2pdf-batch";

enum BatchErrorCode : int {
    BatchToolEndedError = 1,  ///< the tool ended without an answer
    BatchTimedOutError = 2,   ///< the tool did not end in time
    BatchNoPDFError = 3,      ///< the tool tells of success, and there is no PDF
    BatchMissingError = 4,    ///< resources are missing, and that was asked to be a failure
    BatchFileError = 5,       ///< a file or folder of the output cannot be written
    BatchNotStartedError = 6, ///< the tool could not be started
};

ConversionError batchError(BatchErrorCode code, std::string text);

/// Whether another attempt may succeed: the engine, a process or memory was lost. An archive that is none, or
/// a page that takes too long, stays what it is.
bool canPass(const ConversionError& error);

} // namespace qrv::batch
