#pragma once

// Finds the resources and frame archives of an archive by address and frame.

#include "Platform/WebArchive/WebArchive.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace qrv::engine {

class ArchiveIndex {
public:
    /// An archive in the tree of archives; the root is 0.
    using Node = std::size_t;
    static constexpr Node root = 0;

    explicit ArchiveIndex(const WebArchive& archive);

    const WebResource& mainResource(Node node) const { return nodes_[node].mainResource; }

    /// Takes the archive of a frame in the page of `parent`: by the frame's name, else by its address, else
    /// the next one in the order of the tags that does not carry another frame's name. Each archive is given
    /// once. Nothing if none is left.
    std::optional<Node> takeFrame(Node parent, const std::string& name, const std::string& url);
    /// Takes the archive of a frame without an address of its own; only archives without an address count.
    std::optional<Node> takeBlankFrame(Node parent, const std::string& name);
    /// Whether this page has frame archives that were not taken.
    bool hasFramesLeft(Node parent) const;
    /// The same for those that carry a frame's name: without, names do not matter.
    bool hasNamedFramesLeft(Node parent) const;

    /// Finds a resource as the page of `node` sees it: in its own archive, then in its ancestors', then
    /// anywhere; with the fragment, then without; with this scheme, then with http and https exchanged; at
    /// last anywhere under an equivalent address. Of resources with the same address the last one counts. nil
    /// if there is none.
    WebResource resource(Node node, const std::string& url) const;

    /// The number of pictures by different addresses, those that are main resources not among them.
    std::size_t imageCount() const;

private:
    /// A tree, since hostile addresses could make a hash table slow.
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

    /// Whether it has no name, or one that the saving browser made up.
    static bool isNameless(const Entry& entry);
    Node add(const WebArchive& archive, std::optional<Node> parent);
    static void store(Resources& resources, const std::string& url, const WebResource& resource);
    WebResource find(Node node, const std::string& url) const;
    WebResource findReadable(const std::string& url) const;
    template <class Predicate>
    std::optional<Node> take(Node parent, Predicate matches);

    std::vector<Entry> nodes_;
    Resources all_;
    mutable std::optional<Resources> readable_; // all by their readable addresses, made when first needed
};

} // namespace qrv::engine
