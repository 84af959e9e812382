#pragma once

// Parts of a text, searching and replacing in it, lines and characters. Indexes and lengths count UTF-16
// units. A nil receiver gives nil, false or 0; "a copy" is the receiver itself, since strings never change.

#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/NSCharacterSet.h"
#include "Platform/Foundation/NSDictionary.h"

namespace qrv {

// - qrvHasCharacter:atIndex:
/// False for an index beyond the end.
bool qrvHasCharacter_atIndex(const NSString& self, char16_t character, std::size_t index);
// - qrvJoin:
/// The elements' descriptions with the receiver between neighbours; nil for a nil array.
NSString qrvJoin(const NSString& self, const NSArray& array);

// - qrvStringByEnsuringSuffix:
/// The receiver, with the suffix added unless it ends with it. A nil suffix adds nothing.
NSString qrvStringByEnsuringSuffix(const NSString& self, const NSString& suffix);
// - qrvStringByAddingSuffix:trimmingStemToTotal:
/// The receiver followed by the suffix, without as many composed characters at the end of the receiver as
/// make both fit into `total` units of canonical decomposition. The suffix stays whole: one whose
/// decomposition alone exceeds the total is the whole result. A suffix longer than the total (not decomposed)
/// fails an assertion.
NSString qrvStringByAddingSuffix_trimmingStemToTotal(const NSString& self, const NSString& suffix,
                                                     unsigned long total);

// - qrvSubstringToString:
/// What stands before the first occurrence; "" without one.
NSString qrvSubstringToString(const NSString& self, const NSString& string);
// - qrvSubstringFromString:
/// What stands after the first occurrence; "" without one.
NSString qrvSubstringFromString(const NSString& self, const NSString& string);
// - qrvSubstringToIndex:
/// The first units; all when there are no more.
NSString qrvSubstringToIndex(const NSString& self, std::size_t index);
// - qrvSubstringToComposedIndex:
/// What stands before the composed character that holds the unit; all when the index is not inside.
NSString qrvSubstringToComposedIndex(const NSString& self, std::size_t index);
// - qrvSubstringFromIndex:
/// The units from there on; "" when the index is not inside.
NSString qrvSubstringFromIndex(const NSString& self, std::size_t index);
// - qrvStringByChopping
/// Without the last unit.
NSString qrvStringByChopping(const NSString& self);
// - qrvStringByChoppingComposedCharacter
/// Without the last composed character; "" for less than two units.
NSString qrvStringByChoppingComposedCharacter(const NSString& self);
// - qrvStringByTruncatingMiddleAfterComposedLength:
/// At most `length` units of the start and of the end around one ellipsis, never a part of a composed
/// character; the receiver when it has no more than twice as many units.
NSString qrvStringByTruncatingMiddleAfterComposedLength(const NSString& self, std::size_t length);
// - qrvRangeOfComposedCharacterSequencesInRange:
/// The range widened to whole composed characters; a zero length widens around the unit before the location.
/// Raises NSRangeException when the range is not inside or the location is at the end.
NSRange qrvRangeOfComposedCharacterSequencesInRange(const NSString& self, NSRange range);

// - qrvFirstSpaceComponent
/// What stands before the first blank; all without one.
NSString qrvFirstSpaceComponent(const NSString& self);
// - qrvLastSpaceComponent
/// What stands after the last blank; all without one.
NSString qrvLastSpaceComponent(const NSString& self);
// - qrvComponentsSeparatedByLineSeparators
/// The lines without their terminators (LF, CR, CR LF, U+0085, U+2028, U+2029). One at the end adds no empty
/// line; the empty text has no lines.
NSArray qrvComponentsSeparatedByLineSeparators(const NSString& self);
// - qrvStringByNormalizingLineBreaks
/// Every CR LF and every other CR becomes LF.
NSString qrvStringByNormalizingLineBreaks(const NSString& self);

// - qrvStringByReplacingString:withString:
/// Every occurrence replaced; nil replaces by nothing.
NSString qrvStringByReplacingString_withString(const NSString& self, const NSString& string,
                                               const NSString& replacement);
// - qrvStringByReplacingFirstOccurrenceOfString:withString:
NSString qrvStringByReplacingFirstOccurrenceOfString_withString(const NSString& self, const NSString& string,
                                                                const NSString& replacement);
// - qrvStringByExpandingKeysInDictionary:
/// Every occurrence of each key replaced by the value's description, key after key in the dictionary's order,
/// each on the result of the one before. Keys that are no strings are left out.
NSString qrvStringByExpandingKeysInDictionary(const NSString& self, const NSDictionary& dictionary);

// - qrvContainsString:
/// By units; false for an empty or nil argument, as in all these searches.
bool qrvContainsString(const NSString& self, const NSString& string);
// - qrvCaseInsensitiveContainsString:
bool qrvCaseInsensitiveContainsString(const NSString& self, const NSString& string);
// - qrvHasCaseInsensitivePrefix:
bool qrvHasCaseInsensitivePrefix(const NSString& self, const NSString& prefix);
// - qrvHasDiacriticPrefix:
/// Whatever the diacritics and the width; the case counts.
bool qrvHasDiacriticPrefix(const NSString& self, const NSString& prefix);
// - qrvHasDiacriticInsensitivePrefix:
/// Whatever the diacritics, the width and the case.
bool qrvHasDiacriticInsensitivePrefix(const NSString& self, const NSString& prefix);
// - qrvCaseInsensitiveIsEqual:
/// False for anything but a string.
bool qrvCaseInsensitiveIsEqual(const NSString& self, const id& object);

// - qrvStringByStripping
/// Without white space and line breaks at both ends.
NSString qrvStringByStripping(const NSString& self);
// - qrvStringByTrimmingNulls
/// Without any U+0000, wherever it stands.
NSString qrvStringByTrimmingNulls(const NSString& self);
// - qrvStringByKeepingCharactersInSet:
/// Only the units of the set, each tested by itself; nothing for a nil set.
NSString qrvStringByKeepingCharactersInSet(const NSString& self, const NSCharacterSet& set);
// - qrvStringByChunking:with:
/// The separator before every unit whose index is a positive multiple of `length`. A length of 0 raises
/// NSInvalidArgumentException on a text of two or more units.
NSString qrvStringByChunking_with(const NSString& self, std::size_t length, const NSString& separator);

// - qrvContainsCharacter:
bool qrvContainsCharacter(const NSString& self, char16_t character);
// - qrvCountOccurrencesOfCharacter:
std::size_t qrvCountOccurrencesOfCharacter(const NSString& self, char16_t character);
// - qrvMatchesCharacterSet:
/// Every unit is in the set; true for the empty text.
bool qrvMatchesCharacterSet(const NSString& self, const NSCharacterSet& set);

} // namespace qrv
