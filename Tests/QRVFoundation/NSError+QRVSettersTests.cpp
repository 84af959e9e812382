// The operations that copy an error with one more key, as a table.

#include "QRVFoundation/Source/NSError+QRV.h"

#include "Platform/Foundation/NSNull.h"
#include "Platform/Foundation/NSNumber.h"

#include <functional>
#include <gtest/gtest.h>

namespace qrv {

namespace {

NSError plainError() {
    return NSError::errorWithDomain_code_userInfo(u"Some", 7, {{NSString(u"old"), NSString(u"value")}});
}

id valueOf(const NSError& error, const char16_t* key) {
    return error.userInfo().objectForKey(NSString(key));
}

const ClassInfo specialErrorInfo{"SpecialError", &NSError::classInfo()};

class SpecialError : public NSErrorObject {
public:
    using NSErrorObject::NSErrorObject;

    const ClassInfo& objectClass() const override { return specialErrorInfo; }
};

} // namespace

struct SetterCase {
    const char* name;
    std::function<NSError(const NSError&)> set;
    const char16_t* key;
    id value;
};

void PrintTo(const SetterCase& test, std::ostream* out) {
    *out << test.name;
}

class Setter : public testing::TestWithParam<SetterCase> {};

TEST_P(Setter, CopiesWithOneMoreKey) {
    const NSError before = plainError();
    const NSError after = GetParam().set(before);
    EXPECT_EQ(valueOf(after, GetParam().key), GetParam().value);
    EXPECT_EQ(valueOf(after, u"old"), NSString(u"value"));
    EXPECT_TRUE(qrvHasDomain_code(after, u"Some", 7));
    EXPECT_EQ(before, plainError());
}

TEST_P(Setter, GivesAPlainErrorForASubclassInstance) {
    const NSError special(std::make_shared<SpecialError>(NSString(u"Some"), 7, NSDictionary()));
    ASSERT_EQ(special.objectClass(), &specialErrorInfo);
    EXPECT_EQ(GetParam().set(special).objectClass(), &NSError::classInfo());
}

TEST_P(Setter, OfNilIsNil) {
    EXPECT_TRUE(GetParam().set(NSError()).isNil());
}

INSTANTIATE_TEST_SUITE_P(
    NSErrorQRV, Setter,
    testing::Values(
        SetterCase{"Object",
                   [](const NSError& e) {
                       return qrvErrorBySettingObject_forKey(e, NSString(u"x"), NSString(u"k"));
                   },
                   u"k", NSString(u"x")},
        SetterCase{"UserInfo",
                   [](const NSError& e) {
                       return qrvErrorByAddingUserInfo(e, {{NSString(u"k"), NSString(u"x")}});
                   },
                   u"k", NSString(u"x")},
        SetterCase{"Mode",
                   [](const NSError& e) { return qrvErrorBySettingMode_forKey(e, 07, NSString(u"k")); }, u"k",
                   NSString(u"7")},
        SetterCase{"FilePath", [](const NSError& e) { return qrvErrorBySettingFilePath(e, u"/p"); },
                   NSFilePathErrorKey, NSString(u"/p")},
        SetterCase{"FilePathNil", [](const NSError& e) { return qrvErrorBySettingFilePath(e, {}); },
                   NSFilePathErrorKey, NSString(u"<nil>")},
        SetterCase{
            "FileURL",
            [](const NSError& e) { return qrvErrorBySettingFileURL(e, NSURL::URLWithString(u"file:///p")); },
            NSFilePathErrorKey, NSString(u"/p")},
        SetterCase{"CFilePath", [](const NSError& e) { return qrvErrorBySettingCFilePath(e, "/p"); },
                   NSFilePathErrorKey, NSString(u"/p")},
        SetterCase{"URL",
                   [](const NSError& e) { return qrvErrorBySettingURL(e, NSURL::URLWithString(u"a:b")); },
                   NSURLErrorKey, NSURL::URLWithString(u"a:b")},
        SetterCase{"URLNil", [](const NSError& e) { return qrvErrorBySettingURL(e, {}); }, NSURLErrorKey,
                   NSString(u"<nil>")},
        SetterCase{"DestinationFilePath",
                   [](const NSError& e) { return qrvErrorBySettingDestinationFilePath(e, u"/p"); },
                   u"NSDestinationFilePath", NSString(u"/p")},
        SetterCase{"DestinationFilePathNil",
                   [](const NSError& e) { return qrvErrorBySettingDestinationFilePath(e, {}); },
                   u"NSDestinationFilePath", NSString(u"<nil>")},
        SetterCase{"StackFrame", [](const NSError& e) { return qrvErrorByAddingStackFrame_line(e, "f", 1); },
                   u"QRVStackFrames", NSArray({NSString(u"f (1)")})},
        SetterCase{"Description", [](const NSError& e) { return qrvErrorBySettingDescription(e, u"x"); },
                   NSLocalizedDescriptionKey, NSString(u"x")},
        SetterCase{"DescriptionNil", [](const NSError& e) { return qrvErrorBySettingDescription(e, {}); },
                   NSLocalizedDescriptionKey, NSString(u"<nil>")},
        SetterCase{"RecoverySuggestion",
                   [](const NSError& e) { return qrvErrorBySettingRecoverySuggestion(e, u"x"); },
                   NSLocalizedRecoverySuggestionErrorKey, NSString(u"x")},
        SetterCase{"RecoverySuggestionNil",
                   [](const NSError& e) { return qrvErrorBySettingRecoverySuggestion(e, {}); },
                   NSLocalizedRecoverySuggestionErrorKey, NSString(u"<nil>")},
        SetterCase{"UnderlyingError",
                   [](const NSError& e) { return qrvErrorBySettingUnderlyingError(e, plainError()); },
                   NSUnderlyingErrorKey, plainError()},
        SetterCase{"UnderlyingErrorNil",
                   [](const NSError& e) { return qrvErrorBySettingUnderlyingError(e, {}); },
                   NSUnderlyingErrorKey, NSString(u"<nil>")},
        SetterCase{"UnderlyingReason",
                   [](const NSError& e) {
                       return qrvErrorBySettingUnderlyingReason(e, NSNumber::numberWithInteger(1));
                   },
                   u"QRVUnderlyingReason", NSNumber::numberWithInteger(1)},
        SetterCase{"UnderlyingReasonNil",
                   [](const NSError& e) { return qrvErrorBySettingUnderlyingReason(e, {}); },
                   u"QRVUnderlyingReason", NSString(u"<nil>")},
        SetterCase{"FailingObject",
                   [](const NSError& e) { return qrvErrorBySettingFailingObject(e, NSString(u"x")); },
                   u"QRVFailingObject", NSString(u"x")},
        SetterCase{"FailingObjectNil", [](const NSError& e) { return qrvErrorBySettingFailingObject(e, {}); },
                   u"QRVFailingObject", NSNull::null()},
        SetterCase{"ExpectedClass",
                   [](const NSError& e) {
                       return qrvErrorBySettingFailingObject_expectedClass(e, NSString(u"x"),
                                                                           Class(NSURL::classInfo()));
                   },
                   u"QRVActualType", Class(NSString::classInfo())},
        SetterCase{"Arguments",
                   [](const NSError& e) { return qrvErrorBySettingArguments(e, NSArray::array()); },
                   u"QRVArguments", NSArray::array()},
        SetterCase{"ArgumentsNil", [](const NSError& e) { return qrvErrorBySettingArguments(e, {}); },
                   u"QRVArguments", NSNull::null()},
        SetterCase{"HelpAnchor", [](const NSError& e) { return qrvErrorBySettingHelpAnchor(e, u"x"); },
                   NSHelpAnchorErrorKey, NSString(u"x")},
        SetterCase{"HelpAnchorNil", [](const NSError& e) { return qrvErrorBySettingHelpAnchor(e, {}); },
                   NSHelpAnchorErrorKey, NSString(u"")}),
    [](const auto& test) { return std::string(test.param.name); });

} // namespace qrv
