#include "Platform/Foundation/PropertyList/BinaryReader.h"

#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSKeyedArchiveUID.h"
#include "Platform/Foundation/NSNull.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSPropertyListSerialization.h"
#include "Platform/Foundation/PropertyList/PropertyListFailure.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <limits>
#include <vector>

namespace qrv::plist {

namespace {

constexpr std::string_view magic = "bplist0";
constexpr std::size_t headerLength = 8;
constexpr std::size_t trailerLength = 32;

/// A file consists of the header, the objects, a table with each object's offset, and the trailer, which
/// gives the number of objects and the table's position. Objects refer to each other by their index in the
/// table.
class Reader {
public:
    explicit Reader(const NSData& data) : data_(data), bytes_(data.span()) { readTrailer(); }

    id readRoot() { return read(root_, 0).object; }

private:
    struct Slot {
        enum State : std::uint8_t { untouched, inProgress, done };

        id object;
        std::uint16_t height = 0; // of the containers nested in it, itself included
        State state = untouched;
    };

    /// The length of what follows a marker: a number of bytes, units or references.
    struct Extent {
        std::size_t offset;
        std::size_t count;
    };

    [[noreturn]] static void fail(const char* what, std::size_t offset) {
        throw PropertyListFailure(what, offset);
    }

    /// Reads a big-endian integer. The caller has checked the bounds.
    std::uint64_t integerAt(std::size_t offset, std::size_t width) const {
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < width; ++i) value = value << 8 | bytes_[offset + i];
        return value;
    }

    void readTrailer() {
        if (bytes_.size() < headerLength + trailerLength + 1) fail("no room for a trailer", bytes_.size());
        const std::size_t trailer = bytes_.size() - trailerLength;
        offsetWidth_ = bytes_[trailer + 6];
        referenceWidth_ = bytes_[trailer + 7];
        const std::uint64_t count = integerAt(trailer + 8, 8);
        const std::uint64_t root = integerAt(trailer + 16, 8);
        const std::uint64_t table = integerAt(trailer + 24, 8);
        const auto isWidth = [](std::size_t width) { return width >= 1 && width <= 8; };
        if (!isWidth(offsetWidth_) || !isWidth(referenceWidth_)) fail("bad width in the trailer", trailer);
        if (table <= headerLength || table > trailer) fail("offset table out of bounds", trailer);
        if (count == 0 || count > (trailer - table) / offsetWidth_) fail("bad object count", trailer);
        if (root >= count) fail("root object out of bounds", trailer);
        table_ = table;
        root_ = root;
        slots_.resize(count);
    }

    /// Claims `size` bytes at `offset`, which must lie before the offset table. In a well-formed file no two
    /// objects overlap, so together they are no longer than the file; enforcing this bounds the work.
    void take(std::size_t offset, std::size_t size) {
        if (offset > table_ || size > table_ - offset) fail("object out of bounds", offset);
        taken_ += size;
        if (taken_ > bytes_.size()) fail("objects overlap", offset);
    }

    const Slot& read(std::uint64_t index, int depth) {
        if (index >= slots_.size()) fail("reference out of bounds", table_);
        Slot& slot = slots_[index];
        if (slot.state == Slot::done) return slot;
        if (slot.state == Slot::inProgress) fail("an object contains itself", table_);
        slot.state = Slot::inProgress;
        const std::uint64_t offset = integerAt(table_ + index * offsetWidth_, offsetWidth_);
        if (offset < headerLength || offset >= table_) fail("offset out of bounds", table_);
        take(offset, 1);
        readObject(slot, offset, depth);
        slot.state = Slot::done;
        return slot;
    }

    void readObject(Slot& slot, std::size_t offset, int depth) {
        const std::uint8_t low = bytes_[offset] & 0x0F;
        switch (bytes_[offset] >> 4) {
        case 0x0:
            slot.object = simple(offset, low);
            return;
        case 0x1:
            slot.object = integer(offset + 1, low);
            return;
        case 0x2:
            slot.object = NSNumber::numberWithDouble(real(offset + 1, low));
            return;
        case 0x3:
            slot.object = date(offset + 1, low);
            return;
        case 0x4:
            slot.object = dataSlice(offset, low);
            return;
        case 0x5:
            slot.object = asciiString(offset, low);
            return;
        case 0x6:
            slot.object = utf16String(offset, low);
            return;
        case 0x8:
            slot.object = uid(offset + 1, low);
            return;
        case 0xA:
            readArray(slot, extent(offset, low), depth + 1);
            return;
        case 0xD:
            readDictionary(slot, extent(offset, low), depth + 1);
            return;
        default:
            fail("unknown kind of object", offset);
        }
    }

    static id simple(std::size_t offset, std::uint8_t low) {
        if (low == 0x0) return NSNull::null();
        if (low != 0x8 && low != 0x9) fail("unknown kind of object", offset);
        return NSNumber::numberWithBool(low == 0x9);
    }

    /// Widths up to 4 bytes are unsigned, 8 bytes are signed; 16 bytes hold values above the signed range.
    id integer(std::size_t offset, std::uint8_t power) {
        if (power > 4) fail("bad width of an integer", offset);
        const std::size_t width = std::size_t{1} << power;
        take(offset, width);
        if (width < 8) return NSNumber::numberWithInteger(static_cast<long long>(integerAt(offset, width)));
        const std::uint64_t value = integerAt(offset + width - 8, 8);
        if (width == 8) return NSNumber::numberWithInteger(static_cast<long long>(value));
        const std::uint64_t upper = integerAt(offset, 8);
        const bool isNegative = static_cast<std::int64_t>(value) < 0;
        if (upper == std::numeric_limits<std::uint64_t>::max() && isNegative) {
            return NSNumber::numberWithInteger(static_cast<long long>(value));
        }
        if (upper != 0) fail("integer out of range", offset);
        return NSNumber::numberWithUnsignedInteger(value);
    }

    double real(std::size_t offset, std::uint8_t power) {
        if (power != 2 && power != 3) fail("bad width of a real", offset);
        take(offset, std::size_t{1} << power);
        if (power == 3) return std::bit_cast<double>(integerAt(offset, 8));
        return static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(integerAt(offset, 4))));
    }

    id date(std::size_t offset, std::uint8_t power) {
        if (power != 3) fail("bad width of a date", offset);
        return NSDate::dateWithTimeIntervalSinceReferenceDate(real(offset, power));
    }

    id uid(std::size_t offset, std::uint8_t low) {
        const std::size_t width = std::size_t{low} + 1;
        if (width > 8) fail("bad width of a reference", offset);
        take(offset, width);
        return NSKeyedArchiveUID::uidWithValue(integerAt(offset, width));
    }

    /// Reads the count from the marker, or from the integer that follows it if the marker says 15.
    Extent extent(std::size_t offset, std::uint8_t low) {
        if (low != 0x0F) return {offset + 1, low};
        take(offset + 1, 1);
        const std::uint8_t marker = bytes_[offset + 1];
        if (marker >> 4 != 0x1 || (marker & 0x0F) > 3) fail("bad count", offset + 1);
        const std::size_t width = std::size_t{1} << (marker & 0x0F);
        take(offset + 2, width);
        return {offset + 2 + width, integerAt(offset + 2, width)};
    }

    /// Reads and claims the extent of elements of `width` bytes each.
    Extent takeExtent(std::size_t offset, std::uint8_t low, std::size_t width) {
        const Extent e = extent(offset, low);
        takeElements(e, width);
        return e;
    }

    void takeElements(const Extent& e, std::size_t width) {
        if (e.count > bytes_.size() / width) fail("count out of bounds", e.offset);
        take(e.offset, e.count * width);
    }

    id dataSlice(std::size_t offset, std::uint8_t low) {
        const Extent e = takeExtent(offset, low, 1);
        return data_.subdataWithRange({e.offset, e.count});
    }

    id asciiString(std::size_t offset, std::uint8_t low) {
        const Extent e = takeExtent(offset, low, 1);
        const auto units = bytes_.subspan(e.offset, e.count);
        if (std::any_of(units.begin(), units.end(), [](std::uint8_t c) { return c >= 0x80; })) {
            fail("character out of range", e.offset);
        }
        return NSString(std::u16string(units.begin(), units.end()));
    }

    id utf16String(std::size_t offset, std::uint8_t low) {
        const Extent e = takeExtent(offset, low, 2);
        std::u16string text(e.count, u'\0');
        for (std::size_t i = 0; i < e.count; ++i) {
            text[i] = static_cast<char16_t>(integerAt(e.offset + 2 * i, 2));
        }
        return NSString(std::move(text));
    }

    /// Returns the object that the reference at an offset denotes, as a part of `container`.
    const id& element(Slot& container, std::size_t offset, int depth) {
        const Slot& slot = read(integerAt(offset, referenceWidth_), depth);
        container.height = std::max<std::uint16_t>(container.height, slot.height + 1);
        // An object may be shared, so its own nesting counts, not the path to it.
        if (container.height > maximumPropertyListDepth) fail("containers nested too deep", offset);
        return slot.object;
    }

    static void checkDepth(Slot& container, std::size_t offset, int depth) {
        container.height = 1;
        if (depth > maximumPropertyListDepth) fail("containers nested too deep", offset);
    }

    void readArray(Slot& slot, const Extent& e, int depth) {
        checkDepth(slot, e.offset, depth);
        takeElements(e, referenceWidth_);
        std::vector<id> elements;
        elements.reserve(e.count);
        for (std::size_t i = 0; i < e.count; ++i) {
            elements.push_back(element(slot, e.offset + i * referenceWidth_, depth));
        }
        slot.object = NSArray(std::move(elements));
    }

    void readDictionary(Slot& slot, const Extent& e, int depth) {
        checkDepth(slot, e.offset, depth);
        takeElements(e, 2 * referenceWidth_);
        NSMutableDictionary dictionary;
        for (std::size_t i = 0; i < e.count; ++i) {
            const std::size_t keyOffset = e.offset + i * referenceWidth_;
            const id key = element(slot, keyOffset, depth);
            if (!key.isKindOfClass(NSString::classInfo())) fail("key that is no string", keyOffset);
            dictionary.setObject_forKey(element(slot, keyOffset + e.count * referenceWidth_, depth), key);
        }
        slot.object = std::move(dictionary).copy();
    }

    const NSData& data_;
    const std::span<const std::uint8_t> bytes_;
    std::vector<Slot> slots_;
    std::size_t offsetWidth_ = 0;
    std::size_t referenceWidth_ = 0;
    std::size_t table_ = 0;
    std::uint64_t root_ = 0;
    std::size_t taken_ = 0;
};

} // namespace

id readBinary(const NSData& data) {
    return Reader(data).readRoot();
}

bool isBinary(const NSData& data) {
    return data.bytes().starts_with(magic);
}

} // namespace qrv::plist
