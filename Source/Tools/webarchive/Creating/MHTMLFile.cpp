#include "Source/Tools/webarchive/Creating/MHTMLFile.h"

#include "Platform/Engine/Address/MIMEType.h"
#include "Platform/Engine/Address/ResourceURL.h"
#include "Platform/Foundation/PercentEscapes.h"
#include "Platform/MHTML/MHTMLReader.h"
#include "Source/Tools/Common/Failure.h"
#include "Source/Tools/webarchive/Creating/FileTypes.h"
#include "Source/Tools/webarchive/Reading/ArchiveFile.h"

#include <algorithm>
#include <set>
#include <utility>
#include <vector>

namespace qrv::webarchive {

namespace {

constexpr std::string_view identifiers = "cid:";
// A host that is never there.
constexpr std::string_view standIn = "http://cid.invalid/";

std::string addressOf(const std::string& stored) {
    if (!stored.starts_with(identifiers)) return stored;
    return std::string(standIn) + percentEscaped(percentDecoded(stored.substr(identifiers.size())));
}

/// Whether a reference may begin behind this.
bool mayPrecede(std::string_view text) {
    return text.empty() || std::string_view("\"'(=, \t\r\n").find(text.back()) != std::string_view::npos;
}

/// Replaces references to these identifiers. Others stay, so that texts that only look like one do.
std::string withAddresses(std::string_view text, const std::map<std::string, std::string>& addresses) {
    std::string result;
    std::size_t copied = 0;
    for (std::size_t at = text.find(identifiers); at != std::string_view::npos;
         at = text.find(identifiers, at + 1)) {
        const std::size_t start = at + identifiers.size();
        const std::size_t end = std::min(text.find_first_of("\"'<>()#, \t\r\n", start), text.size());
        const auto known = addresses.find(percentDecoded(text.substr(start, end - start)));
        if (!mayPrecede(text.substr(0, at)) || known == addresses.end()) continue;
        result.append(text.substr(copied, at - copied)).append(addressOf(known->second));
        copied = end;
    }
    return result.append(text.substr(copied));
}

class Translator {
public:
    explicit Translator(const std::map<std::string, std::string>& addresses) : addresses_(addresses) {}

    WebResource translated(const WebResource& part, const NSURL& ownAddress) const {
        const std::string stored = part.URL().absoluteString().utf8();
        const bool hasNone = stored.empty() || (ownAddress && stored.starts_with(identifiers));
        const NSURL url = hasNone ? ownAddress : NSURL::URLWithString(NSString::fromUTF8(addressOf(stored)));
        return WebResource::initWithData_URL_MIMEType_textEncodingName_frameName(
            bytesOf(part), url, part.MIMEType(), part.textEncodingName(), {});
    }

private:
    NSData bytesOf(const WebResource& part) const {
        const engine::MIMEType type(part.MIMEType().utf8());
        if (!type.isMarkup() && !type.isStyleSheet()) return part.data();
        return NSData(withAddresses(part.data().bytes(), addresses_));
    }

    const std::map<std::string, std::string>& addresses_;
};

void collectAddresses(const WebArchive& archive, std::set<std::string>& addresses) {
    const auto add = [&](const WebResource& resource) {
        addresses.insert(engine::normalizedURL(resource.URL().absoluteString().utf8()));
    };
    add(archive.mainResource());
    for (const id& resource : archive.subresources()) add(as<WebResource>(resource));
    for (const id& frame : archive.subframeArchives()) collectAddresses(as<WebArchive>(frame), addresses);
}

} // namespace

bool isMHTMLFile(const std::string& path) {
    return typeOfFile(path) == "multipart/related";
}

WebArchive archiveOfMHTMLFile(const std::string& path, const NSURL& address) {
    std::string reason;
    const MHTMLPage page = pageFromMHTML(readFile(path), &reason);
    if (!page.archive) throw Failure(path + ": " + reason);
    const Translator translator(page.addresses);
    std::vector<id> parts;
    for (const id& part : page.archive.subresources())
        parts.push_back(translator.translated(as<WebResource>(part), {}));
    return WebArchive::initWithMainResource_subresources_subframeArchives(
        translator.translated(page.archive.mainResource(), address), NSArray(std::move(parts)), {});
}

WebArchive withUnusedParts(const WebArchive& archive, const WebArchive& file) {
    std::set<std::string> used;
    collectAddresses(archive, used);
    std::vector<id> resources = archive.subresources().elements();
    for (const id& part : file.subresources()) {
        const std::string address = as<WebResource>(part).URL().absoluteString().utf8();
        if (!used.contains(engine::normalizedURL(address))) resources.push_back(part);
    }
    return WebArchive::initWithMainResource_subresources_subframeArchives(
        archive.mainResource(), NSArray(std::move(resources)), archive.subframeArchives());
}

} // namespace qrv::webarchive
