#include "Platform/Foundation/NSProcessInfo.h"

#include <algorithm>
#include <string>
#include <tuple>

#include <unistd.h>

namespace qrv {

namespace {

/// What the C library knows of a command line that nobody has handed on.
NSArray commandsName() {
    return NSArray({NSString::fromFileSystem(program_invocation_name)});
}

NSString nameIn(const NSArray& arguments) {
    return arguments.count() > 0 ? as<NSString>(arguments.objectAtIndex(0)).lastPathComponent()
                                 : NSString::fromFileSystem(program_invocation_short_name);
}

} // namespace

double NSFoundationVersionNumber() {
    const NSProcessInfo& info = NSProcessInfo::processInfo();
    const std::lock_guard lock(info.mutex_);
    return info.version_.foundation;
}

NSProcessInfo::NSProcessInfo() : arguments_(commandsName()), processName_(nameIn(arguments_)) {}

NSProcessInfo& NSProcessInfo::processInfo() {
    static NSProcessInfo& instance = *new NSProcessInfo; // never destroyed: needed until the very end
    return instance;
}

NSArray NSProcessInfo::arguments() const {
    const std::lock_guard lock(mutex_);
    return argumentsOfTest_ ? argumentsOfTest_ : arguments_;
}

void NSProcessInfo::setArguments(int count, const char* const* arguments) {
    std::vector<id> texts;
    texts.reserve(static_cast<std::size_t>(std::max(count, 0)));
    for (int i = 0; i < count; ++i) texts.push_back(NSString::fromFileSystem(arguments[i]));
    const std::lock_guard lock(mutex_);
    arguments_ = NSArray(std::move(texts));
    processName_ = nameIn(argumentsOfTest_ ? argumentsOfTest_ : arguments_);
}

NSString NSProcessInfo::processName() const {
    const std::lock_guard lock(mutex_);
    return processNameOfTest_ ? processNameOfTest_ : processName_;
}

int NSProcessInfo::processIdentifier() const {
    return getpid();
}

NSDictionary NSProcessInfo::environment() const {
    NSMutableDictionary variables;
    for (char** entry = environ; entry && *entry; ++entry) {
        const std::string_view text = *entry;
        const std::size_t equals = text.find('=');
        if (equals == std::string_view::npos) continue;
        const NSString name = NSString::fromFileSystem(text.substr(0, equals));
        // If a variable is given twice, the first one counts, as in getenv.
        if (variables.objectForKey(name)) continue;
        variables.setObject_forKey(NSString::fromFileSystem(text.substr(equals + 1)), name);
    }
    return std::move(variables).copy();
}

NSOperatingSystemVersion NSProcessInfo::operatingSystemVersion() const {
    const std::lock_guard lock(mutex_);
    return version_.system;
}

bool NSProcessInfo::isOperatingSystemAtLeastVersion(NSOperatingSystemVersion version) const {
    const auto pieces = [](const NSOperatingSystemVersion& v) {
        return std::tuple(v.majorVersion, v.minorVersion, v.patchVersion);
    };
    return pieces(operatingSystemVersion()) >= pieces(version);
}

void NSProcessInfo::setAutomaticTerminationSupportEnabled(bool enabled) {
    const std::lock_guard lock(mutex_);
    automaticTerminationSupported_ = enabled;
}

bool NSProcessInfo::automaticTerminationSupportEnabled() const {
    const std::lock_guard lock(mutex_);
    return automaticTerminationSupported_;
}

void NSProcessInfo::disableAutomaticTermination(const NSString& reason) {
    const std::lock_guard lock(mutex_);
    terminationReasons_ = terminationReasons_.arrayByAddingObject(reason);
}

NSArray NSProcessInfo::automaticTerminationDisablingReasons() const {
    const std::lock_guard lock(mutex_);
    return terminationReasons_;
}

void NSProcessInfo::setVersionForTesting(PlatformVersion version) {
    const std::lock_guard lock(mutex_);
    version_ = version;
}

void NSProcessInfo::setArgumentsForTesting(const NSArray& arguments) {
    const std::lock_guard lock(mutex_);
    argumentsOfTest_ = arguments;
    processName_ = nameIn(argumentsOfTest_ ? argumentsOfTest_ : arguments_);
}

void NSProcessInfo::setProcessNameForTesting(const NSString& name) {
    const std::lock_guard lock(mutex_);
    processNameOfTest_ = name;
}

} // namespace qrv
