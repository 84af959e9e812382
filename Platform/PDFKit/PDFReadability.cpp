#include "Platform/PDFKit/PDFReadability.h"

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFExc.hh>

namespace qrv {

bool isReadablePDF(const NSData& bytes) {
    try {
        const std::shared_ptr<QPDF> document = QPDF::create();
        document->setSuppressWarnings(true);
        document->processMemoryFile("PDF", bytes.bytes().data(), bytes.length());
        return !document->getAllPages().empty();
    } catch (const QPDFExc& error) {
        return error.getErrorCode() == qpdf_e_password;
    } catch (const std::exception&) {
        return false;
    }
}

} // namespace qrv
