#include "Source/Tools/batch/Conversion/ToolAnswer.h"

#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/NSKeyedArchiver.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSPropertyListSerialization.h"

#include <charconv>
#include <string_view>

namespace qrv::batch {

namespace {

// The line of the log: "... web2pdf[7612:7612] the archive does not hold 2 resources that the page asked for:
// image http://site.example/a.png, font http://site.example/b.woff2"
constexpr std::string_view before = "] the archive does not hold ";
constexpr std::string_view atLeast = "at least ";
constexpr std::string_view after = " that the page asked for: ";
constexpr std::string_view between = ", ";
constexpr std::string_view andMore = "and more";

ConversionError errorOf(const NSDictionary& result) {
    const auto text = as<NSString>(result.objectForKey(NSString(u"errorString")));
    const auto error = as<NSError>(
        NSKeyedUnarchiver::unarchiveObjectWithData(as<NSData>(result.objectForKey(NSString(u"errorData")))));
    return {error.isNil() ? "" : error.domain().utf8(), error.isNil() ? 0 : error.code(),
            text.isNil() ? "" : text.utf8()};
}

/// "image http://site.example/a.png": addresses have no spaces, kinds may.
MissingResource resourceOf(std::string_view text) {
    const std::size_t space = text.rfind(' ');
    if (space == std::string_view::npos) return {"", std::string(text)};
    return {std::string(text.substr(0, space)), std::string(text.substr(space + 1))};
}

std::vector<MissingResource> resourcesOf(std::string_view list) {
    std::vector<MissingResource> resources;
    for (;;) {
        const std::size_t end = list.find(between);
        const std::string_view entry = list.substr(0, end);
        if (entry != andMore) resources.push_back(resourceOf(entry));
        if (end == std::string_view::npos) return resources;
        list.remove_prefix(end + between.size());
    }
}

} // namespace

std::optional<ToolAnswer> answerOfTool(const std::string& output) {
    const auto result = as<NSDictionary>(NSPropertyListSerialization::propertyListWithData(NSData(output)));
    if (result.isNil()) return std::nullopt;
    const auto succeeded = as<NSNumber>(result.objectForKey(NSString(u"succeeded")));
    if (succeeded.isNil()) return std::nullopt;
    return succeeded.boolValue() ? ToolAnswer{} : ToolAnswer{errorOf(result)};
}

MissingResources missingInLog(const std::string& log) {
    const std::string_view text(log);
    const std::size_t start = text.rfind(before);
    if (start == std::string_view::npos) return {};
    std::string_view line = text.substr(start + before.size());
    line = line.substr(0, line.find('\n'));
    MissingResources missing;
    if (line.starts_with(atLeast)) line.remove_prefix(atLeast.size());
    std::from_chars(line.data(), line.data() + line.size(), missing.count);
    const std::size_t list = line.find(after);
    if (missing.count > 0 && list != std::string_view::npos)
        missing.named = resourcesOf(line.substr(list + after.size()));
    return missing;
}

} // namespace qrv::batch
