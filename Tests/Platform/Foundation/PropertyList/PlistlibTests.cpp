// Comparison with an independent implementation, Python's plistlib.

#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSKeyedArchiveUID.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSPropertyListSerialization.h"
#include "Tests/Platform/Foundation/PropertyList/CanonicalText.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

namespace qrv {

namespace {

class Generator {
public:
    explicit Generator(unsigned seed, bool forXML) : random_(seed), forXML_(forXML) {}

    id value(int depth) {
        if (depth == 0 || below(10) < 3) return scalar();
        const unsigned sizes[] = {0, 1, 3, 16};
        const unsigned size = sizes[below(4)];
        if (below(2) == 0) {
            std::vector<id> elements;
            for (unsigned i = 0; i < size; ++i) elements.push_back(value(depth - 1));
            return NSArray(std::move(elements));
        }
        NSMutableDictionary dictionary;
        for (unsigned i = 0; i < size; ++i) {
            dictionary.setObject_forKey(value(depth - 1), NSString::stringWithFormat(u"%@%u", text(), i));
        }
        return std::move(dictionary).copy();
    }

private:
    unsigned below(unsigned end) { return static_cast<unsigned>(random_() % end); }

    NSString text() {
        const std::u16string_view pieces[] = {u"a",  u"Z",  u" ", u"<&>\"'", u"\n",
                                              u"\t", u"\r", u"é", u"中",     u"\U0001F600"};
        std::u16string text;
        for (unsigned n = below(20); n > 0; --n) text += pieces[below(10)];
        return text;
    }

    id scalar() {
        switch (below(forXML_ ? 6 : 7)) {
        case 0:
            return text();
        case 1:
            return NSNumber::numberWithInteger(static_cast<long long>(random_()) >> below(64));
        case 2:
            return NSNumber::numberWithUnsignedInteger(std::numeric_limits<unsigned long long>::max() -
                                                       below(9));
        case 3:
            return NSNumber::numberWithBool(below(2) == 1);
        case 4:
            return NSData(std::string(below(300), static_cast<char>(below(256))));
        case 5:
            return NSDate::dateWithTimeIntervalSinceReferenceDate(below(2000000000) - 1e9);
        default:
            return below(2) == 0 ? id(NSKeyedArchiveUID::uidWithValue(random_() >> below(64)))
                                 : id(NSNumber::numberWithDouble(below(1000000) / 7.0));
        }
    }

    std::mt19937_64 random_;
    bool forXML_;
};

void write(const TemporaryFolder& folder, const std::string& name, const id& plist,
           NSPropertyListFormat format) {
    NSString problem;
    const NSData data =
        NSPropertyListSerialization::dataFromPropertyList_format_errorDescription(plist, format, &problem);
    ASSERT_TRUE(data) << problem.utf8();
    folder.write(name + (format == NSPropertyListXMLFormat_v1_0 ? ".xml" : ".binary"), data.bytes());
    folder.write(name + ".text", canonicalText(plist));
}

} // namespace

TEST(Plistlib, WhatItWritesReadsTheSameHere) {
    const TemporaryFolder folder;
    constexpr int count = 30;
    ASSERT_EQ(runPlistsHelper("make " + folder.path().string() + " " + std::to_string(count)), "");
    for (int n = 0; n < count; ++n) {
        const std::string stem = std::to_string(n);
        for (const char* kind : {".binary", ".xml"}) {
            NSError error;
            const id plist =
                NSPropertyListSerialization::propertyListWithData(NSData(folder.read(stem + kind)), &error);
            EXPECT_EQ(canonicalText(plist), folder.read(stem + ".text"))
                << n << kind << error.description().utf8();
        }
    }
}

TEST(Plistlib, ReadsTheSameFromWhatIsWrittenHere) {
    const TemporaryFolder folder;
    for (unsigned n = 0; n < 30; ++n) {
        write(folder, "b" + std::to_string(n), Generator(n, false).value(4), NSPropertyListBinaryFormat_v1_0);
        write(folder, "x" + std::to_string(n), Generator(n, true).value(4), NSPropertyListXMLFormat_v1_0);
    }
    EXPECT_EQ(runPlistsHelper("check " + folder.path().string()), "checked 60\n");
}

TEST(Plistlib, WhatIsWrittenHereReadsTheSameHere) {
    for (unsigned n = 0; n < 100; ++n) {
        const id plist = Generator(n, n % 2 == 0).value(4);
        const NSPropertyListFormat format =
            n % 2 == 0 ? NSPropertyListXMLFormat_v1_0 : NSPropertyListBinaryFormat_v1_0;
        const NSData data =
            NSPropertyListSerialization::dataFromPropertyList_format_errorDescription(plist, format, nullptr);
        NSPropertyListFormat read{};
        const id back =
            NSPropertyListSerialization::propertyListWithData_options_format_error(data, 0, &read, nullptr);
        EXPECT_EQ(canonicalText(back), canonicalText(plist)) << n;
        EXPECT_EQ(read, format);
    }
}

} // namespace qrv
