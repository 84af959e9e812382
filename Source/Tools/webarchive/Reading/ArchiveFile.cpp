#include "Source/Tools/webarchive/Reading/ArchiveFile.h"

#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/Unicode.h"
#include "Source/Tools/Common/Failure.h"

namespace qrv::webarchive {

NSData readFile(const std::string& path) {
    NSError error;
    NSData data =
        NSData::initWithContentsOfFile_options_error(NSString(unicode::fromFileName(path)), 0, &error);
    if (!data) throw Failure(error.localizedDescription().utf8());
    return data;
}

void requireWhole(const NSData& data) {
    if (data.isCutOff()) throw Failure("the file was cut short while it was read, or its disk fails");
}

WebArchive readArchive(const std::string& path) {
    const NSData data = readFile(path);
    WebArchive archive = WebArchive::initWithData(data);
    requireWhole(data);
    if (!archive) throw Failure(path + " is no web archive");
    return archive;
}

} // namespace qrv::webarchive
