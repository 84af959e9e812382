#include "Platform/PDFKit/PDFCatalog.h"

#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/NSPropertyListSerialization.h"
#include "Platform/PDFKit/ConfinedPDF.h"

#include <qpdf/QPDF.hh>
#include <set>
#include <utility>

namespace qrv {

namespace {

using Entries = std::map<std::string, std::string>;

Entries entriesOf(QPDFObjectHandle dictionary) {
    Entries entries;
    if (!dictionary.isDictionary()) return entries;
    for (auto& [name, value] : dictionary.ditems()) {
        entries.emplace(QPDFObjectHandle::newName(name).unparse(), value.unparse());
    }
    return entries;
}

/// Nodes wait in a list, since a tree may be as deep as somebody likes, and a circle.
Entries filesIn(const QPDFObjectHandle& tree) {
    Entries files;
    std::set<QPDFObjGen> met;
    std::vector<QPDFObjectHandle> waiting{tree};
    while (!waiting.empty()) {
        QPDFObjectHandle node = waiting.back();
        waiting.pop_back();
        if (!node.isDictionary() || (node.isIndirect() && !met.insert(node.getObjGen()).second)) continue;
        QPDFObjectHandle names = node.getKey("/Names");
        const int count = names.isArray() ? names.getArrayNItems() : 0;
        for (int i = 0; i + 1 < count; i += 2) {
            QPDFObjectHandle name = names.getArrayItem(i);
            if (name.isString()) files.emplace(name.getStringValue(), names.getArrayItem(i + 1).unparse());
        }
        QPDFObjectHandle kids = node.getKey("/Kids");
        if (!kids.isArray()) continue;
        for (const QPDFObjectHandle& kid : kids.aitems()) waiting.push_back(kid);
    }
    return files;
}

NSArray listOf(const Entries& entries) {
    std::vector<id> list;
    for (const auto& [name, value] : entries) {
        list.emplace_back(NSData(name));
        list.emplace_back(NSData(value));
    }
    return NSArray(std::move(list));
}

std::string textAt(const NSArray& list, std::size_t index) {
    return std::string(as<NSData>(list.objectAtIndex(index)).bytes());
}

Entries entriesIn(const NSArray& list) {
    Entries entries;
    for (std::size_t i = 0; i + 1 < list.count(); i += 2)
        entries.emplace(textAt(list, i), textAt(list, i + 1));
    return entries;
}

} // namespace

std::optional<PDFCatalog> catalogOf(QPDF& document) {
    QPDFObjectHandle root = document.getRoot();
    if (!root.isIndirect()) return std::nullopt;
    PDFCatalog catalog;
    catalog.entries = entriesOf(root);
    QPDFObjectHandle names = root.getKey("/Names");
    if (names.isDictionary()) {
        catalog.names = entriesOf(names);
        catalog.names.erase("/EmbeddedFiles");
        catalog.files = filesIn(names.getKey("/EmbeddedFiles"));
    }
    QPDFObjectHandle associated = root.getKey("/AF");
    if (associated.isArray()) {
        for (QPDFObjectHandle file : associated.aitems()) {
            catalog.associatedFiles.push_back(file.unparse());
        }
    } else if (associated.isDictionary()) {
        catalog.associatedFiles.push_back(associated.unparse());
    }
    // What was damaged would be written where every reader comes by.
    return document.anyWarnings() ? std::nullopt : std::make_optional(catalog);
}

NSData listFromCatalog(const PDFCatalog& catalog) {
    std::vector<id> associated;
    associated.reserve(catalog.associatedFiles.size());
    for (const std::string& file : catalog.associatedFiles) associated.emplace_back(NSData(file));
    const NSArray list({listOf(catalog.entries), listOf(catalog.names), listOf(catalog.files),
                        NSArray(std::move(associated))});
    return NSPropertyListSerialization::dataFromPropertyList_format_errorDescription(
        list, NSPropertyListBinaryFormat_v1_0, nullptr);
}

std::optional<PDFCatalog> catalogFromList(const NSData& data) {
    const auto list = as<NSArray>(NSPropertyListSerialization::propertyListWithData(data));
    if (list.count() != 4) return std::nullopt;
    const auto part = [&](std::size_t index) { return as<NSArray>(list.objectAtIndex(index)); };
    PDFCatalog catalog{entriesIn(part(0)), entriesIn(part(1)), entriesIn(part(2)), {}};
    for (std::size_t i = 0; i < part(3).count(); ++i) catalog.associatedFiles.push_back(textAt(part(3), i));
    return catalog;
}

std::optional<PDFCatalog> catalogOfPDF(const NSData& bytes) {
    const auto list = workOnDocument("reading a PDF's catalog", bytes, [](QPDF& document) {
        const auto catalog = catalogOf(document);
        return catalog ? listFromCatalog(*catalog) : NSData();
    });
    return list ? catalogFromList(*list) : std::nullopt;
}

} // namespace qrv
