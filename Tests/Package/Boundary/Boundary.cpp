// What has to mean the same on both sides of the shared library: types that are thrown, asked for and derived
// from. Prints the line of each check that fails.

#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/NSNumber.h"
#include "QRVFoundation/Source/QRVFunctions.h"
#include "QRVFoundation/Source/QRVLog.h"

#include <iostream>

using namespace qrv;

namespace {

int failures = 0;

void check(bool holds, int line) {
    if (holds) return;
    std::cout << "line " << line << '\n';
    ++failures;
}

class OwnNumber : public Object, public IntegerValue {
public:
    long long integerValue() const override { return 7; }
};

class OwnWriter : public QRVLogWriter {
public:
    explicit OwnWriter(NSString& line) : line_(line) {}

    void writePrefix_message_area(const NSString&, const NSString& message, const NSString&) override {
        line_ = message;
    }

private:
    NSString& line_;
};

template <class Exception>
bool raises(void (*operation)()) {
    try {
        operation();
    } catch (const Exception&) {
        return true;
    } catch (...) {
        return false;
    }
    return false;
}

void readBeyondTheEnd() {
    static_cast<void>(NSString(u"a").characterAtIndex(1));
}

void failAnAssertion() {
    QRVFunctions::assertionFailedForFile_line_object_selector_format("Boundary", __LINE__, nullptr, "f",
                                                                     u"no");
}

} // namespace

int main() {
    check(raises<NSException>(readBeyondTheEnd), __LINE__);
    check(raises<std::exception>(readBeyondTheEnd), __LINE__);
    check(!raises<QRVException>(readBeyondTheEnd), __LINE__);
    check(raises<QRVException>(failAnAssertion), __LINE__);

    const id number = NSNumber::numberWithInteger(5);
    check(number.payload<IntegerValue>() && number.payload<IntegerValue>()->integerValue() == 5, __LINE__);
    check(!number.payload<NSErrorObject>(), __LINE__);
    check(!as<NSNumber>(id(std::make_shared<OwnNumber>())), __LINE__);
    check(id(NSError::errorWithDomain_code_userInfo(u"D", 1, {})).payload<NSErrorObject>(), __LINE__);

    NSString line;
    const auto logger = std::make_shared<QRVLogger>(
        NSDictionary{{NSString(u"Area"), NSNumber::numberWithBool(true)}}, std::make_unique<OwnWriter>(line));
    logger->logFile_line_function_area_format("Boundary", __LINE__, "main", u"Area", u"%@", number);
    check(line.isEqualToString(u"5"), __LINE__);
    return failures;
}
