#include "Platform/WebKit/Engine/DocumentDescription.h"

#include "Platform/WebKit/Engine/Json.h"

#include <string_view>

namespace qrv::engine {
namespace {

constexpr std::string_view describing = R"js((() => {
    const root = Object.getOwnPropertyDescriptor(Document.prototype, 'documentElement').get.call(document);
    const attribute = (space, name) => root && Element.prototype.getAttributeNS.call(root, space, name);
    const headings = Document.prototype.querySelectorAll.call(document, 'h1,h2,h3,h4,h5,h6,[role="heading"]');
    return {
        language: attribute(null, 'lang') ?? attribute('http://www.w3.org/XML/1998/namespace', 'lang'),
        headings: Array.from(headings, (heading) => heading.innerText).filter(Boolean),
    };
})())js";

constexpr std::size_t longestTag = 64;

bool isLanguageTag(std::string_view text) {
    constexpr std::string_view allowed = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-";
    return text.size() <= longestTag && text.find_first_not_of(allowed) == std::string_view::npos;
}

} // namespace

std::string describingScript() {
    return std::string(describing);
}

DocumentDescription documentDescriptionFromJson(const Json& answer) {
    DocumentDescription description;
    if (std::string language = answer["language"].string(); isLanguageTag(language)) {
        description.language = std::move(language);
    }
    for (const Json& heading : answer["headings"].elements()) {
        if (heading.isString()) description.headings.push_back(heading.string());
    }
    return description;
}

} // namespace qrv::engine
