#include "Platform/Foundation/KeyedArchiveKeys.h"
#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/NSKeyedArchiveUID.h"
#include "Platform/Foundation/NSKeyedArchiver.h"
#include "Platform/Foundation/NSNull.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSPropertyListSerialization.h"
#include "Platform/Foundation/NSURL.h"

#include <algorithm>

namespace qrv {

namespace {

/// Thrown for a malformed archive; never leaves this file.
struct BadArchive {};

void require(bool condition) {
    if (!condition) throw BadArchive();
}

/// Returns `x` as a T; anything else is malformed.
template <class T>
T expect(const id& x) {
    T typed = as<T>(x);
    require(static_cast<bool>(typed));
    return typed;
}

class Unarchiver {
public:
    Unarchiver(const NSDictionary& archive, std::size_t length) : budget_(length) {
        require(part(archive, keyed::archiver) == NSString(keyed::archiverName));
        require(part(archive, keyed::version) == NSNumber::numberWithInteger(keyed::versionNumber));
        objects_ = expect<NSArray>(part(archive, keyed::objects));
        top_ = expect<NSDictionary>(part(archive, keyed::top));
        slots_.resize(objects_.count());
    }

    id root() { return resolve(part(top_, keyed::root), 0).object; }

private:
    struct Slot {
        enum State { untouched, inProgress, done };

        id object;
        int height = 0; // of the containers nested in it, itself included
        State state = untouched;
    };

    static id part(const NSDictionary& form, const char16_t* key) { return form.objectForKey(NSString(key)); }

    /// Returns the object that a reference denotes; nil for reference 0.
    const Slot& resolve(const id& reference, int depth) {
        const unsigned long long place = expect<NSKeyedArchiveUID>(reference).value();
        require(place < slots_.size() && depth <= maximumPropertyListDepth + 1);
        Slot& slot = slots_[place];
        require(slot.state != Slot::inProgress); // an object that contains itself
        if (slot.state == Slot::untouched && place != 0) {
            slot.state = Slot::inProgress;
            slot.object = decode(slot, objects_.objectAtIndex(place), depth);
        }
        slot.state = Slot::done;
        return slot;
    }

    /// Decodes a part of the object in `owner`; it must not be nil.
    id decodePart(Slot& owner, const id& reference, int depth) {
        const Slot& slot = resolve(reference, depth + 1);
        require(!slot.object.isNil());
        owner.height = std::max(owner.height, slot.height + 1);
        require(owner.height <= maximumPropertyListDepth);
        return slot.object;
    }

    id decode(Slot& slot, const id& form, int depth) {
        const auto parts = as<NSDictionary>(form);
        if (!parts) {
            require(form.isKindOfClass(NSString::classInfo()) || form.isKindOfClass(NSNumber::classInfo()) ||
                    form.isKindOfClass(NSData::classInfo()));
            return form;
        }
        for (const id& name : classNames(parts)) {
            if (id object = decodeClass(slot, as<NSString>(name), parts, depth)) return object;
        }
        throw BadArchive();
    }

    /// The names of the class and its superclasses, nearest first.
    NSArray classNames(const NSDictionary& parts) const {
        const unsigned long long place =
            expect<NSKeyedArchiveUID>(part(parts, keyed::classReference)).value();
        require(place < objects_.count());
        auto names =
            expect<NSArray>(part(expect<NSDictionary>(objects_.objectAtIndex(place)), keyed::classNames));
        // Many objects share one list, so a long one would be searched again and again.
        constexpr std::size_t mostNames = 16;
        require(names.count() <= mostNames);
        return names;
    }

    /// nil if the class is unknown here; a superclass may be known.
    id decodeClass(Slot& slot, const NSString& name, const NSDictionary& parts, int depth) {
        const auto is = [&](const char16_t* known) { return name.isEqualToString(known); };
        if (is(u"NSNull")) return NSNull::null();
        if (is(u"NSString")) return expect<NSString>(part(parts, keyed::string));
        if (is(u"NSData")) return expect<NSData>(part(parts, keyed::data));
        if (is(u"NSDate")) {
            return NSDate::dateWithTimeIntervalSinceReferenceDate(
                expect<NSNumber>(part(parts, keyed::time)).doubleValue());
        }
        if (is(u"NSURL")) return decodeURL(parts, depth);
        if (is(u"NSArray")) return NSArray(decodeParts(slot, part(parts, keyed::elements), depth));
        if (is(u"NSDictionary")) return decodeDictionary(slot, parts, depth);
        if (is(u"NSError")) return decodeError(slot, parts, depth);
        return {};
    }

    id decodeURL(const NSDictionary& parts, int depth) {
        // Only absolute URLs are written here; relative ones are not understood.
        require(expect<NSKeyedArchiveUID>(part(parts, keyed::base)).value() == 0);
        return expect<NSURL>(
            NSURL::URLWithString(expect<NSString>(resolve(part(parts, keyed::relative), depth + 1).object)));
    }

    std::vector<id> decodeParts(Slot& slot, const id& list, int depth) {
        const auto references = expect<NSArray>(list);
        // Many objects may share one list; a well-formed archive has no more parts than bytes.
        require(references.count() <= budget_);
        budget_ -= references.count();
        slot.height = 1;
        std::vector<id> parts;
        parts.reserve(references.count());
        for (const id& reference : references) parts.push_back(decodePart(slot, reference, depth));
        return parts;
    }

    id decodeDictionary(Slot& slot, const NSDictionary& parts, int depth) {
        const std::vector<id> keys = decodeParts(slot, part(parts, keyed::elementKeys), depth);
        const std::vector<id> values = decodeParts(slot, part(parts, keyed::elements), depth);
        require(keys.size() == values.size());
        NSMutableDictionary dictionary;
        for (std::size_t i = 0; i < keys.size(); ++i) {
            // Keys of other kinds would be compared part by part, and shared parts again and again.
            require(!keys[i].isKindOfClass(NSArray::classInfo()) &&
                    !keys[i].isKindOfClass(NSDictionary::classInfo()) &&
                    !keys[i].isKindOfClass(NSError::classInfo()));
            dictionary.setObject_forKey(values[i], keys[i]);
        }
        return std::move(dictionary).copy();
    }

    id decodeError(Slot& slot, const NSDictionary& parts, int depth) {
        const auto domain = expect<NSString>(decodePart(slot, part(parts, keyed::errorDomain), depth));
        const auto code = expect<NSNumber>(part(parts, keyed::errorCode));
        // Other writers omit an empty user-info.
        const id reference = part(parts, keyed::errorUserInfo);
        const bool isAbsent = !reference || expect<NSKeyedArchiveUID>(reference).value() == 0;
        const NSDictionary userInfo =
            isAbsent ? NSDictionary::dictionary() : expect<NSDictionary>(decodePart(slot, reference, depth));
        return NSError::errorWithDomain_code_userInfo(domain, code.integerValue(), userInfo);
    }

    std::size_t budget_; // parts that may still be decoded
    NSArray objects_;
    NSDictionary top_;
    std::vector<Slot> slots_;
};

} // namespace

id NSKeyedUnarchiver::unarchiveObjectWithData(const NSData& data) {
    try {
        const auto archive = expect<NSDictionary>(NSPropertyListSerialization::propertyListWithData(data));
        return Unarchiver(archive, data.length()).root();
    } catch (const BadArchive&) {
        return {};
    }
}

} // namespace qrv
