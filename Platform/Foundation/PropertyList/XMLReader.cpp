#include "Platform/Foundation/PropertyList/XMLReader.h"

#include "Platform/Foundation/Base64.h"
#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSPropertyListSerialization.h"
#include "Platform/Foundation/PropertyList/PropertyListFailure.h"
#include "Platform/Foundation/PropertyList/XMLDate.h"
#include "Platform/Foundation/Unicode.h"

#include <algorithm>
#include <charconv>
#include <exception>
#include <limits>
#include <memory>
#include <optional>
#include <vector>

#include <expat.h>

namespace qrv::plist {

namespace {

constexpr std::string_view whiteSpace = " \t\r\n";

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(whiteSpace);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(whiteSpace) - first + 1);
}

/// Decimal, or hexadecimal after "0x", with an optional sign; up to the unsigned 64-bit range.
id parseInteger(std::string_view text) {
    text = trimmed(text);
    const bool isNegative = text.starts_with('-');
    if (isNegative || text.starts_with('+')) text.remove_prefix(1);
    const bool isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
    if (isHexadecimal) text.remove_prefix(2);
    unsigned long long magnitude = 0;
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, magnitude, isHexadecimal ? 16 : 10);
    if (result.ec != std::errc() || result.ptr != end) return {};
    if (!isNegative) return NSNumber::numberWithUnsignedInteger(magnitude);
    if (magnitude > 1ULL << 63) return {};
    return NSNumber::numberWithInteger(static_cast<long long>(-magnitude));
}

id parseReal(std::string_view text) {
    text = trimmed(text);
    if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
    double value = 0;
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    if (result.ec != std::errc() || result.ptr != end) return {};
    return NSNumber::numberWithDouble(value);
}

id parseDate(std::string_view text) {
    const auto seconds = parseXMLDate(trimmed(text));
    return seconds ? NSDate::dateWithTimeIntervalSinceReferenceDate(*seconds) : NSDate();
}

id parseData(std::string_view text) {
    auto bytes = base64Decode(text);
    return bytes ? NSData(std::move(*bytes)) : NSData();
}

id parseString(std::string_view text) {
    auto units = unicode::fromUTF8(text);
    return units ? NSString(std::move(*units)) : NSString();
}

/// The kinds of elements whose value is their text.
struct TextKind {
    std::string_view tag;
    id (*parse)(std::string_view);
};

constexpr TextKind textKinds[] = {{"string", parseString}, {"key", parseString},      {"data", parseData},
                                  {"date", parseDate},     {"integer", parseInteger}, {"real", parseReal}};

class Reader {
public:
    Reader() : parser_(XML_ParserCreate(nullptr)) {
        if (!parser_) throw std::bad_alloc();
        XML_SetUserData(parser_.get(), this);
        XML_SetElementHandler(
            parser_.get(),
            [](void* self, const XML_Char* tag, const XML_Char**) {
                static_cast<Reader*>(self)->guarded([&](Reader& r) { r.start(tag); });
            },
            [](void* self, const XML_Char*) {
                static_cast<Reader*>(self)->guarded([](Reader& r) { r.end(); });
            });
        XML_SetCharacterDataHandler(parser_.get(), [](void* self, const XML_Char* text, int length) {
            static_cast<Reader*>(self)->guarded([&](Reader& r) {
                r.characters({text, static_cast<std::size_t>(length)});
            });
        });
        // A property list needs no entities of its own; hostile ones make a small document large.
        XML_SetEntityDeclHandler(parser_.get(), [](void* self, const XML_Char*, int, const XML_Char*, int,
                                                   const XML_Char*, const XML_Char*, const XML_Char*,
                                                   const XML_Char*) {
            static_cast<Reader*>(self)->guarded([](Reader& r) { r.fail("declares an entity"); });
        });
        XML_SetSkippedEntityHandler(parser_.get(), [](void* self, const XML_Char*, int) {
            static_cast<Reader*>(self)->guarded([](Reader& r) { r.fail("unknown entity"); });
        });
    }

    id read(std::string_view bytes) {
        // Parsed in one piece, unless it is longer than the parser can count: a token cut in two is scanned
        // twice.
        constexpr std::size_t pieceLength = std::size_t{1} << 30;
        do {
            const std::string_view piece = bytes.substr(0, pieceLength);
            bytes.remove_prefix(piece.size());
            const XML_Status status = XML_Parse(parser_.get(), piece.data(), static_cast<int>(piece.size()),
                                                bytes.empty() ? XML_TRUE : XML_FALSE);
            if (failure_) std::rethrow_exception(failure_);
            if (status != XML_STATUS_OK) fail(XML_ErrorString(XML_GetErrorCode(parser_.get())));
        } while (!bytes.empty());
        if (!root_) fail("no object");
        return root_;
    }

private:
    struct Container {
        bool isDictionary = false;
        std::vector<id> elements;
        NSMutableDictionary entries;
        NSString key; // of the value that comes next
    };

    [[noreturn]] void fail(const std::string& what) const {
        throw PropertyListFailure(
            what, static_cast<std::size_t>(std::max<XML_Index>(0, XML_GetCurrentByteIndex(parser_.get()))));
    }

    /// Runs a handler; its exceptions must not pass through the parser, which is written in C.
    template <class Handler>
    void guarded(Handler handler) {
        if (failure_) return;
        try {
            handler(*this);
        } catch (...) {
            failure_ = std::current_exception();
            XML_StopParser(parser_.get(), XML_FALSE);
        }
    }

    void start(std::string_view tag) {
        if (textKind_ || isInEmpty_) fail("element inside a value");
        if (tag == "plist") {
            if (plistDepth_++ > 0 || !containers_.empty() || root_) fail("misplaced plist element");
            return;
        }
        const bool isKey = tag == "key";
        if (containers_.empty() ? root_ || isKey : isKey != needsKey()) fail("misplaced element");
        if (tag == "dict" || tag == "array") {
            if (containers_.size() >= maximumPropertyListDepth) fail("containers nested too deep");
            containers_.emplace_back().isDictionary = tag == "dict";
            return;
        }
        if (tag == "true" || tag == "false") {
            isInEmpty_ = true;
            return add(NSNumber::numberWithBool(tag == "true"));
        }
        const auto* kind = std::find_if(std::begin(textKinds), std::end(textKinds),
                                        [&](const TextKind& k) { return k.tag == tag; });
        if (kind == std::end(textKinds)) fail("unknown element");
        textKind_ = kind;
        text_.clear();
    }

    void end() {
        if (isInEmpty_) {
            isInEmpty_ = false;
        } else if (textKind_) {
            endText();
        } else if (!containers_.empty()) {
            endContainer();
        }
    }

    void endText() {
        const TextKind& kind = *std::exchange(textKind_, nullptr);
        id value = kind.parse(text_);
        if (!value) fail("bad " + std::string(kind.tag));
        if (kind.tag == "key") {
            containers_.back().key = as<NSString>(value);
        } else {
            add(std::move(value));
        }
    }

    void endContainer() {
        Container container = std::move(containers_.back());
        containers_.pop_back();
        if (container.key) fail("key without a value");
        if (container.isDictionary) {
            add(std::move(container.entries).copy());
        } else {
            add(NSArray(std::move(container.elements)));
        }
    }

    void characters(std::string_view text) {
        if (textKind_) {
            text_.append(text);
        } else if (text.find_first_not_of(whiteSpace) != std::string_view::npos) {
            fail("text outside a value");
        }
    }

    bool needsKey() const { return containers_.back().isDictionary && !containers_.back().key; }

    void add(id value) {
        if (containers_.empty()) {
            root_ = std::move(value);
            return;
        }
        Container& container = containers_.back();
        if (container.isDictionary) {
            container.entries.setObject_forKey(value, container.key);
            container.key = {};
        } else {
            container.elements.push_back(std::move(value));
        }
    }

    struct Free {
        void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
    };

    std::unique_ptr<std::remove_pointer_t<XML_Parser>, Free> parser_;
    std::exception_ptr failure_;
    std::vector<Container> containers_;
    const TextKind* textKind_ = nullptr;
    bool isInEmpty_ = false;
    int plistDepth_ = 0;
    std::string text_;
    id root_;
};

} // namespace

id readXML(const NSData& data) {
    std::string_view bytes = data.bytes();
    // The declaration should come first, but blank lines before it do occur.
    bytes.remove_prefix(std::min(bytes.find_first_not_of(whiteSpace), bytes.size()));
    return Reader().read(bytes);
}

} // namespace qrv::plist
