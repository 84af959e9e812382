#include "Platform/PDFKit/PDFAttachment.h"

#include "Platform/PDFKit/PDFDate.h"

#include <qpdf/Pl_Flate.hh>
#include <qpdf/Pl_Function.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFEFStreamObjectHelper.hh>

namespace qrv {

namespace {

const unsigned char* start(std::string_view bytes) {
    return reinterpret_cast<const unsigned char*>(bytes.data());
}

std::string syntaxOfText(const NSString& text) {
    return QPDFObjectHandle::newUnicodeString(text.utf8()).unparse();
}

} // namespace

std::string nameInTree(const NSString& name) {
    return QPDFObjectHandle::newUnicodeString(name.utf8()).getStringValue();
}

std::string syntaxOfString(const std::string& bytes) {
    return QPDFObjectHandle::newString(bytes).unparse();
}

std::string fileDictionaryOf(const PDFAttachment& file, const std::string& embedded) {
    const std::string name = syntaxOfText(file.name);
    return "<< /Type /Filespec /F " + name + " /UF " + name + " /Desc " + syntaxOfText(file.description) +
           " /AFRelationship /Source /EF << /F " + embedded + " R /UF " + embedded + " R >> >>";
}

/// The library's document stands for none that anybody keeps: it is the way to the MD5.
std::string parametersOf(const PDFAttachment& file) {
    const std::string_view bytes = file.contents.bytes();
    QPDF document;
    document.emptyPDF();
    auto embedded = QPDFEFStreamObjectHelper::createEFStream(document, [bytes](Pipeline* pipeline) {
        pipeline->write(start(bytes), bytes.size());
        pipeline->finish();
    });
    embedded.setSubtype(file.type);
    const std::string modified = pdfTextFromDate(file.modified);
    if (!modified.empty()) embedded.setModDate(modified);
    std::string entries;
    for (auto& [name, value] : embedded.getObjectHandle().getDict().ditems()) {
        if (name != "/Length")
            entries += QPDFObjectHandle::newName(name).unparse() + " " + value.unparse() + " ";
    }
    return entries;
}

void compress(std::string_view bytes, const ByteSink& sink) {
    Pl_Function end("end", nullptr, [&sink](const unsigned char* data, std::size_t length) {
        sink({reinterpret_cast<const char*>(data), length});
    });
    Pl_Flate flate("compression", &end, Pl_Flate::a_deflate);
    flate.write(start(bytes), bytes.size());
    flate.finish();
}

} // namespace qrv
