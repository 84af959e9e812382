#include "Platform/Engine/PDF/PDFParts.h"

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFNameTreeObjectHelper.hh>
#include <set>

namespace qrv::engine {

namespace {

QPDFObjectHandle dictionary(QPDFObjectHandle owner, const char* key) {
    QPDFObjectHandle value = owner.getKey(key);
    return value.isDictionary() ? value : owner.replaceKeyAndGetNew(key, QPDFObjectHandle::newDictionary());
}

long long number(QPDFObjectHandle value) {
    return value.isInteger() ? value.getIntValue() : 0;
}

/// A key's elements, of which one may stand without an array; they are in one from then on.
QPDFObjectHandle array(QPDFObjectHandle owner, const char* key) {
    QPDFObjectHandle value = owner.getKey(key);
    if (value.isArray()) return value;
    QPDFObjectHandle array = QPDFObjectHandle::newArray();
    if (!value.isNull()) array.appendItem(value);
    return owner.replaceKeyAndGetNew(key, array);
}

/// Pages, forms and annotations name their elements by the keys of a tree, of which the document has one.
void moveKeys(QPDF& part, long long distance) {
    for (QPDFObjectHandle object : part.getAllObjects()) {
        QPDFObjectHandle owner = object.isStream() ? object.getDict() : object;
        if (!owner.isDictionary()) continue;
        for (const char* key : {"/StructParent", "/StructParents"}) {
            if (!owner.getKey(key).isInteger()) continue;
            owner.replaceKey(key, QPDFObjectHandle::newInteger(number(owner.getKey(key)) + distance));
        }
    }
}

QPDFObjectHandle copied(QPDF& document, QPDF& part, const QPDFObjectHandle& object) {
    return document.copyForeignObject(object.isIndirect() ? object : part.makeIndirectObject(object));
}

void appendDestinations(QPDF& document, QPDF& part) {
    QPDFObjectHandle added = part.getRoot().getKey("/Dests");
    if (!added.isDictionary()) return;
    QPDFObjectHandle all = dictionary(document.getRoot(), "/Dests");
    for (auto& [name, destination] : added.ditems()) {
        // Unlike what is copied, which is an object of its own.
        if (!all.hasKey(name)) all.replaceKey(name, copied(document, part, destination).shallowCopy());
    }
}

void appendOutline(QPDF& document, QPDF& part) {
    QPDFObjectHandle added = part.getRoot().getKey("/Outlines");
    if (!added.isDictionary() || !added.getKey("/First").isDictionary()) return;
    added = copied(document, part, added);
    QPDFObjectHandle outline = document.getRoot().getKey("/Outlines");
    if (!outline.isDictionary() || !outline.getKey("/Last").isDictionary()) {
        document.getRoot().replaceKey("/Outlines", added);
        return;
    }
    QPDFObjectHandle last = outline.getKey("/Last");
    QPDFObjectHandle first = added.getKey("/First");
    last.replaceKey("/Next", first);
    first.replaceKey("/Prev", last);
    std::set<QPDFObjGen> seen;
    for (QPDFObjectHandle entry = first; entry.isDictionary() && seen.insert(entry.getObjGen()).second;
         entry = entry.getKey("/Next")) {
        entry.replaceKey("/Parent", outline);
    }
    outline.replaceKey("/Last", added.getKey("/Last"));
    outline.replaceKey("/Count", QPDFObjectHandle::newInteger(number(outline.getKey("/Count")) +
                                                              number(added.getKey("/Count"))));
}

/// Returns the element that holds all others.
QPDFObjectHandle outermost(QPDFObjectHandle tree) {
    QPDFObjectHandle top = tree.getKey("/K");
    return top.isArray() && top.getArrayNItems() > 0 ? top.getArrayItem(0) : top;
}

/// A header cell that is in several parts has one name, which leads to the first.
void appendElementNames(QPDF& document, QPDFObjectHandle tree, QPDFObjectHandle added) {
    if (!added.getKey("/IDTree").isDictionary()) return;
    if (!tree.getKey("/IDTree").isDictionary())
        tree.replaceKey("/IDTree", QPDFNameTreeObjectHelper::newEmpty(document).getObjectHandle());
    QPDFNameTreeObjectHelper names(tree.getKey("/IDTree"), document);
    for (const auto& [name, element] : QPDFNameTreeObjectHelper(added.getKey("/IDTree"), document))
        if (!names.hasName(name)) names.insert(name, element);
}

void appendStructure(QPDF& document, QPDF& part) {
    QPDFObjectHandle tree = document.getRoot().getKey("/StructTreeRoot");
    QPDFObjectHandle added = part.getRoot().getKey("/StructTreeRoot");
    if (!tree.isDictionary() || !added.isDictionary()) return;
    added = copied(document, part, added);
    QPDFObjectHandle top = outermost(tree);
    QPDFObjectHandle addedTop = outermost(added);
    if (!top.isDictionary() || !addedTop.isDictionary()) return;

    QPDFObjectHandle children = array(top, "/K");
    for (QPDFObjectHandle child : array(addedTop, "/K").aitems()) {
        if (child.isDictionary()) child.replaceKey("/P", top);
        children.appendItem(child);
    }

    appendElementNames(document, tree, added);

    const long long distance = number(tree.getKey("/ParentTreeNextKey"));
    QPDFObjectHandle entries = array(dictionary(tree, "/ParentTree"), "/Nums");
    QPDFObjectHandle addedEntries = array(dictionary(added, "/ParentTree"), "/Nums");
    for (int i = 0; i + 1 < addedEntries.getArrayNItems(); i += 2) {
        entries.appendItem(QPDFObjectHandle::newInteger(number(addedEntries.getArrayItem(i)) + distance));
        entries.appendItem(addedEntries.getArrayItem(i + 1));
    }
    tree.replaceKey("/ParentTreeNextKey",
                    QPDFObjectHandle::newInteger(distance + number(added.getKey("/ParentTreeNextKey"))));
}

} // namespace

void appendPart(QPDF& document, QPDF& part) {
    const long long keys =
        number(document.getRoot().getKey("/StructTreeRoot").getKeyIfDict("/ParentTreeNextKey"));
    if (keys > 0) moveKeys(part, keys); // reads every object
    for (const QPDFObjectHandle& page : part.getAllPages()) document.addPage(page, false);
    appendDestinations(document, part);
    appendOutline(document, part);
    appendStructure(document, part);
}

} // namespace qrv::engine
