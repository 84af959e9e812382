#pragma once

// Work on the bytes of PDF files, which may be hostile. Everything that reads one with the PDF library is
// done in here, in a confined child with limits that go with the file's length.

#include "Platform/Confinement/ConfinedWork.h"
#include "Platform/PDFKit/PDFEnding.h"

#include <functional>
#include <optional>

namespace qrv {

/// What work on a file of this many bytes may use: enough for any file that a program has made, and too
/// little to harm the machine.
ConfinedLimits limitsForPDF(std::size_t length);

/// Does the work on so many bytes in a confined child and returns what it returned, which may be nil. Nothing
/// when it failed, which is logged: "PURPOSE was ended by signal 11 (Segmentation fault)". Each line of the
/// work's notes is logged.
std::optional<NSData> workOnPDF(const char* purpose, std::size_t length, const ConfinedWork& work);

/// The same for work on the document that `openPDF` makes of these bytes; nil where it refuses them.
std::optional<NSData> workOnDocument(const char* purpose, const NSData& bytes,
                                     const std::function<NSData(QPDF&)>& work);

/// What makes another PDF of files: returns its bytes, or nil, and tells their ending.
using PDFMaking = std::function<NSData(std::string& notes, PDFEnding& ending)>;

/// Makes a PDF as workOnPDF does work; nil also when that failed. What has been made is known to
/// endingOfPDF.
NSData makeFromPDF(const char* purpose, std::size_t length, const PDFMaking& making);

/// `isReadablePDF`, asked in a confined child; true also for a file that is too much for it, which readers
/// may take all the same. A file that is readable is known to endingOfPDF.
bool mayBeReadablePDF(const NSData& bytes);

/// The ending of a file; nothing where `openPDF` refuses it. No child is started for the bytes of the file
/// that was made or looked at last. Any thread.
std::optional<PDFEnding> endingOfPDF(const NSData& bytes);

} // namespace qrv
