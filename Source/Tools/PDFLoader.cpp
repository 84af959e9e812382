#include "Source/Tools/PDFLoader.h"

#include "Platform/AppKit/NSPrintInfo.h"
#include "Platform/AppKit/NSPrintOperation.h"
#include "Platform/Foundation/NSProcessInfo.h"
#include "Platform/Logging/NSLog.h"
#include "Platform/PDFKit/PDFDocument.h"
#include "QRVFoundation/Source/NSError+QRV.h"
#include "QRVFoundation/Source/NSString+QRVBasics/NSString+QRVFilesBasics.h"
#include "Source/Tools/Archiving/ConvertedArchive.h"
#include "Source/Tools/web2pdf.h"

#include <algorithm>
#include <cerrno>

namespace qrv {

namespace {

/// Readers of the attributes do not distinguish nil from the empty text.
NSString orEmpty(const NSString& text) {
    return text ? text : NSString(u"");
}

} // namespace

PDFLoader::~PDFLoader() {
    _window.reset();
    _uid = {};
    _url = {};
}

NSString PDFLoader::logArea() const {
    return LogWeb2PDF;
}

bool PDFLoader::isShowingFrames() const {
    // A copy: asking for an element runs the loop, and callbacks may change the list.
    const std::vector<WebFramePtr> frames = _view->mainFrame()->childFrames();
    return std::any_of(frames.begin(), frames.end(), [](const WebFramePtr& frame) {
        return frame->frameElement().isKindOfClass(DOMHTMLFrameElement::classInfo());
    });
}

/// Ends the process with the read error if there is no such file.
WebArchive PDFLoader::archiveAtPath(const NSString& path) {
    NSError error;
    _archiveFile = NSData::initWithContentsOfFile_options_error(path, 0, &error);
    if (!_archiveFile) finishWithError(error);
    _archivePath = path;
    const WebArchive archive = WebArchive::initWithData(_archiveFile);
    checkArchiveFile();
    _archiveFile.forgetPages(); // most of what was read around its tables is never asked for
    return archive;
}

/// Resources are parts of the file, and are read when the page asks for them.
void PDFLoader::checkArchiveFile() const {
    if (_archiveFile.isCutOff()) finishWithError(fileReadError(EIO, _archivePath));
}

void PDFLoader::loadWebArchivePath_uid(const NSString& path, const NSString& uid) {
    _uid = uid;
    const bool enablesPlugIns = shouldEnablePlugIns();
    {
        const WebArchive archive = archiveAtPath(path);
        if (!archive) finishWithError(makeBadArchiveError(path));
        _url = archive.mainResource().URL();
        _view->preferences().setPlugInsEnabled(enablesPlugIns);
        prepareView();
        _view->mainFrame()->loadArchive(archive);
        waitUntilDone();
    }
    // Before the error: a frameset is refused as such even if its load failed.
    if (isShowingFrames()) finishWithError(makeFramesError(path));
    if (qrvHasDomain_code(_error, NSURLErrorDomain, NSURLErrorCancelled)) return;
    if (_error) finishWithError(_error);
}

/// Pages that fit themselves to their view by scripts do so while they load.
void PDFLoader::prepareView() {
    const NSSize paper = NSPrintInfo::sharedPrintInfo().paperSize();
    if (createScreenPDFs()) {
        _view->prepareForPDF(paper);
    } else {
        _view->prepareForPrinting(paper, margin());
    }
}

void PDFLoader::setupWindow() {
    constexpr double slack = 200;
    const NSSize paper = NSPrintInfo::sharedPrintInfo().paperSize();
    _window = std::make_unique<NSWindow>(NSRect{{0, 0}, {paper.width + slack, paper.height + slack}},
                                         NSWindowStyleMaskBorderless, NSBackingStoreRetained, false);
    _view->setFrameSize(paper);
    _window->contentView().addSubview(*_view);
}

bool PDFLoader::createScreenPDFs() const {
    return NSProcessInfo::processInfo().arguments().objectAtIndex(1).isEqual(NSString(u"screen"));
}

void PDFLoader::savePDF(const NSString& path) {
    checkArchiveFile();
    setupWindow();
    if (writesXMP()) _engine = _view->engineVersion();
    _view->setMediaStyle(u"screen"); // in both modes
    _view->preferences().setShouldPrintBackgrounds(true);
    _view->preferences().setUnrollsScrollers(unrollsScrollers());
    WebFrameView* frameView = _view->mainFrame()->frameView();
    NSView* documentView = frameView ? frameView->documentView() : nullptr;
    if (createScreenPDFs()) {
        writeScreenPDF(documentView, path);
    } else {
        printToFile(documentView, path);
    }
    checkArchiveFile();
    if (!qrvFileExists(path)) finishWithError(makePrintFailedError(path));
    setAttributesOfPDF(path);
    finishWithErrorAndPath({}, path);
}

void PDFLoader::writeScreenPDF(NSView* documentView, const NSString& path) const {
    if (!documentView) return;
    documentView->setFrame(documentView->bounds());
    documentView->layout();
    const NSData pdf = documentView->dataWithPDFInsideRect(documentView->bounds());
    if (pdf) pdf.writeToFile_atomically(path, true);
}

void PDFLoader::printToFile(NSView* documentView, const NSString& path) const {
    const NSURL destination = NSURL::fileURLWithPath(path); // nil for the empty path
    if (!documentView || !destination) return;
    NSMutableDictionary settings = NSPrintInfo::sharedPrintInfo().dictionary().mutableCopy();
    settings.setObject_forKey(NSString(NSPrintSaveJob), NSString(NSPrintJobDisposition));
    settings.setObject_forKey(destination, NSString(NSPrintJobSavingURL));
    NSPrintInfo printInfo(settings.copy());
    printInfo.setHorizontalPagination(NSPrintingPaginationModeFit);
    printInfo.setVerticalPagination(NSPrintingPaginationModeAutomatic);
    printInfo.setHorizontallyCentered(false);
    printInfo.setVerticallyCentered(false);
    const double width = margin();
    printInfo.setTopMargin(width);
    printInfo.setBottomMargin(width);
    printInfo.setLeftMargin(width);
    printInfo.setRightMargin(width);
    NSPrintOperation operation = NSPrintOperation::printOperationWithView_printInfo(*documentView, printInfo);
    operation.setShowsPrintPanel(false);
    operation.setShowsProgressPanel(false);
    operation.runOperation();
}

/// Leaves a file untouched that is no readable PDF, and says so: somebody may look for its attributes. Who
/// wishes for more relies on it: then a file that could not be written is an error.
void PDFLoader::setAttributesOfPDF(const NSString& path) const {
    const auto document = PDFDocument::initWithURL(NSURL::fileURLWithPath(path));
    bool isSound = false;
    if (document) {
        NSMutableDictionary attributes = document->documentAttributes().mutableCopy();
        attributes.setObject_forKey(NSString(u"Quillvane"), NSString(PDFDocumentCreatorAttribute));
        attributes.setObject_forKey(orEmpty(pageTitle()), NSString(PDFDocumentTitleAttribute));
        attributes.setObject_forKey(orEmpty(_url.description()), NSString(PDFDocumentSubjectAttribute));
        attributes.setObject_forKey(author(), NSString(PDFDocumentAuthorAttribute));
        document->setDocumentAttributes(attributes.copy());
        isSound = !hasWishes() || addWishes(*document);
        if (isSound && document->writeToFile(path)) return;
    }
    NSLog(u"the PDF stays as it is, without the page's attributes: it cannot be read, or not be written");
    if (!hasWishes()) return;
    NSLog(u"nor does it have the metadata or the attachment that were wished for");
    checkArchiveFile();
    if (isSound) finishWithError(makePrintFailedError(path));
}

bool PDFLoader::hasWishes() const {
    return writesXMP() || attachesArchive();
}

/// False for a PDF that is damaged where they belong. The attributes are those that it is going to have. Ends
/// the process where the archive could not be read to its end: the hash is of another file then.
bool PDFLoader::addWishes(PDFDocument& document) const {
    const ConvertedArchive archive{_archiveFile, _archivePath, orEmpty(_url.description()), _engine};
    PDFAdditions additions;
    if (writesXMP()) {
        additions.metadata = metadataOf(archive, document.documentAttributes());
        checkArchiveFile();
    }
    if (attachesArchive()) additions.attachment = attachmentOf(archive);
    return document.setAdditions(std::move(additions));
}

NSString PDFLoader::author() const {
    const NSString prefix = u"www.";
    const NSString host = orEmpty(_url.host());
    return host.hasPrefix(prefix) ? host.substringFromIndex(prefix.length()) : host;
}

} // namespace qrv
