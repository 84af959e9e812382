#pragma once

// Turns one web archive into one PDF file. Success and every failure end the process through the finish
// functions (web2pdf.h).
//
//     PDFLoader loader;
//     loader.loadWebArchivePath_uid(archivePath, uid);
//     loader.savePDF(pdfPath);

#include "Source/Tools/loader.h"

#include "Platform/AppKit/NSWindow.h"

namespace qrv {

class PDFDocument;

class PDFLoader : public Loader {
public:
    // - dealloc
    ~PDFLoader() override;

    // - logArea
    NSString logArea() const override;

    // - isShowingFrames
    /// Whether the page is a frameset; inline frames do not count. Runs the run loop.
    bool isShowingFrames() const;

    // - loadWebArchivePath:uid:
    /// Returns when the page is ready to be rendered, which it also is after a cancelled load. Ends the
    /// process with the read error, the bad-archive error, the frames error or the load's error. Reads of the
    /// file may fail until the end of the run.
    void loadWebArchivePath_uid(const NSString& path, const NSString& uid);

    // - setupWindow
    /// Puts the view, in the default paper's size, into a hidden window.
    void setupWindow();

    // - createScreenPDFs
    /// Whether the first argument asks for one tall page, as on a screen.
    bool createScreenPDFs() const;

    // - savePDF:
    /// Renders into the file, sets its document attributes, adds the metadata and the attachment that are
    /// wished for, and ends the process: with success, or with the print-failed error if there is no file, or
    /// what is wished for could not be written.
    [[noreturn]] void savePDF(const NSString& path);

protected:
    void writeScreenPDF(NSView* documentView, const NSString& path) const;
    void printToFile(NSView* documentView, const NSString& path) const;

    std::unique_ptr<NSWindow> _window;
    /// The caller's identifier of its record. Kept, and not used.
    NSString _uid;
    /// The address of the archive's main resource.
    NSURL _url;
    /// The archive as it is stored, and where.
    NSData _archiveFile;
    NSString _archivePath;

private:
    WebArchive archiveAtPath(const NSString& path);
    void checkArchiveFile() const;
    void prepareView();
    void setAttributesOfPDF(const NSString& path) const;
    bool hasWishes() const;
    bool addWishes(PDFDocument& document) const;
    NSString author() const;

    NSString _engine; // nil unless the metadata are to name it
};

} // namespace qrv
