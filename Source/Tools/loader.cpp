#include "Source/Tools/loader.h"

#include "Platform/Foundation/NSAutoreleasePool.h"
#include "Platform/Foundation/NSException.h"
#include "Platform/Foundation/NSFileHandle.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSProcessInfo.h"
#include "Platform/Foundation/NSRunLoop.h"
#include "Platform/Foundation/NSURLCache.h"
#include "QRVFoundation/Source/NSError+QRVDescription.h"
#include "QRVFoundation/Source/NSProcessInfo+QRV.h"
#include "QRVFoundation/Source/NSUserDefaults+QRV.h"
#include "QRVFoundation/Source/QRVLog.h"
#include "Source/Tools/Common/SettingsDomain.h"

#include <cstdlib>
#include <optional>
#include <string_view>

namespace qrv {

namespace {

/// This file's name in log lines.
constexpr char sourceFile[] = "Source/Tools/loader";

constexpr double sliceLength = 0.2; // seconds

/// Represents, in the list of what is loading, a page whose load has not started yet.
NSString rootPageMarker() {
    return u"rootPage";
}

bool isPast(const NSDate& date) {
    return NSDate::date().timeIntervalSinceReferenceDate() > date.timeIntervalSinceReferenceDate();
}

NSURL requestURL(const std::shared_ptr<WebDataSource>& source) {
    return source ? source->request().URL() : NSURL();
}

NSString mimeType(const std::shared_ptr<WebDataSource>& source) {
    return source ? source->mainResource().MIMEType() : NSString();
}

bool boolSetting(const NSString& key, bool defaultValue) {
    return qrvBoolForKey_domain_defaultValue(NSUserDefaults::standardUserDefaults(), key,
                                             QuillvaneSettingsDomain, defaultValue);
}

long long integerSetting(const NSString& key, long long defaultValue) {
    return qrvIntegerForKey_domain_defaultValue(NSUserDefaults::standardUserDefaults(), key,
                                                QuillvaneSettingsDomain, defaultValue);
}

bool isWishedByEnvironment(const char* variable) {
    const char* const value = std::getenv(variable);
    return value && std::string_view(value) == "1";
}

} // namespace

Loader::Loader() {
    clearURLCache();
    _view = std::make_unique<WebView>(NSRect{{0, 0}, {612, 612}}, NSString(), NSString());
    _view->setFrameLoadDelegate(this);
    _view->setPolicyDelegate(this);
    _view->setResourceLoadDelegate(this);
    NSNotificationCenter::defaultCenter().addObserver_selector_name_object(
        this, [this](const NSNotification& notification) { progressFinished(notification); },
        WebViewProgressFinishedNotification, _view.get());
}

Loader::~Loader() {
    _objectsLoading.clear();
    _error = {};
    _view.reset();
    _timeoutDate = {};
    _finishDate = {};
    NSNotificationCenter::defaultCenter().removeObserver(this);
}

NSString Loader::logArea() const {
    NSException::doesNotRecognizeSelector(u"Loader", u"logArea");
}

void Loader::logExpanded(const char* file, unsigned long line, const char* function, const AnyFormat& format,
                         FormatArgumentSpan arguments) const {
    const auto logger = QRVLogger::sharedLogger();
    const NSString area = logArea();
    if (!logger->isEnabledForArea(area)) return;
    logger->logFile_line_function_area_message(file, line, function, area,
                                               NSString::expanded(format, arguments));
}

void Loader::clearURLCache() {
    NSURLCache& cache = NSURLCache::sharedURLCache();
    cache.removeAllCachedResponses();
    cache.setDiskCapacity(0);
    cache.setMemoryCapacity(0);
}

void Loader::startLoading() {
    _objectsLoading.push_back(rootPageMarker());
}

void Loader::waitUntilDone() {
    constexpr char function[] = "-[Loader waitUntilDone]";
    const bool usePool = boolSetting(u"LoaderUsePool", qrvIsMacOSAtLeast10_9());
    bool finished = false;
    do {
        // Ends with each pass, however the pass is left.
        std::optional<NSAutoreleasePool> pool;
        if (usePool) pool.emplace();

        logObjectsLoading();
        if (_justTitle && hasPageTitle()) break;
        if (_timeoutDate && isPast(_timeoutDate)) {
            logFile_line_function_format(sourceFile, __LINE__, function, u"Timing out");
            break;
        }
        postProgress(_view->estimatedProgress());
        NSRunLoop::currentRunLoop().runUntilDate(NSDate::dateWithTimeIntervalSinceNow(sliceLength));
        if (!_objectsLoading.empty()) continue;

        logFile_line_function_format(sourceFile, __LINE__, function,
                                     u"Extra wait in loop for WebView to finish loading: %@", _finishDate);
        finished = extraTimeHasPassed();
    } while (!finished);
    _finishDate = {};
    logFile_line_function_format(sourceFile, __LINE__, function, u"done loading: %@",
                                 NSArray(_objectsLoading));
}

/// Counts from the first time that the list is empty: frames that load later do not extend it.
bool Loader::extraTimeHasPassed() {
    if (_finishDate) return isPast(_finishDate);
    const long long extraTime = webToolExtraLoadingTime();
    extendFinishDate(static_cast<double>(extraTime));
    return extraTime <= 0; // even if the clock has not advanced since
}

void Loader::logObjectsLoading() const {
    logFile_line_function_format(sourceFile, __LINE__, "-[Loader waitUntilDone]", u"Loading %d objects:",
                                 static_cast<int>(_objectsLoading.size()));
    for (const id& object : _objectsLoading) logObject(object);
}

void Loader::logObject(const id& object) const {
    constexpr char function[] = "-[Loader waitUntilDone]";
    const auto* frame = object.payload<WebFrame>();
    if (!frame) {
        logFile_line_function_format(sourceFile, __LINE__, function, u"    %@", object);
        return;
    }
    logFile_line_function_format(
        sourceFile, __LINE__, function, u"    %@: dataSource %@ (%@); provisionalDataSource: %@ (%@)", object,
        requestURL(frame->dataSource()), mimeType(frame->dataSource()),
        requestURL(frame->provisionalDataSource()), mimeType(frame->provisionalDataSource()));
}

void Loader::extendFinishDate(double seconds) {
    _finishDate = NSDate::dateWithTimeIntervalSinceNow(seconds);
}

void Loader::progressFinished(const NSNotification& /*notification*/) {
    logFile_line_function_format(sourceFile, __LINE__, "-[Loader progressFinished:]", u"Progress finished");
}

void Loader::postProgress(double /*progress*/) {}

NSString Loader::pageTitle() const {
    const auto& source = _view->mainFrame()->dataSource();
    return source ? source->pageTitle() : NSString();
}

bool Loader::hasPageTitle() const {
    return _receivedTitle && pageTitle();
}

long long Loader::webToolTimeout() const {
    return integerSetting(u"WebToolTimeout", 10);
}

bool Loader::unrollsScrollers() const {
    return boolSetting(u"Web2PDFUnrollScrollers", true);
}

bool Loader::shouldEnablePlugIns() const {
    return boolSetting(u"WebToolEnableWebPlugIns", false);
}

unsigned long long Loader::maxTriesBeforeTimeout() const {
    return static_cast<unsigned long long>(integerSetting(u"WebToolMaxTriesBeforeTimeout", 3));
}

long long Loader::webToolExtraLoadingTime() const {
    return _justTitle ? 0 : integerSetting(u"WebToolExtraLoadingTime", 2);
}

double Loader::margin() const {
    return static_cast<double>(integerSetting(u"Web2PDFPageMargin", 36));
}

bool Loader::writesXMP() const {
    return isWishedByEnvironment("WEB2PDF_XMP") || boolSetting(u"Web2PDFWritesXMP", false);
}

bool Loader::attachesArchive() const {
    return isWishedByEnvironment("WEB2PDF_ATTACH_ARCHIVE") || boolSetting(u"Web2PDFAttachesArchive", false);
}

/// A frame is in the list once for each of its starts.
void Loader::removeFromLoading(const id& object) {
    std::erase_if(_objectsLoading, [&](const id& entry) { return entry.isEqual(object); });
}

void Loader::webView_didStartProvisionalLoadForFrame(WebView& /*sender*/, const WebFramePtr& frame) {
    constexpr char function[] = "-[Loader webView:didStartProvisionalLoadForFrame:]";
    removeFromLoading(rootPageMarker());
    NSURL url;
    if (frame) {
        url = requestURL(frame->provisionalDataSource());
        if (!url.scheme().isEqualToString(u"about")) _objectsLoading.emplace_back(frame);
    } else {
        QRV_LOG(sourceFile, function, NSString(), u"didStartProvisionalLoadForFrame got nil frame");
    }
    logFile_line_function_format(sourceFile, __LINE__, function, u"didStartProvisionalLoadForFrame: %@ %@",
                                 id(frame), url);
}

void Loader::webView_didFinishLoadForFrame(WebView& /*sender*/, const WebFramePtr& frame) {
    removeFromLoading(id(frame));
    logFile_line_function_format(sourceFile, __LINE__, "-[Loader webView:didFinishLoadForFrame:]",
                                 u"didFinishLoadForFrame: %@", id(frame));
}

void Loader::webView_didFailProvisionalLoadWithError_forFrame(WebView& sender, const NSError& error,
                                                              const WebFramePtr& frame) {
    removeFromLoading(id(frame));
    logFile_line_function_format(sourceFile, __LINE__,
                                 "-[Loader webView:didFailProvisionalLoadWithError:forFrame:]",
                                 u"didFailProvisionalLoadWithError: %@", qrvFullDescription(error));
    if (frame == sender.mainFrame()) _error = error;
}

void Loader::webView_didFailLoadWithError_forFrame(WebView& sender, const NSError& error,
                                                   const WebFramePtr& frame) {
    removeFromLoading(id(frame));
    logFile_line_function_format(sourceFile, __LINE__, "-[Loader webView:didFailLoadWithError:forFrame:]",
                                 u"didFailLoadWithError: %@", qrvFullDescription(error));
    if (frame == sender.mainFrame()) _error = error;
}

void Loader::webView_didReceiveTitle_forFrame(WebView& /*sender*/, const NSString& /*title*/,
                                              const WebFramePtr& /*frame*/) {
    _receivedTitle = true;
}

void Loader::webView_decidePolicyForNavigationAction_request_frame_decisionListener(
    WebView& /*sender*/, const NSDictionary& actionInformation, const NSURLRequest& /*request*/,
    const WebFramePtr& /*frame*/, WebPolicyDecisionListener& listener) {
    const auto type = as<NSNumber>(actionInformation.objectForKey(NSString(WebActionNavigationTypeKey)));
    if (type.integerValue() == WebNavigationTypeOther) {
        listener.use();
    } else {
        listener.ignore();
    }
}

void Loader::webView_decidePolicyForNewWindowAction_request_newFrameName_decisionListener(
    WebView& /*sender*/, const NSDictionary& /*actionInformation*/, const NSURLRequest& /*request*/,
    const NSString& /*frameName*/, WebPolicyDecisionListener& listener) {
    listener.ignore();
}

void Loader::webView_resource_didReceiveAuthenticationChallenge_fromDataSource(
    WebView& /*sender*/, const id& /*identifier*/, const NSURLAuthenticationChallenge& challenge,
    const std::shared_ptr<WebDataSource>& /*dataSource*/) {
    challenge.sender().cancelAuthenticationChallenge(challenge);
    _error =
        NSError::errorWithDomain_code_userInfo(NSURLErrorDomain, NSURLErrorUserAuthenticationRequired, {});
}

void finishWithData(const NSData& data) {
    const auto path =
        as<NSString>(NSProcessInfo::processInfo().environment().objectForKey(NSString(u"OutPath")));
    if (!path) {
        NSFileHandle output = NSFileHandle::fileHandleWithStandardOutput();
        output.writeData(data);
        output.closeFile();
        return;
    }
    NSError error;
    if (data.writeToFile_options_error(path, NSDataWritingAtomic, &error)) return;
    QRV_LOG(sourceFile, "void finishWithData(NSData *)", NSString(), u"Error writing output to %@: %@", path,
            qrvFullDescription(error));
}

} // namespace qrv
