#include "Platform/Engine/PDF/PDFReaderLimits.h"

#include <map>
#include <qpdf/QPDF.hh>
#include <string>

namespace qrv::engine {

namespace {

constexpr int mostAnnotations = 10'000;
constexpr std::size_t longestName = 127;

using Names = std::map<std::string, std::string>;

/// Returns the new name for each that was too long; both begin with a slash.
Names shortenDestinations(QPDFObjectHandle destinations) {
    Names shortened;
    if (!destinations.isDictionary()) return shortened;
    int number = 0;
    for (const auto& [name, destination] : destinations.ditems()) {
        if (name.size() <= 1 + longestName) continue;
        std::string shorter;
        do shorter = "/destination-" + std::to_string(++number);
        while (destinations.hasKey(shorter));
        shortened[name] = shorter;
    }
    for (const auto& [name, shorter] : shortened) {
        destinations.replaceKey(shorter, destinations.getKey(name));
        destinations.removeKey(name);
    }
    return shortened;
}

void rename(QPDFObjectHandle dictionary, const char* key, const Names& names) {
    if (!dictionary.isDictionary() || !dictionary.getKey(key).isName()) return;
    const auto found = names.find(dictionary.getKey(key).getName());
    if (found != names.end()) dictionary.replaceKey(key, QPDFObjectHandle::newName(found->second));
}

QPDFObjectHandle firstOf(QPDFObjectHandle annotations) {
    QPDFObjectHandle first = QPDFObjectHandle::newArray();
    for (int i = 0; i < mostAnnotations; ++i) first.appendItem(annotations.getArrayItem(i));
    return first;
}

} // namespace

void keepWithinReaderLimits(QPDF& document, std::string& notes) {
    const Names names = shortenDestinations(document.getRoot().getKey("/Dests"));
    for (QPDFObjectHandle page : document.getAllPages()) {
        QPDFObjectHandle annotations = page.getKey("/Annots");
        if (!annotations.isArray()) continue;
        if (const int count = annotations.getArrayNItems(); count > mostAnnotations) {
            notes += "a page has " + std::to_string(count) + " links, of which the PDF has the first " +
                     std::to_string(mostAnnotations) + ": readers refuse pages with more\n";
            annotations = page.replaceKeyAndGetNew("/Annots", firstOf(annotations));
        }
        if (names.empty()) continue;
        for (QPDFObjectHandle annotation : annotations.aitems()) {
            if (!annotation.isDictionary()) continue;
            rename(annotation, "/Dest", names);
            rename(annotation.getKey("/A"), "/D", names);
        }
    }
}

} // namespace qrv::engine
