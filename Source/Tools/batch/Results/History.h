#pragma once

// What earlier runs have made in an output folder, so that it need not be made again.

#include "Source/Tools/batch/Results/Record.h"
#include "Source/Tools/batch/Selection/Shard.h"

#include <functional>
#include <optional>
#include <string>
#include <unordered_map>

namespace qrv::batch {

/// The last record of each PDF. Any thread may ask.
class History {
public:
    History() = default;

    enum class Keeps {
        counts, ///< of what is missing only how much
        everything,
    };

    /// Reads the results of the folder, of all shards, as far as they are about PDFs of this shard. Throws
    /// Failure.
    History(const std::string& folder, const Shard& shard, Keeps keeps = Keeps::counts);

    /// The last record of this PDF, or null.
    const Record* of(const std::string& pdf) const;

    /// All of them, by their PDFs' paths.
    const std::unordered_map<std::string, Record>& records() const { return records_; }

    /// A record of the same content, converted in the same way, whose PDF is somewhere else; or null.
    const Record* ofContent(const Record& wanted) const;

    /// Whether a record is that of an archive with this content, converted in this way.
    static bool matches(const Record& record, const Record& wanted);

private:
    std::unordered_map<std::string, Record> records_;
    std::unordered_multimap<std::string, const Record*> byContent_; // by the archive's hash
};

} // namespace qrv::batch
