#include "Platform/Engine/PDF/PDFStructure.h"

#include <qpdf/QPDF.hh>

namespace qrv::engine {

namespace {

/// An element type of PDF 2.0, and the nearest older one.
struct Role {
    const char* name;
    const char* standard;
};

constexpr Role roles[] = {{"/Aside", "/Sect"}, {"/Em", "/Span"}, {"/Strong", "/Span"}};

} // namespace

UnreadObjects unreadElements(QPDF& document, const NSData& pdf) {
    QPDFObjectHandle tree = document.getRoot().getKey("/StructTreeRoot");
    if (!tree.isDictionary()) return {};
    return UnreadObjects(document, pdf, "<</Type /StructElem", {tree.getKey("/K").getObjectID()});
}

void setLanguage(QPDF& document, const std::string& language) {
    const QPDFObjectHandle value =
        language.empty() ? QPDFObjectHandle::newNull() : QPDFObjectHandle::newUnicodeString(language);
    QPDFObjectHandle root = document.getRoot();
    root.replaceKey("/Lang", value);
    QPDFObjectHandle tree = root.getKey("/StructTreeRoot");
    if (!tree.isDictionary()) return;
    QPDFObjectHandle top = tree.getKey("/K");
    if (top.isDictionary() && top.hasKey("/Lang")) top.replaceKey("/Lang", value);
}

void mapStructureRoles(QPDF& document) {
    QPDFObjectHandle tree = document.getRoot().getKey("/StructTreeRoot");
    if (!tree.isDictionary() || tree.hasKey("/RoleMap")) return;
    QPDFObjectHandle map = QPDFObjectHandle::newDictionary();
    for (const Role& role : roles) map.replaceKey(role.name, QPDFObjectHandle::newName(role.standard));
    tree.replaceKey("/RoleMap", map);
}

} // namespace qrv::engine
