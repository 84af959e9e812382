#pragma once

// The file that records are appended to, below the output folder; and those of all runs and shards there.

#include "Platform/Foundation/FileDescriptor.h"
#include "Source/Tools/batch/Results/Record.h"
#include "Source/Tools/batch/Selection/Shard.h"

#include <functional>
#include <ios>
#include <optional>
#include <string>
#include <vector>

namespace qrv::batch {

/// Its name: "web2pdf-batch.jsonl", or "web2pdf-batch.3-of-8.jsonl".
std::string resultsName(const Shard& shard);

/// Where the line of a record begins.
struct RecordPlace {
    std::size_t file = 0; ///< a number of a path
    std::streamoff offset = 0;
};

/// Reads every record of every results file in the folder, files in the order of their names, whose paths it
/// gives. Lines that are no records are passed by: the last one may have been cut off. Throws Failure where a
/// file cannot be read.
std::vector<std::string> readRecords(const std::string& folder,
                                     const std::function<void(Record, RecordPlace)>& use);

/// Reads one record again; nothing where none begins there.
std::optional<Record> readRecordAt(const std::string& path, std::streamoff offset);

/// Open for appending, by one run at a time.
class ResultsFile {
public:
    /// Makes the file and its folder where they are missing. Throws Failure: it cannot be written, or another
    /// run writes it.
    ResultsFile(const std::string& folder, const Shard& shard);

    /// Writes the whole line at once. Throws Failure. One thread at a time.
    void append(const Record& record);

private:
    std::string path_;
    FileDescriptor file_;
};

} // namespace qrv::batch
