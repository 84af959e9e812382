#include "Platform/Foundation/PropertyList/XMLWriter.h"

#include "Platform/Foundation/Base64.h"
#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSPropertyListSerialization.h"
#include "Platform/Foundation/PropertyList/PropertyListFailure.h"
#include "Platform/Foundation/PropertyList/XMLCharacters.h"
#include "Platform/Foundation/PropertyList/XMLDate.h"
#include "Platform/Foundation/Unicode.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace qrv::plist {

namespace {

constexpr std::string_view header = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                                    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                                    "<plist version=\"1.0\">\n";

/// Bounds the output: shared objects are repeated in this form, so a few can expand to any number of
/// elements.
constexpr std::size_t maximumLength = std::size_t{1} << 30;

class Writer {
public:
    NSData write(const id& root) {
        out_ = header;
        writeObject(root, 0);
        out_ += "</plist>\n";
        return NSData(std::move(out_));
    }

private:
    void indent(std::size_t depth) { out_.append(depth, '\t'); }

    /// Writes "<tag>content</tag>"; the content is already escaped.
    void writeElement(std::string_view tag, std::string_view content, std::size_t depth) {
        indent(depth);
        out_.append("<").append(tag).append(">").append(content).append("</").append(tag).append(">\n");
    }

    void writeEmptyElement(std::string_view tag, std::size_t depth) {
        indent(depth);
        out_.append("<").append(tag).append("/>\n");
    }

    void writeObject(const id& object, std::size_t depth) {
        if (out_.size() > maximumLength) throw PropertyListFailure("too large");
        if (const auto string = as<NSString>(object)) {
            writeElement("string", escaped(string), depth);
        } else if (const auto number = as<NSNumber>(object)) {
            writeNumber(number, depth);
        } else if (const auto data = as<NSData>(object)) {
            writeData(data, depth);
        } else if (const auto date = as<NSDate>(object)) {
            const auto text = formatXMLDate(date.timeIntervalSinceReferenceDate());
            if (!text) throw PropertyListFailure("date out of range");
            writeElement("date", *text, depth);
        } else if (const auto array = as<NSArray>(object)) {
            writeArray(array, depth);
        } else if (const auto dictionary = as<NSDictionary>(object)) {
            writeDictionary(dictionary, depth);
        } else {
            throw PropertyListFailure("an object that no XML property list can hold");
        }
    }

    static std::string escaped(const NSString& text) {
        const auto bytes = unicode::toUTF8(text.view());
        if (!bytes) throw PropertyListFailure("text with an unpaired surrogate");
        if (!std::all_of(text.view().begin(), text.view().end(), canStandInXML)) {
            throw PropertyListFailure("text with a character that XML cannot hold");
        }
        return escapedForXML(*bytes);
    }

    void writeNumber(const NSNumber& number, std::size_t depth) {
        if (number.isBoolean()) {
            writeEmptyElement(number.boolValue() ? "true" : "false", depth);
        } else if (number.isFloatingPoint()) {
            writeElement("real", realText(number.doubleValue()), depth);
        } else {
            writeElement("integer", number.description().utf8(), depth);
        }
    }

    static std::string realText(double value) {
        if (std::isnan(value)) return "nan";
        if (std::isinf(value)) return value > 0 ? "+infinity" : "-infinity";
        char text[32];
        return std::string(text, std::to_chars(text, text + sizeof text, value).ptr);
    }

    /// Breaks lines at column 76, a tab counting as eight, but never below 16 characters.
    void writeData(const NSData& data, std::size_t depth) {
        indent(depth);
        out_ += "<data>\n";
        const std::string text = base64Encode(data.bytes());
        const std::size_t length =
            std::max<std::size_t>(16, 76 - std::min<std::size_t>(76, depth * 8)) / 4 * 4;
        for (std::size_t i = 0; i < text.size(); i += length) {
            indent(depth);
            out_.append(text, i, length).push_back('\n');
        }
        indent(depth);
        out_ += "</data>\n";
    }

    static void checkDepth(std::size_t depth) {
        if (depth >= maximumPropertyListDepth) throw PropertyListFailure("containers nested too deep");
    }

    void writeArray(const NSArray& array, std::size_t depth) {
        checkDepth(depth);
        if (array.count() == 0) return writeEmptyElement("array", depth);
        indent(depth);
        out_ += "<array>\n";
        for (const id& element : array) writeObject(element, depth + 1);
        indent(depth);
        out_ += "</array>\n";
    }

    void writeDictionary(const NSDictionary& dictionary, std::size_t depth) {
        checkDepth(depth);
        if (dictionary.count() == 0) return writeEmptyElement("dict", depth);
        indent(depth);
        out_ += "<dict>\n";
        for (const auto& [key, value] : dictionary) {
            const auto name = as<NSString>(key);
            if (!name) throw PropertyListFailure("key that is no string");
            writeElement("key", escaped(name), depth + 1);
            writeObject(value, depth + 1);
        }
        indent(depth);
        out_ += "</dict>\n";
    }

    std::string out_;
};

} // namespace

NSData writeXML(const id& root) {
    return Writer().write(root);
}

} // namespace qrv::plist
