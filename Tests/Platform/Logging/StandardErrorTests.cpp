#include "Platform/Logging/StandardError.h"

#include <array>
#include <chrono>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

namespace qrv {

namespace {

class Pipe {
public:
    Pipe() {
        if (pipe2(ends_.data(), O_CLOEXEC) != 0) std::abort();
        fcntl(reader(), F_SETFL, O_NONBLOCK);
    }

    ~Pipe() {
        closeReader();
        close(writer());
    }

    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    int reader() const { return ends_[0]; }

    int writer() const { return ends_[1]; }

    void closeReader() {
        if (ends_[0] >= 0) close(ends_[0]);
        ends_[0] = -1;
    }

    /// What has been written so far.
    std::string contents() const {
        std::string all;
        std::array<char, 4096> part{};
        for (ssize_t n = 0; (n = read(reader(), part.data(), part.size())) > 0;) {
            all.append(part.data(), static_cast<std::size_t>(n));
        }
        return all;
    }

private:
    std::array<int, 2> ends_{};
};

volatile std::sig_atomic_t brokenPipes = 0;

} // namespace

TEST(StandardError, LineIsWrittenAsItIs) {
    const Pipe pipe;
    writeLogLine(pipe.writer(), std::string_view("a\0b %s\n", 7));
    EXPECT_EQ(pipe.contents(), std::string("a\0b %s\n", 7));
}

TEST(StandardError, EmptyLineWritesNothing) {
    const Pipe pipe;
    writeLogLine(pipe.writer(), "");
    EXPECT_EQ(pipe.contents(), "");
}

TEST(StandardError, ClosedDescriptorIsIgnored) {
    writeLogLine(-1, "a\n");
    writeLogLine(987654, "a\n");
    const Pipe pipe;
    writeLogLine(pipe.reader(), "not for writing\n");
    EXPECT_EQ(pipe.contents(), "");
}

TEST(StandardError, ReaderThatHasGoneRaisesNoSignal) {
    std::signal(SIGPIPE, [](int) { brokenPipes = brokenPipes + 1; });
    Pipe pipe;
    pipe.closeReader();
    writeLogLine(pipe.writer(), "a\n");
    EXPECT_EQ(brokenPipes, 0);
    // The signal is as it was for everybody else.
    EXPECT_EQ(write(pipe.writer(), "a", 1), -1);
    EXPECT_EQ(brokenPipes, 1);
    std::signal(SIGPIPE, SIG_DFL);
}

TEST(StandardError, ReaderThatTakesNothingIsNotWaitedForLong) {
    const Pipe pipe;
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < 1000; ++i) writeLogLine(pipe.writer(), std::string(999, 'x') + "\n");
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
    const std::string written = pipe.contents();
    EXPECT_GT(written.size(), 0u);
    EXPECT_EQ(written.size() % 1000, 0u) << "only whole lines are dropped";
    writeLogLine(pipe.writer(), "again\n");
    EXPECT_EQ(pipe.contents(), "again\n");
}

TEST(StandardError, LineLongerThanAFullPipeDoesNotBlock) {
    const Pipe pipe;
    const auto start = std::chrono::steady_clock::now();
    writeLogLine(pipe.writer(), std::string(1'000'000, 'x'));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
    EXPECT_GT(pipe.contents().size(), 0u);
}

TEST(StandardError, LongLineReachesAReaderThatReads) {
    const Pipe pipe;
    const std::string line(1'000'000, 'x');
    constexpr std::chrono::seconds patience(30); // this reader may be kept waiting by other programs
    std::thread writer([&] { writeLogLine(pipe.writer(), line, patience); });
    std::string received;
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (received.size() < line.size() && std::chrono::steady_clock::now() < deadline) {
        received += pipe.contents();
    }
    writer.join();
    EXPECT_EQ(received, line);
}

TEST(StandardError, LinesOfManyThreadsStayWhole) {
    std::FILE* file = std::tmpfile();
    ASSERT_NE(file, nullptr);
    std::vector<std::thread> threads;
    for (char name = 'a'; name < 'i'; ++name) {
        threads.emplace_back([=] {
            for (int i = 0; i < 50; ++i) writeLogLine(fileno(file), std::string(6000, name) + "\n");
        });
    }
    for (std::thread& thread : threads) thread.join();
    std::fseek(file, 0, SEEK_SET);
    int lines = 0;
    std::array<char, 7000> line{};
    while (std::fgets(line.data(), static_cast<int>(line.size()), file)) {
        EXPECT_EQ(std::string(line.data()), std::string(6000, line[0]) + "\n");
        ++lines;
    }
    EXPECT_EQ(lines, 400);
    std::fclose(file);
}

} // namespace qrv
