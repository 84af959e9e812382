#pragma once

// Dates in the XML form of property lists: "2001-01-01T00:00:00Z".

#include <optional>
#include <string>
#include <string_view>

namespace qrv::plist {

/// Returns seconds since the reference date; nullopt for anything but a valid date in exactly this form.
std::optional<double> parseXMLDate(std::string_view text);

/// Formats the second that contains the moment; nullopt before the year 1 and after 9999.
std::optional<std::string> formatXMLDate(double seconds);

} // namespace qrv::plist
