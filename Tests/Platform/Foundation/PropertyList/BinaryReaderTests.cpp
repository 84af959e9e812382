#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSKeyedArchiveUID.h"
#include "Platform/Foundation/NSNull.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSPropertyListSerialization.h"
#include "Tests/Platform/Foundation/PropertyList/CanonicalText.h"

#include <gtest/gtest.h>

#include <cstdint>

using namespace std::string_literals;

namespace qrv {

namespace {

std::string bigEndian(std::uint64_t value, std::size_t width) {
    std::string bytes;
    for (std::size_t i = width; i > 0; --i) {
        bytes.push_back(i > sizeof value ? '\0' : static_cast<char>(value >> (8 * (i - 1))));
    }
    return bytes;
}

/// A file in the making, each of whose parts can be spoilt.
struct File {
    std::vector<std::string> objects;
    std::size_t offsetWidth = 4;
    std::size_t referenceWidth = 1;
    std::uint64_t root = 0;
    std::string magic = "bplist00";
    std::optional<std::uint64_t> count;
    std::optional<std::uint64_t> table;
    std::optional<std::uint64_t> firstOffset;

    std::string bytes() const {
        std::string file = magic;
        std::string offsets;
        for (const std::string& object : objects) {
            offsets +=
                bigEndian(offsets.empty() && firstOffset ? *firstOffset : file.size(), offsetWidth & 0xFF);
            file += object;
        }
        const std::uint64_t tableOffset = table.value_or(file.size());
        file += offsets;
        return file + "\0\0\0\0\0\0"s + bigEndian(offsetWidth, 1) + bigEndian(referenceWidth, 1) +
               bigEndian(count.value_or(objects.size()), 8) + bigEndian(root, 8) + bigEndian(tableOffset, 8);
    }
};

id read(const std::string& bytes, NSError* error = nullptr) {
    return NSPropertyListSerialization::propertyListWithData(NSData(bytes), error);
}

/// A file of one object.
File single(const std::string& object) {
    File file;
    file.objects = {object};
    return file;
}

std::string readText(const std::string& object) {
    return canonicalText(read(single(object).bytes()));
}

struct Damage {
    const char* name;
    std::string bytes;
};

void PrintTo(const Damage& damage, std::ostream* out) {
    *out << damage.name;
}

class DamagedBinary : public testing::TestWithParam<Damage> {};

File with(
    std::vector<std::string> objects, void (*spoil)(File&) = [](File&) {}) {
    File file;
    file.objects = std::move(objects);
    spoil(file);
    return file;
}

/// Nested arrays, listed from the outside or from the inside.
File nested(std::size_t depth, bool innermostFirst) {
    File file;
    file.referenceWidth = 2;
    for (std::size_t i = 0; i + 1 < depth; ++i) {
        file.objects.push_back("\xA1"s + bigEndian(innermostFirst ? depth - 2 - i : i + 1, 2));
    }
    file.objects.push_back("\xA0"s);
    if (innermostFirst) {
        file.objects.clear();
        file.objects.push_back("\xA0"s);
        for (std::size_t i = 1; i < depth; ++i) file.objects.push_back("\xA1"s + bigEndian(i - 1, 2));
        file.root = depth - 1;
    }
    return file;
}

/// A root that holds nested arrays from the innermost outwards, so that each is known when it is met again.
File nestedInSteps(std::size_t depth) {
    File file = nested(depth, true);
    std::string root = "\xAF\x11"s + bigEndian(depth, 2);
    for (std::size_t i = 0; i < depth; ++i) root += bigEndian(i, 2);
    file.root = file.objects.size();
    file.objects.push_back(root);
    return file;
}

/// Many arrays that all lie over the same references.
std::string overlappingArrays() {
    std::string file = "bplist00";
    constexpr std::size_t count = 200;
    for (std::size_t i = 0; i < count; ++i) file += "\xAF\x11\x01\x00"s;
    file += std::string(256, '\0');
    const std::size_t table = file.size();
    for (std::size_t i = 0; i < count; ++i) file += bigEndian(8 + 4 * (count - 1 - i), 2);
    return file + "\0\0\0\0\0\0\x02\x01"s + bigEndian(count, 8) + bigEndian(0, 8) + bigEndian(table, 8);
}

} // namespace

TEST(BinaryReader, ReadsEveryKindOfObject) {
    EXPECT_EQ(readText("\x08"), "false");
    EXPECT_EQ(readText("\x09"), "true");
    EXPECT_TRUE(as<NSNull>(read(single("\0"s).bytes())));
    EXPECT_EQ(readText("\x10\xFF"), "i255");
    EXPECT_EQ(readText("\x11\xFF\xFE"), "i65534");
    EXPECT_EQ(readText("\x12\xFF\xFF\xFF\xFF"), "i4294967295");
    EXPECT_EQ(readText("\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFE"), "i-2");
    EXPECT_EQ(readText("\x14"s + std::string(8, '\0') + std::string(8, '\xFF')), "i18446744073709551615");
    EXPECT_EQ(readText("\x14"s + std::string(15, '\xFF') + "\xFD"s), "i-3");
    EXPECT_EQ(readText("\x22\x3F\xC0\x00\x00"s), "r3ff8000000000000");
    EXPECT_EQ(readText("\x23\x3F\xF8\x00\x00\x00\x00\x00\x00"s), "r3ff8000000000000");
    EXPECT_EQ(readText("\x33\x3F\xF8\x00\x00\x00\x00\x00\x00"s), "t3ff8000000000000");
    EXPECT_EQ(readText("\x42\x01\x02"), "d0102");
    EXPECT_EQ(readText("\x40"), "d");
    EXPECT_EQ(readText("\x51"
                       "A"),
              "s0041");
    EXPECT_EQ(readText("\x62\x4E\x2D\xD8\x00"s), "s4e2dd800") << "unpaired surrogates are kept";
    EXPECT_EQ(readText("\x80\x05"), "u5");
    EXPECT_EQ(readText("\x83\x01\x02\x03\x04"), "u16909060");
    EXPECT_EQ(readText("\xA0"), "[]");
    EXPECT_EQ(readText("\xD0"), "{}");
}

TEST(BinaryReader, ReadsCountsOfEveryWidth) {
    for (const std::string& count :
         {"\x10\x01"s, "\x11\x00\x01"s, "\x12\x00\x00\x00\x01"s, "\x13\0\0\0\0\0\0\0\x01"s}) {
        EXPECT_EQ(readText("\x5F" + count + "A"), "s0041");
    }
}

TEST(BinaryReader, ReadsEveryWidthOfOffsetsAndReferences) {
    for (std::size_t width = 1; width <= 8; ++width) {
        File file;
        file.offsetWidth = file.referenceWidth = width;
        file.objects = {"\xD1"s + bigEndian(1, width) + bigEndian(2, width),
                        "\x51"
                        "k",
                        "\x09"};
        EXPECT_EQ(canonicalText(read(file.bytes())), "{s006b=true,}") << width;
    }
}

TEST(BinaryReader, TheRootMayBeAnyObject) {
    File file = with({"\x51"
                      "a",
                      "\xA1\x00"s});
    file.root = 1;
    EXPECT_EQ(canonicalText(read(file.bytes())), "[s0061,]");
}

TEST(BinaryReader, DataSharesTheBytesOfTheFile) {
    const NSData file(single("\x4F\x11\x03\xE8"s + std::string(1000, 'x')).bytes());
    const auto data = as<NSData>(NSPropertyListSerialization::propertyListWithData(file));
    ASSERT_EQ(data.length(), 1000u);
    EXPECT_EQ(data.bytes().data(), file.bytes().data() + 12);
}

TEST(BinaryReader, AnObjectNamedTwiceIsShared) {
    const auto array = as<NSArray>(read(with({"\xA2\x01\x01", "\xA0"}).bytes()));
    ASSERT_EQ(array.count(), 2u);
    EXPECT_TRUE(array.objectAtIndex(0).isIdenticalTo(array.objectAtIndex(1)));
}

TEST(BinaryReader, SharedPairsFortyLevelsDeepAreReadAsFewObjects) {
    File file;
    for (std::size_t i = 0; i < 40; ++i)
        file.objects.push_back("\xA2"s + bigEndian(i + 1, 1) + bigEndian(i + 1, 1));
    file.objects.push_back("\x09");
    id level = read(file.bytes());
    for (int i = 0; i < 40; ++i) {
        const auto pair = as<NSArray>(level);
        ASSERT_EQ(pair.count(), 2u);
        level = pair.objectAtIndex(1);
    }
    EXPECT_EQ(canonicalText(level), "true");
}

TEST(BinaryReader, ContainersNestedAsDeepAsAllowedAreRead) {
    EXPECT_TRUE(read(nested(512, false).bytes()));
    EXPECT_TRUE(read(nested(512, true).bytes()));
    EXPECT_TRUE(read(nestedInSteps(511).bytes()));
}

TEST(BinaryReader, ALaterEntryOfTheSameKeyReplacesTheEarlier) {
    EXPECT_EQ(canonicalText(read(with({"\xD2\x01\x01\x02\x03", "\x51k", "\x08", "\x09"}).bytes())),
              "{s006b=true,}");
}

TEST(BinaryReader, EveryCutOfAFileIsRefused) {
    const std::string whole =
        with({"\xD2\x01\x02\x03\x04", "\x51k", "\x52kk", "\x42\x01\x02", "\xA1\x05", "\x10\x07"}).bytes();
    ASSERT_TRUE(read(whole));
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_FALSE(read(whole.substr(0, length))) << length;
        if (length > 8) {
            EXPECT_FALSE(read(whole.substr(0, 8) + whole.substr(length)))
                << "without the bytes before " << length;
        }
    }
}

TEST(BinaryReader, AnyChangedByteIsReadOrRefusedButNeverHarms) {
    const std::string whole = with({"\xD2\x01\x02\x03\x04", "\x51k", "\x62\x4E\x2D\x4E\x2E", "\x42\x01\x02",
                                    "\xA1\x05", "\x10\x07"})
                                  .bytes();
    std::size_t refused = 0;
    for (std::size_t at = 0; at < whole.size(); ++at) {
        for (int value = 0; value < 256; ++value) {
            std::string changed = whole;
            changed[at] = static_cast<char>(value);
            NSError error;
            const id plist = read(changed, &error);
            EXPECT_NE(plist.isNil(), error.isNil());
            refused += plist.isNil();
        }
    }
    EXPECT_GT(refused, whole.size());
}

TEST(BinaryReader, TheErrorSaysWhatIsWrongAndWhere) {
    NSError error;
    EXPECT_FALSE(read(single("\x70").bytes(), &error));
    EXPECT_EQ(error.domain(), NSString(NSCocoaErrorDomain));
    EXPECT_EQ(error.code(), 3840);
    EXPECT_EQ(error.userInfo().objectForKey(NSString(u"NSDebugDescription")),
              NSString(u"unknown kind of object at byte 8"));
}

TEST_P(DamagedBinary, IsRefused) {
    NSError error;
    EXPECT_FALSE(read(GetParam().bytes, &error));
    EXPECT_EQ(error.code(), NSPropertyListReadCorruptError);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, DamagedBinary,
    testing::Values(
        Damage{"OnlyAHeader", "bplist00"}, Damage{"HeaderAndTrailerOnly", "bplist00" + std::string(32, '\0')},
        Damage{"OffsetWidth0", with({"\x09"}, [](File& f) { f.offsetWidth = 0; }).bytes()},
        Damage{"OffsetWidth9", with({"\x09"}, [](File& f) { f.offsetWidth = 9; }).bytes()},
        Damage{"OffsetWidth255", with({"\x09"}, [](File& f) { f.offsetWidth = 255; }).bytes()},
        Damage{"ReferenceWidth0", with({"\x09"}, [](File& f) { f.referenceWidth = 0; }).bytes()},
        Damage{"ReferenceWidth9", with({"\x09"}, [](File& f) { f.referenceWidth = 9; }).bytes()},
        Damage{"NoObjects", with({"\x09"}, [](File& f) { f.count = 0; }).bytes()},
        Damage{"MoreObjectsThanTheTableHolds", with({"\x09"}, [](File& f) { f.count = 2; }).bytes()},
        Damage{"AbsurdObjectCount", with({"\x09"}, [](File& f) { f.count = ~0ULL; }).bytes()},
        Damage{"ObjectCountThatOverflows", with({"\x09"}, [](File& f) { f.count = 1ULL << 62; }).bytes()},
        Damage{"RootBeyondTheObjects", with({"\x09"}, [](File& f) { f.root = 1; }).bytes()},
        Damage{"AbsurdRoot", with({"\x09"}, [](File& f) { f.root = ~0ULL; }).bytes()},
        Damage{"TableInTheHeader", with({"\x09"}, [](File& f) { f.table = 7; }).bytes()},
        Damage{"TableBeyondTheFile", with({"\x09"}, [](File& f) { f.table = 1000; }).bytes()},
        Damage{"TableOffsetThatOverflows", with({"\x09"}, [](File& f) { f.table = ~0ULL; }).bytes()},
        Damage{"TableInTheTrailer", with({"\x09"}, [](File& f) { f.table = 14; }).bytes()},
        Damage{"OffsetInTheHeader", with({"\x09"}, [](File& f) { f.firstOffset = 0; }).bytes()},
        Damage{"OffsetInTheTable", with({"\x09"}, [](File& f) { f.firstOffset = 9; }).bytes()},
        Damage{"OffsetBeyondTheFile", with({"\x09"}, [](File& f) { f.firstOffset = 0xFFFFFFFF; }).bytes()},
        Damage{"OffsetThatOverflows", with({"\x09"},
                                           [](File& f) {
                                               f.offsetWidth = 8;
                                               f.firstOffset = ~0ULL;
                                           })
                                          .bytes()},
        Damage{"UnknownSimpleObject", single("\x0F").bytes()},
        Damage{"UnknownKind7", single("\x71k").bytes()}, Damage{"UnknownKind9", single("\x90").bytes()},
        Damage{"Set", single("\xC0").bytes()}, Damage{"UnknownKindF", single("\xF0").bytes()},
        Damage{"IntegerWiderThan16Bytes", single("\x15" + std::string(32, '\0')).bytes()},
        Damage{"IntegerBeyond64Bits", single("\x14\0\0\0\0\0\0\0\x01"s + std::string(8, '\0')).bytes()},
        Damage{"NegativeIntegerBeyond64Bits",
               single("\x14"s + std::string(8, '\xFF') + std::string(8, '\0')).bytes()},
        Damage{"IntegerCutByTheTable", single("\x13\x01").bytes()},
        Damage{"RealOfOneByte", single("\x20\x01").bytes()},
        Damage{"RealOfSixteenBytes", single("\x24" + std::string(16, '\0')).bytes()},
        Damage{"DateOfFourBytes", single("\x32\0\0\0\0"s).bytes()},
        Damage{"DateCutByTheTable", single("\x33\0"s).bytes()},
        Damage{"DataCutByTheTable", single("\x42\x01").bytes()},
        Damage{"AbsurdDataLength", single("\x4F\x13" + std::string(8, '\xFF')).bytes()},
        Damage{"StringCutByTheTable", single("\x52k").bytes()},
        Damage{"StringBeyondASCII", single("\x51\xE9").bytes()},
        Damage{"UTF16CutInTheMiddleOfAUnit", single("\x61\x4E").bytes()},
        Damage{"UTF16LengthThatOverflows", single("\x6F\x13\x80\0\0\0\0\0\0\0"s).bytes()},
        Damage{"CountThatIsNoInteger", single("\x5F\x51k").bytes()},
        Damage{"CountOfSixteenBytes", single("\x5F\x14" + std::string(15, '\0') + "\x01k").bytes()},
        Damage{"CountMissing", single("\x5F").bytes()}, Damage{"CountCut", single("\x5F\x13\0"s).bytes()},
        Damage{"UIDOfNineBytes", single("\x88" + std::string(9, '\0')).bytes()},
        Damage{"UIDCut", single("\x81\x01").bytes()},
        Damage{"ArrayReferenceBeyondTheObjects", single("\xA1\x01").bytes()},
        Damage{"ArrayCut", single("\xA2\x01").bytes()},
        Damage{"AbsurdArrayCount", single("\xAF\x13\x7F" + std::string(7, '\xFF')).bytes()},
        Damage{"ArrayCountThatOverflows",
               with({"\xAF\x13\x20\0\0\0\0\0\0\0"s}, [](File& f) { f.referenceWidth = 8; }).bytes()},
        Damage{"ArrayThatContainsItself", single("\xA1\0"s).bytes()},
        Damage{"ArraysThatContainEachOther", with({"\xA1\x01", "\xA1\0"s}).bytes()},
        Damage{"DictionaryThatContainsItself", with({"\xD1\x01\0"s, "\x51k"}).bytes()},
        Damage{"DictionaryWithoutValues", with({"\xD1\x01", "\x51k"}).bytes()},
        Damage{"AbsurdDictionaryCount", single("\xDF\x13" + std::string(8, '\xFF')).bytes()},
        Damage{"KeyThatIsANumber", with({"\xD1\x01\x01", "\x10\x05"}).bytes()},
        Damage{"KeyThatIsAnArray", with({"\xD1\x01\x02", "\xA0", "\x09"}).bytes()},
        Damage{"KeyThatIsItsOwnDictionary", with({"\xD1\0\x01"s, "\x09"}).bytes()},
        Damage{"NestedTooDeep", nested(513, false).bytes()},
        Damage{"NestedTooDeepInnermostFirst", nested(513, true).bytes()},
        Damage{"NestedFarTooDeep", nested(60000, false).bytes()},
        Damage{"NestedTooDeepThroughKnownObjects", nestedInSteps(512).bytes()},
        Damage{"ArraysThatOverlap", overlappingArrays()}),
    [](const auto& damage) { return damage.param.name; });

} // namespace qrv
