#include "Source/Tools/batch/Results/ResultsFile.h"

#include "Platform/Foundation/FileReplacement.h"
#include "Source/Tools/Common/Failure.h"
#include "Source/Tools/batch/Results/RecordText.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace qrv::batch {

namespace {

constexpr char prefix[] = "web2pdf-batch";
constexpr char suffix[] = ".jsonl";

[[noreturn]] void fail(const std::string& path, int error) {
    throw Failure(path + ": " + std::strerror(error));
}

bool isResults(const std::filesystem::directory_entry& entry) {
    const std::string name = entry.path().filename().string();
    return name.starts_with(prefix) && name.ends_with(suffix) && entry.is_regular_file();
}

std::vector<std::string> resultsIn(const std::string& folder) {
    std::vector<std::string> paths;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
        if (isResults(entry)) paths.push_back(entry.path().string());
    }
    if (error && error != std::errc::no_such_file_or_directory) fail(folder, error.value());
    std::sort(paths.begin(), paths.end());
    return paths;
}

/// A run that was killed while it wrote has left a part of a line.
bool endsWithinALine(int file) {
    char last = '\n';
    const off_t size = ::lseek(file, 0, SEEK_END);
    return size > 0 && ::pread(file, &last, 1, size - 1) == 1 && last != '\n';
}

} // namespace

std::string resultsName(const Shard& shard) {
    return prefix + shard.suffix() + suffix;
}

std::vector<std::string> readRecords(const std::string& folder,
                                     const std::function<void(Record, RecordPlace)>& use) {
    std::vector<std::string> paths = resultsIn(folder);
    for (std::size_t number = 0; number < paths.size(); ++number) {
        std::ifstream file(paths[number], std::ios::binary);
        if (!file) fail(paths[number], errno);
        std::streamoff offset = 0;
        for (std::string line; std::getline(file, line);) {
            if (std::optional<Record> record = recordOfLine(line)) use(std::move(*record), {number, offset});
            offset += static_cast<std::streamoff>(line.size()) + 1;
        }
        if (file.bad()) fail(paths[number], EIO);
    }
    return paths;
}

std::optional<Record> readRecordAt(const std::string& path, std::streamoff offset) {
    std::ifstream file(path, std::ios::binary);
    std::string line;
    if (!file.seekg(offset) || !std::getline(file, line)) return std::nullopt;
    return recordOfLine(line);
}

ResultsFile::ResultsFile(const std::string& folder, const Shard& shard)
    : path_(folder + "/" + resultsName(shard)) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) fail(folder, error.value());
    file_ = FileDescriptor(
        ::open(path_.c_str(), O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0666));

    struct stat status {};

    if (!file_ || ::fstat(file_.get(), &status) != 0) fail(path_, errno);
    if (!S_ISREG(status.st_mode)) throw Failure(path_ + " is no regular file");
    if (::flock(file_.get(), LOCK_EX | LOCK_NB) != 0) {
        if (errno == EWOULDBLOCK) throw Failure("another run is writing " + path_);
        // Some network file systems have no locks: then nobody can be kept out.
    }
    if (endsWithinALine(file_.get()))
        if (const int refusal = writeAll(file_.get(), "\n")) fail(path_, refusal);
}

void ResultsFile::append(const Record& record) {
    if (const int error = writeAll(file_.get(), lineOf(record))) fail(path_, error);
}

} // namespace qrv::batch
