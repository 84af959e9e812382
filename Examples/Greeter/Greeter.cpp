// Greets whom a file names: Greeter FILE. Shows the library's errors, logging and settings.
//
// The settings are those of org.example.Greeter, in ~/.config/preferences/org.example.Greeter.plist: Greeting
// (a string), Times (an integer), and for the log LogGreeter (a boolean) with the logger's own options.

#include "Platform/Foundation/NSProcessInfo.h"
#include "QRVFoundation/Source/NSError+QRV.h"
#include "QRVFoundation/Source/NSError+QRVDescription.h"
#include "QRVFoundation/Source/NSString+QRVBasics/NSString+QRVCreation.h"
#include "QRVFoundation/Source/NSString+QRVBasics/NSString+QRVTextMunging.h"
#include "QRVFoundation/Source/NSUserDefaults+QRV.h"
#include "QRVFoundation/Source/QRVLog.h"

#include <iostream>

using namespace qrv;

namespace {

/// The name in the file, or nil and an error.
NSString readName(const NSString& path, NSError* error) {
    NSError failure;
    const NSData data = NSData::initWithContentsOfFile_options_error(path, 0, &failure);
    const NSString name = qrvStringByStripping(qrvStringWithUTF8Data(data));
    if (name) return name;
    if (!failure) failure = qrvErrorBySettingFilePath(QRVError1(QRVDecodingErrorCode, {}), path);
    setError(error, qrvErrorByAddingStackFrame_line(failure, __func__, __LINE__));
    return {};
}

} // namespace

int main(int argc, char** argv) {
    NSProcessInfo::processInfo().setArguments(argc, argv);
    const NSString domain = u"org.example.Greeter";
    QRVLogger::setUpWithPersistentDomainName(domain);

    NSError error;
    const NSString name = readName(qrvStringWithFileSystemRepresentation(argc > 1 ? argv[1] : ""), &error);
    if (!name) {
        std::cerr << qrvFullDescription(error).utf8() << '\n';
        return 1;
    }

    const NSUserDefaults settings = NSUserDefaults::standardUserDefaults();
    const id greeting =
        qrvObjectForKey_domain_defaultValue(settings, u"Greeting", domain, NSString(u"Hello"));
    const long long times = qrvIntegerForKey_domain_defaultValue(settings, u"Times", domain, 1);
    QRV_LOG("Greeter", __func__, u"LogGreeter", u"greeting %@, times: %lld", name, times);
    for (long long i = 0; i < times; ++i) {
        std::cout << NSString::stringWithFormat(u"%@, %@!", greeting, name).utf8() << '\n';
    }
}
