#pragma once

// Preferences of a test's own: a user's folder and two shared ones, in place of the machine's.

#include "Platform/Foundation/CFPreferences.h"
#include "Platform/Foundation/NSPropertyListSerialization.h"
#include "Tests/Support/TemporaryFolder.h"

#include <cstdlib>

namespace qrv {

class PreferencesFolder {
public:
    PreferencesFolder() {
        setenv("XDG_CONFIG_HOME", (folder_.path().string() + "/user").c_str(), 1);
        setenv("XDG_CONFIG_DIRS", (path() + "/first:" + path() + "/second").c_str(), 1);
    }

    ~PreferencesFolder() {
        unsetenv("XDG_CONFIG_HOME");
        unsetenv("XDG_CONFIG_DIRS");
    }

    PreferencesFolder(const PreferencesFolder&) = delete;
    PreferencesFolder& operator=(const PreferencesFolder&) = delete;

    std::string path() const { return folder_.path().string(); }

    /// `place` is "user", "first" or "second".
    std::string write(const std::string& place, const std::string& domain, const NSDictionary& contents,
                      NSPropertyListFormat format = NSPropertyListXMLFormat_v1_0) const {
        const NSData data = NSPropertyListSerialization::dataFromPropertyList_format_errorDescription(
            contents, format, nullptr);
        return writeBytes(place, domain, data.bytes());
    }

    std::string writeBytes(const std::string& place, const std::string& domain,
                           std::string_view bytes) const {
        return folder_.write(place + "/preferences/" + domain + ".plist", bytes).fileSystemRepresentation();
    }

private:
    TemporaryFolder folder_;
};

} // namespace qrv
