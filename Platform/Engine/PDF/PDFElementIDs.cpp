#include "Platform/Engine/PDF/PDFElementIDs.h"

#include "Platform/Foundation/ASCII.h"
#include "Platform/PDFKit/UnreadObjects.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <optional>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFNameTreeObjectHelper.hh>
#include <string>
#include <string_view>

namespace qrv::engine {

namespace {

/// "node" and eight digits.
constexpr std::string_view prefix = "node";
constexpr std::size_t digits = 8;

bool isNumbered(std::string_view name) {
    return name.size() == prefix.size() + digits && name.starts_with(prefix) &&
           std::all_of(name.begin() + prefix.size(), name.end(), &isASCIIDigit<char>);
}

/// Whether a string that follows this text in an element is a name: it is in an array, or the element's own.
/// Texts of the page stand behind other keys.
bool isPlaceOfName(std::string_view before) {
    before = before.substr(0, before.find_last_not_of(" \n\r") + 1);
    return before.ends_with('[') || before.ends_with("/ID") ||
           (before.ends_with(')') && !before.ends_with("\\)"));
}

class Numbering {
public:
    Numbering(QPDF& document, UnreadObjects& unread) : document_(document), unread_(unread) {}

    void run() {
        QPDFObjectHandle tree = document_.getRoot().getKey("/StructTreeRoot");
        if (!tree.isDictionary() || !tree.getKey("/IDTree").isDictionary()) return;
        for (const int number : unread_.numbersWith("(" + std::string(prefix)))
            unread_.replaceText(number, renamed(unread_.text(number)));
        for (QPDFObjectHandle object : document_.getAllObjects())
            if (object.isDictionaryOfType("/StructElem")) rename(object);
        renameTree(tree);
    }

private:
    /// The new name; anything else stays.
    std::string renamed(const std::string& name) {
        if (!isNumbered(name)) return name;
        std::string& newName = names_[name];
        if (newName.empty()) {
            char text[32];
            std::snprintf(text, sizeof text, "node%08zu", names_.size());
            newName = text;
        }
        return newName;
    }

    std::string renamed(std::string_view element) {
        std::string text(element);
        for (std::size_t at = text.find('('); at != std::string::npos; at = text.find('(', at + 1)) {
            const std::size_t end = text.find(')', at);
            if (end == std::string::npos || !isPlaceOfName(std::string_view(text).substr(0, at))) continue;
            const std::string name = text.substr(at + 1, end - at - 1);
            text.replace(at + 1, name.size(), renamed(name));
        }
        return text;
    }

    void rename(QPDFObjectHandle element) {
        if (element.getKey("/ID").isString()) element.replaceKey("/ID", renamed(element.getKey("/ID")));
        QPDFObjectHandle attributes = element.getKey("/A");
        if (attributes.isDictionary()) renameHeaders(attributes);
        for (int i = 0; attributes.isArray() && i < attributes.getArrayNItems(); ++i)
            renameHeaders(attributes.getArrayItem(i));
    }

    void renameHeaders(QPDFObjectHandle attributes) {
        QPDFObjectHandle headers = attributes.getKeyIfDict("/Headers");
        for (int i = 0; headers.isArray() && i < headers.getArrayNItems(); ++i)
            if (headers.getArrayItem(i).isString()) headers.setArrayItem(i, renamed(headers.getArrayItem(i)));
    }

    QPDFObjectHandle renamed(QPDFObjectHandle name) {
        return QPDFObjectHandle::newString(renamed(name.getStringValue()));
    }

    void renameTree(QPDFObjectHandle tree) {
        QPDFNameTreeObjectHelper old(tree.getKey("/IDTree"), document_);
        std::map<std::string, QPDFObjectHandle> elements;
        for (const auto& [name, element] : old) elements.try_emplace(renamed(name), element);
        QPDFNameTreeObjectHelper sorted = QPDFNameTreeObjectHelper::newEmpty(document_);
        for (const auto& [name, element] : elements) sorted.insert(name, element);
        tree.replaceKey("/IDTree", sorted.getObjectHandle());
    }

    QPDF& document_;
    UnreadObjects& unread_;
    std::map<std::string, std::string> names_;
};

} // namespace

void numberElementIDs(QPDF& document, UnreadObjects& unread) {
    Numbering(document, unread).run();
}

} // namespace qrv::engine
