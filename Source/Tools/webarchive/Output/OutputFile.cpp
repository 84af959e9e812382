#include "Source/Tools/webarchive/Output/OutputFile.h"

#include "Platform/Foundation/FileReplacement.h"
#include "Source/Tools/Common/Failure.h"

#include <cstring>
#include <filesystem>

namespace qrv::webarchive {

void requireOutput(const std::string& path, const std::string& input) {
    std::error_code error;
    if (std::filesystem::equivalent(path, input, error))
        throw Failure(path + " would take the place of what it is made of");
    if (const int refusal = refusalToWrite(path)) throw Failure(path + ": " + std::strerror(refusal));
}

FileRules rulesForOutput(const std::string& path) {
    FileRules rules = FileRules::leavingRead();
    rules.allowReplacing(path);
#ifdef WEB2PDF_WRITES_REPORTS // of a sanitizer or of coverage, wherever it was told to
    rules.allow("/", FileRules::change);
#endif
    return rules;
}

void writeOutput(const std::string& path, const NSData& data) {
    if (const int error = replaceFile(path, data.bytes())) throw Failure(path + ": " + std::strerror(error));
}

} // namespace qrv::webarchive
