#include "Platform/PDFKit/PDFFile.h"

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFExc.hh>

namespace qrv {

namespace {

enum class Damage { refused, mended };

/// Makes a document that keeps the bytes alive, from which it reads its objects when needed.
std::shared_ptr<QPDF> makeDocument(const NSData& bytes, Damage damage) {
    const std::shared_ptr<QPDF> document = QPDF::create();
    document->setSuppressWarnings(true);
    document->setAttemptRecovery(damage == Damage::mended);
    document->processMemoryFile("PDF", bytes.bytes().data(), bytes.length());
    QPDF* const address = document.get();
    return {address, [document, bytes](QPDF*) {}};
}

} // namespace

std::shared_ptr<QPDF> openPDF(const NSData& bytes) {
    try {
        std::shared_ptr<QPDF> document = makeDocument(bytes, Damage::refused);
        document->getAllPages();
        // A warning of the library means damage that it ignored.
        if (document->isEncrypted() || document->anyWarnings()) return nullptr;
        return document;
    } catch (const std::exception&) {
        return nullptr;
    }
}

bool isReadablePDF(const NSData& bytes) {
    try {
        return !makeDocument(bytes, Damage::mended)->getAllPages().empty();
    } catch (const QPDFExc& error) {
        return error.getErrorCode() == qpdf_e_password;
    } catch (const std::exception&) {
        return false;
    }
}

} // namespace qrv
