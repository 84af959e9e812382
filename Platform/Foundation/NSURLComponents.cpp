#include "Platform/Foundation/NSURLComponents.h"

#include "Platform/Foundation/NSCharacterSet.h"

namespace qrv {

NSString NSURLComponents::percentEncodedQuery() const {
    static const auto& allowed = // never destroyed
        *new NSCharacterSet(NSCharacterSet::URLQueryAllowedCharacterSet().removing(u"&="));
    const auto append = [](std::u16string& query, const NSString& piece) {
        const NSString wellFormed = NSString::fromUTF8(piece.utf8());
        query.append(wellFormed.stringByAddingPercentEncodingWithAllowedCharacters(allowed).view());
    };
    std::u16string query;
    for (std::size_t i = 0; i < items_.size(); ++i) {
        if (i > 0) query.push_back(u'&');
        append(query, items_[i].name());
        if (items_[i].value().isNil()) continue;
        query.push_back(u'=');
        append(query, items_[i].value());
    }
    return NSString(std::move(query));
}

} // namespace qrv
