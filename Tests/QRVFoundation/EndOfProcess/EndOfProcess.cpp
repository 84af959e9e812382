// Logs and reads settings from four detached threads that never end, and in the destructor of a static
// object, which is made before everything in the library and so destroyed after it. Prints "done" at the very
// end.

#include "Platform/Foundation/NSUserDefaults.h"
#include "Platform/Logging/NSLog.h"
#include "QRVFoundation/Source/NSError+QRV.h"
#include "QRVFoundation/Source/NSError+QRVDescription.h"
#include "QRVFoundation/Source/NSString+QRVBasics/NSString+QRVTextMunging.h"
#include "QRVFoundation/Source/NSUserDefaults+QRV.h"
#include "QRVFoundation/Source/QRVLog.h"

#include <atomic>
#include <string>
#include <thread>
#include <unistd.h>

using namespace qrv;

namespace {

/// Whether everything is as it should be.
bool useAll(const char* who) {
    QRV_LOG("EndOfProcess", __func__, u"LogEnd", u"%s logs %@", who,
            NSString(std::u16string(400, u'\u0301'))); // long enough to be split
    NSLog(u"%s: %@", who, NSUserDefaults::standardUserDefaults().dictionaryRepresentation());
    const NSError error = qrvErrorBySettingFilePath(QRVError1(QRVDecodingErrorCode, {}), u"/folder/file");
    const NSUserDefaults defaults = NSUserDefaults::standardUserDefaults();
    return qrvFullDescription(error).rangeOfString(u"/folder/file").location != NSNotFound &&
           qrvStringByStripping(u" stripped ").isEqualToString(u"stripped") &&
           qrvIntegerForKey_domain_defaultValue(defaults, u"Number", u"org.example.end", 1) == 42;
}

struct Last {
    ~Last() {
        const bool isRight = useAll("the destructor");
        const std::string_view text = isRight ? "done\n" : "wrong\n";
        [[maybe_unused]] const ssize_t ignored = ::write(STDOUT_FILENO, text.data(), text.size());
    }
} last;

} // namespace

int main() {
    static std::atomic<int> started = 0; // the threads outlive this function
    for (int i = 0; i < 4; ++i) {
        std::thread([] {
            bool isRight = useAll("a thread");
            ++started;
            while (isRight) isRight = useAll("a thread");
        }).detach();
    }
    while (started < 4) std::this_thread::yield();
}
