// An operation that can fail, and what its caller gets to know.

// [headers]
#include "Platform/Foundation/NSNumber.h"
#include "QRVFoundation/Source/NSError+QRV.h"
#include "QRVFoundation/Source/NSError+QRVDescription.h"
#include "QRVFoundation/Source/NSString+QRVBasics/NSString+QRVCreation.h"
// [headers]

#include <iostream>

using namespace qrv;

namespace {

// [domain]
constexpr char16_t HarbourErrorDomain[] = u"org.example.Harbour";
constexpr long long HarbourNoDepthError = 1;

// [domain]

// [failing]
/// The depth in the file, in metres; nil and an error if there is none.
NSNumber readDepth(const NSString& path, NSError* error) {
    NSError cause;
    const NSData data = NSData::initWithContentsOfFile_options_error(path, 0, &cause);
    const double depth = qrvStringWithUTF8Data(data).doubleValue();
    if (depth > 0) return NSNumber::numberWithDouble(depth);

    NSError failure = NSError::errorWithDomain_code_userInfo(
        HarbourErrorDomain, HarbourNoDepthError, {{NSLocalizedDescriptionKey, u"The depth is not known."}});
    failure = qrvErrorBySettingFilePath(failure, path);
    if (cause) failure = qrvErrorBySettingUnderlyingError(failure, cause);
    setError(error, failure);
    return {};
}

// [failing]

} // namespace

int main() {
    // [caller]
    NSError error;
    if (!readDepth(u"depth.txt", &error)) {
        std::cout << error.localizedDescription() << '\n';
        if (qrvHasDomain_code(error, HarbourErrorDomain, HarbourNoDepthError)) std::cout << "Sound it.\n";
    }
    const NSNumber depth = readDepth(u"depth.txt", nullptr); // who only wants to know whether
    std::cout << depth << '\n';
    // [caller]

    // [chain]
    const auto cause = as<NSError>(error.userInfo().objectForKey(NSUnderlyingErrorKey));
    std::cout << cause.domain() << ' ' << cause.code() << '\n';
    std::cout << qrvFullDescription(error) << '\n';
    // [chain]
}
