#include "Platform/Foundation/FileDescriptor.h"

#include <fcntl.h>
#include <gtest/gtest.h>

namespace qrv {
namespace {

int openNothing() {
    return ::open("/dev/null", O_WRONLY | O_CLOEXEC);
}

bool isOpen(int descriptor) {
    return ::fcntl(descriptor, F_GETFD) >= 0;
}

TEST(FileDescriptor, ClosesWhatItOwns) {
    int number = -1;
    {
        const FileDescriptor file(openNothing());
        number = file.get();
        EXPECT_TRUE(file);
        EXPECT_TRUE(isOpen(number));
    }
    EXPECT_FALSE(isOpen(number));
}

TEST(FileDescriptor, MayOwnNothing) {
    FileDescriptor none;
    EXPECT_FALSE(none);
    EXPECT_EQ(none.get(), -1);
    EXPECT_FALSE(FileDescriptor(-1));
    none.reset();
    EXPECT_FALSE(none.closeWritten());
}

TEST(FileDescriptor, IsMovedAndNotShared) {
    FileDescriptor first(openNothing());
    const int number = first.get();
    FileDescriptor second(std::move(first));
    EXPECT_FALSE(first); // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(second.get(), number);

    FileDescriptor third(openNothing());
    const int replaced = third.get();
    third = std::move(second);
    EXPECT_FALSE(isOpen(replaced));
    EXPECT_EQ(third.get(), number);
    EXPECT_TRUE(isOpen(number));

    FileDescriptor& same = third;
    third = std::move(same);
    EXPECT_TRUE(isOpen(number));
}

TEST(FileDescriptor, IsClosedOnce) {
    FileDescriptor file(openNothing());
    const int number = file.get();
    file.reset();
    EXPECT_FALSE(file);
    EXPECT_FALSE(isOpen(number));
    const FileDescriptor other(openNothing()); // takes the number
    file.reset();
    EXPECT_TRUE(isOpen(other.get()));
}

TEST(FileDescriptor, ClosingLeavesTheErrorOfBefore) {
    FileDescriptor file(openNothing());
    ::close(file.get());
    errno = ENOSPC;
    file.reset(); // fails
    EXPECT_EQ(errno, ENOSPC);
}

TEST(FileDescriptor, AFileThatWasWrittenTellsALateError) {
    FileDescriptor file(openNothing());
    EXPECT_TRUE(file.closeWritten());
    EXPECT_FALSE(file);
    FileDescriptor broken(openNothing());
    ::close(broken.get());
    EXPECT_FALSE(broken.closeWritten());
    EXPECT_EQ(errno, EBADF);
}

} // namespace
} // namespace qrv
