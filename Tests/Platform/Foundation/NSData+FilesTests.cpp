#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSError.h"
#include "Tests/Platform/Foundation/Printing.h"
#include "Tests/Support/TemporaryFolder.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace qrv {

namespace fs = std::filesystem;

class NSDataFiles : public testing::Test {
protected:
    NSData read(const NSString& path) {
        return NSData::initWithContentsOfFile_options_error(path, 0, &error);
    }

    bool write(const NSString& path, const char* bytes, NSDataWritingOptions options = NSDataWritingAtomic) {
        return NSData(bytes).writeToFile_options_error(path, options, &error);
    }

    void expectError(long long code, int posix, const NSString& path) {
        EXPECT_EQ(error.domain(), NSString(NSCocoaErrorDomain));
        EXPECT_EQ(error.code(), code);
        EXPECT_EQ(error.userInfo().objectForKey(NSString(NSFilePathErrorKey)), id(path));
        const NSError underlying = as<NSError>(error.userInfo().objectForKey(NSString(NSUnderlyingErrorKey)));
        EXPECT_EQ(underlying.domain(), NSString(NSPOSIXErrorDomain));
        EXPECT_EQ(underlying.code(), posix);
    }

    TemporaryFolder folder;
    NSError error;
};

TEST_F(NSDataFiles, ReadsAWholeFileAndLeavesTheErrorAlone) {
    const std::string contents = std::string(300'000, 'x') + std::string("\0y", 2);
    EXPECT_EQ(read(folder.write("file", contents)), NSData(contents));
    EXPECT_EQ(read(folder.write("empty", "")), NSData::data());
    EXPECT_TRUE(error.isNil());
}

TEST_F(NSDataFiles, ReadsAFileWhoseSizeTheSystemDoesNotTell) {
    EXPECT_GT(read(u"/proc/self/status").length(), 100u);
}

TEST_F(NSDataFiles, AMissingFileIsNoSuchFile) {
    const NSString path = folder.pathOf("missing");
    EXPECT_TRUE(read(path).isNil());
    expectError(NSFileReadNoSuchFileError, ENOENT, path);
    EXPECT_TRUE(NSData::initWithContentsOfFile_options_error(path, 0, nullptr).isNil());
}

TEST_F(NSDataFiles, AFolderCannotBeRead) {
    EXPECT_TRUE(read(folder.pathOf("")).isNil());
    expectError(NSFileReadUnknownError, EISDIR, folder.pathOf(""));
}

TEST_F(NSDataFiles, AFileBelowAFileIsNoSuchFile) {
    folder.write("file", "x");
    EXPECT_TRUE(read(folder.pathOf("file/below")).isNil());
    expectError(NSFileReadNoSuchFileError, ENOTDIR, folder.pathOf("file/below"));
}

TEST_F(NSDataFiles, NilAndAPathWithANulNameNoFile) {
    EXPECT_TRUE(read(NSString()).isNil());
    EXPECT_EQ(error.code(), NSFileReadNoSuchFileError);
    EXPECT_TRUE(error.userInfo().objectForKey(NSString(NSFilePathErrorKey)).isNil());
    const NSString cut = folder.write("a", "x").stringByAppendingString(std::u16string_view(u"\0", 1));
    EXPECT_TRUE(read(cut).isNil());
    EXPECT_FALSE(write(cut, "y"));
    EXPECT_EQ(folder.read("a"), "x");
    EXPECT_FALSE(write(NSString(), "y"));
    EXPECT_EQ(error.code(), NSFileNoSuchFileError);
}

TEST_F(NSDataFiles, WritesBothWays) {
    EXPECT_TRUE(write(folder.pathOf("a"), "one", NSDataWritingAtomic));
    EXPECT_TRUE(write(folder.pathOf("b"), "two", NSDataWritingDirect));
    EXPECT_EQ(folder.read("a") + folder.read("b"), "onetwo");
    EXPECT_TRUE(NSData("three").writeToFile_atomically(folder.pathOf("a"), true));
    EXPECT_TRUE(NSData().writeToFile_atomically(folder.pathOf("b"), false));
    EXPECT_EQ(folder.read("a") + folder.read("b"), "three");
    EXPECT_EQ(folder.count(), 2u);
    EXPECT_TRUE(error.isNil());
}

TEST_F(NSDataFiles, PermissionsFollowTheUmask) {
    const mode_t before = ::umask(027);
    EXPECT_TRUE(write(folder.pathOf("atomic"), "x", NSDataWritingAtomic));
    EXPECT_TRUE(write(folder.pathOf("direct"), "x", NSDataWritingDirect));
    ::umask(before);
    for (const char* name : {"atomic", "direct"}) {
        EXPECT_EQ(fs::status(folder.path() / name).permissions(), fs::perms(0640));
    }
}

TEST_F(NSDataFiles, AnAtomicWriteReplacesTheFileInOneStep) {
    folder.write("file", "old");
    const int open = ::open((folder.path() / "file").c_str(), O_RDONLY | O_CLOEXEC);
    EXPECT_TRUE(write(folder.pathOf("file"), "new"));
    char text[4] = {};
    EXPECT_EQ(::read(open, text, 3), 3);
    ::close(open);
    EXPECT_STREQ(text, "old") << "who has the old file open goes on reading it";
    EXPECT_EQ(folder.read("file"), "new");
}

TEST_F(NSDataFiles, AFailedAtomicWriteLeavesTheOldFileAndNoTemporaryOne) {
    folder.write("file", "old");
    // The write breaks off in the middle, as on a full disk.
    const pid_t child = ::fork();
    if (child == 0) {
        const struct rlimit limit = {1000, 1000};
        ::signal(SIGXFSZ, SIG_IGN);
        ::setrlimit(RLIMIT_FSIZE, &limit);
        const bool written =
            NSData(std::string(100'000, 'x'))
                .writeToFile_options_error(folder.pathOf("file"), NSDataWritingAtomic, &error);
        ::_exit(!written && error.code() == NSFileWriteUnknownError ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(folder.read("file"), "old");
    EXPECT_EQ(folder.count(), 1u);
}

TEST_F(NSDataFiles, AMissingFolderIsNoSuchFile) {
    const NSString path = folder.pathOf("missing/file");
    for (const auto options : {NSDataWritingAtomic, NSDataWritingDirect}) {
        error = NSError();
        EXPECT_FALSE(write(path, "x", options));
        expectError(NSFileNoSuchFileError, ENOENT, path);
    }
    EXPECT_FALSE(NSData("x").writeToFile_atomically(path, true));
}

TEST_F(NSDataFiles, AFolderIsNotReplaced) {
    fs::create_directory(folder.path() / "folder");
    for (const auto options : {NSDataWritingAtomic, NSDataWritingDirect}) {
        EXPECT_FALSE(write(folder.pathOf("folder"), "x", options));
        expectError(NSFileWriteUnknownError, EISDIR, folder.pathOf("folder"));
    }
    EXPECT_TRUE(fs::is_directory(folder.path() / "folder"));
    EXPECT_EQ(folder.count(), 1u);
}

TEST_F(NSDataFiles, ALinkStaysAndItsTargetIsReplaced) {
    fs::create_directory(folder.path() / "elsewhere");
    folder.write("elsewhere/target", "old");
    fs::create_symlink("elsewhere/target", folder.path() / "link");
    EXPECT_TRUE(write(folder.pathOf("link"), "new"));
    EXPECT_TRUE(fs::is_symlink(folder.path() / "link"));
    EXPECT_EQ(folder.read("elsewhere/target"), "new");
}

/// Opening the pipe would wait for its other end.
TEST_F(NSDataFiles, PipesAndDevicesAreRefusedBothWays) {
    ASSERT_EQ(::mkfifo((folder.path() / "pipe").c_str(), 0600), 0);
    fs::create_symlink("pipe", folder.path() / "link");
    fs::create_symlink("/dev/null", folder.path() / "device");
    for (const char* name : {"pipe", "link", "device"}) {
        SCOPED_TRACE(name);
        const NSString path = folder.pathOf(name);
        error = NSError();
        EXPECT_TRUE(read(path).isNil());
        expectError(NSFileReadUnknownError, ENOTSUP, path);
        for (const auto options : {NSDataWritingAtomic, NSDataWritingDirect}) {
            error = NSError();
            EXPECT_FALSE(write(path, "x", options));
            expectError(NSFileWriteUnknownError, ENOTSUP, path);
        }
    }
    EXPECT_TRUE(fs::is_fifo(folder.path() / "pipe"));
    EXPECT_EQ(folder.count(), 3u);
}

TEST_F(NSDataFiles, ANameOfTheLongestLengthCanBeWritten) {
    EXPECT_TRUE(write(folder.pathOf(std::string(255, 'n')), "x"));
    EXPECT_FALSE(write(folder.pathOf(std::string(256, 'n')), "x"));
    EXPECT_EQ(folder.count(), 1u);
}

} // namespace qrv
