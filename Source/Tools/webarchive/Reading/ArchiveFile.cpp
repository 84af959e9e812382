#include "Source/Tools/webarchive/Reading/ArchiveFile.h"

#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/Unicode.h"
#include "Source/Tools/webarchive/Failure.h"

namespace qrv::webarchive {

NSData readFile(const std::string& path) {
    NSError error;
    NSData data =
        NSData::initWithContentsOfFile_options_error(NSString(unicode::fromFileName(path)), 0, &error);
    if (!data) throw Failure(error.localizedDescription().utf8());
    return data;
}

WebArchive readArchive(const std::string& path) {
    WebArchive archive = WebArchive::initWithData(readFile(path));
    if (!archive) throw Failure(path + " is no web archive");
    return archive;
}

} // namespace qrv::webarchive
