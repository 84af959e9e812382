#include "Platform/PDFKit/PDFFile.h"

#include <qpdf/Buffer.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFExc.hh>
#include <qpdf/QPDFWriter.hh>

namespace qrv {

namespace {

enum class Damage { refused, mended };

/// A document whose lifetime holds on to the bytes that it reads its objects from, as they are needed.
std::shared_ptr<QPDF> makeDocument(const NSData& bytes, Damage damage) {
    const std::shared_ptr<QPDF> document = QPDF::create();
    document->setSuppressWarnings(true);
    document->setAttemptRecovery(damage == Damage::mended);
    document->processMemoryFile("PDF", bytes.bytes().data(), bytes.length());
    QPDF* const address = document.get();
    return {address, [document, bytes](QPDF*) {}};
}

/// The library compresses no data to no data, which no reader can decompress.
void keepEmptyStreams(QPDF& document) {
    for (QPDFObjectHandle& object : document.getAllObjects()) {
        if (!object.isStream()) continue;
        QPDFObjectHandle length = object.getDict().getKey("/Length");
        if (length.isInteger() && length.getIntValue() == 0) object.setFilterOnWrite(false);
    }
}

} // namespace

std::shared_ptr<QPDF> openPDF(const NSData& bytes) {
    try {
        std::shared_ptr<QPDF> document = makeDocument(bytes, Damage::refused);
        document->getAllPages();
        // Whatever the library only warns of is damage that it went past.
        if (document->isEncrypted() || document->anyWarnings()) return nullptr;
        return document;
    } catch (const std::exception&) {
        return nullptr;
    }
}

NSData serializePDF(QPDF& document) {
    try {
        keepEmptyStreams(document);
        QPDFWriter writer(document);
        writer.setOutputMemory();
        writer.setObjectStreamMode(qpdf_o_generate);
        writer.setDeterministicID(true);
        writer.write();
        if (document.anyWarnings()) return {};
        const std::shared_ptr<Buffer> buffer = writer.getBufferSharedPointer();
        const auto* bytes = buffer->getBuffer();
        return NSData(std::string(bytes, bytes + buffer->getSize()));
    } catch (const std::exception&) {
        return {};
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
