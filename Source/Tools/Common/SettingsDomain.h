#pragma once

// Where the tool and its companions have their settings.

namespace qrv {

/// The preferences domain of the application that starts the tool; it contains all of the tool's settings.
inline constexpr char16_t QuillvaneSettingsDomain[] = u"org.quillvane.Quillvane";

} // namespace qrv
