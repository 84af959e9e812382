#include "Platform/Engine/Archive/ArchiveIndex.h"

#include "Platform/Engine/Address/MIMEType.h"
#include "Platform/Engine/Address/ResourceURL.h"
#include "Platform/Foundation/URLPieces.h"

#include <algorithm>
#include <set>

namespace qrv::engine {

namespace {

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
    entry.url = withoutFragment(normalizedURL(entry.mainResource.URL().absoluteString().utf8()));
    entry.frameName = entry.mainResource.frameName().utf8();
    entry.parent = parent;
    const auto storeBoth = [&](const WebResource& resource) {
        const std::string url = normalizedURL(resource.URL().absoluteString().utf8());
        store(entry.resources, url, resource);
        store(all_, url, resource);
    };
    for (const id& element : archive.subresources()) storeBoth(as<WebResource>(element));
    storeBoth(entry.mainResource);
    for (const id& element : archive.subframeArchives()) {
        entry.children.push_back(add(as<WebArchive>(element), node));
    }
    nodes_[node] = std::move(entry);
    return node;
}

void ArchiveIndex::store(Resources& resources, const std::string& url, const WebResource& resource) {
    if (url.empty()) return;
    resources.insert_or_assign(url, resource);
    // Also found without its fragment, unless that address has a resource of its own.
    if (const std::string_view bare = withoutFragment(url); bare.size() < url.size()) {
        resources.try_emplace(std::string(bare), resource);
    }
}

bool ArchiveIndex::isNameless(const Entry& entry) {
    return entry.frameName.empty() || entry.frameName.starts_with("<!--frame");
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
    const std::string address(withoutFragment(normalizedURL(url)));
    const std::string other = withOtherHTTPScheme(address);
    const auto hasAddress = [&](const Entry& e) {
        return !e.url.empty() && (e.url == address || e.url == other);
    };
    // An archive that carries another frame's name is better left to that frame; one of a blank frame does
    // not fit here.
    if (const auto found = take(parent, [&](const Entry& e) { return isNameless(e) && hasAddress(e); }))
        return found;
    if (const auto found = take(parent, hasAddress)) return found;
    return take(parent, [](const Entry& e) { return isNameless(e) && !isBlank(e.url); });
}

std::optional<ArchiveIndex::Node> ArchiveIndex::takeBlankFrame(Node parent, const std::string& name) {
    if (!name.empty()) {
        if (const auto found =
                take(parent, [&](const Entry& e) { return isBlank(e.url) && e.frameName == name; })) {
            return found;
        }
    }
    return take(parent, [](const Entry& e) { return isNameless(e) && isBlank(e.url); });
}

bool ArchiveIndex::hasFramesLeft(Node parent) const {
    const auto& children = nodes_[parent].children;
    return std::any_of(children.begin(), children.end(), [this](Node child) { return !nodes_[child].taken; });
}

bool ArchiveIndex::hasNamedFramesLeft(Node parent) const {
    const auto& children = nodes_[parent].children;
    return std::any_of(children.begin(), children.end(),
                       [this](Node child) { return !nodes_[child].taken && !isNameless(nodes_[child]); });
}

WebResource ArchiveIndex::find(Node node, const std::string& url) const {
    for (std::optional<Node> at = node; at; at = nodes_[*at].parent) {
        const auto found = nodes_[*at].resources.find(url);
        if (found != nodes_[*at].resources.end()) return found->second;
    }
    const auto found = all_.find(url);
    return found == all_.end() ? WebResource() : found->second;
}

WebResource ArchiveIndex::findReadable(const std::string& url) const {
    if (!readable_) {
        readable_.emplace();
        for (const auto& [stored, resource] : all_) {
            readable_->insert_or_assign(readableURL(stored), resource);
        }
    }
    const auto found = readable_->find(readableURL(url));
    return found == readable_->end() ? WebResource() : found->second;
}

WebResource ArchiveIndex::resource(Node node, const std::string& url) const {
    const std::string whole = normalizedURL(url);
    const std::string bare(withoutFragment(whole));
    for (const std::string& candidate :
         {whole, bare, withOtherHTTPScheme(whole), withOtherHTTPScheme(bare)}) {
        if (candidate.empty()) continue;
        if (WebResource found = find(node, candidate)) return found;
    }
    return whole.empty() ? WebResource() : findReadable(whole);
}

std::size_t ArchiveIndex::imageCount() const {
    std::set<std::string> addresses;
    for (const auto& [url, resource] : all_) {
        if (MIMEType(resource.MIMEType().utf8()).isImage())
            addresses.insert(resource.URL().absoluteString().utf8());
    }
    return addresses.size();
}

} // namespace qrv::engine
