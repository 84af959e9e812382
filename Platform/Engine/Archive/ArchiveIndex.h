#pragma once

// Finds what an archive holds for the addresses and frames that a page asks for.

#include "Platform/WebArchive/WebArchive.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace qrv::engine {

class ArchiveIndex {
public:
    /// One archive of the nest; the root is 0.
    using Node = std::size_t;
    static constexpr Node root = 0;

    explicit ArchiveIndex(const WebArchive& archive);

    const WebResource& mainResource(Node node) const { return nodes_[node].mainResource; }

    /// The archive for a frame in the page of `parent`: by the frame's name, then by its address, then the
    /// next one in the order of the tags that carries no name of another frame. Each archive is given once.
    /// Nothing when none is left.
    std::optional<Node> takeFrame(Node parent, const std::string& name, const std::string& url);
    /// The same for a frame without an address of its own: only archives whose own address is none either
    /// count.
    std::optional<Node> takeBlankFrame(Node parent, const std::string& name);
    /// True when archives of frames of this page are left to be taken.
    bool hasFramesLeft(Node parent) const;

    /// The resource of an address, as seen by the page of `node`: in its own archive, then its ancestors',
    /// then anywhere; with the fragment, then without; in this scheme, then with https and http exchanged; at
    /// last anywhere under an address that means the same. Of several with one address the last one stored
    /// counts. nil when there is none.
    WebResource resource(Node node, const std::string& url) const;

private:
    /// A tree: an archive cannot make it slow by addresses whose hashes are the same.
    using Resources = std::map<std::string, WebResource>;

    struct Entry {
        WebResource mainResource;
        std::string url; // normalised, without its fragment
        std::string frameName;
        std::optional<Node> parent;
        std::vector<Node> children;
        Resources resources; // by normalised address
        bool taken = false;
    };

    /// Without a name, or with one that the saving browser made up.
    static bool isNameless(const Entry& entry);
    Node add(const WebArchive& archive, std::optional<Node> parent);
    static void store(Resources& resources, const std::string& url, const WebResource& resource);
    WebResource find(Node node, const std::string& url) const;
    WebResource findReadable(const std::string& url) const;
    template <class Predicate>
    std::optional<Node> take(Node parent, Predicate matches);

    std::vector<Entry> nodes_;
    Resources all_;
    mutable std::optional<Resources> readable_; // all by their readable addresses, once one is looked for
};

} // namespace qrv::engine
