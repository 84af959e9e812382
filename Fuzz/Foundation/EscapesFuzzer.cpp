// Any text as a URL, with and without percent escapes, as a query, as a path, and in Base64.

#include "Fuzz/FuzzInput.h"
#include "Platform/Foundation/Base64.h"
#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/NSCharacterSet.h"
#include "Platform/Foundation/NSURL.h"
#include "Platform/Foundation/NSURLComponents.h"
#include "Platform/Foundation/PercentEscapes.h"
#include "Platform/Foundation/URLPieces.h"

using namespace qrv;
using namespace qrv::fuzz;

namespace {

bool isASCII(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c > ' ' && c < 0x7F; });
}

void checkURL(const NSString& text) {
    const NSURL url = NSURL::URLWithString(text);
    require(url.isNil() == (text.length() == 0));
    if (!url) return;
    const std::string written = url.absoluteString().utf8();
    require(isASCII(written));
    require(NSURL::URLWithString(url.absoluteString()) == url);
    require(url.scheme().length() + url.host().length() <= written.size());
    require(url.path().length() <= written.size());
    const URLPieces pieces = splitURL(written);
    require(pieces.scheme.size() + pieces.authority.size() + pieces.path.size() + pieces.tail.size() <=
            written.size());
    require(written.ends_with(pieces.tail));
    require(withoutFragment(written).size() <= written.size());
}

void checkEscapes(const std::string& bytes, const NSString& text, const NSString& kept) {
    require(percentDecoded(percentEscaped(bytes, "")) == bytes);
    require(isASCII(percentEscaped(bytes)));
    require(base64Decode(base64Encode(bytes)) == bytes);
    if (const auto decoded = base64Decode(bytes)) require(decoded->size() <= bytes.size());

    const NSString escaped = CFURLCreateStringByAddingPercentEscapes(text, {}, kept);
    if (escaped) require(CFURLCreateStringByReplacingPercentEscapes(escaped, u"").isEqualToString(text));
    const NSString decoded = CFURLCreateStringByReplacingPercentEscapes(text, kept);
    require(decoded.length() <= text.length());
    const auto allowed = NSCharacterSet::characterSetWithCharactersInString(kept);
    require(text.stringByAddingPercentEncodingWithAllowedCharacters(allowed).isNil() == escaped.isNil());
}

void checkQuery(const NSString& name, const NSString& value) {
    NSURLComponents components;
    components.setQueryItems({NSURLQueryItem::queryItemWithName_value(name, value),
                              NSURLQueryItem::queryItemWithName_value(value, {})});
    const std::string query = components.percentEncodedQuery().utf8();
    require(query.empty() || isASCII(query));
    require(std::count(query.begin(), query.end(), '&') == 1);
    require(std::count(query.begin(), query.end(), '=') == 1);
}

void checkPath(const std::string& bytes) {
    const NSString path = NSString::fromFileSystem(bytes);
    const bool isPath = bytes.find('\0') == std::string::npos;
    require(path.fileSystemRepresentation() == (isPath ? bytes : ""));
    const NSString parent = path.stringByDeletingLastPathComponent();
    require(parent.length() <= path.length());
    require(path.stringByDeletingPathExtension().length() <= path.length());
    require(!path.pathComponents().isNil());
    require(parent.stringByAppendingPathComponent(path.lastPathComponent()).length() <= path.length() + 1);
    if (isPath && !bytes.empty() && bytes.front() == '/') {
        const NSURL url = NSURL::fileURLWithPath_isDirectory(path, false);
        require(url.isFileURL() && isASCII(url.absoluteString().utf8()));
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzInput input(bytes, size);
    const NSString kept = NSString::fromUTF8(input.line());
    const std::string rest(input.rest());
    const NSString text = NSString::fromUTF8(rest);
    checkURL(text);
    checkEscapes(rest, text, kept);
    checkQuery(kept, text);
    checkPath(rest);
    return 0;
}
