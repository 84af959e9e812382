#include "Platform/MHTML/MHTMLReader.h"

#include "Platform/Confinement/ConfinedWork.h"
#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSPropertyListSerialization.h"
#include "Platform/Foundation/URLPieces.h"
#include "Platform/MHTML/FileAddresses.h"
#include "Platform/MHTML/MIMEMessage.h"

#include <algorithm>
#include <set>
#include <vector>

namespace qrv {

namespace {

/// A message is held a few times over while it is taken apart.
ConfinedLimits limitsForMessage(std::size_t length) {
    constexpr std::uint64_t mostMemory = 4ULL << 30;
    const std::chrono::seconds mebibytes(static_cast<long long>(length >> 20));
    ConfinedLimits limits;
    limits.memory = std::min(limits.memory + 10 * std::uint64_t{length}, mostMemory);
    limits.result += 2 * std::uint64_t{length};
    limits.processorTime += mebibytes;
    limits.time += 3 * mebibytes;
    return limits;
}

NSString text(const std::string& bytes) {
    return bytes.empty() ? NSString() : NSString::fromUTF8(bytes);
}

/// Where a part can be asked for, other than by its identifier.
bool isOwnAddress(const std::string& location) {
    const std::string_view scheme = splitURL(location).scheme;
    return !scheme.empty() && scheme != "about" && scheme != "cid" && scheme != "data";
}

WebResource resourceOf(MIMEPart& part, const std::string& address) {
    return WebResource::initWithData_URL_MIMEType_textEncodingName_frameName(
        NSData(std::move(part.bytes)), NSURL::URLWithString(text(address)), NSString::fromUTF8(part.type),
        text(part.charset), {});
}

/// A property list of the archive's bytes and the addresses.
NSData listOf(MIMEMessage message) {
    std::set<std::string> taken;
    NSMutableDictionary addresses;
    std::vector<id> resources;
    WebResource root;
    for (std::size_t i = 0; i < message.parts.size(); ++i) {
        MIMEPart& part = message.parts[i];
        // Some write the identifier of a part that has no location in its place.
        if (part.identifier.empty() && part.location.starts_with("cid:"))
            part.identifier = part.location.substr(4);
        std::string address;
        if (isOwnAddress(part.location) && taken.insert(part.location).second) {
            address = fileAddress(part.location);
        } else if (!part.identifier.empty()) {
            address = "cid:" + part.identifier;
        }
        if (!part.identifier.empty())
            addresses.setObject_forKey(NSString::fromUTF8(address), text(part.identifier));
        const WebResource resource = resourceOf(part, address);
        i == message.root ? void(root = resource) : resources.push_back(resource);
    }
    const WebArchive archive = WebArchive::initWithMainResource_subresources_subframeArchives(
        root, NSArray(std::move(resources)), {});
    NSMutableDictionary list;
    list.setObject_forKey(archive.data(), NSString(u"archive"));
    list.setObject_forKey(addresses.copy(), NSString(u"addresses"));
    return NSPropertyListSerialization::dataFromPropertyList_format_errorDescription(
        list.copy(), NSPropertyListBinaryFormat_v1_0, nullptr);
}

} // namespace

NSData listFromMHTML(const NSData& data) {
    const auto message = readMIMEMessage(data.bytes());
    return message ? listOf(*message) : NSData();
}

MHTMLPage pageFromList(const NSData& data) {
    const auto list = as<NSDictionary>(NSPropertyListSerialization::propertyListWithData(data, nullptr));
    MHTMLPage page;
    page.archive = WebArchive::initWithData(as<NSData>(list.objectForKey(NSString(u"archive"))));
    for (const auto& [identifier, address] : as<NSDictionary>(list.objectForKey(NSString(u"addresses"))))
        page.addresses[as<NSString>(identifier).utf8()] = as<NSString>(address).utf8();
    return page;
}

MHTMLPage pageFromMHTML(const NSData& data, std::string* reason) {
    prepareForMIMEMessages();
    const ConfinedResult result =
        runConfined([&](std::string&) { return listFromMHTML(data); }, limitsForMessage(data.length()));
    MHTMLPage page = pageFromList(result.data);
    if (!page.archive && reason) *reason = result.failure.empty() ? "has no page in it" : result.failure;
    return page;
}

} // namespace qrv
