#include "Platform/Foundation/NSError.h"

#include "Platform/Foundation/NSException.h"
#include "Tests/Platform/Foundation/Printing.h"

#include <cerrno>
#include <cstring>
#include <gtest/gtest.h>

namespace qrv {

namespace {

NSError error(const char16_t* domain, long long code, const NSDictionary& userInfo = {}) {
    return NSError::errorWithDomain_code_userInfo(domain, code, userInfo);
}

NSDictionary atPath(const char16_t* path) {
    return {{NSString(NSFilePathErrorKey), NSString(path)}};
}

} // namespace

TEST(NSError, CarriesDomainCodeAndUserInfo) {
    const NSError e = error(u"D", -5, {{NSString(u"k"), NSString(u"v")}});
    EXPECT_EQ(e.domain(), NSString(u"D"));
    EXPECT_EQ(e.code(), -5);
    EXPECT_EQ(e.userInfo().count(), 1u);
    EXPECT_EQ(error(u"D", 1).userInfo(), NSDictionary::dictionary());
}

TEST(NSError, EverythingIsDefinedOnNil) {
    const NSError nothing;
    EXPECT_TRUE(nothing.domain().isNil());
    EXPECT_EQ(nothing.code(), 0);
    EXPECT_TRUE(nothing.userInfo().isNil());
    EXPECT_TRUE(nothing.localizedDescription().isNil());
    EXPECT_TRUE(nothing.localizedFailureReason().isNil());
    EXPECT_TRUE(nothing.localizedRecoverySuggestion().isNil());
}

TEST(NSError, ANilDomainRaises) {
    EXPECT_THROW(NSError::errorWithDomain_code_userInfo(NSString(), 1, {}), NSException);
}

TEST(NSError, EqualityComparesAllThree) {
    EXPECT_EQ(error(u"D", 1), error(u"D", 1));
    EXPECT_EQ(error(u"D", 1).hash(), error(u"D", 1).hash());
    EXPECT_FALSE(error(u"D", 1) == error(u"D", 2));
    EXPECT_FALSE(error(u"D", 1) == error(u"E", 1));
    EXPECT_FALSE(error(u"D", 1) == error(u"D", 1, atPath(u"/x")));
}

TEST(NSError, TextsOfTheUserInfoComeFirst) {
    const NSError e = error(NSCocoaErrorDomain, 260,
                            {{NSString(NSLocalizedDescriptionKey), NSString(u"own text")},
                             {NSString(NSLocalizedFailureReasonErrorKey), NSString(u"why")},
                             {NSString(NSLocalizedRecoverySuggestionErrorKey), NSString(u"try")}});
    EXPECT_EQ(e.localizedDescription(), NSString(u"own text"));
    EXPECT_EQ(e.localizedFailureReason(), NSString(u"why"));
    EXPECT_EQ(e.localizedRecoverySuggestion(), NSString(u"try"));
    EXPECT_TRUE(error(u"D", 1).localizedFailureReason().isNil());
}

TEST(NSError, DescriptionShowsDomainCodeTextAndUserInfo) {
    EXPECT_EQ(error(u"D", 5).description(), NSString(u"Error Domain=D Code=5 \"(null)\" UserInfo={}"));
    EXPECT_EQ(error(u"D", 5,
                    {{NSString(NSLocalizedDescriptionKey), NSString(u"t")}, {NSString(u"k"), NSString(u"v")}})
                  .description(),
              NSString(u"Error Domain=D Code=5 \"t\" UserInfo={NSLocalizedDescription=t, k=v}"));
}

struct StandardText {
    const char16_t* domain;
    long long code;
    const char16_t* path;
    const char16_t* text;
};

void PrintTo(const StandardText& text, std::ostream* out) {
    *out << NSString(text.domain).utf8() << " " << text.code;
}

class NSErrorStandardText : public testing::TestWithParam<StandardText> {};

TEST_P(NSErrorStandardText, IsTheOneOfDomainAndCode) {
    const StandardText& p = GetParam();
    EXPECT_EQ(error(p.domain, p.code, p.path ? atPath(p.path) : NSDictionary()).localizedDescription(),
              NSString(p.text));
}

INSTANTIATE_TEST_SUITE_P(
    Table, NSErrorStandardText,
    testing::Values(
        StandardText{NSCocoaErrorDomain, 259, u"/a/b.webarchive",
                     u"The file “b.webarchive” couldn’t be opened because it isn’t in the correct format."},
        StandardText{NSCocoaErrorDomain, 260, u"/a/b",
                     u"The file “b” couldn’t be opened because there is no such file."},
        StandardText{NSCocoaErrorDomain, 257, u"/a/b",
                     u"The file “b” couldn’t be opened because you don’t have permission to view it."},
        StandardText{NSCocoaErrorDomain, 256, u"/a/b", u"The file “b” couldn’t be opened."},
        StandardText{NSCocoaErrorDomain, 263, u"/a/b",
                     u"The file “b” couldn’t be opened because it is too large."},
        StandardText{NSCocoaErrorDomain, 4, u"/a/b", u"The file “b” doesn’t exist."},
        StandardText{NSCocoaErrorDomain, 512, u"/a/b/c",
                     u"The file “c” couldn’t be saved in the folder “b”."},
        StandardText{NSCocoaErrorDomain, 513, u"/a/b/c",
                     u"You don’t have permission to save the file “c” in the folder “b”."},
        StandardText{NSCocoaErrorDomain, 640, u"/a/b/c",
                     u"The file “c” couldn’t be saved in the folder “b” because there isn’t enough space."},
        StandardText{NSCocoaErrorDomain, 642, u"/a/b/c",
                     u"The file “c” couldn’t be saved in the folder “b” because the volume is read only."},
        StandardText{NSCocoaErrorDomain, 260, nullptr,
                     u"The operation couldn’t be completed. (NSCocoaErrorDomain error 260.)"},
        StandardText{NSCocoaErrorDomain, 9999, u"/a",
                     u"The operation couldn’t be completed. (NSCocoaErrorDomain error 9999.)"},
        StandardText{u"MyDomain", -7, nullptr, u"The operation couldn’t be completed. (MyDomain error -7.)"},
        StandardText{NSPOSIXErrorDomain, ENOENT, nullptr,
                     u"The operation couldn’t be completed. No such file or directory"},
        StandardText{NSPOSIXErrorDomain, -1, nullptr,
                     u"The operation couldn’t be completed. (NSPOSIXErrorDomain error -1.)"},
        StandardText{NSURLErrorDomain, -999, nullptr, u"cancelled"},
        StandardText{NSURLErrorDomain, -1001, nullptr, u"The request timed out."},
        StandardText{NSURLErrorDomain, -5555, nullptr,
                     u"The operation couldn’t be completed. (NSURLErrorDomain error -5555.)"}));

struct ErrnoCode {
    int number;
    long long reading;
    long long writing;
};

void PrintTo(const ErrnoCode& code, std::ostream* out) {
    *out << ::strerrorname_np(code.number);
}

class NSErrorOfErrno : public testing::TestWithParam<ErrnoCode> {};

TEST_P(NSErrorOfErrno, BecomesAFileError) {
    const NSError reading = fileReadError(GetParam().number, u"/p");
    const NSError writing = fileWriteError(GetParam().number, u"/p");
    EXPECT_EQ(reading.code(), GetParam().reading);
    EXPECT_EQ(writing.code(), GetParam().writing);
    for (const NSError& e : {reading, writing}) {
        EXPECT_EQ(e.domain(), NSString(NSCocoaErrorDomain));
        EXPECT_EQ(e.userInfo().objectForKey(NSString(NSFilePathErrorKey)), id(NSString(u"/p")));
        EXPECT_EQ(e.userInfo().objectForKey(NSString(NSUnderlyingErrorKey)),
                  id(posixError(GetParam().number)));
    }
}

INSTANTIATE_TEST_SUITE_P(Numbers, NSErrorOfErrno,
                         testing::Values(ErrnoCode{ENOENT, 260, 4}, ErrnoCode{ENOTDIR, 260, 4},
                                         ErrnoCode{EACCES, 257, 513}, ErrnoCode{EPERM, 257, 513},
                                         ErrnoCode{EFBIG, 263, 512}, ErrnoCode{ENOMEM, 263, 512},
                                         ErrnoCode{ENOSPC, 256, 640}, ErrnoCode{EDQUOT, 256, 640},
                                         ErrnoCode{EROFS, 256, 642}, ErrnoCode{EIO, 256, 512}));

TEST(NSError, AFileErrorWithoutAPathHasNoPathEntry) {
    EXPECT_EQ(fileReadError(ENOENT, NSString()).userInfo().count(), 1u);
}

TEST(NSError, SetErrorStoresOnlyWhereWanted) {
    NSError destination;
    setError(&destination, error(u"D", 1));
    EXPECT_EQ(destination.code(), 1);
    setError(nullptr, error(u"D", 2));
    EXPECT_EQ(destination.code(), 1);
}

TEST(NSError, ASubclassOfThePayloadIsStillAnError) {
    static const ClassInfo info{"SpecialError", &NSError::classInfo()};

    struct Special final : NSErrorObject {
        using NSErrorObject::NSErrorObject;

        const ClassInfo& objectClass() const override { return info; }
    };

    const id special(std::make_shared<Special>(NSString(u"D"), 3, NSDictionary()));
    EXPECT_EQ(as<NSError>(special).code(), 3);
}

TEST(NSError, EndsHoweverLongItsChainIs) {
    NSError error = posixError(1);
    for (int i = 0; i < 500'000; ++i) {
        error =
            NSError::errorWithDomain_code_userInfo(u"Domain", i, {{NSString(NSUnderlyingErrorKey), error}});
    }
    const auto next = as<NSError>(error.userInfo().objectForKey(NSString(NSUnderlyingErrorKey)));
    error = NSError();
    EXPECT_EQ(next.code(), 499'998);
}

} // namespace qrv
