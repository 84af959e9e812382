#include "Source/Tools/webarchive/Extract/StoredText.h"

#include "Platform/Engine/Address/MIMEType.h"
#include "Platform/Foundation/Unicode.h"

#include <algorithm>

namespace qrv::webarchive {

namespace {

constexpr std::string_view mark = "\xEF\xBB\xBF";

bool hasMark(std::string_view bytes) {
    return bytes.starts_with(mark) || bytes.starts_with("\xFE\xFF") || bytes.starts_with("\xFF\xFE");
}

} // namespace

StoredText::StoredText(const WebResource& resource, const std::string& encodingOfPage) {
    const engine::MIMEType type(resource.MIMEType().utf8());
    const std::string_view bytes = resource.data().bytes();
    std::string encoding = resource.textEncodingName().utf8();
    const bool dependsOnPage = (type.isStyleSheet() || type.isScript()) && !bytes.starts_with("@charset \"");
    if (encoding.empty() && dependsOnPage) encoding = unicode::fromUTF8(bytes) ? "utf-8" : encodingOfPage;
    isUTF8_ = unicode::isCharset(encoding) || hasMark(bytes);
    text_ = isUTF8_ ? unicode::toUTF8Lossy(unicode::decodeWebText(bytes, encoding)) : std::string(bytes);
}

std::string StoredText::file(std::string text) const {
    const bool isASCII =
        std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    return isUTF8_ && !isASCII && !text.starts_with(mark) ? std::string(mark) + std::move(text)
                                                          : std::move(text);
}

} // namespace qrv::webarchive
