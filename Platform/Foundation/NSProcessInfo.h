#pragma once

// This process, and the version of the platform whose services this layer offers.

#include "Platform/Foundation/NSDictionary.h"

#include <mutex>

namespace qrv {

struct NSOperatingSystemVersion {
    long long majorVersion = 0;
    long long minorVersion = 0;
    long long patchVersion = 0;

    friend bool operator==(const NSOperatingSystemVersion&, const NSOperatingSystemVersion&) = default;
};

/// The version that this layer states: that of the generation of services it offers, not the kernel's.
struct PlatformVersion {
    double foundation = 1677.104;
    NSOperatingSystemVersion system = {10, 15, 7};
};

/// The foundation library's version number.
double NSFoundationVersionNumber();

class NSProcessInfo {
public:
    NSProcessInfo() = default;
    NSProcessInfo(const NSProcessInfo&) = delete;
    NSProcessInfo& operator=(const NSProcessInfo&) = delete;

    // + processInfo
    /// The one object; every operation may be called from any thread.
    static NSProcessInfo& processInfo();

    // - arguments
    /// The command line, the command's own name first. Bytes that are not UTF-8 show as U+FFFD.
    NSArray arguments() const;
    // - processName
    /// The last path component of the command's own name.
    NSString processName() const;
    // - processIdentifier
    int processIdentifier() const;
    // - environment
    /// The variables as they are at the time of the call.
    NSDictionary environment() const;

    // - operatingSystemVersion
    NSOperatingSystemVersion operatingSystemVersion() const;
    // - isOperatingSystemAtLeastVersion:
    bool isOperatingSystemAtLeastVersion(NSOperatingSystemVersion version) const;

    // - setAutomaticTerminationSupportEnabled:
    /// Nothing ends processes of its own accord here; what is asked for is kept and can be read.
    void setAutomaticTerminationSupportEnabled(bool enabled);
    // - automaticTerminationSupportEnabled
    bool automaticTerminationSupportEnabled() const;
    // - disableAutomaticTermination:
    void disableAutomaticTermination(const NSString& reason);
    /// The reasons for which automatic termination is off, in the order given.
    NSArray automaticTerminationDisablingReasons() const;

    /// What a test wants to be told. The default and nil restore the truth.
    void setVersionForTesting(PlatformVersion version = {});
    void setArgumentsForTesting(const NSArray& arguments = {});
    void setProcessNameForTesting(const NSString& name = {});

private:
    friend double NSFoundationVersionNumber();

    mutable std::mutex mutex_; // guards everything below
    PlatformVersion version_;
    NSArray argumentsOfTest_;
    NSString processNameOfTest_;
    NSArray terminationReasons_ = NSArray::array();
    bool automaticTerminationSupported_ = false;
};

} // namespace qrv
