#include "QRVFoundation/Source/NSString+QRVBasics/NSString+QRVPaths.h"

#include "Platform/Foundation/NSArray.h"
#include "QRVFoundation/Source/NSString+QRVBasics/NSString+QRVTextMunging.h"

#include <algorithm>

namespace qrv {

unsigned long qrvMaxFileNameCharacters() {
    return 255;
}

unsigned long qrvMaxPathLength() {
    return 1024;
}

NSString qrvMakeFileNameCharactersValid(const NSString& self) {
    const NSString withoutSlashes = qrvStringByReplacingString_withString(self, u"/", u":");
    return qrvStringByReplacingString_withString(withoutSlashes, u"\uFFFC", u"");
}

NSString qrvMakeFileNameValid(const NSString& self) {
    return qrvMakeFileNameValidWithExtension_maxLength(self.stringByDeletingPathExtension(),
                                                       self.pathExtension(), qrvMaxFileNameCharacters());
}

NSString qrvMakeFileNameValidWithExtension(const NSString& self, const NSString& extension) {
    return qrvMakeFileNameValidWithExtension_maxLength(self, extension, qrvMaxFileNameCharacters());
}

NSString qrvMakeFileNameValidWithExtension_maxLength(const NSString& self, const NSString& extension,
                                                     unsigned long maxLength) {
    const NSString suffix =
        extension.length() > 0 ? NSString::stringWithFormat(u".%@", extension) : NSString(u"");
    // Characters are replaced last: that can shorten the name but not lengthen it.
    return qrvMakeFileNameCharactersValid(
        qrvStringByAddingSuffix_trimmingStemToTotal(self, suffix, maxLength));
}

NSString qrvMakeFileNameValidForCarbon(const NSString& self) {
    return qrvStringByReplacingString_withString(self, u":", u"/");
}

NSString qrvParent(const NSString& self) {
    return self.stringByDeletingLastPathComponent();
}

NSString qrvName(const NSString& self) {
    return self.lastPathComponent();
}

NSString qrvBasename(const NSString& self) {
    return qrvName(self).stringByDeletingPathExtension();
}

NSString qrvPathExtension(const NSString& self) {
    return self.pathExtension();
}

NSString qrvChild(const NSString& self, const NSString& name) {
    return self.stringByAppendingPathComponent(name);
}

NSString qrvWithExtension(const NSString& self, const NSString& extension) {
    return self.stringByAppendingPathExtension(extension);
}

bool qrvPathContainsPath(const NSString& self, const NSString& path) {
    if (self.isNil() || path.isNil()) return false;
    const NSString outer = self.stringByStandardizingPath();
    const NSString inner = path.stringByStandardizingPath();
    if (inner.length() < outer.length()) return false;
    if (inner == outer) return true;
    const NSArray outerNames = outer.pathComponents();
    const NSArray innerNames = inner.pathComponents();
    return outerNames.count() < innerNames.count() &&
           std::equal(outerNames.begin(), outerNames.end(), innerNames.begin());
}

bool qrvPathIsEqual(const NSString& self, const NSString& path) {
    return self.stringByStandardizingPath().isEqualToString(path.stringByStandardizingPath());
}

} // namespace qrv
