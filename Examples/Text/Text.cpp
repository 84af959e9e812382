// Formats, encodings, pieces of texts, and paths.

// [headers]
#include "QRVFoundation/Source/NSError+QRV.h"
#include "QRVFoundation/Source/NSString+QRVBasics/NSString+QRVComparisons.h"
#include "QRVFoundation/Source/NSString+QRVBasics/NSString+QRVCreation.h"
#include "QRVFoundation/Source/NSString+QRVBasics/NSString+QRVPaths.h"
#include "QRVFoundation/Source/NSString+QRVBasics/NSString+QRVTextMunging.h"
// [headers]

#include <iostream>

using namespace qrv;

int main() {
    // [formats]
    const NSString ship = u"Åsa";
    std::cout << NSString::stringWithFormat(u"%@ draws %.1f m, berth %03d", ship, 4.5, 7) << '\n';
    std::cout << NSString::stringWithFormat("%2$@ from %1$s", "Leith", ship) << '\n';
    // NSString::stringWithFormat(u"berth %d", ship) does not compile: anArgumentDoesNotFitItsConversion.
    const NSString format = u"berth %d"; // a format that is known at run time only
    std::cout << NSString::stringWithFormat(format, 7) << '\n';
    // [formats]

    // [encodings]
    std::cout << ship.length() << " units, " << ship.utf8().size() << " bytes\n";
    NSError error;
    const NSData latin = qrvDataUsingEncoding_error(ship, NSISOLatin1StringEncoding, &error);
    std::cout << latin.length()
              << " bytes: " << qrvStringWithData_encoding_error(latin, NSISOLatin1StringEncoding, &error)
              << '\n';
    if (!qrvStringWithData_encoding_error(latin, NSUTF8StringEncoding, &error))
        std::cout << "not UTF-8: error " << error.code() << '\n';
    // [encodings]

    // [pieces]
    const NSArray lines = qrvComponentsSeparatedByLineSeparators(u"  Anna, Leith \r\nBerta, Cuxhaven\n");
    for (const id& line : lines) {
        const NSString text = qrvStringByStripping(as<NSString>(line));
        std::cout << qrvSubstringFromString(text, u", ") << ": " << qrvSubstringToString(text, u", ") << '\n';
    }
    std::cout << NSString(u"a,b,,c").componentsSeparatedByString(u",").count()
              << " pieces, joined: " << qrvJoin(u" + ", NSArray({u"a", u"b"})) << '\n';
    const bool inOrder = qrvCompareForDisplay(u"Berth 9", u"berth 10") == NSOrderedAscending;
    std::cout << (inOrder ? "9 before 10" : "10 before 9") << '\n';
    // [pieces]

    // [paths]
    const NSString path = qrvChild(u"/srv/harbour", qrvWithExtension(u"tides", u"txt"));
    std::cout << path << ": " << qrvName(path) << ", " << qrvBasename(path) << ", " << qrvParent(path)
              << '\n';
    std::cout << qrvMakeFileNameValid(u"in/out") << '\n';
    // [paths]
}
