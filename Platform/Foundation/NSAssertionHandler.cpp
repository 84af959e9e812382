#include "Platform/Foundation/NSAssertionHandler.h"

#include "Platform/Foundation/NSException.h"
#include "Platform/Foundation/NSNumber.h"

namespace qrv {

NSAssertionHandler& NSAssertionHandler::currentHandler() {
    static NSAssertionHandler& instance = *new NSAssertionHandler; // never destroyed
    return instance;
}

void NSAssertionHandler::raise(const NSString& place, const id& object, const NSString& file, long long line,
                               const NSString& description) {
    NSMutableDictionary userInfo;
    if (place) userInfo.setObject_forKey(place, NSString(u"NSAssertPlace"));
    if (object) userInfo.setObject_forKey(object, NSString(u"NSAssertObject"));
    if (file) userInfo.setObject_forKey(file, NSString(u"NSAssertFile"));
    userInfo.setObject_forKey(NSNumber::numberWithInteger(line), NSString(u"NSAssertLine"));
    throw NSException(NSInternalInconsistencyException, description, std::move(userInfo).copy());
}

} // namespace qrv
