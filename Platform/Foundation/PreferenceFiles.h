#pragma once

// The preference files of a domain and their contents.

#include "Platform/Foundation/NSDictionary.h"

#include <memory>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <tuple>
#include <vector>

namespace qrv {

using PreferencePaths = std::shared_ptr<const std::vector<std::string>>;

/// The paths of a domain's files, existing or not, in order of precedence; never null. None for a name that
/// is empty or could lead to another folder. The environment counts as it is at the time of the call.
PreferencePaths preferenceFiles(const NSString& domain);

/// Reads the files of one look-up.
class PreferenceReader {
public:
    /// Returns the file's dictionary; nil if there is no such file or it cannot be read, which is reported
    /// once (see setPreferencesWarning). An unchanged file is not read again, and one that is missing is not
    /// looked for while nothing comes into its folder or goes.
    NSDictionary read(const std::string& path);

private:
    /// Changes whenever the file or folder does, except for a change within one tick of the file system's
    /// clock.
    using Stamp = std::tuple<dev_t, ino_t, off_t, time_t, long, time_t, long>;

    struct Folder {
        std::string path;
        std::optional<Stamp> stamp; // nothing for a folder that is not there
        bool isSettled;
    };

    struct State;

    static State& state();
    static Stamp stampOf(const struct stat& status);
    const Folder& folderOf(const std::string& path);
    bool isKnownToBeMissing(const std::string& path);
    void rememberMissing(const std::string& path);

    std::vector<Folder> folders_; // as far as they were looked at for this look-up
};

} // namespace qrv
