#pragma once

// The current process, and the version of the platform that this layer claims to be.

#include "Platform/Foundation/NSDictionary.h"

#include <mutex>

namespace qrv {

struct QRV_EXPORT NSOperatingSystemVersion {
    long long majorVersion = 0;
    long long minorVersion = 0;
    long long patchVersion = 0;

    friend bool operator==(const NSOperatingSystemVersion&, const NSOperatingSystemVersion&) = default;
};

/// The version that this layer reports: that of the services it offers, not the kernel's.
struct QRV_EXPORT PlatformVersion {
    double foundation = 1677.104;
    NSOperatingSystemVersion system = {10, 15, 7};
};

/// The foundation library's version number.
QRV_EXPORT double NSFoundationVersionNumber();

class QRV_EXPORT NSProcessInfo {
public:
    NSProcessInfo();
    NSProcessInfo(const NSProcessInfo&) = delete;
    NSProcessInfo& operator=(const NSProcessInfo&) = delete;

    // + processInfo
    /// The only object. Every operation may be called from any thread.
    static NSProcessInfo& processInfo();

    // - arguments
    /// The command line, beginning with the command's name, which is all there is before setArguments. Texts
    /// are made as from file names, so that any path stays the same.
    NSArray arguments() const;
    /// Takes the command line from main, which is the only one to know it.
    void setArguments(int count, const char* const* arguments);
    // - processName
    /// The last path component of the command's name.
    NSString processName() const;
    // - processIdentifier
    int processIdentifier() const;
    // - environment
    /// The environment variables at the time of the call; texts are made as those of the arguments.
    NSDictionary environment() const;

    // - operatingSystemVersion
    NSOperatingSystemVersion operatingSystemVersion() const;
    // - isOperatingSystemAtLeastVersion:
    bool isOperatingSystemAtLeastVersion(NSOperatingSystemVersion version) const;

    // - setAutomaticTerminationSupportEnabled:
    /// Only stored: nothing here terminates processes automatically.
    void setAutomaticTerminationSupportEnabled(bool enabled);
    // - automaticTerminationSupportEnabled
    bool automaticTerminationSupportEnabled() const;
    // - disableAutomaticTermination:
    void disableAutomaticTermination(const NSString& reason);
    /// The reasons given to disableAutomaticTermination, in order.
    NSArray automaticTerminationDisablingReasons() const;

    /// Replaces what a test wants to replace. The default arguments restore the real values.
    void setVersionForTesting(PlatformVersion version = {});
    void setArgumentsForTesting(const NSArray& arguments = {});
    void setProcessNameForTesting(const NSString& name = {});

private:
    friend double NSFoundationVersionNumber();

    mutable std::mutex mutex_; // guards everything below
    PlatformVersion version_;
    NSArray arguments_;
    NSArray argumentsOfTest_;
    NSString processName_;
    NSString processNameOfTest_;
    NSArray terminationReasons_ = NSArray::array();
    bool automaticTerminationSupported_ = false;
};

} // namespace qrv
