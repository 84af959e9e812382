#include "Source/Tools/web2pdf.h"

#include "Platform/AppKit/NSApplication.h"
#include "Platform/Foundation/NSAutoreleasePool.h"
#include "Platform/Foundation/NSException.h"
#include "Platform/Foundation/NSKeyedArchiver.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSProcessInfo.h"
#include "Platform/Foundation/NSPropertyListSerialization.h"
#include "Platform/Foundation/PropertyList/XMLCharacters.h"
#include "QRVFoundation/Source/NSError+QRVDescription.h"
#include "QRVFoundation/Source/QRVLog.h"
#include "Source/Tools/Deadline.h"
#include "Source/Tools/PDFLoader.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <functional>
#include <new>
#include <optional>

namespace qrv {

namespace {

ProcessExit exitOfTest = nullptr;

[[noreturn]] void exitProcess(int status) {
    if (exitOfTest) exitOfTest(status);
    std::exit(status);
}

NSError fileError(const NSString& domain, long long code, const NSString& path) {
    return NSError::errorWithDomain_code_userInfo(domain, code, {{NSString(NSFilePathErrorKey), path}});
}

NSError toolError(long long code, const NSString& description) {
    return NSError::errorWithDomain_code_userInfo(Web2PDFErrorDomain, code,
                                                  {{NSString(NSLocalizedDescriptionKey), description}});
}

/// Replaces each unpaired surrogate, which stands for a byte of a file's name that is no UTF-8, by U+FFFD.
NSString wellFormed(const NSString& text) {
    return NSString::fromUTF8(text.utf8());
}

/// Replaces each character that XML cannot represent by U+FFFD: an unusual file name must not prevent the
/// answer.
NSString deliverable(const NSString& text) {
    std::u16string units(wellFormed(text).view());
    std::replace_if(units.begin(), units.end(), std::not_fn(canStandInXML), u'\uFFFD');
    return NSString(std::move(units));
}

void logOutcome(const NSError& error) {
    QRV_LOG("Source/Tools/web2pdf", "void finishWithErrorAndPath(NSError *, NSString *)", LogWeb2PDF,
            u"finish with error: %@", error);
}

NSData resultOf(const NSError& error, const NSString& path) {
    NSMutableDictionary result;
    result.setObject_forKey(NSNumber::numberWithBool(error.isNil()), NSString(u"succeeded"));
    if (error) {
        result.setObject_forKey(archiveError(error), NSString(u"errorData"));
        result.setObject_forKey(deliverable(error.localizedDescription()), NSString(u"errorString"));
    }
    if (path) result.setObject_forKey(deliverable(path), NSString(u"path"));
    return dataFromPropertyList(result.copy());
}

void startDeadline() {
    const char* const text = std::getenv("WEB2PDF_DEADLINE");
    if (!text) return;
    const std::optional<double> seconds = Deadline::secondsFromText(text);
    if (!seconds) {
        QRV_LOG("Source/Tools/web2pdf", "void startDeadline()", LogWeb2PDF,
                u"WEB2PDF_DEADLINE is no positive number of seconds: %@", NSString::fromFileSystem(text));
        return;
    }
    const NSError error = NSError::errorWithDomain_code_userInfo(
        NSURLErrorDomain, NSURLErrorTimedOut,
        {{NSString(NSLocalizedDescriptionKey), NSString(u"The deadline has passed.")}});
    Deadline::start(*seconds, [error, result = resultOf(error, {})] {
        finishWithData(result); // first: logging may wait
        logOutcome(error);
    });
}

[[noreturn]] void convert(Confine confine) {
    const NSAutoreleasePool pool; // of the whole run
    startDeadline();
    NSApplicationLoad();
    const NSArray arguments = NSProcessInfo::processInfo().arguments();
    if (arguments.count() != 5) finishWithBadArguments();
    PDFLoader loader; // starts the engine, which could have less if it were started by a confined process
    if (confine) {
        const Deadline::Suspension whileConfining; // file rules hold for this thread and those that it starts
        confine(as<NSString>(arguments.objectAtIndex(3)));
    }
    convertWith(loader, arguments);
}

} // namespace

void runWeb2PDF(Confine confine) {
    try {
        convert(confine);
    } catch (const NSException& exception) {
        finishWithError(qrvErrorFromException(exception));
    } catch (const std::bad_alloc&) {
        finishWithError(posixError(ENOMEM));
    } catch (const std::exception& exception) {
        finishWithError(toolError(Web2PDFInternalError, NSString::fromUTF8(exception.what())));
    }
}

void convertWith(PDFLoader& loader, const NSArray& arguments) {
    const auto archivePath = as<NSString>(arguments.objectAtIndex(2));
    const auto pdfPath = as<NSString>(arguments.objectAtIndex(3));
    const auto uid = as<NSString>(arguments.objectAtIndex(4));
    loader.loadWebArchivePath_uid(archivePath, uid);
    loader.savePDF(pdfPath);
}

void finishWithErrorAndPath(const NSError& error, const NSString& path) {
    logOutcome(error);
    const NSData result = resultOf(error, path);
    Deadline::claimAnswer();
    finishWithData(result);
    exitProcess(EXIT_SUCCESS); // also after a failure: only the result tells the outcome
}

void finishWithError(const NSError& error) {
    finishWithErrorAndPath(error, {});
}

void finishWithBadArguments() {
    finishWithError(toolError(Web2PDFBadArgumentsError, u"wrong number of arguments"));
}

NSError makeFramesError(const NSString& path) {
    return fileError(Web2PDFFramesErrorDomain, 0, path);
}

NSError makeBadArchiveError(const NSString& path) {
    return fileError(NSCocoaErrorDomain, NSFileReadCorruptFileError, path);
}

NSError makePrintFailedError(const NSString& path) {
    return fileError(NSCocoaErrorDomain, NSFileWriteUnknownError, path);
}

NSData archiveError(const NSError& error) {
    // What the receiver may learn: no internals of the program.
    const NSString keys[] = {
        NSURLErrorFailingURLStringErrorKey,
        NSLocalizedDescriptionKey,
        NSFilePathErrorKey,
        NSURLErrorKey,
        NSLocalizedFailureReasonErrorKey,
        NSLocalizedRecoverySuggestionErrorKey,
    };
    NSMutableDictionary userInfo;
    for (const NSString& key : keys) {
        const id value = error.userInfo().objectForKey(key);
        const auto text = as<NSString>(value);
        if (value) userInfo.setObject_forKey(text ? wellFormed(text) : value, key);
    }
    return NSKeyedArchiver::archivedDataWithRootObject(
        NSError::errorWithDomain_code_userInfo(error.domain(), error.code(), userInfo));
}

NSData dataFromPropertyList(const id& propertyList) {
    return NSPropertyListSerialization::dataFromPropertyList_format_errorDescription(
        propertyList, NSPropertyListXMLFormat_v1_0, nullptr);
}

void setProcessExitForTesting(ProcessExit processExit) {
    exitOfTest = processExit;
}

} // namespace qrv
