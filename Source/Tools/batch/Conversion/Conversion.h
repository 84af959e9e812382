#pragma once

// One archive becomes a PDF: the tool is run as any program would run it, to a file with a name of its own,
// which takes the PDF's place when all is well. The tool's exit status says nothing, and is not looked at.

#include "Source/Tools/batch/Results/Record.h"
#include "Source/Tools/batch/Selection/ArchiveList.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <stop_token>
#include <string>

namespace qrv::batch {

struct ConversionOptions {
    std::string tool;
    std::string output; ///< the folder
    std::string mode = "print";
    std::optional<std::chrono::milliseconds> timeLimit;
    /// How often to try again what can pass.
    std::int64_t retries = 2;
    /// Missing resources are a failure.
    bool isStrict = false;
    bool writesXMP = false;
    bool attachesArchive = false;
    /// The text of each page goes beside the PDF.
    bool writesText = false;
    /// Bytes that the first attempt's engine may hold; later ones what the tool allows by itself.
    std::optional<std::size_t> memoryLimit;
    std::string pdfinfo;   ///< program that counts pages; empty for none
    std::string pdftotext; ///< program that reads the text
};

/// The record of an archive before its conversion: what tells whether it has been converted already.
Record recordToBe(const Item& item, const ConversionOptions& options);

/// Converts the archive of such a record, and completes it. Nothing if it was stopped: then nothing is left
/// of it. A file that was at the PDF's path is replaced in one step, or stays if the conversion fails. Any
/// thread.
std::optional<Record> convert(Record record, const ConversionOptions& options, const std::stop_token& stop);

/// Puts a copy of a whole PDF, which is below the output folder, in the place of the other record's; its
/// completed record, or nothing if that cannot be done. Any thread.
std::optional<Record> copyConverted(const Record& from, const Record& to, const ConversionOptions& options);

/// Removes the text beside a PDF, if there is one.
void removeText(const std::string& output, const std::string& pdf);

/// Whether the record's PDF is below the folder, as it was written.
bool isWhole(const Record& record, const std::string& output);

} // namespace qrv::batch
