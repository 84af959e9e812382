#pragma once

// The tool's outer part: from the command line to the result, a property list on standard output or in the
// file named by OutPath. The exit status is always 0.

#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSError.h"

namespace qrv {

class PDFLoader;

/// The area of the tool's log lines.
inline constexpr char16_t LogWeb2PDF[] = u"LogWeb2PDF";

/// The tool's own errors: 1 for a wrong number of arguments, 2 for a failure inside the program.
inline constexpr char16_t Web2PDFErrorDomain[] = u"org.quillvane.quillvane.web2pdf";
inline constexpr long long Web2PDFBadArgumentsError = 1;
inline constexpr long long Web2PDFInternalError = 2;
/// The page is a frameset (code 0).
inline constexpr char16_t Web2PDFFramesErrorDomain[] = u"qvweb2pdf.frames";

/// Closes to the process what a run does not need that makes the PDF at this path.
using Confine = void (*)(const NSString& pdfPath);

/// The whole run: checks the arguments (mode, archive, PDF, record identifier), confines the process if that
/// is asked for, before it reads the archive, converts, and ends the process. An exception becomes an error,
/// which is then the result.
[[noreturn]] void runWeb2PDF(Confine confine = nullptr);

/// The run after the check: has a new loader convert what the five arguments name.
[[noreturn]] void convertWith(PDFLoader& loader, const NSArray& arguments);

/// Delivers the result and ends the process; a nil error means success. The path may be nil.
[[noreturn]] void finishWithErrorAndPath(const NSError& error, const NSString& path);
[[noreturn]] void finishWithError(const NSError& error);
[[noreturn]] void finishWithBadArguments();

/// The archive at this path contains a frameset.
NSError makeFramesError(const NSString& path);
/// The file at this path is not a web archive.
NSError makeBadArchiveError(const NSString& path);
/// No PDF was written to this path.
NSError makePrintFailedError(const NSString& path);

/// Archives the error with only these entries of its user-info, if present, in this order: failing URL,
/// description, file path, URL, failure reason, recovery suggestion.
NSData archiveError(const NSError& error);

/// Returns the XML form of a property list; nil for anything else.
NSData dataFromPropertyList(const id& propertyList);

/// Replaces std::exit by a test's own function, which must not return. Null restores it.
using ProcessExit = void (*)(int status);
void setProcessExitForTesting(ProcessExit processExit);

} // namespace qrv
