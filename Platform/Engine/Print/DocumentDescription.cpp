#include "Platform/Engine/Print/DocumentDescription.h"

#include "Platform/Engine/DevTools/Json.h"

#include <string_view>

namespace qrv::engine {
namespace {

constexpr std::string_view describing = R"js((() => {
    const property = (name) => Object.getOwnPropertyDescriptor(Document.prototype, name).get.call(document);
    const all = (selector) => Array.from(Document.prototype.querySelectorAll.call(document, selector));
    const root = property('documentElement');
    const attribute = (space, name) => root && Element.prototype.getAttributeNS.call(root, space, name);

    const withId = (id) => Document.prototype.getElementById.call(document, id) ||
        Document.prototype.getElementsByName.call(document, id)[0];
    const decoded = (fragment) => {
        try {
            return decodeURIComponent(fragment);
        } catch {
            return fragment;
        }
    };
    const topOf = (fragment) => {
        const target = withId(fragment) || withId(decoded(fragment));
        if (target) return Element.prototype.getClientRects.call(target)[0]?.top;
        return ['', 'top'].includes(fragment.toLowerCase()) ? 0 : undefined;
    };
    const [address] = property('URL').split('#');
    const targets = new Map();
    for (const {href} of all('a[href],area[href]')) {
        const hash = String(href).indexOf('#');
        if (hash < 0 || href.slice(0, hash) !== address || targets.has(href.slice(hash + 1))) continue;
        const top = topOf(href.slice(hash + 1));
        if (top < innerHeight) targets.set(href.slice(hash + 1), Math.max(0, top));
    }
    return {
        language: attribute(null, 'lang') ?? attribute('http://www.w3.org/XML/1998/namespace', 'lang'),
        headings: all('h1,h2,h3,h4,h5,h6,[role="heading"]').map((heading) => heading.innerText).filter(Boolean),
        targetsInView: Array.from(targets, ([name, top]) => ({name, top})),
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
    for (const Json& target : answer["targetsInView"].elements()) {
        if (!target["name"].isString() || !target["top"].isNumber()) continue;
        description.targetsInView[target["name"].string()] = target["top"].number();
    }
    return description;
}

} // namespace qrv::engine
