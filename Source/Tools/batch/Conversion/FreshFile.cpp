#include "Source/Tools/batch/Conversion/FreshFile.h"

#include "Source/Tools/Common/SHA256.h"
#include "Source/Tools/batch/Conversion/BatchError.h"

#include <filesystem>
#include <system_error>

namespace qrv::batch {

namespace fs = std::filesystem;

namespace {

std::optional<ConversionError> errorUnless(const std::error_code& error, const std::string& path) {
    if (!error) return std::nullopt;
    return batchError(BatchFileError, path + ": " + error.message());
}

} // namespace

FreshFile::FreshFile(const std::string& folder, const std::string& path)
    : place_((fs::path(folder) / path).string()) {
    const fs::path place(place_);
    // The name itself may be as long as names can be.
    const std::string name = ".web2pdf-batch-" + sha256(place.filename().string()).substr(0, 24);
    path_ = (place.parent_path() / (name + place.extension().string().substr(0, 8))).string();
}

FreshFile::~FreshFile() {
    discard();
}

std::optional<ConversionError> FreshFile::prepare() {
    const fs::path folder = fs::path(place_).parent_path();
    std::error_code error;
    fs::create_directories(folder, error);
    if (error) return errorUnless(error, folder.string());
    fs::remove(path_, error);
    return errorUnless(error, path_);
}

void FreshFile::discard() const {
    std::error_code ignored;
    fs::remove(path_, ignored);
}

std::optional<ConversionError> FreshFile::moveIntoPlace() const {
    std::error_code error;
    fs::rename(path_, place_, error);
    return errorUnless(error, place_);
}

} // namespace qrv::batch
