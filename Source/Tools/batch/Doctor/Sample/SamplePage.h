#pragma once

// A page that tries out what a conversion meets here: fonts for the scripts of the world, and the network.

#include "Platform/Foundation/NSData.h"

#include <optional>
#include <string>
#include <vector>

namespace qrv::batch {

/// A script or another kind of characters that needs fonts of its own.
struct WritingSystem {
    const char* name;
    const char* language; ///< which decides among fonts that have the same characters
    const char* sample;   ///< UTF-8
    const char* package;  ///< Debian's, with a font for it
};

/// Each has a sheet of its own in the page's PDF, in this order, from the first sheet on.
const std::vector<WritingSystem>& writingSystems();

/// What a page says that was converted.
struct SampleReport {
    /// What the engine calls itself, such as "156.0.8078.79"; the full browser hides all but the first
    /// number.
    std::string version;
    /// The addresses that the page got something from, of those that it tried.
    std::vector<std::string> reached;
    std::size_t tried = 0;
    /// For each writing system, how many of its sample's characters there is no font for.
    std::vector<std::size_t> missing;
};

/// The archive's bytes. The page also tries to reach this port of the machine itself.
NSData sampleArchive(unsigned port);

/// What the page has written into its title, which is the PDF's; nothing for any other text.
std::optional<SampleReport> reportInTitle(const std::string& title);

} // namespace qrv::batch
