#pragma once

// The running processes of one user, by their short names.

#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace qrv {

/// Lists the names of the processes whose real user is `user`, in the order of their identifiers, each
/// truncated to 16 bytes. Returns 0 and fills in `names`, or returns an errno value and leaves it empty. A
/// process that ends meanwhile is left out. Any thread.
///
/// The kernel keeps only 15 bytes of a name. If a name has that length and the executable's name begins with
/// it, the 16th byte is taken from the executable's.
int readProcessTable(uid_t user, std::optional<std::vector<std::string>>& names);

/// Replaces /proc by a test's own folder; empty restores it.
void setProcessFolderForTesting(const std::string& folder = {});

} // namespace qrv
