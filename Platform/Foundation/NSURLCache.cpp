#include "Platform/Foundation/NSURLCache.h"

namespace qrv {

NSURLCache& NSURLCache::sharedURLCache() {
    static NSURLCache instance;
    return instance;
}

} // namespace qrv
