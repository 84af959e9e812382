#pragma once

// What earlier runs have made in an output folder, so that it need not be made again.

#include "Source/Tools/batch/Results/Record.h"
#include "Source/Tools/batch/Results/ResultsFile.h"
#include "Source/Tools/batch/Selection/Shard.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace qrv::batch {

/// The last record of each PDF. Of what is missing they have only how much, since there can be millions of
/// them. Any thread may ask.
class History {
public:
    /// Reads the results of the folder, of all shards, as far as they are about PDFs of this shard. Throws
    /// Failure.
    History(const std::string& folder, const Shard& shard);

    /// The last record of this PDF, or null. That of a failure has the text of an earlier PDF, which stays
    /// with it.
    const Record* of(const std::string& pdf) const;

    /// All of them, in no order.
    std::vector<const Record*> all() const;

    /// One of these records with what is missing, read again; without it where the results are not what they
    /// were.
    Record whole(const Record& record) const;

    /// A record of the same content, converted in the same way, whose PDF is somewhere else; or null.
    const Record* ofContent(const Record& wanted) const;

    /// Whether a record is that of an archive with this content, converted in this way.
    static bool matches(const Record& record, const Record& wanted);

private:
    struct Entry {
        Record record;
        RecordPlace place;
    };

    void add(Record record, const RecordPlace& place);

    std::unordered_map<std::string, Entry> entries_;                // by the PDFs' paths
    std::unordered_multimap<std::string, const Record*> byContent_; // by the archives' hashes
    std::vector<std::string> files_; // the last member: the others are filled while these are read
};

} // namespace qrv::batch
