#include "Platform/Foundation/PropertyList/BinaryWriter.h"

#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSKeyedArchiveUID.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSPropertyListSerialization.h"
#include "Platform/Foundation/PropertyList/PropertyListFailure.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace qrv::plist {

namespace {

/// The smallest of 1, 2, 4 and 8 bytes that holds a value.
std::size_t widthOf(std::uint64_t value) {
    return value <= 0xFF ? 1 : value <= 0xFFFF ? 2 : value <= 0xFFFFFFFF ? 4 : 8;
}

class Writer {
public:
    NSData write(const id& root) {
        collect(root, 0);
        referenceWidth_ = widthOf(objects_.size() - 1);
        out_ = "bplist00";
        std::vector<std::size_t> offsets;
        offsets.reserve(objects_.size());
        for (const id& object : objects_) {
            offsets.push_back(out_.size());
            writeObject(object);
        }
        const std::size_t table = out_.size();
        const std::size_t offsetWidth = widthOf(table);
        for (const std::size_t offset : offsets) appendInteger(offset, offsetWidth);
        out_.append(6, '\0');
        appendInteger(offsetWidth, 1);
        appendInteger(referenceWidth_, 1);
        appendInteger(objects_.size(), 8);
        appendInteger(0, 8); // the root was collected first
        appendInteger(table, 8);
        return NSData(std::move(out_));
    }

private:
    struct Place {
        std::size_t index;
        int height; // of the containers nested in it, itself included
    };

    static const void* identity(const id& object) { return object.shared().get(); }

    /// Lists an object and all its parts once each; equal strings count as one. Returns the height.
    int collect(const id& object, int depth) {
        if (const auto known = places_.find(identity(object)); known != places_.end()) {
            return known->second.height;
        }
        if (const auto string = as<NSString>(object)) {
            const auto [entry, isNew] = strings_.try_emplace(string.view(), objects_.size());
            if (isNew) objects_.push_back(object);
            places_[identity(object)] = {entry->second, 0};
            return 0;
        }
        places_[identity(object)] = {objects_.size(), 0};
        objects_.push_back(object);
        int height = 0;
        const auto collectElement = [&](const id& element) {
            if (depth >= maximumPropertyListDepth) throw PropertyListFailure("containers nested too deep");
            height = std::max(height, collect(element, depth + 1));
        };
        const bool isContainer =
            object.isKindOfClass(NSArray::classInfo()) || object.isKindOfClass(NSDictionary::classInfo());
        if (!isContainer) return 0;
        for (const id& element : as<NSArray>(object)) collectElement(element);
        for (const auto& [key, value] : as<NSDictionary>(object)) {
            if (!key.isKindOfClass(NSString::classInfo())) throw PropertyListFailure("key that is no string");
            collectElement(key);
            collectElement(value);
        }
        if (++height > maximumPropertyListDepth) throw PropertyListFailure("containers nested too deep");
        places_[identity(object)].height = height;
        return height;
    }

    void appendInteger(std::uint64_t value, std::size_t width) {
        for (std::size_t i = width; i > 0; --i) out_.push_back(static_cast<char>(value >> (8 * (i - 1))));
    }

    void appendMarker(unsigned kind, unsigned low) { appendInteger(kind << 4 | low, 1); }

    void appendSizedInteger(std::uint64_t value) {
        const std::size_t width = widthOf(value);
        appendMarker(0x1, static_cast<unsigned>(std::countr_zero(width)));
        appendInteger(value, width);
    }

    void appendMarkerAndCount(unsigned kind, std::size_t count) {
        appendMarker(kind, static_cast<unsigned>(std::min<std::size_t>(count, 0xF)));
        if (count >= 0xF) appendSizedInteger(count);
    }

    void appendReference(const id& object) {
        appendInteger(places_.at(identity(object)).index, referenceWidth_);
    }

    void writeObject(const id& object) {
        if (const auto string = as<NSString>(object)) {
            writeString(string.view());
        } else if (const auto number = as<NSNumber>(object)) {
            writeNumber(number);
        } else if (const auto data = as<NSData>(object)) {
            appendMarkerAndCount(0x4, data.length());
            out_.append(data.bytes());
        } else if (const auto date = as<NSDate>(object)) {
            appendMarker(0x3, 3);
            appendInteger(std::bit_cast<std::uint64_t>(date.timeIntervalSinceReferenceDate()), 8);
        } else if (const auto array = as<NSArray>(object)) {
            appendMarkerAndCount(0xA, array.count());
            for (const id& element : array) appendReference(element);
        } else if (const auto dictionary = as<NSDictionary>(object)) {
            appendMarkerAndCount(0xD, dictionary.count());
            for (const auto& entry : dictionary) appendReference(entry.first);
            for (const auto& entry : dictionary) appendReference(entry.second);
        } else if (const auto uid = as<NSKeyedArchiveUID>(object)) {
            const std::size_t width = widthOf(uid.value());
            appendMarker(0x8, static_cast<unsigned>(width - 1));
            appendInteger(uid.value(), width);
        } else {
            throw PropertyListFailure("an object that no property list can hold");
        }
    }

    void writeString(std::u16string_view text) {
        const bool isASCII = std::all_of(text.begin(), text.end(), [](char16_t c) { return c < 0x80; });
        appendMarkerAndCount(isASCII ? 0x5 : 0x6, text.size());
        if (isASCII) {
            out_.append(text.begin(), text.end());
        } else {
            for (const char16_t unit : text) appendInteger(unit, 2);
        }
    }

    void writeNumber(const NSNumber& number) {
        if (number.isBoolean()) {
            appendMarker(0x0, number.boolValue() ? 0x9 : 0x8);
        } else if (number.isFloatingPoint()) {
            appendMarker(0x2, 3);
            appendInteger(std::bit_cast<std::uint64_t>(number.doubleValue()), 8);
        } else if (number.isBeyondSigned()) {
            appendMarker(0x1, 4);
            appendInteger(0, 8);
            appendInteger(number.unsignedIntegerValue(), 8);
        } else {
            appendSizedInteger(static_cast<std::uint64_t>(number.integerValue())); // negative ones take 8
        }
    }

    std::vector<id> objects_;
    std::unordered_map<const void*, Place> places_;
    std::unordered_map<std::u16string_view, std::size_t> strings_; // views into objects_
    std::size_t referenceWidth_ = 1;
    std::string out_;
};

} // namespace

NSData writeBinary(const id& root) {
    return Writer().write(root);
}

} // namespace qrv::plist
