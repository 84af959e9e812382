#pragma once

// Small pictures of the first pages of PDFs, which are not to be trusted: they are made by a child process.

#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace qrv::batch {

/// The path of the program that makes them; nothing where it is not installed.
std::optional<std::string> pictureProgram();

/// A JPEG file for each PDF; an empty one where no picture could be made, and for an empty path. A tall page
/// is shown by its top. So many children run at once; none is started after the stop.
std::vector<std::string> picturesOfFirstPages(const std::string& program,
                                              const std::vector<std::string>& paths, std::size_t jobs,
                                              const std::stop_token& stop);

} // namespace qrv::batch
