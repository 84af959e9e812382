#pragma once

// Collects the resources that a page asked for and its archive lacks, for one line in the log.

#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qrv::engine {

class MissingResources {
public:
    /// Whether requests of this type ask for nothing.
    static bool isOnlySent(std::string_view type);

    /// `type` is the engine's resource type ("Image", "Stylesheet", ...). What a page only sends (pings,
    /// reports) does not count. Adding a resource twice counts once.
    void add(std::string_view type, std::string_view url);

    /// Removes a resource that was replaced by another one.
    void remove(std::string_view type, std::string_view url);

    /// Whether pictures are missing.
    bool hasImages() const;

    /// Describes what is missing, in the order of the requests: kinds and addresses, percent-encoded where
    /// necessary. Names at most 20, each with at most 200 characters. Empty if nothing is missing.
    std::string description() const;

private:
    std::vector<std::string> entries_; // in order, of bounded number; the rest is not counted
    std::set<std::string> known_;      // the same, for lookup
};

} // namespace qrv::engine
