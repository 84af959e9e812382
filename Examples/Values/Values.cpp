// Texts, numbers, lists and dictionaries, and what nil does.

// [headers]
#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSNumber.h"
// [headers]

#include <iostream>
#include <set>

using namespace qrv;

int main() {
    // [literals]
    const NSString title = u"Depths";
    const NSArray harbours({u"Leith", "Ålesund", u"Cuxhaven", u"Leith"});
    const NSDictionary depths{{u"Leith", NSNumber::numberWithDouble(5.6)},
                              {u"Cuxhaven", NSNumber::numberWithInteger(12)}};
    std::cout << title << " of " << harbours.count() << " harbours: " << depths << '\n';
    // [literals]

    // [comparison]
    std::cout << std::boolalpha;
    std::cout << "the same text: " << (title == u"Depths") << '\n';
    std::cout << "the same number: " << (NSNumber::numberWithInteger(12) == NSNumber::numberWithDouble(12.0))
              << '\n';
    std::set<NSString> names;
    for (const id& harbour : harbours) names.insert(as<NSString>(harbour));
    for (const NSString& name : names) std::cout << name << '\n';
    // [comparison]

    // [kinds]
    const id value = depths.objectForKey(u"Leith");
    if (const auto number = as<NSNumber>(value)) std::cout << "a number: " << number.doubleValue() << '\n';
    if (!as<NSString>(value)) std::cout << "not a text\n";
    // [kinds]

    // [nil]
    const auto unknown = as<NSNumber>(depths.objectForKey(u"Ålesund"));
    std::cout << unknown << ", " << unknown.isNil() << ", " << unknown.integerValue() << '\n';
    const NSString none;
    std::cout << none.length() << ", " << (none == u"") << ", " << (none == nullptr) << ", "
              << none.isEqualToString(none) << '\n';
    // [nil]
}
