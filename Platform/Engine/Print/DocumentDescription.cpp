#include "Platform/Engine/Print/DocumentDescription.h"

#include "Platform/Engine/DevTools/Json.h"

#include <algorithm>
#include <string_view>

namespace qrv::engine {
namespace {

constexpr std::size_t longestTag = 64;

bool isLanguageTag(std::string_view text) {
    constexpr std::string_view allowed = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-";
    return text.size() <= longestTag && text.find_first_not_of(allowed) == std::string_view::npos;
}

/// Nothing for what is not seen.
std::optional<PDFFrame::Place> placeFromJson(const Json& answer) {
    if (!answer["left"].isNumber() || !answer["top"].isNumber()) return std::nullopt;
    return PDFFrame::Place{answer["left"].number(), answer["top"].number()};
}

constexpr std::int64_t deepestLevel = 1000;

} // namespace

std::map<std::string, double> targetsFromJson(const Json& answer) {
    std::map<std::string, double> targets;
    for (const Json& target : answer.elements()) {
        if (target["name"].isString() && target["top"].isNumber())
            targets[target["name"].string()] = target["top"].number();
    }
    return targets;
}

DocumentDescription documentDescriptionFromJson(const Json& answer) {
    DocumentDescription description;
    if (std::string language = answer["language"].string(); isLanguageTag(language)) {
        description.language = std::move(language);
    }
    for (const Json& heading : answer["headings"].elements()) {
        if (heading.isString()) description.headings.push_back(heading.string());
    }
    description.targetsInView = targetsFromJson(answer["targetsInView"]);
    description.hasFrames = answer["hasFrames"].boolean();
    description.breaks = std::max(answer["breaks"].number(), 0.0);
    return description;
}

PDFFrame frameDescriptionFromJson(const Json& answer) {
    PDFFrame frame;
    frame.path = answer["path"].string();
    frame.width = answer["width"].number();
    for (const Json& content : answer["contents"].elements()) {
        if (content["frame"].isNumber()) {
            frame.contents.emplace_back(
                static_cast<std::size_t>(std::max<std::int64_t>(0, content["frame"].integer())));
        } else if (content["text"].isString()) {
            const auto level = std::clamp<std::int64_t>(content["level"].integer(), 1, deepestLevel);
            frame.contents.emplace_back(PDFFrame::Heading{{content["text"].string(), static_cast<int>(level)},
                                                          placeFromJson(content)});
        }
    }
    for (const Json& anchor : answer["anchors"].elements()) {
        if (anchor["name"].isString()) frame.anchors[anchor["name"].string()] = placeFromJson(anchor);
    }
    return frame;
}

} // namespace qrv::engine
