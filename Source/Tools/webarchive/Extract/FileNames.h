#pragma once

// Names for the files that an archive is extracted to.

#include "Platform/Engine/Address/MIMEType.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace qrv::webarchive {

/// Gives each name once, also by the rules of file systems that take capital and small letters for the same.
/// Names are made of ASCII letters, digits, "-", "_" and "." only, so that they mean the same in every text,
/// address and file system; they begin with a letter or digit and are shorter than 100 characters.
class FileNames {
public:
    /// "photo.jpg" for "http://host/a/photo.php?x=1" of the type image/jpeg: a browser goes by the suffix.
    std::string take(std::string_view address, const engine::MIMEType& type);
    /// "frame-3.html": `stem` has to be of the characters above.
    std::string take(const std::string& stem, const std::string& suffix);

private:
    std::unordered_set<std::string> taken_;                // in small letters
    std::unordered_map<std::string, std::size_t> numbers_; // of stems with suffixes, the last number
};

/// The suffix that tells a browser this type, without a dot; for types that it does not know that of the
/// address, if it has one, else "bin".
std::string suffixOf(const engine::MIMEType& type, std::string_view address);

} // namespace qrv::webarchive
