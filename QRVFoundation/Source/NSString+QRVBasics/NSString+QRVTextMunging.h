#pragma once

// Substrings, searching and replacing, lines and characters. Indexes and lengths count UTF-16 units. A nil
// receiver gives nil, false or 0; "a copy" is the receiver itself, since strings are immutable.

#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/NSCharacterSet.h"
#include "Platform/Foundation/NSDictionary.h"

namespace qrv {

// - qrvHasCharacter:atIndex:
/// False for an index beyond the end.
QRV_EXPORT bool qrvHasCharacter_atIndex(const NSString& self, char16_t character, std::size_t index);
// - qrvJoin:
/// Joins the elements' descriptions with the receiver as separator; a nil array gives nil.
QRV_EXPORT NSString qrvJoin(const NSString& self, const NSArray& array);

// - qrvStringByEnsuringSuffix:
/// Appends the suffix unless the receiver ends with it. A nil suffix adds nothing.
QRV_EXPORT NSString qrvStringByEnsuringSuffix(const NSString& self, const NSString& suffix);
// - qrvStringByAddingSuffix:trimmingStemToTotal:
/// Appends the suffix and removes composed characters at the receiver's end until both fit into `total` units
/// of canonical decomposition. The suffix is never shortened: if its decomposition alone exceeds the total,
/// it is the whole result. A suffix that is longer than the total without decomposition fails an assertion.
QRV_EXPORT NSString qrvStringByAddingSuffix_trimmingStemToTotal(const NSString& self, const NSString& suffix,
                                                                unsigned long total);

// - qrvSubstringToString:
/// Returns the part before the first occurrence; "" if there is none.
QRV_EXPORT NSString qrvSubstringToString(const NSString& self, const NSString& string);
// - qrvSubstringFromString:
/// Returns the part after the first occurrence; "" if there is none.
QRV_EXPORT NSString qrvSubstringFromString(const NSString& self, const NSString& string);
// - qrvSubstringToIndex:
/// Returns the first units; all of them if there are no more.
QRV_EXPORT NSString qrvSubstringToIndex(const NSString& self, std::size_t index);
// - qrvSubstringToComposedIndex:
/// Returns the part before the composed character that contains the unit; everything if the index is out of
/// range.
QRV_EXPORT NSString qrvSubstringToComposedIndex(const NSString& self, std::size_t index);
// - qrvSubstringFromIndex:
/// Returns the units from the index on; "" if it is out of range.
QRV_EXPORT NSString qrvSubstringFromIndex(const NSString& self, std::size_t index);
// - qrvStringByChopping
/// Removes the last unit.
QRV_EXPORT NSString qrvStringByChopping(const NSString& self);
// - qrvStringByChoppingComposedCharacter
/// Removes the last composed character; "" for less than two units.
QRV_EXPORT NSString qrvStringByChoppingComposedCharacter(const NSString& self);
// - qrvStringByTruncatingMiddleAfterComposedLength:
/// Returns at most `length` units of the start and of the end with one ellipsis between them, never splitting
/// a composed character; the receiver itself if it has at most twice as many units.
QRV_EXPORT NSString qrvStringByTruncatingMiddleAfterComposedLength(const NSString& self, std::size_t length);
// - qrvRangeOfComposedCharacterSequencesInRange:
/// Widens the range to whole composed characters; an empty range is widened around the unit before its
/// location. Raises NSRangeException if the range is out of bounds or its location is at the end.
QRV_EXPORT NSRange qrvRangeOfComposedCharacterSequencesInRange(const NSString& self, NSRange range);

// - qrvFirstSpaceComponent
/// Returns the part before the first blank; everything if there is none.
QRV_EXPORT NSString qrvFirstSpaceComponent(const NSString& self);
// - qrvLastSpaceComponent
/// Returns the part after the last blank; everything if there is none.
QRV_EXPORT NSString qrvLastSpaceComponent(const NSString& self);
// - qrvComponentsSeparatedByLineSeparators
/// Splits into lines without their terminators (LF, CR, CR LF, U+0085, U+2028, U+2029). A terminator at the
/// end adds no empty line; the empty text has no lines.
QRV_EXPORT NSArray qrvComponentsSeparatedByLineSeparators(const NSString& self);
// - qrvStringByNormalizingLineBreaks
/// Replaces every CR LF and every other CR by LF.
QRV_EXPORT NSString qrvStringByNormalizingLineBreaks(const NSString& self);

// - qrvStringByReplacingString:withString:
/// Replaces every occurrence; a nil replacement removes it.
QRV_EXPORT NSString qrvStringByReplacingString_withString(const NSString& self, const NSString& string,
                                                          const NSString& replacement);
// - qrvStringByReplacingFirstOccurrenceOfString:withString:
QRV_EXPORT NSString qrvStringByReplacingFirstOccurrenceOfString_withString(const NSString& self,
                                                                           const NSString& string,
                                                                           const NSString& replacement);
// - qrvStringByExpandingKeysInDictionary:
/// Replaces every occurrence of each key by its value's description, key by key in the dictionary's order,
/// each on the result of the previous one. Keys that are not strings are ignored.
QRV_EXPORT NSString qrvStringByExpandingKeysInDictionary(const NSString& self,
                                                         const NSDictionary& dictionary);

// - qrvContainsString:
/// Compares by units; false for an empty or nil argument, as in all these searches.
QRV_EXPORT bool qrvContainsString(const NSString& self, const NSString& string);
// - qrvCaseInsensitiveContainsString:
QRV_EXPORT bool qrvCaseInsensitiveContainsString(const NSString& self, const NSString& string);
// - qrvHasCaseInsensitivePrefix:
QRV_EXPORT bool qrvHasCaseInsensitivePrefix(const NSString& self, const NSString& prefix);
// - qrvHasDiacriticPrefix:
/// Ignores diacritics and width, but not case.
QRV_EXPORT bool qrvHasDiacriticPrefix(const NSString& self, const NSString& prefix);
// - qrvHasDiacriticInsensitivePrefix:
/// Ignores diacritics, width and case.
QRV_EXPORT bool qrvHasDiacriticInsensitivePrefix(const NSString& self, const NSString& prefix);
// - qrvCaseInsensitiveIsEqual:
/// False for anything but a string.
QRV_EXPORT bool qrvCaseInsensitiveIsEqual(const NSString& self, const id& object);

// - qrvStringByStripping
/// Removes white space and line breaks from both ends.
QRV_EXPORT NSString qrvStringByStripping(const NSString& self);
// - qrvStringByTrimmingNulls
/// Removes every U+0000.
QRV_EXPORT NSString qrvStringByTrimmingNulls(const NSString& self);
// - qrvStringByKeepingCharactersInSet:
/// Keeps only the units of the set, each tested by itself; none if the set is nil.
QRV_EXPORT NSString qrvStringByKeepingCharactersInSet(const NSString& self, const NSCharacterSet& set);
// - qrvStringByChunking:with:
/// Inserts the separator before every unit whose index is a positive multiple of `length`. A length of 0
/// raises NSInvalidArgumentException for a text of two or more units.
QRV_EXPORT NSString qrvStringByChunking_with(const NSString& self, std::size_t length,
                                             const NSString& separator);

// - qrvContainsCharacter:
QRV_EXPORT bool qrvContainsCharacter(const NSString& self, char16_t character);
// - qrvCountOccurrencesOfCharacter:
QRV_EXPORT std::size_t qrvCountOccurrencesOfCharacter(const NSString& self, char16_t character);
// - qrvMatchesCharacterSet:
/// Whether every unit is in the set; true for the empty text.
QRV_EXPORT bool qrvMatchesCharacterSet(const NSString& self, const NSCharacterSet& set);

} // namespace qrv
