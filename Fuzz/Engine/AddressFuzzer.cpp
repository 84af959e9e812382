// Any text as the address of a page and of what it requests: normal forms are normal, and what the engine
// requests under a synthetic origin is mapped back.

#include "Fuzz/FuzzInput.h"
#include "Platform/Engine/Address/HostName.h"
#include "Platform/Engine/Address/MIMEType.h"
#include "Platform/Engine/Address/ResourceURL.h"
#include "Platform/Foundation/URLPieces.h"

using namespace qrv;
using namespace qrv::engine;
using namespace qrv::fuzz;

namespace {

bool isPrintable(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c > ' ' && c < 0x7F; });
}

void checkNormalForm(const std::string& url) {
    const std::string normal = normalizedURL(url);
    require(isPrintable(normal));
    require(normalizedURL(normal) == normal);
    readableURL(normal);
    const std::string other = withOtherHTTPScheme(normal);
    require(other.empty() || withOtherHTTPScheme(other) == normal);
    if (const auto host = normalizedHost(url)) require(normalizedHost(*host) == host);
}

void checkStandIn(const std::string& page, const std::string& request) {
    const StandInAddress address(page, "token", StandInAddress::Use::always);
    require(address.engineURL().starts_with(address.prefix()));
    require(schemeOf(address.engineURL()) == "http");
    require(splitURL(address.engineURL()).authority == "token.example");
    require(withoutFragment(address.storedURL(withoutFragment(address.engineURL()))) ==
            withoutFragment(page));
    for (const std::string& stem : address.stems()) require(stem.ends_with('/') && stem.size() > 3);
    address.storedURL(request);
    address.storedURL(address.prefix() + request);

    const StandInAddress needed(page, "token");
    const std::string scheme = schemeOf(needed.engineURL());
    require(scheme == "http" || scheme == "https");
}

void checkType(const std::string& text) {
    const MIMEType type(text);
    require(isPrintable(type.text()) && MIMEType(type.text()).text() == type.text());
    require(isPrintable(headerToken(text)));
    require(headerToken(headerToken(text)) == headerToken(text));
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzInput input(bytes, size);
    const std::string page(input.line());
    const std::string request(input.rest());
    checkNormalForm(page);
    checkNormalForm(request);
    checkStandIn(page, request);
    checkType(page);
    return 0;
}
