#include "Source/Tools/web2pdf.h"

#include "Platform/Foundation/NSAutoreleasePool.h"
#include "Platform/Foundation/NSException.h"
#include "Platform/Foundation/NSNull.h"
#include "Platform/Foundation/NSNumber.h"
#include "QRVFoundation/Source/NSError+QRV.h"
#include "Source/Tools/loader.h"
#include "Tests/Tools/ToolTest.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <new>
#include <unistd.h>

namespace qrv {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::SizeIs;

class Web2PDFTest : public ToolTest {
protected:
    static NSError error(const NSDictionary& userInfo) {
        return NSError::errorWithDomain_code_userInfo(u"domain", -7, userInfo);
    }

    std::string entry(const char16_t* key) const {
        return result().objectForKey(NSString(key)).description().utf8();
    }

    static void setArguments(const std::vector<const char16_t*>& arguments) {
        std::vector<id> elements;
        for (const char16_t* argument : arguments) elements.push_back(NSString(argument));
        NSProcessInfo::processInfo().setArgumentsForTesting(NSArray(std::move(elements)));
    }

    void expectBadArguments() const {
        EXPECT_EQ(exitStatusOf([] { runWeb2PDF(); }), 0);
        EXPECT_EQ(resultKeys(), "succeeded errorData errorString");
        EXPECT_EQ(entry(u"errorString"), "wrong number of arguments");
        EXPECT_EQ(resultError().domain(), NSString(u"org.quillvane.quillvane.web2pdf"));
        EXPECT_EQ(resultError().code(), 1);
        EXPECT_EQ(resultError().userInfo(), (NSDictionary{{NSString(NSLocalizedDescriptionKey),
                                                           NSString(u"wrong number of arguments")}}));
        EXPECT_EQ(pagesMade, 0);
    }

    int pagesMade = 0;
};

// Results

TEST_F(Web2PDFTest, SuccessHasTwoEntries) {
    EXPECT_EQ(exitStatusOf([] { finishWithErrorAndPath({}, u"/tmp/ä & b.pdf"); }), 0);
    EXPECT_EQ(resultKeys(), "succeeded path");
    const auto succeeded = as<NSNumber>(result().objectForKey(NSString(u"succeeded")));
    EXPECT_TRUE(succeeded.isBoolean());
    EXPECT_TRUE(succeeded.boolValue());
    EXPECT_EQ(result().objectForKey(NSString(u"path")), id(NSString(u"/tmp/ä & b.pdf")));
}

TEST_F(Web2PDFTest, CharactersThatTheAnswerCannotHoldAreReplaced) {
    EXPECT_EQ(exitStatusOf([] { finishWithErrorAndPath({}, u"/tmp/a\x0001\xD800\xFFFF\tb.pdf"); }), 0);
    EXPECT_EQ(result().objectForKey(NSString(u"path")), id(NSString(u"/tmp/a\uFFFD\uFFFD\uFFFD\tb.pdf")));
}

TEST_F(Web2PDFTest, BytesOfAPathThatAreNoUTF8AreReplacedInTheWholeAnswer) {
    EXPECT_EQ(exitStatusOf([] { finishWithError(makeBadArchiveError(NSString::fromFileSystem("/\xE9.a"))); }),
              0);
    EXPECT_EQ(resultError().userInfo(),
              (NSDictionary{{NSString(NSFilePathErrorKey), NSString(u"/\uFFFD.a")}}));
    EXPECT_THAT(entry(u"errorString"), HasSubstr("\uFFFD.a"));
}

TEST_F(Web2PDFTest, FailureHasThreeEntries) {
    const NSError failure = error({{NSString(NSLocalizedDescriptionKey), NSString(u"It did not work.")}});
    EXPECT_EQ(exitStatusOf([&] { finishWithError(failure); }), 0);
    EXPECT_EQ(resultKeys(), "succeeded errorData errorString");
    const auto succeeded = as<NSNumber>(result().objectForKey(NSString(u"succeeded")));
    EXPECT_TRUE(succeeded.isBoolean());
    EXPECT_FALSE(succeeded.boolValue());
    EXPECT_EQ(entry(u"errorString"), "It did not work.");
    EXPECT_EQ(resultError(), failure);
}

TEST_F(Web2PDFTest, SuccessWithoutAPathHasOneEntry) {
    EXPECT_EQ(exitStatusOf([] { finishWithErrorAndPath({}, {}); }), 0);
    EXPECT_EQ(resultKeys(), "succeeded");
}

TEST_F(Web2PDFTest, AFailureWithAPathKeepsIt) {
    EXPECT_EQ(exitStatusOf([&] { finishWithErrorAndPath(error({}), u"/tmp/a.pdf"); }), 0);
    EXPECT_EQ(resultKeys(), "succeeded errorData errorString path");
}

TEST_F(Web2PDFTest, TheResultIsAnXMLPropertyList) {
    EXPECT_EQ(exitStatusOf([] { finishWithErrorAndPath({}, u"/tmp/a.pdf"); }), 0);
    const std::string text = folder.read("result.plist");
    EXPECT_TRUE(text.starts_with("<?xml version=\"1.0\" encoding=\"UTF-8\"?>")) << text;
    EXPECT_THAT(text, HasSubstr("<plist version=\"1.0\">"));
    EXPECT_THAT(text, HasSubstr("<true/>"));
}

TEST_F(Web2PDFTest, AResultThatCannotBeWrittenEndsTheProcessAllTheSame) {
    ::setenv("OutPath", folder.path().c_str(), 1);
    EXPECT_EQ(exitStatusOf([] { finishWithErrorAndPath({}, u"/tmp/a.pdf"); }), 0);
    EXPECT_EQ(folder.count(), 0U);
}

TEST_F(Web2PDFTest, LogsTheError) {
    exitStatusOf([&] { finishWithError(error({})); });
    EXPECT_THAT(log.lines(),
                ElementsAre("[LogWeb2PDF] finish with error: " + error({}).description().utf8()));
}

TEST_F(Web2PDFTest, LogsSuccessAsNil) {
    log.install({LogWeb2PDF, QRVLoggerIncludeFile, QRVLoggerIncludeFunction});
    exitStatusOf([] { finishWithErrorAndPath({}, u"/tmp/a.pdf"); });
    EXPECT_THAT(log.lines(),
                ElementsAre("[LogWeb2PDF] web2pdf void finishWithErrorAndPath(NSError *, NSString *) "
                            "finish with error: (null)"));
}

TEST_F(Web2PDFTest, LogsNothingWhenTheAreaIsDisabled) {
    log.install({u"LogOther"});
    exitStatusOf([] { finishWithErrorAndPath({}, u"/tmp/a.pdf"); });
    EXPECT_THAT(log.lines(), IsEmpty());
}

// Where the result goes

using DeliveryTest = ToolTest;

TEST_F(DeliveryTest, WritesTheFileThatOutPathNames) {
    finishWithData(NSData("result"));
    EXPECT_EQ(folder.read("result.plist"), "result");
    EXPECT_EQ(folder.count(), 1U);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(DeliveryTest, ReplacesAnOldFile) {
    folder.write("result.plist", "an old and longer result");
    std::filesystem::create_hard_link(resultPath(), folder.path() / "old");
    finishWithData(NSData("new"));
    EXPECT_EQ(folder.read("result.plist"), "new");
    EXPECT_EQ(folder.read("old"), "an old and longer result") << "the file itself stays as it is";
}

TEST_F(DeliveryTest, WithoutOutPathWritesStandardOutputAndClosesIt) {
    ::unsetenv("OutPath");
    const int saved = ::dup(STDOUT_FILENO);
    const int file = ::open((folder.path() / "output").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    ASSERT_EQ(::dup2(file, STDOUT_FILENO), STDOUT_FILENO);
    ::close(file);
    finishWithData(NSData("result"));
    const bool closed = ::fcntl(STDOUT_FILENO, F_GETFD) < 0;
    ::dup2(saved, STDOUT_FILENO);
    ::close(saved);
    EXPECT_TRUE(closed);
    EXPECT_EQ(folder.read("output"), "result");
    EXPECT_FALSE(std::filesystem::exists(resultPath()));
}

TEST_F(DeliveryTest, AMissingFolderIsLoggedWithoutAreaAndNothingIsWritten) {
    const std::string path = (folder.path() / "missing" / "result.plist").string();
    ::setenv("OutPath", path.c_str(), 1);
    finishWithData(NSData("result"));
    ASSERT_THAT(log.lines(), SizeIs(1));
    EXPECT_TRUE(log.lines()[0].starts_with(" Error writing output to " + path +
                                           ": <NSError Domain=NSCocoaErrorDomain Code=4 "))
        << log.lines()[0];
    EXPECT_EQ(folder.count(), 0U);
}

TEST_F(DeliveryTest, AnEmptyOutPathIsAPathToo) {
    ::setenv("OutPath", "", 1);
    testing::internal::CaptureStdout();
    finishWithData(NSData("result"));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    ASSERT_THAT(log.lines(), SizeIs(1));
    EXPECT_TRUE(log.lines()[0].starts_with(" Error writing output to : <NSError ")) << log.lines()[0];
}

TEST_F(DeliveryTest, AFailureNamesTheUnitAndTheFunctionAndNeedsNoArea) {
    log.install({QRVLoggerIncludeFile, QRVLoggerIncludeLine, QRVLoggerIncludeFunction});
    ::setenv("OutPath", folder.path().c_str(), 1);
    finishWithData(NSData("result"));
    ASSERT_THAT(log.lines(), SizeIs(1));
    EXPECT_THAT(log.lines()[0].substr(0, log.lines()[0].find('\n')),
                MatchesRegex("loader:[0-9]+ void finishWithData\\(NSData \\*\\) Error writing output to .*"));
}

// Archived errors

NSError unarchived(const NSError& error) {
    return as<NSError>(NSKeyedUnarchiver::unarchiveObjectWithData(archiveError(error)));
}

TEST_F(Web2PDFTest, AnArchivedErrorHasTheSixKeysInTheirOrder) {
    const NSURL url = NSURL::URLWithString(u"https://a.example/");
    const NSError archived = unarchived(error({
        {NSString(NSLocalizedRecoverySuggestionErrorKey), NSString(u"suggestion")},
        {NSString(NSUnderlyingErrorKey), posixError(2)},
        {NSString(NSURLErrorKey), url},
        {NSString(NSLocalizedFailureReasonErrorKey), NSString(u"reason")},
        {NSString(QRVFileKey), NSString(u"file")},
        {NSString(QRVLineKey), NSNumber::numberWithInteger(1)},
        {NSString(QRVStackFramesKey), NSArray::array()},
        {NSString(NSFilePathErrorKey), NSString(u"/tmp/a")},
        {NSString(NSLocalizedDescriptionKey), NSString(u"description")},
        {NSString(NSURLErrorFailingURLStringErrorKey), NSString(u"https://b.example/")},
        {NSString(NSURLErrorFailingURLErrorKey), url},
    }));
    EXPECT_EQ(archived.domain(), NSString(u"domain"));
    EXPECT_EQ(archived.code(), -7);
    EXPECT_EQ(archived.userInfo().allKeys().componentsJoinedByString(u" ").utf8(),
              "NSErrorFailingURLStringKey NSLocalizedDescription NSFilePath NSURL NSLocalizedFailureReason "
              "NSLocalizedRecoverySuggestion");
    EXPECT_EQ(archived.userInfo().objectForKey(NSString(NSURLErrorKey)), url);
    EXPECT_EQ(archived.userInfo().objectForKey(NSString(NSFilePathErrorKey)), id(NSString(u"/tmp/a")));
}

TEST_F(Web2PDFTest, AnArchivedErrorHasOnlyTheKeysThatAreThere) {
    const NSDictionary userInfo{{NSString(NSFilePathErrorKey), NSString(u"/tmp/a")}};
    EXPECT_EQ(unarchived(error(userInfo)).userInfo(), userInfo);
}

TEST_F(Web2PDFTest, AnEmptyUserInfoStaysEmptyNotMissing) {
    const NSError archived = unarchived(error(NSDictionary::dictionary()));
    ASSERT_FALSE(archived.isNil());
    EXPECT_FALSE(archived.userInfo().isNil());
    EXPECT_EQ(archived.userInfo().count(), 0U);
}

// Errors of the tool's own

TEST_F(Web2PDFTest, FramesError) {
    const NSError made = makeFramesError(u"/tmp/a.webarchive");
    EXPECT_EQ(made.domain(), NSString(u"qvweb2pdf.frames"));
    EXPECT_EQ(made.code(), 0);
    EXPECT_EQ(made.userInfo(),
              (NSDictionary{{NSString(NSFilePathErrorKey), NSString(u"/tmp/a.webarchive")}}));
    EXPECT_EQ(made.localizedDescription().utf8(),
              "The operation couldn’t be completed. (qvweb2pdf.frames error 0.)");
}

TEST_F(Web2PDFTest, BadArchiveError) {
    const NSError made = makeBadArchiveError(u"/tmp/a.webarchive");
    EXPECT_EQ(made.domain(), NSString(NSCocoaErrorDomain));
    EXPECT_EQ(made.code(), 259);
    EXPECT_EQ(made.userInfo(),
              (NSDictionary{{NSString(NSFilePathErrorKey), NSString(u"/tmp/a.webarchive")}}));
    EXPECT_EQ(made.localizedDescription().utf8(),
              "The file “a.webarchive” couldn’t be opened because it isn’t in the correct format.");
}

TEST_F(Web2PDFTest, PrintFailedError) {
    const NSError made = makePrintFailedError(u"/tmp/a.pdf");
    EXPECT_EQ(made.domain(), NSString(NSCocoaErrorDomain));
    EXPECT_EQ(made.code(), 512);
    EXPECT_EQ(made.userInfo(), (NSDictionary{{NSString(NSFilePathErrorKey), NSString(u"/tmp/a.pdf")}}));
    EXPECT_EQ(made.localizedDescription().utf8(), "The file “a.pdf” couldn’t be saved in the folder “tmp”.");
}

TEST_F(Web2PDFTest, WhatIsNoPropertyListHasNoData) {
    EXPECT_TRUE(dataFromPropertyList(NSNull::null()).isNil());
    EXPECT_TRUE(dataFromPropertyList(error({})).isNil());
    EXPECT_FALSE(dataFromPropertyList(NSDictionary::dictionary()).isNil());
}

// The run

class ArgumentsTest : public Web2PDFTest {
protected:
    ArgumentsTest() {
        WebView::setPageFactoryForTesting([this](engine::PageClient& client) {
            ++pagesMade;
            scopes = NSAutoreleasePool::openScopes();
            return std::make_unique<ScriptedPage>(client);
        });
    }

    std::size_t scopes = 0; // when the page was made
};

TEST_F(ArgumentsTest, FourEntriesAreTooFew) {
    setArguments({u"web2pdf", u"screen", u"a.webarchive", u"a.pdf"});
    expectBadArguments();
}

TEST_F(ArgumentsTest, SixEntriesAreTooMany) {
    setArguments({u"web2pdf", u"screen", u"a.webarchive", u"a.pdf", u"uid", u"more"});
    expectBadArguments();
}

TEST_F(ArgumentsTest, OneEntryIsTooFew) {
    setArguments({u"web2pdf"});
    expectBadArguments();
}

TEST_F(ArgumentsTest, TheWholeRunHasAScope) {
    const std::size_t before = NSAutoreleasePool::openScopes();
    setArguments({u"web2pdf", u"screen", u"/nowhere/a.webarchive", u"/nowhere/a.pdf", u""});
    EXPECT_EQ(exitStatusOf([] { runWeb2PDF(); }), 0);
    EXPECT_EQ(scopes, before + 1);
}

TEST_F(ArgumentsTest, AnyModePassesTheCheck) {
    setArguments({u"web2pdf", u"", u"/nowhere/a.webarchive", u"/nowhere/a.pdf", u""});
    EXPECT_EQ(exitStatusOf([] { runWeb2PDF(); }), 0);
    EXPECT_EQ(pagesMade, 1);
    EXPECT_EQ(resultError().domain(), NSString(NSCocoaErrorDomain));
    EXPECT_EQ(resultError().code(), 260);
}

class ExceptionsTest : public Web2PDFTest {
protected:
    template <class Throw>
    void runAndThrow(Throw&& throwSomething) {
        WebView::setPageFactoryForTesting(
            [throwSomething](engine::PageClient&) -> std::unique_ptr<engine::Page> {
                throwSomething();
                return nullptr;
            });
        setArguments({u"web2pdf", u"screen", u"a.webarchive", u"a.pdf", u"uid"});
        EXPECT_EQ(exitStatusOf([] { runWeb2PDF(); }), 0);
        EXPECT_EQ(resultKeys(), "succeeded errorData errorString");
    }
};

TEST_F(ExceptionsTest, ARaisedExceptionBecomesTheResult) {
    runAndThrow([] { throw NSException(u"Name", u"because"); });
    EXPECT_EQ(resultError().domain(), NSString(QRVErrorDomain));
    EXPECT_EQ(resultError().code(), 5);
    EXPECT_EQ(entry(u"errorString"), "Name");
    EXPECT_EQ(resultError().localizedRecoverySuggestion(), NSString(u"because"));
}

TEST_F(ExceptionsTest, NoMemoryBecomesThePOSIXError) {
    runAndThrow([] { throw std::bad_alloc(); });
    EXPECT_EQ(resultError().domain(), NSString(NSPOSIXErrorDomain));
    EXPECT_EQ(resultError().code(), 12);
}

TEST_F(ExceptionsTest, AnyOtherExceptionBecomesAnErrorOfTheTool) {
    runAndThrow([] { throw std::runtime_error("out of order"); });
    EXPECT_EQ(resultError().domain(), NSString(Web2PDFErrorDomain));
    EXPECT_EQ(resultError().code(), 2);
    EXPECT_EQ(entry(u"errorString"), "out of order");
}

} // namespace
} // namespace qrv
