#include "Platform/Foundation/CollectionDescription.h"

#include "Platform/Foundation/NSDictionary.h"

#include <algorithm>
#include <cstdio>

namespace qrv {

namespace {

/// Deeper nesting is cut, so that a hostile property list cannot exhaust the stack.
constexpr int maximumDepth = 512;

bool isPlain(char16_t c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') || c == u'_' ||
           c == u'$' || c == u'/' || c == u':' || c == u'.';
}

std::u16string quoted(std::u16string_view text) {
    if (!text.empty() && std::all_of(text.begin(), text.end(), isPlain)) return std::u16string(text);
    std::u16string result = u"\"";
    for (const char16_t c : text) {
        if (c == u'"' || c == u'\\') {
            result.append({u'\\', c});
        } else if (c == u'\n') {
            result.append(u"\\n");
        } else if (c >= 0x80) {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\U%04x", static_cast<unsigned>(c));
            result.append(escape, escape + 6);
        } else {
            result.push_back(c);
        }
    }
    return result.append(u"\"");
}

void append(std::u16string& out, const id& value, int depth);

std::u16string indentation(int depth) {
    return std::u16string(static_cast<std::size_t>(depth) * 4, u' ');
}

void appendArray(std::u16string& out, const NSArray& array, int depth) {
    out.append(u"(\n");
    for (std::size_t i = 0; i < array.count(); ++i) {
        out.append(indentation(depth + 1));
        append(out, array.objectAtIndex(i), depth + 1);
        out.append(i + 1 < array.count() ? u",\n" : u"\n");
    }
    out.append(indentation(depth)).append(u")");
}

void appendDictionary(std::u16string& out, const NSDictionary& dictionary, int depth) {
    NSDictionary::Entries entries = dictionary.entries();
    std::stable_sort(entries.begin(), entries.end(), [](const auto& a, const auto& b) {
        return a.first.description().view() < b.first.description().view();
    });
    out.append(u"{\n");
    for (const auto& [key, value] : entries) {
        out.append(indentation(depth + 1)).append(quoted(key.description().view())).append(u" = ");
        append(out, value, depth + 1);
        out.append(u";\n");
    }
    out.append(indentation(depth)).append(u"}");
}

void append(std::u16string& out, const id& value, int depth) {
    if (depth > maximumDepth) {
        out.append(u"...");
    } else if (const NSArray array = as<NSArray>(value)) {
        appendArray(out, array, depth);
    } else if (const NSDictionary dictionary = as<NSDictionary>(value)) {
        appendDictionary(out, dictionary, depth);
    } else {
        out.append(quoted(value.description().view()));
    }
}

} // namespace

NSString describeCollection(const id& collection) {
    std::u16string text;
    append(text, collection, 0);
    return NSString(std::move(text));
}

} // namespace qrv
