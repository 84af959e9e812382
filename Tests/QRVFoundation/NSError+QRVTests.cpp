#include "QRVFoundation/Source/NSError+QRV.h"

#include "Platform/Foundation/NSException.h"
#include "Platform/Foundation/NSNull.h"
#include "Platform/Foundation/NSNumber.h"
#include "QRVFoundation/Source/NSException+QRVStackTrace.h"
#include "Tests/Platform/Foundation/Printing.h"

#include <gtest/gtest.h>

namespace qrv {

namespace {

NSError plainError() {
    return NSError::errorWithDomain_code_userInfo(u"Some", 7, {{NSString(u"old"), NSString(u"value")}});
}

id valueOf(const NSError& error, const char16_t* key) {
    return error.userInfo().objectForKey(NSString(key));
}

class Thing : public Object {};

id thing() {
    return id(std::make_shared<Thing>());
}

} // namespace

TEST(NSErrorQRV, HasDomainAndCode) {
    EXPECT_TRUE(qrvHasDomain_code(plainError(), u"Some", 7));
    EXPECT_FALSE(qrvHasDomain_code(plainError(), u"Some", 8));
    EXPECT_FALSE(qrvHasDomain_code(plainError(), u"some", 7));
    EXPECT_FALSE(qrvHasDomain_code(plainError(), NSString(), 7));
    EXPECT_FALSE(qrvHasDomain_code(NSError(), u"Some", 7));
    EXPECT_FALSE(qrvHasDomain_code(NSError(), NSString(), 0));
}

struct PermissionsCase {
    const char16_t* domain;
    long long code;
    bool isPermissions;
};

void PrintTo(const PermissionsCase& test, std::ostream* out) {
    *out << printed(test.domain) << " " << test.code;
}

class FilePermissions : public testing::TestWithParam<PermissionsCase> {};

TEST_P(FilePermissions, AreToldByDomainAndCode) {
    const NSError error = NSError::errorWithDomain_code_userInfo(GetParam().domain, GetParam().code, {});
    EXPECT_EQ(qrvIsFilePermissionsError(error), GetParam().isPermissions);
}

INSTANTIATE_TEST_SUITE_P(NSErrorQRV, FilePermissions,
                         testing::Values(PermissionsCase{NSCocoaErrorDomain, 513, true},
                                         PermissionsCase{NSCocoaErrorDomain, 512, true},
                                         PermissionsCase{NSPOSIXErrorDomain, 13, true},
                                         PermissionsCase{NSCocoaErrorDomain, 13, true},
                                         PermissionsCase{NSCocoaErrorDomain, 257, false},
                                         PermissionsCase{NSPOSIXErrorDomain, 513, false},
                                         PermissionsCase{NSPOSIXErrorDomain, 1, false},
                                         PermissionsCase{QRVErrorDomain, 13, false}));

TEST(NSErrorQRV, FilePermissionsOfNilAreFalse) {
    EXPECT_FALSE(qrvIsFilePermissionsError(NSError()));
}

TEST(NSErrorQRV, Error1IsOfTheLibrarysDomain) {
    const NSDictionary userInfo{{NSString(u"a"), NSNumber::numberWithInteger(1)}};
    const NSError error = QRVError1(500, userInfo);
    EXPECT_TRUE(qrvHasDomain_code(error, u"QRVErrorDomain", 500));
    EXPECT_EQ(error.userInfo(), userInfo);
    EXPECT_EQ(QRVError1(1, {}).userInfo().count(), 0u);
}

TEST(NSErrorQRV, ErrorWithPlaceOverridesSameNamedEntriesAndKeepsTheOthers) {
    const NSDictionary userInfo{{NSString(u"QRVLine"), NSString(u"mine")}, {NSString(u"a"), NSString(u"b")}};
    const NSError error = qrvErrorWithDomain_code_file_line_function_codeString_userInfo(
        u"Some", -3, "/a/path/file.m", 42, "-[A b]", "x == y", userInfo);
    EXPECT_TRUE(qrvHasDomain_code(error, u"Some", -3));
    EXPECT_EQ(error.userInfo().count(), 5u);
    EXPECT_EQ(valueOf(error, u"QRVFile"), NSString(u"/a/path/file.m"));
    EXPECT_EQ(valueOf(error, u"QRVLine"), NSNumber::numberWithUnsignedInteger(42));
    EXPECT_EQ(valueOf(error, u"QRVFunction"), NSString(u"-[A b]"));
    EXPECT_EQ(valueOf(error, u"QRVCodeString"), NSString(u"x == y"));
    EXPECT_EQ(valueOf(error, u"a"), NSString(u"b"));
    EXPECT_EQ(userInfo.objectForKey(NSString(u"QRVLine")), NSString(u"mine"));
}

TEST(NSErrorQRV, ErrorWithPlaceSetsTheFourKeysInOrder) {
    const NSError error =
        qrvErrorWithDomain_code_file_line_function_codeString_userInfo(u"Some", 1, "f", 1, "g", "c", {});
    EXPECT_EQ(error.userInfo().allKeys().componentsJoinedByString(u" "),
              NSString(u"QRVFile QRVLine QRVFunction QRVCodeString"));
}

TEST(NSErrorQRV, ErrorWithPlaceRaisesForAMissingRequiredArgument) {
    const auto make = [](const NSString& domain, const char* file, const char* function, const char* code) {
        return qrvErrorWithDomain_code_file_line_function_codeString_userInfo(domain, 1, file, 1, function,
                                                                              code, {});
    };
    EXPECT_NO_THROW(make(u"D", "f", "g", "c"));
    EXPECT_THROW(make({}, "f", "g", "c"), NSException);
    EXPECT_THROW(make(u"D", nullptr, "g", "c"), NSException);
    EXPECT_THROW(make(u"D", "f", nullptr, "c"), NSException);
    try {
        make(u"D", "f", "g", nullptr);
        FAIL();
    } catch (const NSException& exception) {
        EXPECT_EQ(exception.name(), NSString(NSInvalidArgumentException));
    }
}

TEST(NSErrorQRV, RequirementErrorQuotesTheRequirement) {
    const NSError error = qrvRequirementFailedError_userInfo(u"a > b", {{NSString(u"k"), NSString(u"v")}});
    EXPECT_TRUE(qrvHasDomain_code(error, QRVErrorDomain, 901));
    EXPECT_EQ(valueOf(error, NSLocalizedDescriptionKey),
              NSString(u"The requirement \u201Ca > b\u201D was not satisfied."));
    EXPECT_EQ(valueOf(error, u"QRVFailingObject"), NSString(u"a > b"));
    EXPECT_EQ(valueOf(error, u"k"), NSString(u"v"));
    EXPECT_EQ(error.userInfo().count(), 3u);
}

TEST(NSErrorQRV, RequirementErrorStoresTheEmptyStringForNil) {
    const NSError error = qrvRequirementFailedError({});
    EXPECT_EQ(valueOf(error, u"QRVFailingObject"), NSString(u""));
    EXPECT_EQ(valueOf(error, NSLocalizedDescriptionKey),
              NSString(u"The requirement \u201C(null)\u201D was not satisfied."));
    EXPECT_EQ(error.userInfo().count(), 2u);
}

TEST(NSErrorQRV, RequirementErrorCarriesTheStackTraceWhenThereIsASource) {
    qrvSetStackTraceSource([] { return NSString(u"1 main"); });
    EXPECT_EQ(valueOf(qrvRequirementFailedError(u"r"), NSLocalizedRecoverySuggestionErrorKey),
              NSString(u"1 main"));
    qrvSetStackTraceSource([] { return NSString(); });
    EXPECT_EQ(valueOf(qrvRequirementFailedError(u"r"), NSLocalizedRecoverySuggestionErrorKey),
              NSString(u"<nil>"));
    qrvSetStackTraceSource(nullptr);
    EXPECT_TRUE(valueOf(qrvRequirementFailedError(u"r"), NSLocalizedRecoverySuggestionErrorKey).isNil());
}

TEST(NSErrorQRV, ErrorWithCodeAndFailingObjectHasExactlyThatEntry) {
    const NSError error = qrvErrorWithCode_failingObject(12, NSNumber::numberWithInteger(3));
    EXPECT_TRUE(qrvHasDomain_code(error, QRVErrorDomain, 12));
    EXPECT_EQ(error.userInfo(),
              (NSDictionary{{NSString(u"QRVFailingObject"), NSNumber::numberWithInteger(3)}}));
    EXPECT_EQ(valueOf(qrvErrorWithCode_failingObject(12, {}), u"QRVFailingObject"), NSString(u"<nil>"));
}

TEST(NSErrorQRV, UnsupportedKeyErrorNamesKeyAndPath) {
    const NSURL url = NSURL::fileURLWithPath_isDirectory(u"/a b/c", false);
    const NSError error = qrvErrorWithUnsupportedKey_forURL(NSString(u"key"), url);
    EXPECT_TRUE(qrvHasDomain_code(error, QRVErrorDomain, 1001));
    EXPECT_EQ(error.userInfo(), (NSDictionary{{NSString(u"QRVFailingKey"), NSString(u"key")},
                                              {NSString(NSFilePathErrorKey), NSString(u"/a b/c")}}));
    EXPECT_EQ(valueOf(qrvErrorWithUnsupportedKey_forURL(NSString(u"key"), {}), NSFilePathErrorKey),
              NSString(u"<nil>"));
}

TEST(NSErrorQRV, UnsupportedKeyErrorRaisesForANilKey) {
    EXPECT_THROW(qrvErrorWithUnsupportedKey_forURL({}, {}), NSException);
}

TEST(NSErrorQRV, FailingObjectErrorIsTheCocoaReadErrorWithTheTypes) {
    const NSURL url = NSURL::fileURLWithPath_isDirectory(u"/a/b", false);
    const NSError error =
        qrvErrorWithFailingObject_expectedClass_forURL(NSString(u"text"), Class(NSNumber::classInfo()), url);
    EXPECT_TRUE(qrvHasDomain_code(error, NSCocoaErrorDomain, 259));
    EXPECT_EQ(valueOf(error, NSFilePathErrorKey), NSString(u"/a/b"));
    EXPECT_EQ(valueOf(error, u"QRVFailingObject"), NSString(u"text"));
    EXPECT_EQ(valueOf(error, u"QRVExpectedType"), Class(NSNumber::classInfo()));
    EXPECT_EQ(valueOf(error, u"QRVActualType"), Class(NSString::classInfo()));
}

TEST(NSErrorQRV, FailingObjectErrorWithoutAPathStoresNilText) {
    for (const NSURL& url : {NSURL(), NSURL::URLWithString(u"about:blank")}) {
        const NSError error = qrvErrorWithFailingObject_expectedClass_forURL({}, {}, url);
        EXPECT_EQ(valueOf(error, NSFilePathErrorKey), NSString(u"<nil>"));
    }
}

TEST(NSErrorQRV, ValueErrorTellsKeyExpectedAndActualInThatOrder) {
    const NSError error = qrvErrorWithActualValue_expectedValue_forKey(
        NSNumber::numberWithInteger(1), NSNumber::numberWithInteger(2), NSString(u"k"));
    EXPECT_TRUE(qrvHasDomain_code(error, QRVErrorDomain, 2000));
    EXPECT_EQ(error.userInfo(),
              (NSDictionary{{NSString(u"QRVActualValue"), NSNumber::numberWithInteger(1)},
                            {NSString(u"QRVExpectedValue"), NSNumber::numberWithInteger(2)},
                            {NSString(u"QRVFailingKey"), NSString(u"k")},
                            {NSString(NSLocalizedDescriptionKey),
                             NSString(u"The value for k was expected to be 2 but was 1.")}}));
}

TEST(NSErrorQRV, ValueErrorOfNilsStoresNilTextAndPrintsNull) {
    const NSError error = qrvErrorWithActualValue_expectedValue_forKey({}, {}, {});
    EXPECT_EQ(valueOf(error, u"QRVActualValue"), NSString(u"<nil>"));
    EXPECT_EQ(valueOf(error, u"QRVExpectedValue"), NSString(u"<nil>"));
    EXPECT_EQ(valueOf(error, u"QRVFailingKey"), NSString(u"<nil>"));
    EXPECT_EQ(valueOf(error, NSLocalizedDescriptionKey),
              NSString(u"The value for (null) was expected to be (null) but was (null)."));
}

TEST(NSErrorQRV, CheckValueOfTwoEqualStringsLeavesTheErrorUntouched) {
    const NSError before = plainError();
    NSError error = before;
    EXPECT_TRUE(
        qrvCheckValue_matchesValue_forKey_error(NSString(u"a"), NSString(u"a"), NSString(u"k"), &error));
    EXPECT_TRUE(error.isIdenticalTo(before));
    EXPECT_TRUE(qrvCheckValue_matchesValue_forKey_error(NSString(u"a"), NSString(u"a"), {}, nullptr));
}

TEST(NSErrorQRV, CheckValueOfNilAndNilFailsWithOneStackFrame) {
    NSError error;
    EXPECT_FALSE(qrvCheckValue_matchesValue_forKey_error({}, {}, NSString(u"k"), &error));
    EXPECT_TRUE(qrvHasDomain_code(error, QRVErrorDomain, 2000));
    const NSArray frames = as<NSArray>(valueOf(error, u"QRVStackFrames"));
    ASSERT_EQ(frames.count(), 1u);
    const NSString frame = as<NSString>(frames.objectAtIndex(0));
    EXPECT_TRUE(frame.hasPrefix(u"+[NSError(QRV) qrvCheckValue:matchesValue:forKey:error:] ("));
    EXPECT_TRUE(frame.hasSuffix(u")"));
}

TEST(NSErrorQRV, CheckValueWithoutAnErrorPlaceFailsToo) {
    EXPECT_FALSE(qrvCheckValue_matchesValue_forKey_error(NSString(u"a"), NSString(u"b"), {}, nullptr));
    EXPECT_FALSE(qrvCheckValue_matchesValue_forKey_error(NSString(u"a"), {}, {}, nullptr));
}

TEST(NSErrorQRV, SettingANilObjectStoresNilText) {
    const NSError error = qrvErrorBySettingObject_forKey(plainError(), {}, NSString(u"k"));
    EXPECT_EQ(valueOf(error, u"k"), NSString(u"<nil>"));
}

TEST(NSErrorQRV, SettingForANilKeyGivesACopyWithTheSameUserInfo) {
    EXPECT_EQ(qrvErrorBySettingObject_forKey(plainError(), NSString(u"x"), {}), plainError());
}

TEST(NSErrorQRV, SettingAnExistingKeyReplacesItsValueAndKeepsTheOthers) {
    const NSError first = qrvErrorBySettingObject_forKey(plainError(), NSString(u"1"), NSString(u"k"));
    const NSError second = qrvErrorBySettingObject_forKey(first, NSString(u"2"), NSString(u"k"));
    EXPECT_EQ(second.userInfo(),
              (NSDictionary{{NSString(u"old"), NSString(u"value")}, {NSString(u"k"), NSString(u"2")}}));
    EXPECT_EQ(valueOf(first, u"k"), NSString(u"1"));
    EXPECT_TRUE(qrvHasDomain_code(second, u"Some", 7));
}

TEST(NSErrorQRV, AddingAnEmptyOrNilUserInfoGivesTheReceiverItself) {
    const NSError error = plainError();
    EXPECT_TRUE(qrvErrorByAddingUserInfo(error, NSDictionary::dictionary()).isIdenticalTo(error));
    EXPECT_TRUE(qrvErrorByAddingUserInfo(error, {}).isIdenticalTo(error));
}

TEST(NSErrorQRV, AddingAUserInfoSetsEachKey) {
    const NSError error = qrvErrorByAddingUserInfo(
        plainError(), {{NSString(u"old"), NSString(u"new")}, {NSString(u"b"), NSString(u"c")}});
    EXPECT_EQ(error.userInfo(),
              (NSDictionary{{NSString(u"old"), NSString(u"new")}, {NSString(u"b"), NSString(u"c")}}));
}

TEST(NSErrorQRV, ModeIsStoredInOctalDigits) {
    EXPECT_EQ(valueOf(qrvErrorBySettingMode_forKey(plainError(), 0755, NSString(u"m")), u"m"),
              NSString(u"755"));
    EXPECT_EQ(valueOf(qrvErrorBySettingMode_forKey(plainError(), 0644, NSString(u"m")), u"m"),
              NSString(u"644"));
    EXPECT_EQ(valueOf(qrvErrorBySettingMode_forKey(plainError(), 0xFFFFFFFF, NSString(u"m")), u"m"),
              NSString(u"37777777777"));
}

TEST(NSErrorQRV, CFilePathStaysTheSamePathWhateverTheBytes) {
    EXPECT_EQ(valueOf(qrvErrorBySettingCFilePath(plainError(), "/\xC3\xA4"), NSFilePathErrorKey),
              NSString(u"/\u00E4"));
    EXPECT_EQ(valueOf(qrvErrorBySettingCFilePath(plainError(), "/\xFF"), NSFilePathErrorKey),
              NSString(u"/\xDCFF"));
    EXPECT_EQ(valueOf(qrvErrorBySettingCFilePath(plainError(), nullptr), NSFilePathErrorKey),
              NSString(u"<nil>"));
}

TEST(NSErrorQRV, FileURLStoresThePath) {
    const NSURL url = NSURL::fileURLWithPath_isDirectory(u"/a/\u00E4 b", false);
    EXPECT_EQ(valueOf(qrvErrorBySettingFileURL(plainError(), url), NSFilePathErrorKey),
              NSString(u"/a/\u00E4 b"));
    EXPECT_EQ(valueOf(qrvErrorBySettingFileURL(plainError(), {}), NSFilePathErrorKey), NSString(u"<nil>"));
}

TEST(NSErrorQRV, NewestStackFrameStandsFirst) {
    const NSError error =
        qrvErrorByAddingStackFrame_line(qrvErrorByAddingStackFrame_line(plainError(), "f", 1), "g", 2);
    EXPECT_EQ(as<NSArray>(valueOf(error, u"QRVStackFrames")).componentsJoinedByString(u", "),
              NSString(u"g (2), f (1)"));
}

TEST(NSErrorQRV, StackFrameOfANullFunctionIsMarked) {
    const NSError error = qrvErrorByAddingStackFrame_line(plainError(), nullptr, 1);
    EXPECT_EQ(as<NSArray>(valueOf(error, u"QRVStackFrames")).componentsJoinedByString(u""),
              NSString(u"(null) (1)"));
}

TEST(NSErrorQRV, FailingObjectAndExpectedClassOfNil) {
    const NSError error =
        qrvErrorBySettingFailingObject_expectedClass(plainError(), {}, Class(NSString::classInfo()));
    EXPECT_EQ(valueOf(error, u"QRVFailingObject"), NSNull::null());
    EXPECT_EQ(valueOf(error, u"QRVActualType"), NSNull::null());
    EXPECT_EQ(valueOf(error, u"QRVExpectedType"), Class(NSString::classInfo()));
}

TEST(NSErrorQRV, FailingObjectWithoutAnExpectedClassStoresNilTextForIt) {
    const id object = thing();
    const NSError error = qrvErrorBySettingFailingObject_expectedClass(plainError(), object, {});
    EXPECT_EQ(valueOf(error, u"QRVFailingObject"), object);
    EXPECT_EQ(valueOf(error, u"QRVExpectedType"), NSString(u"<nil>"));
    EXPECT_EQ(valueOf(error, u"QRVActualType"), Class(Object::classInfo));
}

} // namespace qrv
