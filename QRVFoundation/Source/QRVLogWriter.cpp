#include "QRVFoundation/Source/QRVLogWriter.h"

#include "Platform/Foundation/NSException.h"

#include <cstdlib>

namespace qrv {

namespace {

bool isFlagInEnvironment(const char* name) {
    const char* value = std::getenv(name);
    return value && NSString::fromFileSystem(value).boolValue();
}

} // namespace

QRVLogWriter::QRVLogWriter() : _isInXcode(isFlagInEnvironment("QRVIsInXcode")) {}

NSString QRVLogWriter::combinePrefix_andMessage(const NSString& prefix, const NSString& message) const {
    constexpr std::u16string_view missing = u"(null)";
    const std::u16string_view first = prefix ? prefix.view() : missing;
    const std::u16string_view second = message ? message.view() : missing;
    std::u16string line;
    line.reserve(first.size() + 1 + second.size());
    return NSString(std::move(line.append(first).append(u" ").append(second)));
}

void QRVLogWriter::writePrefix_message_area(const NSString&, const NSString&, const NSString&) {
    NSException::doesNotRecognizeSelector(u"QRVLogWriter", u"writePrefix:message:area:");
}

} // namespace qrv
