#include "Source/Tools/webarchive/Extract/PageText.h"

#include "Platform/Engine/Archive/MarkupReader.h"
#include "Platform/Foundation/ASCII.h"
#include "Source/Tools/webarchive/Extract/CharacterReferences.h"
#include "Source/Tools/webarchive/Extract/PictureChoice.h"

#include <algorithm>
#include <array>

namespace qrv::webarchive {

namespace {

using engine::MarkupAttribute;
using engine::MarkupReader;
using engine::MarkupTag;
using engine::TextRange;

/// Pages in attributes of frames may hold such frames themselves.
constexpr int deepestPage = 3;

bool isReference(const std::string& tag, const std::string& attribute) {
    constexpr std::array<std::string_view, 11> names{"href",     "src",        "xlink:href", "poster",
                                                     "action",   "formaction", "background", "cite",
                                                     "longdesc", "lowsrc",     "icon"};
    return std::find(names.begin(), names.end(), attribute) != names.end() ||
           (tag == "object" && attribute == "data");
}

bool isFrame(const MarkupTag& tag) {
    return tag.name == "iframe" || tag.name == "frame";
}

class Rewriter {
public:
    Rewriter(std::string_view text, const PageLinks& links, int depth)
        : text_(text), links_(links), depth_(depth) {}

    std::string run() {
        MarkupReader reader(text_);
        while (const auto tag = reader.next()) rewrite(*tag);
        copyUpTo(text_.size());
        return std::move(result_);
    }

private:
    struct Edit {
        TextRange range;
        std::string text;
    };

    void rewrite(const MarkupTag& tag) {
        edits_.clear();
        refersToFile_ = false;
        const bool isTakenFrame = isFrame(tag) && takeFrame(tag);
        for (const MarkupAttribute& attribute : tag.attributes) {
            const std::string name = lowered(attribute.name.in(text_));
            if ((isTakenFrame && (name == "src" || name == "srcdoc")) ||
                (name == "src" && isReplacedByChoice(tag))) {
                edits_.push_back({attribute.whole, ""});
            } else if (attribute.value) {
                rewriteValue(tag, name, attribute);
            }
        }
        if (refersToFile_) remove(tag, {"crossorigin", "integrity"});
        std::sort(edits_.begin(), edits_.end(),
                  [](const Edit& a, const Edit& b) { return a.range.start < b.range.start; });
        for (const auto& [range, text] : edits_) replace(range, text);
        if (tag.name == "style" && tag.text.start < tag.text.end)
            replace(tag.text, withStyleReferences(tag.text.in(text_), links_.reference));
    }

    bool takeFrame(const MarkupTag& tag) {
        const std::string reference = find(tag, "srcdoc") ? std::string() : valueOf(tag, "src");
        const auto file = links_.frame(valueOf(tag, "name"), reference);
        if (file) edits_.push_back({{tag.nameRange.end, tag.nameRange.end}, attributeText(" src", *file)});
        return file.has_value();
    }

    void rewriteValue(const MarkupTag& tag, const std::string& name, const MarkupAttribute& attribute) {
        const std::string value = withoutReferences(attribute.value->in(text_));
        std::optional<std::string> rewritten;
        if (tag.name == "base" && name == "href") {
            edits_.push_back({attribute.whole, ""});
        } else if (tag.name == "meta") {
            rewriteMeta(tag, name, attribute, value);
        } else if (name == "style") {
            rewritten = withStyleReferences(value, links_.reference);
        } else if (name == "srcset" || name == "imagesrcset") {
            rewriteChoice(tag, attribute, value);
        } else if (name == "srcdoc") {
            if (depth_ < deepestPage) rewritten = Rewriter(value, links_, depth_ + 1).run();
        } else if (isReference(tag.name, name)) {
            rewritten = links_.reference(value);
            refersToFile_ = refersToFile_ || (tag.name != "a" && links_.file(value));
        } else if (name.starts_with("data-")) {
            rewritten = links_.file(value);
        }
        if (rewritten && *rewritten != value) setValue(attribute, *rewritten);
    }

    void rewriteMeta(const MarkupTag& tag, const std::string& name, const MarkupAttribute& attribute,
                     const std::string& value) {
        const std::string kind = lowered(valueOf(tag, "http-equiv"));
        if (name == "http-equiv" && kind.starts_with("content-security-policy")) {
            edits_.push_back({attribute.whole, ""});
        } else if (name == "content" && kind == "refresh") {
            const std::size_t start = lowered(value).find("url=");
            if (start == value.npos) return;
            const auto link = links_.reference(value.substr(start + 4));
            if (link) setValue(attribute, value.substr(0, start + 4) + *link);
        }
    }

    void rewriteChoice(const MarkupTag& tag, const MarkupAttribute& attribute, const std::string& value) {
        const std::string files = withPictures(value, links_.file);
        const bool hasOther = tag.name == "source" || links_.file(valueOf(tag, "src"));
        if (!files.empty()) {
            setValue(attribute, files);
            refersToFile_ = true;
        } else if (hasOther) {
            edits_.push_back({attribute.whole, ""});
        } else {
            setValue(attribute, withPictures(value, [this](const std::string& reference) {
                         return std::optional(links_.reference(reference).value_or(reference));
                     }));
        }
    }

    /// Whether an image is among the files in other sizes only, while a browser may prefer this one.
    bool isReplacedByChoice(const MarkupTag& tag) const {
        const std::string source = valueOf(tag, "src");
        return tag.name == "img" && !source.starts_with("data:") && !links_.file(source) &&
               !withPictures(valueOf(tag, "srcset"), links_.file).empty();
    }

    const MarkupAttribute* find(const MarkupTag& tag, std::string_view name) const {
        const auto found =
            std::find_if(tag.attributes.begin(), tag.attributes.end(),
                         [&](const MarkupAttribute& a) { return lowered(a.name.in(text_)) == name; });
        return found == tag.attributes.end() ? nullptr : &*found;
    }

    std::string valueOf(const MarkupTag& tag, std::string_view name) const {
        const MarkupAttribute* const found = find(tag, name);
        return found && found->value ? withoutReferences(found->value->in(text_)) : std::string();
    }

    void setValue(const MarkupAttribute& attribute, const std::string& value) {
        edits_.push_back({attribute.whole, attributeText(std::string(attribute.name.in(text_)), value)});
    }

    static std::string attributeText(const std::string& name, const std::string& value) {
        return name + "=\"" + withReferences(value) + "\"";
    }

    /// Of attributes of the same name the first counts, and then would the next.
    void remove(const MarkupTag& tag, std::initializer_list<std::string_view> names) {
        for (const MarkupAttribute& attribute : tag.attributes) {
            const std::string name = lowered(attribute.name.in(text_));
            if (std::find(names.begin(), names.end(), name) != names.end())
                edits_.push_back({attribute.whole, ""});
        }
    }

    void replace(const TextRange& range, const std::string& text) {
        copyUpTo(range.start);
        result_ += text;
        at_ = range.end;
    }

    void copyUpTo(std::size_t end) {
        result_ += text_.substr(at_, end - at_);
        at_ = end;
    }

    std::string_view text_;
    const PageLinks& links_;
    int depth_;
    std::vector<Edit> edits_; // of a tag
    bool refersToFile_ = false;
    std::size_t at_ = 0;
    std::string result_;
};

} // namespace

std::optional<std::string> baseReference(std::string_view page) {
    MarkupReader reader(page);
    while (const auto tag = reader.next()) {
        if (tag->name != "base") continue;
        for (const auto& [name, value, whole] : tag->attributes) {
            if (value && lowered(name.in(page)) == "href") return withoutReferences(value->in(page));
        }
    }
    return std::nullopt;
}

std::string withPageReferences(std::string_view page, const PageLinks& links) {
    return Rewriter(page, links, 0).run();
}

} // namespace qrv::webarchive
