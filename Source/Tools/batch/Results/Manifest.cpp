#include "Source/Tools/batch/Results/Manifest.h"

#include "Platform/Foundation/FileReplacement.h"
#include "Source/Tools/Common/Failure.h"
#include "Source/Tools/batch/Results/History.h"

#include <cstring>
#include <map>

namespace qrv::batch {

std::string manifestLine(const std::string& hash, const std::string& path) {
    std::string name;
    for (const char sign : path) {
        switch (sign) {
        case '\\':
            name += "\\\\";
            break;
        case '\n':
            name += "\\n";
            break;
        case '\r':
            name += "\\r";
            break;
        default:
            name += sign;
        }
    }
    return (name == path ? "" : "\\") + hash + "  " + name + "\n";
}

void writeManifest(const std::string& folder, const Shard& shard) {
    std::map<std::string, std::string> hashes;
    const History history(folder, shard);
    for (const Record* record : history.all()) {
        if (record->isConverted()) hashes.emplace(record->pdf, record->pdfSha256);
    }
    std::string text;
    for (const auto& [pdf, hash] : hashes) text += manifestLine(hash, pdf);
    const std::string path = folder + "/manifest-sha256" + shard.suffix() + ".txt";
    if (const int error = replaceFile(path, text)) throw Failure(path + ": " + std::strerror(error));
}

} // namespace qrv::batch
