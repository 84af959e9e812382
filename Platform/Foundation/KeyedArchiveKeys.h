#pragma once

// The keys and fixed values of a keyed archive.

namespace qrv::keyed {

inline constexpr char16_t archiver[] = u"$archiver";
inline constexpr char16_t archiverName[] = u"NSKeyedArchiver";
inline constexpr char16_t version[] = u"$version";
inline constexpr long long versionNumber = 100000;
inline constexpr char16_t top[] = u"$top";
inline constexpr char16_t root[] = u"root";
inline constexpr char16_t objects[] = u"$objects";
/// The first element of the list of objects, so that reference 0 means nil.
inline constexpr char16_t null[] = u"$null";

inline constexpr char16_t classReference[] = u"$class";
inline constexpr char16_t className[] = u"$classname";
inline constexpr char16_t classNames[] = u"$classes";

inline constexpr char16_t time[] = u"NS.time";
inline constexpr char16_t base[] = u"NS.base";
inline constexpr char16_t relative[] = u"NS.relative";
inline constexpr char16_t elements[] = u"NS.objects";
inline constexpr char16_t elementKeys[] = u"NS.keys";
inline constexpr char16_t string[] = u"NS.string";
inline constexpr char16_t data[] = u"NS.data";
inline constexpr char16_t errorDomain[] = u"NSDomain";
inline constexpr char16_t errorCode[] = u"NSCode";
inline constexpr char16_t errorUserInfo[] = u"NSUserInfo";

} // namespace qrv::keyed
