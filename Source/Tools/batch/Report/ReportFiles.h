#pragma once

// What the report is made of: the files of these names in this folder, embedded by the build.

#include <string_view>

namespace qrv::batch::reportFiles {

extern const std::string_view report_html; ///< a template, see Template.h
extern const std::string_view report_css;  ///< colours, and all but the table
extern const std::string_view table_css;   ///< the table, as cards and on paper, too
extern const std::string_view report_js;

} // namespace qrv::batch::reportFiles
