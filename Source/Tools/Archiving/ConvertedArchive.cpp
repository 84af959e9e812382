#include "Source/Tools/Archiving/ConvertedArchive.h"

#include "Platform/Foundation/SourceDate.h"
#include "Source/Tools/Archiving/XMPPacket.h"
#include "Source/Tools/Common/SHA256.h"

#include <sys/stat.h>

namespace qrv {

namespace {

/// nil for a file that is not there any more.
NSDate dateOfFile(const NSString& path) {
    struct stat status {};

    if (::stat(path.fileSystemRepresentation().c_str(), &status) != 0) return {};
    return NSDate::dateWithTimeIntervalSinceReferenceDate(static_cast<double>(status.st_mtime) -
                                                          NSTimeIntervalSince1970);
}

} // namespace

NSData metadataOf(const ConvertedArchive& archive, const NSDictionary& attributes) {
    const NSDate told = sourceDate();
    return xmpPacketOf({attributes, archive.address, sha256(archive.file.bytes()), archive.engine,
                        told ? told : NSDate::date()});
}

PDFAttachment attachmentOf(const ConvertedArchive& archive) {
    const NSDate told = sourceDate();
    return {archive.path.lastPathComponent(), u"The web archive that this document was made of",
            "application/x-webarchive", told ? told : dateOfFile(archive.path), archive.file};
}

} // namespace qrv
