#include "Platform/Engine/PDF/PDFReaderLimits.h"

#include <map>
#include <qpdf/QPDF.hh>
#include <string>
#include <string_view>

namespace qrv::engine {

namespace {

constexpr int mostAnnotations = 10'000;
constexpr std::size_t longestName = 127;

using Names = std::map<std::string, std::string>;

/// The PDF library writes a number sign as it is, where readers take it for the beginning of an escape.
bool isRefused(const std::string& name) {
    return name.size() > 1 + longestName ||
           name.find_first_of(std::string_view("#\0", 2)) != std::string::npos;
}

/// Returns the new name for each that readers refuse; both begin with a slash.
Names renameDestinations(QPDFObjectHandle destinations) {
    Names renamed;
    if (!destinations.isDictionary()) return renamed;
    int number = 0;
    for (const auto& [name, destination] : destinations.ditems()) {
        if (!isRefused(name)) continue;
        std::string shorter;
        do shorter = "/destination-" + std::to_string(++number);
        while (destinations.hasKey(shorter));
        renamed[name] = shorter;
    }
    for (const auto& [name, shorter] : renamed) {
        destinations.replaceKey(shorter, destinations.getKey(name));
        destinations.removeKey(name);
    }
    return renamed;
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
    const Names names = renameDestinations(document.getRoot().getKey("/Dests"));
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
