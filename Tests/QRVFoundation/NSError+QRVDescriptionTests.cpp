#include "QRVFoundation/Source/NSError+QRVDescription.h"

#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSNull.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSURL.h"
#include "QRVFoundation/Source/NSError+QRV.h"
#include "QRVFoundation/Source/NSException+QRVStackTrace.h"
#include "QRVFoundation/Source/QRVFunctions.h"

#include <gtest/gtest.h>

namespace qrv {

namespace {

NSNumber number(long long value) {
    return NSNumber::numberWithInteger(value);
}

/// An error with a description of its own, so that its text depends on nothing else.
NSError errorWith(const NSDictionary& userInfo) {
    const NSError error = NSError::errorWithDomain_code_userInfo(u"D", 7, userInfo);
    return qrvErrorBySettingDescription(error, u"d");
}

id valueOf(const NSError& error, const char16_t* key) {
    return error.userInfo().objectForKey(NSString(key));
}

/// An object of a class of one's own, with the description given; it cannot be archived.
class Thing : public Object {
public:
    explicit Thing(const ClassInfo& info = Object::classInfo, NSString text = u"a thing")
        : info_(info), text_(std::move(text)) {}

    const ClassInfo& objectClass() const override { return info_; }

    NSString description() const override { return text_; }

private:
    const ClassInfo& info_;
    NSString text_;
};

id thing(const NSString& text) {
    return id(std::make_shared<Thing>(Object::classInfo, text));
}

const ClassInfo bridgeInfo{"SBObject", &Object::classInfo};
const ClassInfo bridgedInfo{"SomeApplication", &bridgeInfo};
const ClassInfo eventInfo{"NSAppleEventDescriptor", &Object::classInfo};

class ArchivableThing : public Thing, public NSCoding {
public:
    using Thing::Thing;
};

} // namespace

TEST(FullDescription, HoldsThePlatformsDescriptionWhenThereIsNoUserInfo) {
    const NSError error = NSError::errorWithDomain_code_userInfo(u"D", -1, {});
    EXPECT_EQ(qrvFullDescription(error).utf8(),
              "<NSError Domain=D Code=-1 UserInfo={\n    NSLocalizedDescription = \"" +
                  error.localizedDescription().utf8() + "\"\n    }>");
}

TEST(FullDescription, PrintsTheStoredDescription) {
    const NSError error = NSError::errorWithDomain_code_userInfo(
        NSCocoaErrorDomain, 260, {{NSString(NSLocalizedDescriptionKey), NSString(u"own")}});
    EXPECT_EQ(qrvFullDescription(error).utf8(), "<NSError Domain=NSCocoaErrorDomain Code=260 UserInfo={\n"
                                                "    NSLocalizedDescription = \"own\"\n"
                                                "    }>");
}

TEST(FullDescription, StoredDescriptionThatIsNoTextIsNotOverwritten) {
    const NSError error =
        NSError::errorWithDomain_code_userInfo(u"D", 1, {{NSString(NSLocalizedDescriptionKey), number(5)}});
    EXPECT_NE(qrvFullDescription(error).utf8().find("NSLocalizedDescription = 5\n"), std::string::npos);
}

TEST(FullDescription, EntriesStandInTheOrderOfTheirKeysEachOnALineOfItsOwn) {
    const NSError error = errorWith({{NSString(u"b"), number(1)}, {NSString(u"a"), NSString(u"x")}});
    EXPECT_EQ(qrvFullDescription(error).utf8(), "<NSError Domain=D Code=7 UserInfo={\n"
                                                "    NSLocalizedDescription = \"d\",\n"
                                                "    a = \"x\",\n"
                                                "    b = 1\n"
                                                "    }>");
}

TEST(FullDescription, UnderlyingErrorIsAQuotedIndentedBlock) {
    const NSError inner = errorWith({});
    const NSError middle = qrvErrorBySettingUnderlyingError(errorWith({}), inner);
    EXPECT_EQ(qrvFullDescription(qrvErrorBySettingUnderlyingError(errorWith({}), middle)).utf8(),
              "<NSError Domain=D Code=7 UserInfo={\n"
              "    NSLocalizedDescription = \"d\",\n"
              "    NSUnderlyingError = \"<NSError Domain=D Code=7 UserInfo={\n"
              "            NSLocalizedDescription = \"d\",\n"
              "            NSUnderlyingError = \"<NSError Domain=D Code=7 UserInfo={\n"
              "                    NSLocalizedDescription = \"d\"\n"
              "                    }>\"\n"
              "            }>\"\n"
              "    }>");
}

TEST(FullDescription, ErrorUnderAnotherKeyIsPrintedUnquoted) {
    EXPECT_EQ(qrvFullDescription(errorWith({{NSString(u"other"), errorWith({})}})).utf8(),
              "<NSError Domain=D Code=7 UserInfo={\n"
              "    NSLocalizedDescription = \"d\",\n"
              "    other = <NSError Domain=D Code=7 UserInfo={\n"
              "        NSLocalizedDescription = \"d\"\n"
              "        }>\n"
              "    }>");
}

TEST(FullDescription, UnderlyingValueThatIsNoErrorIsPrintedAsItIs) {
    const NSError error = errorWith({{NSString(NSUnderlyingErrorKey), NSString(u"<nil>")}});
    EXPECT_NE(qrvFullDescription(error).utf8().find("NSUnderlyingError = \"<nil>\""), std::string::npos);
}

TEST(FullDescription, OfNilIsNil) {
    EXPECT_TRUE(qrvFullDescription({}).isNil());
}

TEST(PrettyPrint, StringStandsInQuotesWithoutEscapes) {
    EXPECT_EQ(prettyPrint(NSString(u"a \"b\" \\n")), NSString(u"\"a \"b\" \\n\""));
}

TEST(PrettyPrint, StringOfSeveralLinesIsIndented) {
    EXPECT_EQ(prettyPrint(NSString(u"a\nb\n")), NSString(u"\"a\n    b\n    \""));
}

TEST(PrettyPrint, NestedArrayStandsFourBlanksDeeperThanItsEntry) {
    const NSDictionary dictionary{{NSString(u"k"), NSArray({number(1), number(2)})}};
    EXPECT_EQ(prettyPrint(dictionary).utf8(), "{\n"
                                              "    k = (\n"
                                              "        1,\n"
                                              "        2\n"
                                              "        )\n"
                                              "    }");
}

TEST(PrettyPrint, EmptyCollectionsHaveAnEmptyLine) {
    EXPECT_EQ(prettyPrint(NSArray::array()), NSString(u"(\n    \n    )"));
    EXPECT_EQ(prettyPrint(NSDictionary::dictionary()), NSString(u"{\n    \n    }"));
}

TEST(PrettyPrint, BackslashAndNInADescriptionBecomeALineBreakIndented) {
    EXPECT_EQ(prettyPrint(thing(u"a\\nb")), NSString(u"a\n    b"));
    EXPECT_EQ(prettyPrint(NSArray({thing(u"a\\nb")})), NSString(u"(\n    a\n        b\n    )"));
}

TEST(PrettyPrint, OtherKindsReadAsTheirDescription) {
    EXPECT_EQ(prettyPrint(number(-3)), NSString(u"-3"));
    EXPECT_EQ(prettyPrint(NSNull::null()), NSString(u"<null>"));
    EXPECT_EQ(prettyPrint(Class(NSString::classInfo())),
              NSString::stringWithUTF8String(NSString::classInfo().name));
    EXPECT_EQ(prettyPrint(errorWith({})), qrvFullDescription(errorWith({})));
    EXPECT_TRUE(prettyPrint({}).isNil());
}

TEST(PrettyPrint, KeysThatAreNumbersStandInTheirOwnOrder) {
    const NSDictionary dictionary{{number(10), NSString(u"x")}, {number(9), NSString(u"y")}};
    EXPECT_EQ(prettyPrint(dictionary), NSString(u"{\n    9 = \"y\",\n    10 = \"x\"\n    }"));
}

TEST(PrettyPrint, KeysThatAreDatesStandInTheirOwnOrder) {
    const id late = NSDate::dateWithTimeIntervalSinceReferenceDate(1e9);
    const id early = NSDate::dateWithTimeIntervalSinceReferenceDate(-1e9);
    const std::string text = prettyPrint(NSDictionary{{late, number(2)}, {early, number(1)}}).utf8();
    EXPECT_LT(text.find("= 1"), text.find("= 2"));
}

TEST(PrettyPrint, KeysOfDifferentKindsStandInTheOrderOfTheirText) {
    const NSDictionary dictionary{
        {NSString(u"b"), number(1)}, {number(5), number(2)}, {NSString(u"4"), number(3)}};
    EXPECT_EQ(prettyPrint(dictionary), NSString(u"{\n    4 = 3,\n    5 = 2,\n    b = 1\n    }"));
}

namespace {

class TracedException : public NSException, public QRVStackTraceSupplier, public QRVShortStackTraceSupplier {
public:
    explicit TracedException(NSString trace) : NSException(u"Name", u"reason"), trace_(std::move(trace)) {}

    NSString qrvStackTrace() const override { return trace_; }

    NSString qrvShortStackTrace() const override { return u"short"; }

private:
    NSString trace_;
};

} // namespace

TEST(ErrorFromException, WithoutTheStackTraceHooksReadsUnknown) {
    const NSError error = qrvErrorFromException(NSException(u"Name", u"reason"));
    EXPECT_TRUE(qrvHasDomain_code(error, QRVErrorDomain, 5));
    EXPECT_EQ(error.userInfo(),
              (NSDictionary{{NSString(NSLocalizedDescriptionKey), NSString(u"Name")},
                            {NSString(NSLocalizedFailureReasonErrorKey),
                             NSString(u"Name - reason\nStack Trace: <unknown>")},
                            {NSString(NSLocalizedRecoverySuggestionErrorKey), NSString(u"reason")}}));
}

TEST(ErrorFromException, UsesTheTracesThatTheExceptionSupplies) {
    const NSError error = qrvErrorFromException(TracedException(u"trace"));
    EXPECT_EQ(valueOf(error, NSLocalizedFailureReasonErrorKey),
              NSString(u"Name - reason\nStack Trace: trace"));
    EXPECT_EQ(valueOf(error, u"QRVShortFailureReason"), NSString(u"Name - reason\nStack Trace: short"));
}

TEST(ErrorFromException, TakesTheCurrentTraceWhenTheExceptionHasNone) {
    qrvSetStackTraceSource([] { return NSString(u"current"); });
    const NSError error = qrvErrorFromException(TracedException({}));
    qrvSetStackTraceSource(nullptr);
    EXPECT_EQ(valueOf(error, NSLocalizedFailureReasonErrorKey),
              NSString(u"Name - reason\nStack Trace: current"));
}

TEST(ErrorFromException, RaisesWhenTheCurrentTraceIsNeededAndThereIsNoSource) {
    EXPECT_THROW(qrvErrorFromException(TracedException({})), NSException);
    EXPECT_THROW(qrvCurrentStackTrace(), NSException);
}

TEST(ErrorFromException, KeepsTheUserInfoAndTheLocationOfAFailedAssertion) {
    testing::internal::CaptureStderr();
    try {
        QRVFunctions::assertionFailedForFile_line_object_selector_format("a/Unit", 3, NSString(u"o"), "go",
                                                                         u"no");
    } catch (const QRVException& exception) {
        const NSError error = qrvErrorFromException(exception);
        EXPECT_EQ(valueOf(error, u"QRVExceptionLocation"), NSString(u"Unit:3 -go"));
        EXPECT_EQ(valueOf(error, NSLocalizedDescriptionKey), NSString(u"QRVAssertionFailedException"));
        EXPECT_EQ(valueOf(error, NSLocalizedRecoverySuggestionErrorKey), NSString(u"no at Unit:3 -go"));
    }
    testing::internal::GetCapturedStderr();
}

TEST(ErrorFromException, OverridesSameNamedEntriesOfTheUserInfo) {
    const NSDictionary userInfo{{NSString(NSLocalizedDescriptionKey), NSString(u"x")},
                                {NSString(u"k"), number(1)}};
    const NSError error = qrvErrorFromException(NSException(u"Name", u"reason", userInfo));
    EXPECT_EQ(valueOf(error, NSLocalizedDescriptionKey), NSString(u"Name"));
    EXPECT_EQ(valueOf(error, u"k"), number(1));
}

TEST(ErrorFromException, NeverSetsTheEditionFlags) {
    const NSError error = qrvErrorFromException(NSException(u"Name", u"reason"));
    EXPECT_TRUE(valueOf(error, u"QRVIsMacAppStoreVersion").isNil());
    EXPECT_TRUE(valueOf(error, u"QRVIsInAppSandbox").isNil());
}

TEST(ErrorFromException, RaisesForANilNameOrReason) {
    EXPECT_THROW(qrvErrorFromException(NSException({}, u"reason")), NSException);
    EXPECT_THROW(qrvErrorFromException(NSException(u"Name", {})), NSException);
}

TEST(ArchivableError, KeepsWhatCanBeArchived) {
    const NSDictionary userInfo{
        {NSString(u"string"), NSString(u"x")},
        {NSString(u"number"), number(1)},
        {NSString(u"date"), NSDate::dateWithTimeIntervalSinceReferenceDate(1)},
        {NSString(u"data"), NSData::data()},
        {NSString(u"array"), NSArray({thing(u"inside stays")})},
        {NSString(u"dictionary"), NSDictionary{{NSString(u"k"), thing(u"inside stays")}}},
        {NSString(u"url"), NSURL::URLWithString(u"a:b")},
        {NSString(u"null"), NSNull::null()}};
    EXPECT_EQ(qrvArchivableError(NSError::errorWithDomain_code_userInfo(u"D", 7, userInfo)),
              NSError::errorWithDomain_code_userInfo(u"D", 7, userInfo));
}

TEST(ArchivableError, StoresTheDescriptionOfWhatCannotBeArchived) {
    const NSError error = qrvArchivableError(NSError::errorWithDomain_code_userInfo(
        u"D", 7, {{NSString(u"t"), thing(u"text")}, {NSString(u"c"), Class(NSNumber::classInfo())}}));
    EXPECT_EQ(valueOf(error, u"t"), NSString(u"text"));
    EXPECT_EQ(valueOf(error, u"c"), NSString::stringWithUTF8String(NSNumber::classInfo().name));
}

TEST(ArchivableError, MakesNestedErrorsOfAnyKeyArchivable) {
    const NSError inner = NSError::errorWithDomain_code_userInfo(u"I", 1, {{NSString(u"t"), thing(u"text")}});
    const NSError error =
        qrvArchivableError(NSError::errorWithDomain_code_userInfo(u"D", 7, {{NSString(u"e"), inner}}));
    const NSError archived = as<NSError>(valueOf(error, u"e"));
    EXPECT_TRUE(qrvHasDomain_code(archived, u"I", 1));
    EXPECT_EQ(valueOf(archived, u"t"), NSString(u"text"));
}

TEST(ArchivableError, DescribesObjectsOfOtherProgramsEvenThoughTheyCanBeArchived) {
    for (const ClassInfo* info : {&bridgeInfo, &bridgedInfo, &eventInfo}) {
        const id object(std::make_shared<ArchivableThing>(*info, u"text"));
        const NSError error =
            qrvArchivableError(NSError::errorWithDomain_code_userInfo(u"D", 7, {{NSString(u"o"), object}}));
        EXPECT_EQ(valueOf(error, u"o"), NSString(u"text"));
    }
    const id other(std::make_shared<ArchivableThing>());
    EXPECT_EQ(valueOf(qrvArchivableError(
                          NSError::errorWithDomain_code_userInfo(u"D", 7, {{NSString(u"o"), other}})),
                      u"o"),
              other);
}

TEST(ArchivableError, WithoutAUserInfoHasAnEmptyOne) {
    const NSError error = qrvArchivableError(NSError::errorWithDomain_code_userInfo(u"D", 7, {}));
    EXPECT_FALSE(error.userInfo().isNil());
    EXPECT_EQ(error.userInfo().count(), 0u);
    EXPECT_TRUE(qrvArchivableError({}).isNil());
}

} // namespace qrv
