#include "Platform/WebKit/Engine/ArchiveIndex.h"

#include "Platform/WebKit/Engine/ResourceURL.h"

#include <algorithm>

namespace qrv::engine {

namespace {

/// A name that the saving browser made up for a frame without one.
bool isGeneratedName(const std::string& name) {
    return name.starts_with("<!--frame");
}

bool sameAddress(const std::string& stored, const std::string& asked) {
    const std::string a(withoutFragment(stored));
    const std::string b(withoutFragment(asked));
    return a == b || a == withOtherHTTPScheme(b);
}

bool isBlank(const std::string& url) {
    return url.empty() || schemeOf(url) == "about";
}

} // namespace

ArchiveIndex::ArchiveIndex(const WebArchive& archive) {
    add(archive, std::nullopt);
}

ArchiveIndex::Node ArchiveIndex::add(const WebArchive& archive, std::optional<Node> parent) {
    const Node node = nodes_.size();
    nodes_.emplace_back();
    Entry entry;
    entry.mainResource = archive.mainResource();
    entry.url = normalizedURL(entry.mainResource.URL().absoluteString().utf8());
    entry.frameName = entry.mainResource.frameName().utf8();
    entry.parent = parent;
    for (const id& element : archive.subresources()) store(entry.resources, as<WebResource>(element));
    for (const id& element : archive.subresources()) store(all_, as<WebResource>(element));
    store(entry.resources, entry.mainResource);
    store(all_, entry.mainResource);
    for (const id& element : archive.subframeArchives()) {
        entry.children.push_back(add(as<WebArchive>(element), node));
    }
    nodes_[node] = std::move(entry);
    return node;
}

void ArchiveIndex::store(Resources& resources, const WebResource& resource) {
    const std::string url = normalizedURL(resource.URL().absoluteString().utf8());
    if (url.empty()) return;
    resources.insert_or_assign(url, resource);
    // Found without its fragment too, unless the bare address has a resource of its own.
    if (const std::string_view bare = withoutFragment(url); bare.size() < url.size()) {
        resources.try_emplace(std::string(bare), resource);
    }
}

template <class Predicate>
std::optional<ArchiveIndex::Node> ArchiveIndex::take(Node parent, Predicate matches) {
    for (const Node child : nodes_[parent].children) {
        if (nodes_[child].taken || !matches(nodes_[child])) continue;
        nodes_[child].taken = true;
        return child;
    }
    return std::nullopt;
}

std::optional<ArchiveIndex::Node> ArchiveIndex::takeFrame(Node parent, const std::string& name,
                                                          const std::string& url) {
    if (!name.empty()) {
        if (const auto found = take(parent, [&](const Entry& e) { return e.frameName == name; }))
            return found;
    }
    const std::string address = normalizedURL(url);
    if (const auto found = take(parent, [&](const Entry& e) { return sameAddress(e.url, address); }))
        return found;
    // What carries a name of another frame, or stands for a blank one, is not this frame's.
    return take(parent, [&](const Entry& e) {
        return !isBlank(e.url) && (e.frameName.empty() || isGeneratedName(e.frameName));
    });
}

std::optional<ArchiveIndex::Node> ArchiveIndex::takeBlankFrame(Node parent, const std::string& name) {
    if (!name.empty()) {
        if (const auto found =
                take(parent, [&](const Entry& e) { return isBlank(e.url) && e.frameName == name; })) {
            return found;
        }
    }
    return take(parent, [](const Entry& e) {
        return isBlank(e.url) && (e.frameName.empty() || isGeneratedName(e.frameName));
    });
}

bool ArchiveIndex::hasFramesLeft(Node parent) const {
    const auto& children = nodes_[parent].children;
    return std::any_of(children.begin(), children.end(), [this](Node child) { return !nodes_[child].taken; });
}

WebResource ArchiveIndex::find(Node node, const std::string& url) const {
    for (std::optional<Node> at = node; at; at = nodes_[*at].parent) {
        const auto found = nodes_[*at].resources.find(url);
        if (found != nodes_[*at].resources.end()) return found->second;
    }
    const auto found = all_.find(url);
    return found == all_.end() ? WebResource() : found->second;
}

WebResource ArchiveIndex::resource(Node node, const std::string& url) const {
    const std::string whole = normalizedURL(url);
    const std::string bare(withoutFragment(whole));
    for (const std::string& candidate :
         {whole, bare, withOtherHTTPScheme(whole), withOtherHTTPScheme(bare)}) {
        if (candidate.empty()) continue;
        if (const WebResource found = find(node, candidate)) return found;
    }
    return {};
}

} // namespace qrv::engine
