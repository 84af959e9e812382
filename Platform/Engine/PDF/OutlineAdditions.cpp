#include "Platform/Engine/PDF/OutlineAdditions.h"

#include "Platform/Engine/PDF/PDFOutline.h"

#include <qpdf/QPDF.hh>
#include <set>

namespace qrv::engine {

namespace {

constexpr int decimals = 3;

struct Entry {
    QPDFObjectHandle object;
    int level = 1;
    std::size_t place = 0; // the index of its heading
};

/// Every entry, parents before their children, with its depth as its level.
std::vector<Entry> entriesOf(QPDF& document) {
    std::vector<Entry> found;
    std::set<QPDFObjGen> seen;
    std::vector<Entry> waiting{{document.getRoot().getKey("/Outlines"), 0}};
    while (!waiting.empty()) {
        Entry entry = waiting.back();
        waiting.pop_back();
        if (!entry.object.isDictionary() || !seen.insert(entry.object.getObjGen()).second) continue;
        if (entry.object.getKey("/Title").isString()) found.push_back(entry);
        waiting.push_back({entry.object.getKey("/Next"), entry.level});
        waiting.push_back({entry.object.getKey("/First"), entry.level + 1});
    }
    return found;
}

/// Entries of no heading go with the one before.
void findHeadings(std::vector<Entry>& entries, const std::vector<OutlineHeading>& headings) {
    std::vector<std::string> texts;
    texts.reserve(headings.size());
    for (const OutlineHeading& heading : headings) texts.push_back(heading.text);
    HeadingFinder finder(texts);
    std::size_t last = 0;
    for (Entry& entry : entries) {
        if (const auto found = finder.find(entry.object.getKey("/Title").getUTF8Value())) {
            last = found->index;
            entry.level = headings[last].level;
        }
        entry.place = last;
    }
}

QPDFObjectHandle makeEntry(QPDF& document, const OutlineAddition& addition) {
    QPDFObjectHandle destination = QPDFObjectHandle::newArray();
    destination.appendItem(document.getAllPages().at(addition.page));
    destination.appendItem(QPDFObjectHandle::newName("/XYZ"));
    destination.appendItem(QPDFObjectHandle::newReal(addition.x, decimals));
    destination.appendItem(QPDFObjectHandle::newReal(addition.y, decimals));
    destination.appendItem(QPDFObjectHandle::newNull());
    QPDFObjectHandle entry = QPDFObjectHandle::newDictionary();
    entry.replaceKey("/Title", QPDFObjectHandle::newUnicodeString(onOneLine(addition.heading.text)));
    entry.replaceKey("/Dest", destination);
    return document.makeIndirectObject(entry);
}

void append(QPDFObjectHandle entry, QPDFObjectHandle parent) {
    QPDFObjectHandle last = parent.getKey("/Last");
    if (last.isDictionary()) {
        last.replaceKey("/Next", entry);
        entry.replaceKey("/Prev", last);
    } else {
        parent.replaceKey("/First", entry);
    }
    parent.replaceKey("/Last", entry);
    entry.replaceKey("/Parent", parent);
}

void setOutline(QPDF& document, const std::vector<Entry>& entries) {
    QPDFObjectHandle outline = document.makeIndirectObject(QPDFObjectHandle::newDictionary());
    outline.replaceKey("/Type", QPDFObjectHandle::newName("/Outlines"));
    document.getRoot().replaceKey("/Outlines", outline);
    std::vector<Entry> open{{outline, 0}}; // the last entry and those that it is below
    for (Entry entry : entries) {
        for (const char* key : {"/First", "/Last", "/Prev", "/Next", "/Count"}) entry.object.removeKey(key);
        while (open.size() > 1 && open.back().level >= entry.level) open.pop_back();
        append(entry.object, open.back().object);
        for (Entry& around : open) {
            QPDFObjectHandle count = around.object.getKey("/Count");
            around.object.replaceKey(
                "/Count", QPDFObjectHandle::newInteger((count.isInteger() ? count.getIntValue() : 0) + 1));
        }
        open.push_back(entry);
    }
}

} // namespace

void addToOutline(QPDF& document, const std::vector<OutlineHeading>& own,
                  const std::vector<OutlineAddition>& additions) {
    if (own.empty() && additions.empty()) return;
    std::vector<Entry> old = entriesOf(document);
    if (old.empty() && additions.empty()) return;
    findHeadings(old, own);
    std::vector<Entry> entries;
    auto next = old.begin();
    for (const OutlineAddition& addition : additions) {
        while (next != old.end() && next->place < addition.after) entries.push_back(*next++);
        entries.push_back({makeEntry(document, addition), addition.heading.level});
    }
    entries.insert(entries.end(), next, old.end());
    setOutline(document, entries);
}

} // namespace qrv::engine
