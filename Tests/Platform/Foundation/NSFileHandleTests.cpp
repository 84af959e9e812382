#include "Platform/Foundation/NSFileHandle.h"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <string>
#include <thread>

#include <fcntl.h>
#include <unistd.h>

namespace qrv {
namespace {

class Pipe {
public:
    explicit Pipe(int flags = 0) {
        if (::pipe2(ends_.data(), O_CLOEXEC | flags) != 0) ADD_FAILURE() << "no pipe";
    }

    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    ~Pipe() { closeReader(); }

    int writer() const { return ends_[1]; }

    int reader() const { return ends_[0]; }

    void closeReader() {
        if (ends_[0] >= 0) ::close(ends_[0]);
        ends_[0] = -1;
    }

    /// Everything up to the end of the stream; waits for it.
    std::string readAll() const {
        ::fcntl(reader(), F_SETFL, 0);
        std::string all;
        std::array<char, 4096> buffer;
        ssize_t count = 0;
        while ((count = ::read(reader(), buffer.data(), buffer.size())) > 0) {
            all.append(buffer.data(), static_cast<std::size_t>(count));
        }
        return all;
    }

private:
    std::array<int, 2> ends_{-1, -1};
};

// More than a pipe holds.
std::string muchText() {
    return std::string(300'000, 'x') + "end";
}

TEST(NSFileHandle, WritesAllBytesAndCloses) {
    const Pipe pipe;
    NSFileHandle handle(pipe.writer());
    handle.writeData(NSData(std::string("a\0b", 3)));
    handle.writeData(NSData("c"));
    handle.closeFile();
    EXPECT_EQ(pipe.readAll(), std::string("a\0bc", 4));
}

TEST(NSFileHandle, WritesMoreThanAPipeHolds) {
    const Pipe pipe;
    std::string received;
    std::thread reader([&] { received = pipe.readAll(); });
    NSFileHandle handle(pipe.writer());
    handle.writeData(NSData(muchText()));
    handle.closeFile();
    reader.join();
    EXPECT_EQ(received, muchText());
}

TEST(NSFileHandle, WaitsForADescriptorThatDoesNotBlock) {
    const Pipe pipe(O_NONBLOCK);
    std::string received;
    NSFileHandle handle(pipe.writer());
    std::thread reader([&] { received = pipe.readAll(); });
    handle.writeData(NSData(muchText()));
    handle.closeFile();
    reader.join();
    EXPECT_EQ(received, muchText());
}

TEST(NSFileHandle, NilWritesNothing) {
    const Pipe pipe;
    NSFileHandle handle(pipe.writer());
    handle.writeData({});
    handle.closeFile();
    EXPECT_EQ(pipe.readAll(), "");
}

TEST(NSFileHandle, AReaderThatHasGoneIsIgnored) {
    const auto previous = std::signal(SIGPIPE, SIG_IGN);
    Pipe pipe;
    pipe.closeReader();
    NSFileHandle handle(pipe.writer());
    handle.writeData(NSData("lost"));
    EXPECT_EQ(errno, EPIPE);
    handle.closeFile();
    std::signal(SIGPIPE, previous);
}

TEST(NSFileHandle, ClosesOnceAndThenWritesNothing) {
    const Pipe pipe;
    const int writer = pipe.writer();
    NSFileHandle handle(writer);
    handle.closeFile();
    // The number may belong to another file by now.
    const Pipe other;
    const int reused = ::dup2(other.writer(), writer);
    ASSERT_EQ(reused, writer);
    handle.writeData(NSData("stray"));
    handle.closeFile();
    EXPECT_EQ(::fcntl(writer, F_GETFD) >= 0, true);
    ::close(writer);
    if (other.writer() != writer) ::close(other.writer());
    EXPECT_EQ(other.readAll(), "");
}

TEST(NSFileHandle, StandardOutputIsTheProcesssOwn) {
    const Pipe pipe;
    const int saved = ::dup(STDOUT_FILENO);
    ::dup2(pipe.writer(), STDOUT_FILENO);
    ::close(pipe.writer());
    NSFileHandle output = NSFileHandle::fileHandleWithStandardOutput();
    output.writeData(NSData("to the parent"));
    output.closeFile();
    EXPECT_EQ(::fcntl(STDOUT_FILENO, F_GETFD), -1);
    ::dup2(saved, STDOUT_FILENO);
    ::close(saved);
    EXPECT_EQ(pipe.readAll(), "to the parent");
}

} // namespace
} // namespace qrv
