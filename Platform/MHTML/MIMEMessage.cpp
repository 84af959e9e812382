#include "Platform/MHTML/MIMEMessage.h"

#include "Platform/Foundation/ASCII.h"

#include <gmime/gmime.h>
#include <memory>
#include <mutex>

namespace qrv {

namespace {

constexpr std::size_t mostParts = 100'000;

struct Release {
    void operator()(void* object) const { g_object_unref(object); }

    void operator()(char* text) const { g_free(text); }
};

template <class T>
using Owned = std::unique_ptr<T, Release>;

std::string textOf(const char* text) {
    return text ? text : "";
}

/// A long header is broken where it must not have white space.
std::string withoutWhiteSpace(std::string text) {
    std::erase_if(text, [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; });
    return text;
}

std::string typeOf(GMimeObject* object) {
    const Owned<char> type(g_mime_content_type_get_mime_type(g_mime_object_get_content_type(object)));
    return lowered(textOf(type.get()));
}

std::string contentsOf(GMimePart* part) {
    GMimeDataWrapper* content = g_mime_part_get_content(part);
    if (!content) return {};
    const Owned<GMimeStream> stream(g_mime_stream_mem_new());
    g_mime_data_wrapper_write_to_stream(content, stream.get());
    const GByteArray* bytes = g_mime_stream_mem_get_byte_array(GMIME_STREAM_MEM(stream.get()));
    return {reinterpret_cast<const char*>(bytes->data), bytes->len};
}

std::string parameterOf(GMimeObject* object, const char* name) {
    return textOf(g_mime_content_type_get_parameter(g_mime_object_get_content_type(object), name));
}

void collect(GMimeObject* object, std::vector<MIMEPart>& parts) {
    if (parts.size() >= mostParts) return;
    if (GMIME_IS_MULTIPART(object)) {
        auto* multipart = GMIME_MULTIPART(object);
        for (int i = 0; i < g_mime_multipart_get_count(multipart); ++i)
            collect(g_mime_multipart_get_part(multipart, i), parts);
    } else if (GMIME_IS_PART(object)) {
        parts.push_back({withoutWhiteSpace(textOf(g_mime_object_get_header(object, "Content-Location"))),
                         textOf(g_mime_object_get_content_id(object)), typeOf(object),
                         parameterOf(object, "charset"), contentsOf(GMIME_PART(object))});
    }
}

bool isPage(const MIMEPart& part) {
    return part.type == "text/html" || part.type == "application/xhtml+xml";
}

/// "<a@b>" without its brackets.
std::string withoutBrackets(std::string text) {
    std::erase_if(text, [](char c) { return c == '<' || c == '>'; });
    return text;
}

/// As it is: the library would break long values, which not every reader puts together again.
void setHeader(GMimeObject* object, const char* name, const std::string& value) {
    g_mime_object_set_header(object, name, "", nullptr);
    GMimeHeader* header = g_mime_header_list_get_header(g_mime_object_get_header_list(object), name);
    g_mime_header_set_raw_value(header, (" " + value + "\n").c_str());
}

/// What could end a header or a quoted text has no place in one.
std::string inHeader(std::string text) {
    std::erase_if(text, [](char c) {
        return static_cast<unsigned char>(c) < 0x20 || c == 0x7F || c == '"' || c == '\\' || c == '<' ||
               c == '>';
    });
    return text;
}

Owned<GMimeObject> partOf(const MIMEPart& part) {
    GMimePart* made = g_mime_part_new();
    Owned<GMimeObject> object(GMIME_OBJECT(made));
    const std::string charset = part.charset.empty() ? "" : "; charset=\"" + inHeader(part.charset) + "\"";
    setHeader(object.get(), "Content-Type", inHeader(part.type) + charset);
    g_mime_part_set_content_encoding(made, GMIME_CONTENT_ENCODING_BASE64);
    if (!part.identifier.empty())
        setHeader(object.get(), "Content-ID", "<" + inHeader(part.identifier) + ">");
    if (!part.location.empty()) setHeader(object.get(), "Content-Location", inHeader(part.location));
    const Owned<GMimeStream> stream(g_mime_stream_mem_new_with_buffer(part.bytes.data(), part.bytes.size()));
    const Owned<GMimeDataWrapper> content(
        g_mime_data_wrapper_new_with_stream(stream.get(), GMIME_CONTENT_ENCODING_DEFAULT));
    g_mime_part_set_content(made, content.get());
    return object;
}

} // namespace

void prepareForMIMEMessages() {
    static std::once_flag once;
    std::call_once(once, [] { g_mime_init(); });
}

std::optional<MIMEMessage> readMIMEMessage(std::string_view bytes) {
    prepareForMIMEMessages();
    const Owned<GMimeStream> stream(g_mime_stream_mem_new_with_buffer(bytes.data(), bytes.size()));
    const Owned<GMimeParser> parser(g_mime_parser_new_with_stream(stream.get()));
    const Owned<GMimeMessage> message(g_mime_parser_construct_message(parser.get(), nullptr));
    GMimeObject* top = message ? g_mime_message_get_mime_part(message.get()) : nullptr;
    if (!top) return std::nullopt;
    MIMEMessage read;
    collect(top, read.parts);
    const std::string start = withoutBrackets(parameterOf(top, "start"));
    const auto isStart = [&](const MIMEPart& part) { return part.identifier == start; };
    auto root =
        start.empty() ? read.parts.end() : std::find_if(read.parts.begin(), read.parts.end(), isStart);
    if (root == read.parts.end()) root = std::find_if(read.parts.begin(), read.parts.end(), isPage);
    if (root == read.parts.end()) return std::nullopt;
    read.root = static_cast<std::size_t>(root - read.parts.begin());
    return read;
}

std::string writeMIMEMessage(const MIMEMessage& message) {
    prepareForMIMEMessages();
    GMimeMultipart* multipart = g_mime_multipart_new_with_subtype("related");
    const Owned<GMimeObject> top(GMIME_OBJECT(multipart));
    // No base64 has an underscore.
    const char boundary[] = "=_part_of_the_page";
    g_mime_multipart_set_boundary(multipart, boundary);
    const MIMEPart& root = message.parts.at(message.root);
    g_mime_multipart_add(multipart, partOf(root).get());
    for (std::size_t i = 0; i < message.parts.size(); ++i) {
        if (i != message.root) g_mime_multipart_add(multipart, partOf(message.parts[i]).get());
    }
    setHeader(top.get(), "MIME-Version", "1.0");
    setHeader(top.get(), "Content-Type",
              "multipart/related; type=\"" + inHeader(root.type) + "\"; boundary=\"" + boundary + "\"");
    if (!root.location.empty()) setHeader(top.get(), "Snapshot-Content-Location", inHeader(root.location));
    // Browsers ask for lines that end as the standard says.
    const std::unique_ptr<GMimeFormatOptions, decltype(&g_mime_format_options_free)> lines(
        g_mime_format_options_new(), &g_mime_format_options_free);
    g_mime_format_options_set_newline_format(lines.get(), GMIME_NEWLINE_FORMAT_DOS);
    const Owned<char> text(g_mime_object_to_string(top.get(), lines.get()));
    return text.get();
}

} // namespace qrv
