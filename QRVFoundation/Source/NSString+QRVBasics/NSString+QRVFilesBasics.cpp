#include "QRVFoundation/Source/NSString+QRVBasics/NSString+QRVFilesBasics.h"

#include "Platform/Foundation/MDItem.h"

#include <optional>
#include <sys/stat.h>

namespace qrv {

namespace {

using Status = struct ::stat;

std::optional<Status> followed(const NSString& path) {
    Status status{};
    if (::stat(path.fileSystemRepresentation().c_str(), &status) != 0) return std::nullopt;
    return status;
}

bool isOfType(const NSString& path, mode_t type) {
    const std::optional<Status> status = followed(path);
    return status && (status->st_mode & S_IFMT) == type;
}

} // namespace

double qrvFileModificationDateInterval(const NSString& self) {
    const std::optional<Status> status = followed(self);
    return status ? static_cast<double>(status->st_mtim.tv_sec) - NSTimeIntervalSince1970 : 0.0;
}

NSDate qrvFileModificationDate(const NSString& self) {
    return NSDate::dateWithTimeIntervalSinceReferenceDate(qrvFileModificationDateInterval(self));
}

NSComparisonResult qrvCompareFileModificationDate(const NSString& self, const NSString& other) {
    return qrvFileModificationDate(self).compare(qrvFileModificationDate(other));
}

bool qrvPathExists(const NSString& self) {
    return followed(self).has_value();
}

bool qrvFileExists(const NSString& self) {
    return isOfType(self, S_IFREG);
}

bool qrvDirectoryExists(const NSString& self) {
    return isOfType(self, S_IFDIR);
}

bool qrvSymbolicLinkExists(const NSString& self) {
    Status status{};
    return ::lstat(self.fileSystemRepresentation().c_str(), &status) == 0 && S_ISLNK(status.st_mode);
}

NSArray qrvSpotlightKeywords(const NSString& self) {
    const NSArray keywords = qrvPathExists(self) ? keywordsOfFile(self) : NSArray();
    return keywords ? keywords : NSArray::array();
}

} // namespace qrv
