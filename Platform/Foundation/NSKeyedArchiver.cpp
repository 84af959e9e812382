#include "Platform/Foundation/NSKeyedArchiver.h"

#include "Platform/Foundation/KeyedArchiveKeys.h"
#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/NSKeyedArchiveUID.h"
#include "Platform/Foundation/NSNull.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSPropertyListSerialization.h"
#include "Platform/Foundation/NSURL.h"

#include <unordered_map>

namespace qrv {

namespace {

using Reference = NSKeyedArchiveUID;

void set(NSMutableDictionary& dictionary, const char16_t* key, const id& value) {
    dictionary.setObject_forKey(value, NSString(key));
}

class Archiver {
public:
    /// nil if an object cannot be archived.
    NSDictionary archive(const id& root) {
        objects_.push_back(NSString(keyed::null));
        const Reference reference = refer(root, 0);
        if (!reference) return {};
        NSMutableDictionary archive;
        set(archive, keyed::version, NSNumber::numberWithInteger(keyed::versionNumber));
        set(archive, keyed::archiver, NSString(keyed::archiverName));
        set(archive, keyed::top, NSDictionary{{NSString(keyed::root), reference}});
        set(archive, keyed::objects, NSArray(std::move(objects_)));
        return std::move(archive).copy();
    }

private:
    /// Returns the index of an object in the list, to which it is added unless it is there.
    Reference refer(const id& object, int depth) {
        if (object.isNil()) return {};
        const void* identity = object.shared().get();
        if (const auto known = places_.find(identity); known != places_.end()) return known->second;
        // The object's index comes before those of its parts.
        const std::size_t place = objects_.size();
        objects_.emplace_back();
        const id form = formOf(object, depth);
        if (!form) return {};
        objects_[place] = form;
        return places_[identity] = Reference::uidWithValue(place);
    }

    /// Returns the form in which the list holds an object, or nil.
    id formOf(const id& object, int depth) {
        if (isPlain(object)) return object;
        NSMutableDictionary form;
        const ClassInfo* archivedClass = describe(object, form, depth);
        if (!archivedClass) return {};
        set(form, keyed::classReference, referToClass(*archivedClass));
        return std::move(form).copy();
    }

    static bool isPlain(const id& object) {
        return object.isKindOfClass(NSString::classInfo()) || object.isKindOfClass(NSNumber::classInfo()) ||
               object.isKindOfClass(NSData::classInfo());
    }

    /// Fills in the parts of an object and returns the class that they describe; null if there is none.
    const ClassInfo* describe(const id& object, NSMutableDictionary& form, int depth) {
        if (object.isKindOfClass(NSNull::classInfo())) return &NSNull::classInfo();
        if (const auto date = as<NSDate>(object)) {
            set(form, keyed::time, NSNumber::numberWithDouble(date.timeIntervalSinceReferenceDate()));
            return &NSDate::classInfo();
        }
        if (const auto url = as<NSURL>(object)) {
            set(form, keyed::base, Reference::uidWithValue(0));
            return referPart(form, keyed::relative, url.absoluteString(), depth) ? &NSURL::classInfo()
                                                                                 : nullptr;
        }
        if (const auto array = as<NSArray>(object)) {
            return referParts(form, keyed::elements, array.elements(), depth) ? &NSArray::classInfo()
                                                                              : nullptr;
        }
        if (const auto dictionary = as<NSDictionary>(object))
            return describeDictionary(dictionary, form, depth);
        if (const auto error = as<NSError>(object)) return describeError(error, form, depth);
        return nullptr;
    }

    const ClassInfo* describeDictionary(const NSDictionary& dictionary, NSMutableDictionary& form,
                                        int depth) {
        std::vector<id> values;
        values.reserve(dictionary.count());
        for (const auto& entry : dictionary) values.push_back(entry.second);
        const bool isWhole = referParts(form, keyed::elementKeys, dictionary.allKeys().elements(), depth) &&
                             referParts(form, keyed::elements, values, depth);
        return isWhole ? &NSDictionary::classInfo() : nullptr;
    }

    const ClassInfo* describeError(const NSError& error, NSMutableDictionary& form, int depth) {
        set(form, keyed::errorCode, NSNumber::numberWithInteger(error.code()));
        const bool isWhole = depth < maximumPropertyListDepth &&
                             referPart(form, keyed::errorDomain, error.domain(), depth) &&
                             referPart(form, keyed::errorUserInfo, error.userInfo(), depth);
        return isWhole ? &NSError::classInfo() : nullptr;
    }

    bool referPart(NSMutableDictionary& form, const char16_t* key, const id& part, int depth) {
        const Reference reference = refer(part, depth + 1);
        if (reference) set(form, key, reference);
        return static_cast<bool>(reference);
    }

    bool referParts(NSMutableDictionary& form, const char16_t* key, const std::vector<id>& parts, int depth) {
        if (depth >= maximumPropertyListDepth) return false;
        std::vector<id> references;
        references.reserve(parts.size());
        for (const id& part : parts) {
            const Reference reference = refer(part, depth + 1);
            if (!reference) return false;
            references.push_back(reference);
        }
        set(form, key, NSArray(std::move(references)));
        return true;
    }

    Reference referToClass(const ClassInfo& info) {
        if (const auto known = places_.find(&info); known != places_.end()) return known->second;
        std::vector<id> names;
        for (const ClassInfo* c = &info; c; c = c->superclass) {
            names.push_back(NSString::stringWithUTF8String(c->name));
        }
        const id name = names.front();
        objects_.push_back(NSDictionary{{NSString(keyed::className), name},
                                        {NSString(keyed::classNames), NSArray(std::move(names))}});
        return places_[&info] = Reference::uidWithValue(objects_.size() - 1);
    }

    std::vector<id> objects_;
    std::unordered_map<const void*, Reference> places_; // of objects and classes, by address
};

} // namespace

NSData NSKeyedArchiver::archivedDataWithRootObject(const id& root) {
    const NSDictionary archive = Archiver().archive(root);
    if (!archive) return {};
    return NSPropertyListSerialization::dataFromPropertyList_format_errorDescription(
        archive, NSPropertyListBinaryFormat_v1_0, nullptr);
}

} // namespace qrv
