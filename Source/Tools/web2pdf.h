#pragma once

// The shell of the tool: from the command line to the result that is told to the program that started it, a
// property list on standard output or in the file named by OutPath. The exit status is 0 in every case.

#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSError.h"

namespace qrv {

/// The area of the tool's log lines.
inline constexpr char16_t LogWeb2PDF[] = u"LogWeb2PDF";

/// Errors of the tool's own; code 1 is a wrong number of arguments, 2 a failure inside the program.
inline constexpr char16_t Web2PDFErrorDomain[] = u"org.quillvane.quillvane.web2pdf";
inline constexpr long long Web2PDFBadArgumentsError = 1;
inline constexpr long long Web2PDFInternalError = 2;
/// The page is made of the frames of a frameset (code 0).
inline constexpr char16_t Web2PDFFramesErrorDomain[] = u"qvweb2pdf.frames";

/// The whole run: checks the arguments (mode, archive, PDF, record identifier), converts and ends the
/// process. Exceptions end it, too, with the error made from them as the result.
[[noreturn]] void runWeb2PDF();

/// Tells the result and ends the process: success for a nil error. The path may be nil.
[[noreturn]] void finishWithErrorAndPath(const NSError& error, const NSString& path);
[[noreturn]] void finishWithError(const NSError& error);
[[noreturn]] void finishWithBadArguments();

/// The page of the archive at this path is a frameset.
NSError makeFramesError(const NSString& path);
/// The file at this path is no web archive.
NSError makeBadArchiveError(const NSString& path);
/// No PDF came to be at this path.
NSError makePrintFailedError(const NSString& path);

/// A keyed archive of the error with those of these entries of its user-info that are there, in this order:
/// failing URL, description, file path, URL, failure reason, recovery suggestion.
NSData archiveError(const NSError& error);

/// The XML form of a property list; nil for anything else.
NSData dataFromPropertyList(const id& propertyList);

/// Where the process ends: std::exit, or a function of a test's own that does not return. Null restores it.
using ProcessExit = void (*)(int status);
void setProcessExitForTesting(ProcessExit processExit);

} // namespace qrv
