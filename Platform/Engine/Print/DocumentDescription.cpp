#include "Platform/Engine/Print/DocumentDescription.h"

#include "Platform/Engine/DevTools/Json.h"

#include <string_view>

namespace qrv::engine {
namespace {

constexpr std::size_t longestTag = 64;

bool isLanguageTag(std::string_view text) {
    constexpr std::string_view allowed = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-";
    return text.size() <= longestTag && text.find_first_not_of(allowed) == std::string_view::npos;
}

} // namespace

DocumentDescription documentDescriptionFromJson(const Json& answer) {
    DocumentDescription description;
    if (std::string language = answer["language"].string(); isLanguageTag(language)) {
        description.language = std::move(language);
    }
    for (const Json& heading : answer["headings"].elements()) {
        if (heading.isString()) description.headings.push_back(heading.string());
    }
    for (const Json& target : answer["targetsInView"].elements()) {
        if (!target["name"].isString() || !target["top"].isNumber()) continue;
        description.targetsInView[target["name"].string()] = target["top"].number();
    }
    return description;
}

} // namespace qrv::engine
