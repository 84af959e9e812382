#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSRange.h"
#include "QRVFoundation/Source/QRVFunctions.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <functional>
#include <gtest/gtest.h>

namespace qrv {

namespace {

template <class T>
std::string text(const T& value, const char* encoding) {
    return QRVFunctions::stringFromPointer_typeEncoding(&value, encoding).utf8();
}

struct ValueCase {
    const char* name;
    std::function<std::string()> make;
    const char* expected;
};

void PrintTo(const ValueCase& test, std::ostream* out) {
    *out << test.name;
}

class ValueFormatting : public testing::TestWithParam<ValueCase> {};

const char* const someText = "\xC3\xA4 text";
const char* const noText = nullptr;
const void* const someAddress = reinterpret_cast<const void*>(std::uintptr_t{0xABC});

} // namespace

TEST_P(ValueFormatting, FollowsTheEncoding) {
    EXPECT_EQ(GetParam().make(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    QRVFunctions, ValueFormatting,
    testing::Values(
        ValueCase{"CharOne", [] { return text(std::int8_t{1}, "c"); }, "YES"},
        ValueCase{"CharZero", [] { return text(std::int8_t{0}, "c"); }, "NO"},
        ValueCase{"CharLetter", [] { return text(std::int8_t{65}, "c"); }, "'A'"},
        ValueCase{"Short", [] { return text(std::int16_t{-32768}, "s"); }, "-32768"},
        ValueCase{"UnsignedShort", [] { return text(std::uint16_t{65535}, "S"); }, "65535"},
        ValueCase{"Int", [] { return text(std::int32_t{-2147483647}, "i"); }, "-2147483647"},
        ValueCase{"UnsignedInt", [] { return text(std::uint32_t{4294967295u}, "I"); }, "4294967295"},
        ValueCase{"LongLong", [] { return text(std::int64_t{-9223372036854775807}, "q"); },
                  "-9223372036854775807"},
        ValueCase{"UnsignedLongLong", [] { return text(~std::uint64_t{0}, "Q"); }, "18446744073709551615"},
        ValueCase{"Float", [] { return text(1.5f, "f"); }, "1.500000"},
        ValueCase{"Double", [] { return text(-0.25, "d"); }, "-0.250000"},
        ValueCase{"LongDouble", [] { return text(2.5L, "D"); }, "2.500000"},
        ValueCase{"Selector", [] { return text(&"doThis:with:"[0], ":"); }, "doThis:with:"},
        ValueCase{"ClassName", [] { return text(Class(QRVFunctions::classInfo), "#"); }, "QRVFunctions"},
        ValueCase{"Pointer", [] { return text(someAddress, "^v"); }, "0xabc"},
        ValueCase{"CString", [] { return text(someText, "*"); }, "\xC3\xA4 text"},
        ValueCase{"ConstCString", [] { return text(someText, "r*"); }, "\xC3\xA4 text"},
        ValueCase{"NullCString", [] { return text(noText, "*"); }, "(null)"},
        ValueCase{"CharArray", [] { return text(std::to_array("seven77"), "[8c]"); }, "seven77"},
        ValueCase{"CharArrayWithoutATerminator",
                  [] {
                      return text(std::array{'a', 'b', 'c'}, "[3c]");
                  },
                  "abc"},
        ValueCase{"CharArrayWithoutDigits", [] { return text(std::to_array("abc"), "[c]"); }, "abc"},
        ValueCase{"CharArrayOfAbsurdLength",
                  [] { return text(std::to_array("abc"), "[99999999999999999999c]"); }, "abc"},
        ValueCase{"Range",
                  [] {
                      return text(NSRange{3, 4}, "{_NSRange=QQ}");
                  },
                  "{3, 4}"},
        ValueCase{"Point",
                  [] {
                      return text(NSPoint{1, 2.5}, "{CGPoint=dd}");
                  },
                  "{1, 2.5}"},
        ValueCase{"Size",
                  [] {
                      return text(NSSize{1, 2.5}, "{CGSize=dd}");
                  },
                  "{1, 2.5}"},
        ValueCase{"Rect",
                  [] {
                      return text(NSRect{{1, 2}, {3, 4}}, "{CGRect={CGPoint=dd}{CGSize=dd}}");
                  },
                  "{{1, 2}, {3, 4}}"},
        ValueCase{"StringReference", [] { return text(NSString(u"text"), "^{__CFString=}"); }, "text"},
        ValueCase{"ConstStringReference", [] { return text(NSString(u"text"), "r^{__CFString=}"); }, "text"},
        ValueCase{"Object", [] { return text(id(NSNumber::numberWithInteger(5)), "@"); }, "5"},
        ValueCase{"NilObject", [] { return text(id(), "@"); }, "(null)"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(QRVFunctions, ValueMayLieAtAnyAddress) {
    std::array<char, 9> bytes{};
    const std::int64_t value = 77;
    std::memcpy(&bytes[1], &value, sizeof value);
    EXPECT_EQ(QRVFunctions::stringFromPointer_typeEncoding(&bytes[1], "q"), NSString(u"77"));
}

class UnhandledEncoding : public testing::TestWithParam<const char*> {};

TEST_P(UnhandledEncoding, LogsOneLineAndRaises) {
    const std::array<char, 64> value{};
    testing::internal::CaptureStderr();
    EXPECT_THROW(
        try {
            QRVFunctions::stringFromPointer_typeEncoding(value.data(), GetParam());
        } catch (const QRVException& exception) {
            EXPECT_EQ(exception.name(), NSString(u"QRVAssertionFailedException"));
            EXPECT_EQ(exception.qrvReason(),
                      NSString::stringWithFormat(u"Unhandled type encoding: %s", GetParam()));
            EXPECT_TRUE(as<NSString>(exception.userInfo().objectForKey(NSString(u"QRVExceptionLocation")))
                            .hasSuffix(u" +stringFromPointer:typeEncoding:"));
            throw;
        },
        QRVException);
    const std::string line = testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::count(line.begin(), line.end(), '\n'), 1);
    EXPECT_NE(line.find("] QRVFunctions:"), std::string::npos);
    EXPECT_NE(line.find(": Assertion Failed: Unhandled type encoding: "), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(QRVFunctions, UnhandledEncoding,
                         testing::Values("C", "l", "L", "B", "^i", "^{Some=i}", "{Some=i}", "[8i]", "[8xc]",
                                         "[8c", "[]", "", "cc", "@?", "{CGRect=dddd}",
                                         static_cast<const char*>(nullptr)));

TEST(QRVFunctions, NullPointerFailsAnAssertion) {
    testing::internal::CaptureStderr();
    EXPECT_THROW(QRVFunctions::stringFromPointer_typeEncoding(nullptr, "q"), QRVException);
    testing::internal::GetCapturedStderr();
}

} // namespace qrv
