#include "Platform/Foundation/FileReplacement.h"
#include "Tests/Support/OwnMounts.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <functional>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

namespace qrv {
namespace {

namespace fs = std::filesystem;

const std::string large(200'000, 'x');

class FileReplacement : public testing::Test {
protected:
    std::string at(std::string_view name) const { return (folder.path() / name).string(); }

    /// What is in the folder, by name.
    std::vector<std::string> names() const {
        std::vector<std::string> found;
        for (const auto& entry : fs::directory_iterator(folder.path())) {
            found.push_back(entry.path().filename().string());
        }
        return found;
    }

    TemporaryFolder folder;
};

/// From here on, files can grow to 1000 bytes; what happens at that size is up to SIGXFSZ.
void limitFiles() {
    const struct rlimit limit = {1000, 1000};
    ::setrlimit(RLIMIT_FSIZE, &limit);
}

/// Without it, unnamed files cannot be given a name.
void hideProcesses() {
    mountMemory("/proc", "size=4k");
}

TEST_F(FileReplacement, MakesANewFile) {
    EXPECT_EQ(replaceFile(at("new"), large), 0);
    EXPECT_EQ(folder.read("new"), large);
    EXPECT_THAT(names(), testing::ElementsAre("new"));
}

TEST_F(FileReplacement, TakesAPathWithoutAFolder) {
    inChild([this] {
        ASSERT_EQ(::chdir(folder.path().c_str()), 0);
        EXPECT_EQ(replaceFile("plain", "1"), 0);
        EXPECT_EQ(replaceFile("plain", "2"), 0);
    });
    EXPECT_EQ(folder.read("plain"), "2");
    EXPECT_THAT(names(), testing::ElementsAre("plain"));
}

TEST_F(FileReplacement, WorksWithoutUnnamedFilesToo) {
    folder.write("old", "before");
    inOwnMounts([this] {
        hideProcesses();
        EXPECT_EQ(replaceFile(at("old"), large), 0);
        EXPECT_EQ(replaceFile(at("new"), "new"), 0);
        EXPECT_EQ(replaceFile(at("missing/new"), "new"), ENOENT);
        std::signal(SIGXFSZ, SIG_IGN);
        limitFiles();
        EXPECT_EQ(replaceFile(at("new"), large), EFBIG);
    });
    EXPECT_EQ(folder.read("old"), large);
    EXPECT_EQ(folder.read("new"), "new");
    EXPECT_THAT(names(), testing::UnorderedElementsAre("old", "new"));
}

TEST_F(FileReplacement, TakesContentsThatAreMadeWhileTheyAreWritten) {
    const FileWriting inPieces = [](int descriptor) {
        const int error = writeAll(descriptor, "first ");
        return error ? error : writeAll(descriptor, "second");
    };
    const FileWriting failing = [](int descriptor) {
        writeAll(descriptor, "half");
        return EIO;
    };
    EXPECT_EQ(replaceFile(at("new"), failing), EIO);
    EXPECT_THAT(names(), testing::IsEmpty());
    EXPECT_EQ(replaceFile(at("new"), inPieces), 0);
    EXPECT_EQ(replaceFile(at("new"), failing), EIO);
    EXPECT_EQ(folder.read("new"), "first second");
    inOwnMounts([&] {
        hideProcesses();
        EXPECT_EQ(replaceFile(at("other"), failing), EIO);
        EXPECT_EQ(replaceFile(at("other"), inPieces), 0);
    });
    EXPECT_EQ(folder.read("other"), "first second");
    EXPECT_THAT(names(), testing::UnorderedElementsAre("new", "other"));
}

/// The tables' lines name what is at the path, and must leave it as it is.
struct Refused {
    const char* name;
    int error;
    std::function<void(const std::string& path)> prepare;
};

void makeSocket(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const int socket = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    EXPECT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ::close(socket);
}

void makePipe(const std::string& path) {
    EXPECT_EQ(::mkfifo(path.c_str(), 0600), 0);
}

TEST_F(FileReplacement, RefusesWhatIsNoFile) {
    const Refused table[] = {
        {"folder", EISDIR, [](const std::string& path) { fs::create_directory(path); }},
        {"pipe", ENOTSUP, makePipe},
        {"socket", ENOTSUP, makeSocket},
        {"link to a device", ENOTSUP, [](const std::string& path) { fs::create_symlink("/dev/full", path); }},
        {"link to a pipe", ENOTSUP,
         [](const std::string& path) {
             makePipe(path + "'s");
             fs::create_symlink(path + "'s", path);
         }},
        {"circle", ELOOP, [](const std::string& path) { fs::create_symlink(path, path); }},
        {"link to nowhere", ENOENT,
         [](const std::string& path) { fs::create_symlink("missing/file", path); }},
        {"file/below", ENOTDIR,
         [](const std::string& path) { std::ofstream(fs::path(path).parent_path()) << "x"; }},
        {"missing/file", ENOENT, [](const std::string&) {}},
    };
    for (const Refused& line : table) {
        SCOPED_TRACE(line.name);
        line.prepare(at(line.name));
        const auto before = fs::symlink_status(at(line.name)).type();
        const std::size_t count = folder.count();
        EXPECT_EQ(replaceFile(at(line.name), "new"), line.error);
        EXPECT_EQ(fs::symlink_status(at(line.name)).type(), before);
        EXPECT_EQ(folder.count(), count);
    }
    EXPECT_EQ(replaceFile("", "new"), ENOENT);
    EXPECT_EQ(replaceFile(at(std::string(256, 'n')), "new"), ENAMETOOLONG);
    EXPECT_EQ(replaceFile(std::string(5000, '/'), "new"), ENAMETOOLONG);
}

TEST_F(FileReplacement, TheStandardStreamsAreNoFilesWhenTheyArePipes) {
    inChild([] {
        int ends[2];
        ASSERT_EQ(::pipe(ends), 0);
        ASSERT_EQ(::dup2(ends[1], STDIN_FILENO), STDIN_FILENO);
        EXPECT_EQ(replaceFile("/dev/stdin", "new"), ENOTSUP);
    });
}

TEST_F(FileReplacement, MakesWhatALinkNames) {
    fs::create_directory(folder.path() / "elsewhere");
    fs::create_symlink("elsewhere/second", folder.path() / "first");
    fs::create_symlink("../target", folder.path() / "elsewhere/second");
    EXPECT_EQ(replaceFile(at("first"), "1"), 0);
    EXPECT_EQ(folder.read("target"), "1");
    EXPECT_EQ(replaceFile(at("first"), "2"), 0);
    EXPECT_EQ(folder.read("target"), "2");
    EXPECT_TRUE(fs::is_symlink(at("first")) && fs::is_symlink(at("elsewhere/second")));
}

TEST_F(FileReplacement, AFullDiskLeavesTheOldFileAlone) {
    inOwnMounts([this] {
        fs::create_directory(folder.path() / "disk");
        mountMemory(at("disk"), "size=64k");
        folder.write("disk/old", "old");
        for (const char* name : {"disk/old", "disk/new"}) EXPECT_EQ(replaceFile(at(name), large), ENOSPC);
        hideProcesses();
        for (const char* name : {"disk/old", "disk/new"}) EXPECT_EQ(replaceFile(at(name), large), ENOSPC);
        EXPECT_EQ(folder.read("disk/old"), "old");
        EXPECT_EQ(std::distance(fs::directory_iterator(at("disk")), {}), 1);
    });
}

TEST_F(FileReplacement, AFileSystemThatIsReadOnlyStaysAsItIs) {
    inOwnMounts([this] {
        fs::create_directory(folder.path() / "disk");
        mountMemory(at("disk"), "");
        folder.write("disk/old", "old");
        ASSERT_EQ(::mount("", at("disk").c_str(), "", MS_REMOUNT | MS_RDONLY, ""), 0);
        for (const char* name : {"disk/old", "disk/new"}) EXPECT_EQ(replaceFile(at(name), "new"), EROFS);
        EXPECT_EQ(folder.read("disk/old"), "old");
    });
}

TEST_F(FileReplacement, AFolderThatTakesNoFilesStaysAsItIs) {
    folder.write("closed/old", "old");
    fs::permissions(folder.path() / "closed", fs::perms(0555));
    fs::permissions(folder.path(), fs::perms(0755));
    inChild([this] {
        constexpr uid_t nobody = 65534;
        if (::geteuid() == 0) {
            ASSERT_EQ(::setuid(nobody), 0);
        }
        for (const char* name : {"closed/old", "closed/new"}) EXPECT_EQ(replaceFile(at(name), "new"), EACCES);
    });
    fs::permissions(folder.path() / "closed", fs::perms(0755));
    EXPECT_EQ(folder.read("closed/old"), "old");
    EXPECT_FALSE(fs::exists(folder.path() / "closed/new"));
}

/// Ends the process in the middle of a write, as when it is killed then.
TEST_F(FileReplacement, NothingIsLeftWhenTheProcessIsKilledWhileItWrites) {
    folder.write("old", "old");
    for (const char* name : {"old", "new"}) {
        const pid_t child = ::fork();
        if (child == 0) {
            const struct rlimit noCoreFile = {0, 0};
            ::setrlimit(RLIMIT_CORE, &noCoreFile);
            std::signal(SIGXFSZ, SIG_DFL);
            limitFiles();
            ::_exit(replaceFile(at(name), large));
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGXFSZ);
    }
    EXPECT_EQ(folder.read("old"), "old");
    EXPECT_THAT(names(), testing::ElementsAre("old"));
}

TEST_F(FileReplacement, AbandonedFilesLoseTheirTemporaryNames) {
    folder.write("old", "old");
    inOwnMounts([this] {
        hideProcesses();
        // In the middle of the write, as another thread would.
        std::signal(SIGXFSZ, [](int) {
            abandonReplacements();
            ::_exit(0);
        });
        limitFiles();
        replaceFile(at("old"), large);
        ADD_FAILURE() << "the write was not interrupted";
    });
    EXPECT_EQ(folder.read("old"), "old");
    EXPECT_THAT(names(), testing::ElementsAre("old"));
}

TEST_F(FileReplacement, TheThreadThatAbandonsThemMayStillWrite) {
    inChild([this] {
        abandonReplacements();
        EXPECT_EQ(replaceFile(at("answer"), "1"), 0);
        EXPECT_EQ(replaceFile(at("answer"), "2"), 0);
    });
    EXPECT_EQ(folder.read("answer"), "2");
}

} // namespace
} // namespace qrv
