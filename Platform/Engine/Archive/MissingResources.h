#pragma once

// What a page asked for and its archive did not hold, for one line in the log.

#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qrv::engine {

class MissingResources {
public:
    /// `type` is the engine's word for what the resource is for ("Image", "Stylesheet", ...). What a page
    /// only sends (pings, reports) does not count. Told again, a resource counts once.
    void add(std::string_view type, std::string_view url);

    /// Something else stands in for the resource, so that the page lacks nothing.
    void remove(std::string_view type, std::string_view url);

    /// What is missing, in the order in which it was asked for: kinds and addresses, with escapes for
    /// whatever might not be text. No more than 20 of them are named, none at more than 200 characters. Empty
    /// when nothing is missing.
    std::string description() const;

private:
    std::vector<std::string> entries_; // in their order, of bounded number; those beyond are not counted
    std::set<std::string> known_;      // the same, for looking them up
};

} // namespace qrv::engine
