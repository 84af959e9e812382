#include "Source/Tools/webarchive/CatCommand.h"

#include "Platform/Foundation/ASCII.h"
#include "Source/Tools/Common/Failure.h"
#include "Source/Tools/webarchive/Reading/ArchiveFile.h"
#include "Source/Tools/webarchive/Reading/ResourceList.h"

#include <algorithm>
#include <charconv>
#include <iostream>

namespace qrv::webarchive {

namespace {

struct Options {
    std::string archive;
    std::optional<std::string> resource;
    std::optional<std::string> frame;
};

/// The number that a text of nothing but digits is.
std::optional<std::size_t> indexIn(const std::string& text) {
    std::size_t index = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, index);
    return stop == end && error == std::errc() ? std::optional(index) : std::nullopt;
}

/// Of an address the form that archives have when they have been read.
std::string normalForm(const std::string& address) {
    return NSURL::URLWithString(NSString::fromUTF8(address)).absoluteString().utf8();
}

/// The indexes of the resources that are asked for.
std::vector<std::size_t> matches(const ResourceList& list, const Options& options) {
    const auto index = options.resource ? indexIn(*options.resource) : std::nullopt;
    const std::string address = options.resource ? normalForm(*options.resource) : std::string();
    std::vector<std::size_t> found;
    for (std::size_t i = 0; i < list.resources.size(); ++i) {
        const ListedResource& candidate = list.resources[i];
        if (options.frame && list.frames[candidate.frame].path != *options.frame) continue;
        if (index               ? i == *index
            : !options.resource ? candidate.isMain && (options.frame || i == 0)
                                : !address.empty() && candidate.address() == address)
            found.push_back(i);
    }
    return found;
}

std::string ambiguous(const std::vector<std::size_t>& found) {
    constexpr std::size_t mostNamed = 10;
    std::string text =
        "there are " + std::to_string(found.size()) + " resources with this address; choose by index:";
    for (std::size_t i = 0; i < std::min(found.size(), mostNamed); ++i)
        text += " " + std::to_string(found[i]);
    return found.size() > mostNamed ? text + " ..." : text;
}

int cat(const Options& options) {
    const ResourceList list(readArchive(options.archive));
    const std::vector<std::size_t> found = matches(list, options);
    if (found.empty()) throw Failure("there is no such resource; \"webarchive list\" shows what there is");
    if (found.size() > 1) throw Failure(ambiguous(found));
    const NSData data = list.resources[found.front()].resource.data();
    std::cout << data.bytes();
    requireWhole(data);
    return success;
}

} // namespace

void addCatCommand(CommandLine& commands) {
    const auto options = std::make_shared<Options>();
    auto command = commands.add("cat", "Writes the bytes of a resource", [=] { return cat(*options); });
    command.positional(options->archive, "ARCHIVE", "The web archive");
    command.positional(options->resource, "RESOURCE",
                       "Address or index of the resource, as list shows them; otherwise the main resource");
    command.option(options->frame, "--frame", "Looks only in this frame, \"2.1\" as list shows it");
}

} // namespace qrv::webarchive
