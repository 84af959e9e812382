#include "Platform/WebArchive/WebArchive.h"

#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSPropertyListSerialization.h"

#include <algorithm>
#include <optional>
#include <typeinfo>
#include <unordered_map>

namespace qrv {

namespace {

const ClassInfo archiveClassInfo{"WebArchive", &Object::classInfo};

/// A property list may share objects, so that a small file expands into an enormous archive. These limits,
/// each for the whole archive, are far above what pages contain.
constexpr int maximumDepth = 64;
constexpr std::size_t maximumFrames = 10'000;
constexpr std::size_t maximumResources = 250'000;
constexpr std::size_t maximumText = std::size_t{16} << 20;

class ArchiveObject final : public Object {
public:
    ArchiveObject(WebResource main, NSArray resources, NSArray frames)
        : mainResource(std::move(main)), subresources(std::move(resources)),
          subframeArchives(std::move(frames)) {}

    const ClassInfo& objectClass() const override { return archiveClassInfo; }

    const WebResource mainResource;
    const NSArray subresources;
    const NSArray subframeArchives;
};

template <class T>
T value(const NSDictionary& dictionary, const char16_t* key) {
    return as<T>(dictionary.objectForKey(NSString(key)));
}

WebResource readResource(const NSDictionary& dictionary) {
    return WebResource::initWithData_URL_MIMEType_textEncodingName_frameName(
        value<NSData>(dictionary, u"WebResourceData"),
        NSURL::URLWithString(value<NSString>(dictionary, u"WebResourceURL")),
        value<NSString>(dictionary, u"WebResourceMIMEType"),
        value<NSString>(dictionary, u"WebResourceTextEncodingName"),
        value<NSString>(dictionary, u"WebResourceFrameName"));
}

bool isArrayOfDictionaries(const id& field) {
    const NSArray array = as<NSArray>(field);
    return array && std::all_of(array.begin(), array.end(), [](const id& element) {
               return element.isKindOfClass(NSDictionary::classInfo());
           });
}

std::size_t textLength(const NSDictionary& resource) {
    std::size_t length = 0;
    for (const char16_t* key : {u"WebResourceURL", u"WebResourceMIMEType", u"WebResourceTextEncodingName",
                                u"WebResourceFrameName"}) {
        length += value<NSString>(resource, key).length();
    }
    return length;
}

class Reader {
public:
    WebArchive read(const NSDictionary& root, int depth) {
        const auto resources = dictionaries(root, u"WebSubresources");
        const auto frames = dictionaries(root, u"WebSubframeArchives");
        if (!resources || !frames) return {};
        const WebResource main = resource(value<NSDictionary>(root, u"WebMainResource"));
        if (main.isNil()) return {};

        std::vector<id> subresources;
        for (const id& element : *resources) {
            if (resources_ >= maximumResources) break;
            ++resources_;
            if (const WebResource stored = resource(as<NSDictionary>(element)); stored.URL()) {
                subresources.push_back(stored);
            }
        }
        std::vector<id> subframes;
        for (const id& element : *frames) {
            if (depth >= maximumDepth || frames_ >= maximumFrames) break;
            ++frames_;
            if (const WebArchive frame = read(as<NSDictionary>(element), depth + 1))
                subframes.push_back(frame);
        }
        return WebArchive(std::make_shared<ArchiveObject>(main, NSArray(std::move(subresources)),
                                                          NSArray(std::move(subframes))));
    }

private:
    /// Reads an optional array of dictionaries: nullopt if the field is anything else. A shared array is
    /// checked once.
    std::optional<NSArray> dictionaries(const NSDictionary& root, const char16_t* key) {
        const id field = root.objectForKey(NSString(key));
        if (field.isNil()) return NSArray::array();
        const auto [known, isNew] = valid_.try_emplace(field.shared().get(), false);
        if (isNew) known->second = isArrayOfDictionaries(field);
        return known->second ? std::optional(as<NSArray>(field)) : std::nullopt;
    }

    /// Reads a resource: nil if it is malformed or exceeds the total of text. A shared dictionary is read
    /// once.
    WebResource resource(const NSDictionary& dictionary) {
        if (dictionary.isNil()) return {};
        // A shared resource counts each time: whoever indexes resources by address copies the address.
        const std::size_t length = textLength(dictionary);
        if (length > maximumText - text_) return {};
        text_ += length;
        const auto [known, isNew] = known_.try_emplace(dictionary.shared().get());
        if (isNew) known->second = readResource(dictionary);
        return known->second;
    }

    /// The property list outlives the reading, so addresses identify its objects.
    std::unordered_map<const Object*, bool> valid_;
    std::unordered_map<const Object*, WebResource> known_;
    std::size_t frames_ = 0;
    std::size_t resources_ = 0;
    std::size_t text_ = 0;
};

const ArchiveObject* object(const WebArchive& archive) {
    return static_cast<const ArchiveObject*>(archive.shared().get());
}

} // namespace

const ClassInfo& WebArchive::classInfo() {
    return archiveClassInfo;
}

bool WebArchive::accepts(const Object& payload) {
    return typeid(payload) == typeid(ArchiveObject);
}

WebArchive WebArchive::initWithData(const NSData& data) {
    const auto root = as<NSDictionary>(NSPropertyListSerialization::propertyListWithData(data, nullptr));
    return root ? Reader().read(root, 0) : WebArchive();
}

WebResource WebArchive::mainResource() const {
    return isNil() ? WebResource() : object(*this)->mainResource;
}

NSArray WebArchive::subresources() const {
    return isNil() ? NSArray() : object(*this)->subresources;
}

NSArray WebArchive::subframeArchives() const {
    return isNil() ? NSArray() : object(*this)->subframeArchives;
}

} // namespace qrv
