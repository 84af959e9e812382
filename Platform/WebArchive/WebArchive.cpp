#include "Platform/WebArchive/WebArchive.h"

#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSError.h"

#include <algorithm>
#include <iterator>
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

using Loss = WebArchiveProblem::Loss;

constexpr char16_t dataKey[] = u"WebResourceData";
constexpr char16_t addressKey[] = u"WebResourceURL";
constexpr char16_t typeKey[] = u"WebResourceMIMEType";
constexpr char16_t encodingKey[] = u"WebResourceTextEncodingName";
constexpr char16_t frameNameKey[] = u"WebResourceFrameName";

template <class T>
T value(const NSDictionary& dictionary, const char16_t* key) {
    return as<T>(dictionary.objectForKey(NSString(key)));
}

std::size_t textLength(const NSDictionary& resource) {
    std::size_t length = 0;
    for (const char16_t* key : {addressKey, typeKey, encodingKey, frameNameKey}) {
        length += value<NSString>(resource, key).length();
    }
    return length;
}

/// Where the reader is: the key in a dictionary, or the element of the array under that key.
struct Place {
    const Place* outer;
    const char16_t* key;
    std::optional<std::size_t> index;
};

std::string text(const Place& place) {
    std::string path = place.outer ? text(*place.outer) + "." : std::string();
    path += NSString(place.key).utf8();
    return place.index ? path + "[" + std::to_string(*place.index) + "]" : path;
}

std::string reasonForLacking(const id& found, const char* wanted) {
    return found ? std::string("is no ") + wanted : "is missing";
}

/// A field of a resource that cannot be used, and whether the resource can be used without.
struct UnusableField {
    const char16_t* key;
    std::string reason;
    bool isNeeded;
};

struct ReadResource {
    WebResource resource;
    std::vector<UnusableField> unusable;
};

/// A main resource needs no address.
ReadResource readResource(const NSDictionary& dictionary) {
    ReadResource result{WebResource::initWithData_URL_MIMEType_textEncodingName_frameName(
                            value<NSData>(dictionary, dataKey),
                            NSURL::URLWithString(value<NSString>(dictionary, addressKey)),
                            value<NSString>(dictionary, typeKey), value<NSString>(dictionary, encodingKey),
                            value<NSString>(dictionary, frameNameKey)),
                        {}};
    const auto check = [&](const char16_t* key, const char* wanted, bool isUsable, bool isNeeded) {
        const id found = dictionary.objectForKey(NSString(key));
        if (!isUsable && (isNeeded || found))
            result.unusable.push_back({key, reasonForLacking(found, wanted), isNeeded});
    };
    const WebResource& resource = result.resource;
    check(dataKey, "data", !value<NSData>(dictionary, dataKey).isNil(), true);
    check(typeKey, "text", !value<NSString>(dictionary, typeKey).isNil(), true);
    if (resource.isNil()) return result;
    check(addressKey, "address", !resource.URL().isNil(), false);
    check(encodingKey, "text", !resource.textEncodingName().isNil(), false);
    check(frameNameKey, "text", !resource.frameName().isNil(), false);
    return result;
}

class Reader {
public:
    explicit Reader(WebArchiveProblems* problems) : problems_(problems) {}

    /// The archive at a place: the file's own, for none.
    WebArchive read(const NSDictionary& root, int depth, const Place* place) {
        const Loss loss = place ? Loss::frame : Loss::archive;
        const auto resources = dictionaries(root, {place, u"WebSubresources", {}}, loss);
        const auto frames = dictionaries(root, {place, u"WebSubframeArchives", {}}, loss);
        if (!resources || !frames) return {};
        const Place mainPlace{place, u"WebMainResource", {}};
        const id field = root.objectForKey(NSString(mainPlace.key));
        const auto main = as<NSDictionary>(field);
        if (main.isNil()) report(mainPlace, reasonForLacking(field, "dictionary"), loss);
        const WebResource mainResource = main.isNil() ? WebResource() : resource(main, mainPlace, loss);
        if (mainResource.isNil()) return {};
        const NSArray subresources = readSubresources(*resources, place);
        return WebArchive(
            std::make_shared<ArchiveObject>(mainResource, subresources, readFrames(*frames, depth, place)));
    }

    void report(std::string reason, Loss loss) {
        if (problems_) problems_->add({{}, std::move(reason), loss});
    }

private:
    NSArray readSubresources(const NSArray& dictionaries, const Place* archive) {
        std::vector<id> subresources;
        Place place{archive, u"WebSubresources", 0};
        for (const id& element : dictionaries) {
            if (resources_ >= maximumResources) {
                report(place, "is beyond 250,000 resources", Loss::rest);
                break;
            }
            ++resources_;
            const WebResource stored = resource(as<NSDictionary>(element), place, Loss::resource);
            if (stored.URL()) subresources.push_back(stored);
            ++*place.index;
        }
        return NSArray(std::move(subresources));
    }

    NSArray readFrames(const NSArray& dictionaries, int depth, const Place* archive) {
        std::vector<id> subframes;
        Place place{archive, u"WebSubframeArchives", 0};
        for (const id& element : dictionaries) {
            if (depth >= maximumDepth || frames_ >= maximumFrames) {
                report(place,
                       depth >= maximumDepth ? "is nested more than 64 deep" : "is beyond 10,000 frames",
                       Loss::rest);
                break;
            }
            ++frames_;
            if (const WebArchive frame = read(as<NSDictionary>(element), depth + 1, &place))
                subframes.push_back(frame);
            ++*place.index;
        }
        return NSArray(std::move(subframes));
    }

    /// Reads an optional array of dictionaries: nullopt if the field is anything else. A shared array is
    /// checked once.
    std::optional<NSArray> dictionaries(const NSDictionary& root, Place place, Loss loss) {
        const id field = root.objectForKey(NSString(place.key));
        if (field.isNil()) return NSArray::array();
        auto array = as<NSArray>(field);
        if (array.isNil()) {
            report(place, "is no array", loss);
            return std::nullopt;
        }
        const auto [known, isNew] = valid_.try_emplace(field.shared().get(), 0);
        if (isNew) {
            const auto isDictionary = [](const id& x) { return x.isKindOfClass(NSDictionary::classInfo()); };
            known->second = static_cast<std::size_t>(
                std::find_if_not(array.begin(), array.end(), isDictionary) - array.begin());
        }
        if (known->second == array.count()) return array;
        place.index = known->second;
        report(place, "is no dictionary", loss);
        return std::nullopt;
    }

    /// Reads a resource: nil if it is malformed or exceeds the total of text. A shared dictionary is read
    /// once.
    WebResource resource(const NSDictionary& dictionary, const Place& place, Loss loss) {
        // A shared resource counts each time: whoever indexes resources by address copies the address.
        const std::size_t length = textLength(dictionary);
        if (length > maximumText - text_) {
            report(place, "is beyond a total of 16 Mi characters of addresses, types and names", loss);
            return {};
        }
        text_ += length;
        const auto [known, isNew] = known_.try_emplace(dictionary.shared().get());
        if (isNew) known->second = readResource(dictionary);
        const auto& [found, unusable] = known->second;
        const bool lacksAddress = loss == Loss::resource && !found.isNil() && !found.URL();
        if (lacksAddress) {
            const id address = dictionary.objectForKey(NSString(addressKey));
            report({&place, addressKey, {}}, reasonForLacking(address, "address"), loss);
            return {};
        }
        for (const auto& [key, reason, isNeeded] : unusable) {
            report({&place, key, {}}, reason, isNeeded ? loss : Loss::field);
        }
        return found;
    }

    void report(const Place& place, std::string reason, Loss loss) {
        if (problems_) problems_->add({text(place), std::move(reason), loss});
    }

    WebArchiveProblems* problems_;
    /// The property list outlives the reading, so addresses identify its objects. An array's first element
    /// that is no dictionary.
    std::unordered_map<const Object*, std::size_t> valid_;
    std::unordered_map<const Object*, ReadResource> known_;
    std::size_t frames_ = 0;
    std::size_t resources_ = 0;
    std::size_t text_ = 0;
};

const ArchiveObject* object(const WebArchive& archive) {
    return static_cast<const ArchiveObject*>(archive.shared().get());
}

void store(NSMutableDictionary& dictionary, const char16_t* key, const id& field) {
    if (field) dictionary.setObject_forKey(field, NSString(key));
}

id listOf(const WebResource& resource) {
    NSMutableDictionary list;
    store(list, u"WebResourceData", resource.data());
    store(list, u"WebResourceMIMEType", resource.MIMEType());
    store(list, u"WebResourceTextEncodingName", resource.textEncodingName());
    store(list, u"WebResourceURL", resource.URL().absoluteString());
    store(list, u"WebResourceFrameName", resource.frameName());
    return list.copy();
}

id listOf(const WebArchive& archive);

template <class T>
void storeAll(NSMutableDictionary& dictionary, const char16_t* key, const NSArray& values) {
    std::vector<id> lists;
    for (const id& element : values) lists.push_back(listOf(as<T>(element)));
    if (!lists.empty()) store(dictionary, key, NSArray(std::move(lists)));
}

id listOf(const WebArchive& archive) {
    NSMutableDictionary list;
    store(list, u"WebMainResource", listOf(archive.mainResource()));
    storeAll<WebResource>(list, u"WebSubresources", archive.subresources());
    storeAll<WebArchive>(list, u"WebSubframeArchives", archive.subframeArchives());
    return list.copy();
}

template <class T>
bool holdsOnly(const NSArray& values) {
    return std::all_of(values.begin(), values.end(),
                       [](const id& element) { return !as<T>(element).isNil(); });
}

} // namespace

const ClassInfo& WebArchive::classInfo() {
    return archiveClassInfo;
}

bool WebArchive::accepts(const Object& payload) {
    return typeid(payload) == typeid(ArchiveObject);
}

WebArchive WebArchive::initWithData(const NSData& data, WebArchiveProblems* problems) {
    NSError error;
    const id list = NSPropertyListSerialization::propertyListWithData(data, &error);
    const auto root = as<NSDictionary>(list);
    Reader reader(problems);
    if (root) return reader.read(root, 0, nullptr);
    const auto reason = as<NSString>(error.userInfo().objectForKey(NSString(u"NSDebugDescription")));
    reader.report(list ? "is a property list, but no dictionary" : reason.utf8(), Loss::archive);
    return {};
}

WebArchive WebArchive::initWithMainResource_subresources_subframeArchives(const WebResource& mainResource,
                                                                          const NSArray& subresources,
                                                                          const NSArray& subframeArchives) {
    if (!mainResource || !holdsOnly<WebResource>(subresources) || !holdsOnly<WebArchive>(subframeArchives))
        return {};
    std::vector<id> resources;
    std::copy_if(subresources.begin(), subresources.end(), std::back_inserter(resources),
                 [](const id& element) { return !as<WebResource>(element).URL().isNil(); });
    return WebArchive(std::make_shared<ArchiveObject>(
        mainResource, NSArray(std::move(resources)), subframeArchives ? subframeArchives : NSArray::array()));
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

NSData WebArchive::data() const {
    return dataInFormat(NSPropertyListBinaryFormat_v1_0);
}

NSData WebArchive::dataInFormat(NSPropertyListFormat format) const {
    if (isNil()) return {};
    return NSPropertyListSerialization::dataFromPropertyList_format_errorDescription(listOf(*this), format,
                                                                                     nullptr);
}

} // namespace qrv
