#pragma once

// Dates as the XML form writes them: "2001-01-01T00:00:00Z".

#include <optional>
#include <string>
#include <string_view>

namespace qrv::plist {

/// Seconds since the reference date; nullopt for anything but a date of the calendar in exactly this form.
std::optional<double> parseXMLDate(std::string_view text);

/// The second in which the moment lies; nullopt before the year 1 and after 9999.
std::optional<std::string> formatXMLDate(double seconds);

} // namespace qrv::plist
