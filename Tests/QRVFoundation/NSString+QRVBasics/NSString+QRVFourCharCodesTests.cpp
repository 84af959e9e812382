#include "QRVFoundation/Source/NSString+QRVBasics/NSString+QRVFourCharCodes.h"

#include "QRVFoundation/Source/QRVFunctions.h"
#include "Tests/Platform/Foundation/Printing.h"

#include <gtest/gtest.h>

namespace qrv {

namespace {

constexpr std::uint32_t textCode = 0x54455854;

struct SilentDelegate : QRVLoggingDelegate {
    void logString(const NSString&) override {}
};

} // namespace

TEST(FourCharCodes, TextAndBack) {
    EXPECT_EQ(qrvStringWithFourCharCode(textCode), NSString(u"TEXT"));
    EXPECT_EQ(qrvFourCharCodeValue(u"TEXT"), textCode);
}

TEST(FourCharCodes, EveryByteIsACharacterOfMacOSRoman) {
    EXPECT_EQ(qrvStringWithFourCharCode(0x8E20A9F0), NSString(u"é ©\uF8FF"));
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        const std::uint32_t code = byte << 24 | 0x00414200U | byte;
        if (code == 0) continue;
        EXPECT_EQ(qrvFourCharCodeValue(qrvStringWithFourCharCode(code)), code);
    }
}

TEST(FourCharCodes, ZeroIsTheUnknownCode) {
    EXPECT_EQ(qrvStringWithFourCharCode(0), qrvUnknownCode());
    EXPECT_TRUE(qrvIsUnknownCode(qrvStringWithFourCharCode(0)));
    EXPECT_FALSE(qrvIsUnknownCode(u"TEXT"));
    EXPECT_FALSE(qrvIsUnknownCode(NSString()));
    EXPECT_EQ(qrvFourCharCodeValue(qrvUnknownCode()), 0u);
}

TEST(FourCharCodes, ATextWithoutAMacOSRomanFormGivesZero) {
    EXPECT_EQ(qrvFourCharCodeValue(u"日本語文"), 0u);
    EXPECT_EQ(qrvFourCharCodeValue(std::u16string_view(u"abc\xD800", 4)), 0u);
}

TEST(FourCharCodes, AnyOtherLengthFailsAnAssertion) {
    SilentDelegate log;
    QRVFunctions::setLoggingDelegate(&log);
    for (const NSString& text : {NSString(u"abc"), NSString(u"abcde"), NSString(u""), NSString()}) {
        try {
            qrvFourCharCodeValue(text);
            ADD_FAILURE();
        } catch (const QRVException& e) {
            EXPECT_EQ(e.name(), NSString(QRVAssertionFailedException));
            EXPECT_EQ(e.qrvReason(), NSString(u"Precondition Failed: [self length] == 4"));
        }
    }
    QRVFunctions::setLoggingDelegate(nullptr);
}

} // namespace qrv
