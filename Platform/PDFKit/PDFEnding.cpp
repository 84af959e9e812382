#include "Platform/PDFKit/PDFEnding.h"

#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSPropertyListSerialization.h"
#include "Platform/PDFKit/PDFAttributes.h"

#include <algorithm>
#include <charconv>
#include <qpdf/QPDF.hh>
#include <string_view>

namespace qrv {

namespace {

/// What the trailer says of its own table, which another one says of itself.
constexpr std::string_view ofTable[] = {"/Size",  "/Prev",   "/XRefStm",     "/Type",   "/W",
                                        "/Index", "/Filter", "/DecodeParms", "/Length", "/Info"};

std::string trailerEntries(QPDFObjectHandle trailer) {
    std::string entries;
    for (auto& [key, value] : trailer.ditems()) {
        if (std::find(std::begin(ofTable), std::end(ofTable), key) == std::end(ofTable))
            entries += QPDFObjectHandle::newName(key).unparse() + " " + value.unparse() + " ";
    }
    return entries;
}

/// A part of the list that texts are in, some of which are no text in any encoding.
NSData field(const std::string& text) {
    return NSData(text);
}

NSNumber field(long long number) {
    return NSNumber::numberWithInteger(number);
}

std::string textIn(const NSDictionary& list, const char16_t* key) {
    return std::string(as<NSData>(list.objectForKey(NSString(key))).bytes());
}

long long numberIn(const NSDictionary& list, const char16_t* key) {
    return as<NSNumber>(list.objectForKey(NSString(key))).integerValue();
}

} // namespace

PDFEnding endingOf(QPDF& document, QPDFObjectHandle trailer) {
    PDFEnding ending;
    QPDFObjectHandle information = trailer.getKey("/Info");
    ending.attributes = attributesIn(information);
    if (information.isDictionary()) {
        for (auto& [name, value] : information.ditems()) {
            ending.information.emplace_back(QPDFObjectHandle::newName(name).unparse(), value.unparse());
        }
        if (information.isIndirect()) ending.informationObject = information.getObjGen().unparse(' ');
    }
    QPDFObjectHandle catalog = document.getRoot();
    ending.catalogObject = catalog.getObjGen().unparse(' ');
    if (catalog.hasKey("/Metadata")) {
        QPDFObjectHandle without = catalog.shallowCopy();
        without.removeKey("/Metadata");
        ending.catalogWithoutMetadata = without.unparse();
    }
    ending.trailer = trailerEntries(trailer);
    ending.size = trailer.getKey("/Size").getIntValue();
    ending.hasStream = trailer.getKey("/Type").isNameAndEquals("/XRef");
    return ending;
}

PDFEnding endingOf(QPDF& document, const NSData& bytes) {
    constexpr std::string_view start = "startxref";
    PDFEnding ending = endingOf(document, document.getTrailer());
    const std::string_view file = bytes.bytes();
    ending.header = static_cast<long long>(std::min(file.find("%PDF-"), file.size()));
    std::string_view number = file.substr(std::min(file.rfind(start), file.size() - start.size()));
    number.remove_prefix(start.size());
    number.remove_prefix(std::min(number.find_first_of("0123456789"), number.size()));
    std::from_chars(number.data(), number.data() + number.size(), ending.table);
    return ending;
}

NSData listFromEnding(const PDFEnding& ending) {
    std::vector<id> information;
    for (const auto& [name, value] : ending.information) {
        information.push_back(field(name));
        information.push_back(field(value));
    }
    const NSDictionary list{
        {NSString(u"attributes"), ending.attributes},
        {NSString(u"information"), NSArray(std::move(information))},
        {NSString(u"informationObject"), field(ending.informationObject)},
        {NSString(u"catalogObject"), field(ending.catalogObject)},
        {NSString(u"catalogWithoutMetadata"), field(ending.catalogWithoutMetadata)},
        {NSString(u"trailer"), field(ending.trailer)},
        {NSString(u"size"), field(ending.size)},
        {NSString(u"header"), field(ending.header)},
        {NSString(u"table"), field(ending.table)},
        {NSString(u"hasStream"), field(ending.hasStream ? 1 : 0)},
    };
    return NSPropertyListSerialization::dataFromPropertyList_format_errorDescription(
        list, NSPropertyListBinaryFormat_v1_0, nullptr);
}

std::optional<PDFEnding> endingFromList(const NSData& data) {
    const auto list = as<NSDictionary>(NSPropertyListSerialization::propertyListWithData(data));
    PDFEnding ending;
    ending.attributes = as<NSDictionary>(list.objectForKey(NSString(u"attributes")));
    if (!ending.attributes) return std::nullopt;
    const auto information = as<NSArray>(list.objectForKey(NSString(u"information")));
    for (std::size_t i = 0; i + 1 < information.count(); i += 2) {
        ending.information.emplace_back(as<NSData>(information.objectAtIndex(i)).bytes(),
                                        as<NSData>(information.objectAtIndex(i + 1)).bytes());
    }
    ending.informationObject = textIn(list, u"informationObject");
    ending.catalogObject = textIn(list, u"catalogObject");
    ending.catalogWithoutMetadata = textIn(list, u"catalogWithoutMetadata");
    ending.trailer = textIn(list, u"trailer");
    ending.size = numberIn(list, u"size");
    ending.header = numberIn(list, u"header");
    ending.table = numberIn(list, u"table");
    ending.hasStream = numberIn(list, u"hasStream") != 0;
    return ending;
}

} // namespace qrv
