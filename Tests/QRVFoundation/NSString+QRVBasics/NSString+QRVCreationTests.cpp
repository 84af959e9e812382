#include "QRVFoundation/Source/NSString+QRVBasics/NSString+QRVCreation.h"

#include "Platform/Foundation/NSNumber.h"
#include "QRVFoundation/Source/NSError+QRV.h"
#include "Tests/Platform/Foundation/Printing.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <regex>
#include <set>

namespace qrv {

TEST(StringCreation, FormatWithPackedArguments) {
    EXPECT_EQ(qrvStringWithFormat_arguments(u"%@ %d", FormatArguments(NSString(u"a"), 5)), NSString(u"a 5"));
    EXPECT_TRUE(qrvStringWithFormat_arguments(NSString(), FormatArguments()).isNil());
}

TEST(StringCreation, UniqueStringsAreCanonicalAndDiffer) {
    const std::regex canonical("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}");
    std::set<std::string> seen;
    for (int i = 0; i < 100; ++i) {
        const std::string text = qrvUniqueString().utf8();
        EXPECT_TRUE(std::regex_match(text, canonical)) << text;
        seen.insert(text);
    }
    EXPECT_EQ(seen.size(), 100u);
    EXPECT_TRUE(qrvUniqueString(u"prefix").hasPrefix(u"prefix."));
    EXPECT_EQ(qrvUniqueString(u"p").length(), 38u);
    EXPECT_TRUE(qrvUniqueString(NSString()).hasPrefix(u"(null)."));
}

struct Charset {
    const char16_t* name;
    unsigned long encoding;
};

void PrintTo(const Charset& charset, std::ostream* out) {
    *out << printed(charset.name);
}

class MIMEEncoding : public testing::TestWithParam<Charset> {};

TEST_P(MIMEEncoding, HasThePlatformsValue) {
    EXPECT_EQ(qrvStringEncodingForMIMEEncoding(GetParam().name), GetParam().encoding);
}

INSTANTIATE_TEST_SUITE_P(NSStringQRV, MIMEEncoding,
                         testing::Values(Charset{nullptr, 5}, Charset{u"", 5}, Charset{u"no-such-charset", 5},
                                         Charset{u"iso-8859-1", 5}, Charset{u"ISO-8859-1", 5},
                                         Charset{u"latin1", 5}, Charset{u"utf-8", 4}, Charset{u"UTF-8", 4},
                                         Charset{u"us-ascii", 1}, Charset{u"utf-16", 10},
                                         Charset{u"utf-16be", 0x90000100}, Charset{u"utf-16le", 0x94000100},
                                         Charset{u"utf-32", 0x8C000100}, Charset{u"utf-32be", 0x98000100},
                                         Charset{u"utf-32le", 0x9C000100}, Charset{u"windows-1250", 15},
                                         Charset{u"windows-1251", 11}, Charset{u"Windows-1252", 12},
                                         Charset{u"windows-1253", 13}, Charset{u"windows-1254", 14},
                                         Charset{u"iso-8859-2", 9}, Charset{u"Shift_JIS", 8},
                                         Charset{u"EUC-JP", 3}, Charset{u"ISO-2022-JP", 21},
                                         Charset{u"macintosh", 30}, Charset{u"iso-8859-15", 0x8000020F},
                                         Charset{u"koi8-r", 0x80000A02}, Charset{u"Big5", 0x80000A03},
                                         Charset{u"gb18030", 0x80000632}, Charset{u"euc-kr", 0x80000940},
                                         Charset{u"windows-1255", 0x80000505}));

TEST(StringCreation, FileSystemRepresentations) {
    EXPECT_EQ(qrvStringWithFileSystemRepresentation("/\xC3\xA9"), NSString(u"/é"));
    EXPECT_EQ(qrvStringWithFileSystemRepresentation_length("/abc", 2), NSString(u"/a"));
    EXPECT_EQ(qrvStringWithFileSystemRepresentation_length("", 0), NSString(u""));
    EXPECT_EQ(qrvStringWithFileSystemRepresentation("\xFF"), NSString(u"\xDCFF"));
    EXPECT_TRUE(qrvStringWithFileSystemRepresentation(nullptr).isNil());
    EXPECT_TRUE(qrvStringWithFileSystemRepresentation_length(nullptr, 5).isNil());
}

TEST(StringCreation, OneUnitOrOneCodePoint) {
    EXPECT_EQ(qrvStringWithCharacter(u'é'), NSString(u"é"));
    EXPECT_EQ(qrvStringWithCharacter(0).length(), 1u);
    EXPECT_EQ(qrvStringWithCharacter(0xD800).length(), 1u);
    EXPECT_EQ(qrvStringWith32BitCharacter(0x1F600), NSString(u"😀"));
    EXPECT_EQ(qrvStringWith32BitCharacter('a'), NSString(u"a"));
    EXPECT_EQ(qrvStringWith32BitCharacter(0).length(), 1u);
    EXPECT_EQ(qrvStringWith32BitCharacter(0xFEFF).length(), 1u);
    EXPECT_EQ(qrvStringWith32BitCharacter(0x10FFFF).length(), 2u);
    EXPECT_TRUE(qrvStringWith32BitCharacter(0x110000).isNil());
    EXPECT_TRUE(qrvStringWith32BitCharacter(0xD800).isNil());
    EXPECT_TRUE(qrvStringWith32BitCharacter(0xFFFFFFFF).isNil());
}

TEST(StringDecoding, LeavesTheErrorAloneOnSuccess) {
    NSError error;
    EXPECT_EQ(qrvStringWithData_encoding_error(NSData("\xE9"), NSISOLatin1StringEncoding, &error),
              NSString(u"é"));
    EXPECT_EQ(qrvStringWithData_encoding_error(NSData::data(), NSUTF8StringEncoding, &error), NSString(u""));
    EXPECT_TRUE(error.isNil());
}

TEST(StringDecoding, FailsWithError500) {
    NSError error;
    const NSData data("\xFF");
    EXPECT_TRUE(qrvStringWithData_encoding_error(data, NSUTF8StringEncoding, &error).isNil());
    EXPECT_EQ(error, QRVError1(500, {{NSString(u"QRVInputObject"), data},
                                     {NSString(u"QRVStringEncoding"), NSNumber::numberWithUnsignedInteger(4)},
                                     {NSString(NSLocalizedFailureReasonErrorKey),
                                      NSString(u"Error decoding data to string.")}}));
    EXPECT_TRUE(qrvStringWithData_encoding_error(data, NSUTF8StringEncoding, nullptr).isNil());
    EXPECT_TRUE(qrvStringWithData_encoding_error(data, 987654, &error).isNil());
}

TEST(StringDecoding, NilDataFailsWithoutAnInputObject) {
    NSError error;
    EXPECT_TRUE(qrvStringWithData_encoding_error(NSData(), NSUTF8StringEncoding, &error).isNil());
    EXPECT_EQ(error.code(), 500);
    EXPECT_EQ(error.userInfo().count(), 2u);
    EXPECT_TRUE(qrvStringWithUTF8Data(NSData()).isNil());
}

TEST(StringEncoding, SucceedsWithoutLossOrFailsWithError501) {
    NSError error;
    EXPECT_EQ(qrvDataUsingEncoding_error(u"é", NSMacOSRomanStringEncoding, &error), NSData("\x8E"));
    EXPECT_TRUE(error.isNil());
    const NSString text = u"日";
    EXPECT_TRUE(qrvDataUsingEncoding_error(text, NSISOLatin1StringEncoding, &error).isNil());
    EXPECT_EQ(error, QRVError1(501, {{NSString(u"QRVString"), text},
                                     {NSString(u"QRVStringEncoding"), NSNumber::numberWithUnsignedInteger(5)},
                                     {NSString(NSLocalizedFailureReasonErrorKey),
                                      NSString(u"Error encoding data from string.")}}));
    EXPECT_TRUE(qrvDataUsingEncoding_error(text, NSISOLatin1StringEncoding, nullptr).isNil());
    EXPECT_TRUE(
        qrvDataUsingEncoding_error(std::u16string_view(u"\xD800", 1), NSUTF8StringEncoding, nullptr).isNil());
}

TEST(StringEncoding, NilGivesNilWithoutAnError) {
    NSError error;
    EXPECT_TRUE(qrvDataUsingEncoding_error(NSString(), NSUTF8StringEncoding, &error).isNil());
    EXPECT_TRUE(error.isNil());
}

TEST(StringDecoding, UTF8Data) {
    EXPECT_EQ(qrvStringWithUTF8Data(NSData("\xC3\xA9")), NSString(u"é"));
    EXPECT_TRUE(qrvStringWithUTF8Data(NSData("\xC3")).isNil());
}

struct FileText {
    std::string bytes;
    const char16_t* text;
};

void PrintTo(const FileText& file, std::ostream* out) {
    *out << testing::PrintToString(file.bytes);
}

class StringWithContentsOfFile : public testing::TestWithParam<FileText> {};

TEST_P(StringWithContentsOfFile, TriesUTF8ThenMarkedUTF16ThenMacOSRoman) {
    const TemporaryFolder folder;
    EXPECT_EQ(qrvStringWithContentsOfFile(folder.write("file", GetParam().bytes)), NSString(GetParam().text));
}

INSTANTIATE_TEST_SUITE_P(NSStringQRV, StringWithContentsOfFile,
                         testing::Values(FileText{"", u""}, FileText{"caf\xC3\xA9", u"café"},
                                         FileText{std::string("\xFF\xFE\xE9\0", 4), u"é"},
                                         FileText{std::string("\xFE\xFF\0\xE9", 4), u"é"},
                                         FileText{"caf\x8E", u"café"}, FileText{"\xFF\xFE\x8E", u"ˇ˛é"},
                                         FileText{"\x8E", u"é"}));

TEST(StringCreation, AnUnreadableFileGivesNil) {
    EXPECT_TRUE(qrvStringWithContentsOfFile(u"/no/such/file").isNil());
    EXPECT_TRUE(qrvStringWithContentsOfFile(u"/").isNil());
    EXPECT_TRUE(qrvStringWithContentsOfFile(NSString()).isNil());
}

TEST(StringCreation, FileURLsTellADirectoryByTheDiskOrNotAtAll) {
    const TemporaryFolder folder;
    const NSString path = NSString::fromUTF8(folder.path().string());
    EXPECT_TRUE(qrvFileURL(path).absoluteString().hasSuffix(u"/"));
    EXPECT_FALSE(qrvFastFileURL(path).absoluteString().hasSuffix(u"/"));
    EXPECT_EQ(qrvFastFileURL(path).path(), path);
    EXPECT_TRUE(qrvFileURL(NSString()).isNil());
    EXPECT_TRUE(qrvFastFileURL(NSString()).isNil());
}

} // namespace qrv
