#include "Platform/Engine/DevTools/DevToolsPipe.h"

#include <algorithm>
#include <cerrno>
#include <gtest/gtest.h>
#include <stdexcept>
#include <sys/socket.h>
#include <vector>

namespace qrv::engine {
namespace {

using namespace std::chrono_literals;
using SendResult = DevToolsTransport::SendResult;

class DevToolsPipeTest : public ::testing::Test {
protected:
    void connect(DevToolsPipe::Limits limits = {}) {
        int ends[2];
        ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, ends), 0);
        far_ = FileDescriptor(ends[1]);
        pipe_ = std::make_unique<DevToolsPipe>(FileDescriptor(ends[0]), loop_, limits);
        pipe_->setMessageHandler([this](std::string_view message) { messages_.emplace_back(message); });
        pipe_->setCloseHandler([this](const std::string& reason) { closings_.push_back(reason); });
    }

    void farWrites(std::string_view bytes) const {
        while (!bytes.empty()) {
            ssize_t count = ::write(far_.get(), bytes.data(), bytes.size());
            ASSERT_GT(count, 0);
            bytes.remove_prefix(static_cast<std::size_t>(count));
        }
    }

    // What the engine's side has got so far, after letting the pipe write.
    std::string farReads(std::size_t size) {
        std::string got;
        std::vector<char> block(1 << 20);
        runUntil([&] {
            ssize_t count = ::read(far_.get(), block.data(), block.size());
            if (count > 0) got.append(block.data(), static_cast<std::size_t>(count));
            return got.size() >= size;
        });
        return got;
    }

    bool runUntil(const std::function<bool()>& predicate, std::chrono::nanoseconds timeout = 20s) {
        // The far side is polled by the predicate, so the loop has to turn without events of its own.
        auto deadline = std::chrono::steady_clock::now() + timeout;
        while (std::chrono::steady_clock::now() < deadline)
            if (loop_.runUntil(predicate, std::chrono::steady_clock::now() + 1ms)) return true;
        return false;
    }

    using Messages = std::vector<std::string>;

    NSRunLoop loop_;
    FileDescriptor far_;
    std::unique_ptr<DevToolsPipe> pipe_;
    Messages messages_;
    Messages closings_;
};

TEST_F(DevToolsPipeTest, SplitsMessagesAtTheirNulBytes) {
    connect();
    farWrites(std::string_view("one\0\0tw", 7));
    EXPECT_TRUE(runUntil([&] { return messages_.size() == 2; }));
    farWrites(std::string_view("o\0", 2));
    EXPECT_TRUE(runUntil([&] { return messages_.size() == 3; }));
    EXPECT_EQ(messages_, (Messages{"one", "", "two"}));
}

TEST_F(DevToolsPipeTest, ReadsNoMoreThanCanBeDelivered) {
    connect({.backlog = 1000});
    constexpr std::size_t all = 500'000;
    std::size_t written = 0;
    std::size_t delivered = 0;
    std::size_t mostWaiting = 0;
    pipe_->setMessageHandler([&](std::string_view) { ++delivered; });
    EXPECT_TRUE(runUntil([&] {
        while (written < all && ::write(far_.get(), "message\0", 8) == 8) ++written;
        mostWaiting = std::max(mostWaiting, written - delivered);
        return delivered > all / 10;
    }));
    EXPECT_LT(mostWaiting, 100'000u); // what the socket and one block hold, generously
}

TEST_F(DevToolsPipeTest, EndsEachMessageWithANulByte) {
    connect();
    EXPECT_EQ(pipe_->send("one"), SendResult::accepted);
    EXPECT_EQ(pipe_->send("two"), SendResult::accepted);
    EXPECT_EQ(farReads(8), std::string("one\0two\0", 8));
}

TEST_F(DevToolsPipeTest, ALongMessageWaitsForTheReaderAndKeepsTheOrder) {
    connect();
    std::string longOne(5'000'000, 'x');
    EXPECT_EQ(pipe_->send(longOne), SendResult::accepted);
    EXPECT_EQ(pipe_->send("next"), SendResult::accepted);
    std::string got = farReads(longOne.size() + 6);
    EXPECT_EQ(got.size(), longOne.size() + 6);
    EXPECT_TRUE(got == longOne + std::string("\0next\0", 6));
}

TEST_F(DevToolsPipeTest, ALongMessageArrivesWhole) {
    connect();
    std::string longOne(9'000'000, 'y');
    longOne += '\0';
    std::string_view rest = longOne;
    EXPECT_TRUE(runUntil([&] {
        ssize_t count = ::write(far_.get(), rest.data(), rest.size());
        if (count > 0) rest.remove_prefix(static_cast<std::size_t>(count));
        return !messages_.empty();
    }));
    longOne.pop_back();
    EXPECT_TRUE(messages_.at(0) == longOne);
}

TEST_F(DevToolsPipeTest, DeliversOneMessagePerTurn) {
    connect();
    farWrites(std::string_view("a\0b\0c\0", 6));
    EXPECT_TRUE(loop_.runUntil([&] { return !messages_.empty(); }, std::chrono::steady_clock::now() + 20s));
    EXPECT_EQ(messages_, (Messages{"a"}));
    EXPECT_TRUE(runUntil([&] { return messages_.size() == 3; }));
}

TEST_F(DevToolsPipeTest, RefusesAMessageThatTheEngineWouldNotTake) {
    connect({.outgoing = 10, .incoming = 100});
    EXPECT_EQ(pipe_->send("1234567890"), SendResult::tooLarge); // with its NUL it has eleven bytes
    EXPECT_EQ(pipe_->send("123456789"), SendResult::accepted);
    EXPECT_EQ(farReads(10), std::string("123456789\0", 10));
}

TEST_F(DevToolsPipeTest, AMessageOverTheIncomingLimitEndsTheConnection) {
    connect({.outgoing = 10, .incoming = 10});
    farWrites(std::string_view("1234567890\0", 11));
    EXPECT_TRUE(runUntil([&] { return messages_.size() == 1; }));
    farWrites("12345678901");
    EXPECT_TRUE(runUntil([&] { return !closings_.empty(); }));
    EXPECT_EQ(closings_, (Messages{"a message was too long"}));
    EXPECT_EQ(pipe_->send("x"), SendResult::closed);
    char byte;
    EXPECT_EQ(::read(far_.get(), &byte, 1), 0);
}

TEST_F(DevToolsPipeTest, TheEndComesOnceAndAfterTheLastMessage) {
    connect();
    farWrites(std::string_view("a\0b\0unfinished", 14));
    far_.reset();
    EXPECT_TRUE(runUntil([&] { return !closings_.empty(); }));
    EXPECT_EQ(messages_, (Messages{"a", "b"}));
    runUntil([] { return false; }, 20ms);
    EXPECT_EQ(closings_.size(), 1u);
    EXPECT_EQ(pipe_->send("x"), SendResult::closed);
}

TEST_F(DevToolsPipeTest, MessagesThatCameBeforeAFailedWriteAreDelivered) {
    connect();
    farWrites(std::string_view("last\0", 5));
    ::shutdown(far_.get(), SHUT_RD);
    pipe_->send("into the void");
    EXPECT_TRUE(runUntil([&] { return !closings_.empty(); }));
    EXPECT_EQ(messages_, (Messages{"last"}));
    EXPECT_EQ(closings_.size(), 1u);
}

TEST_F(DevToolsPipeTest, AHandlerMayRunTheLoopAndGetsTheNextMessagesThere) {
    connect();
    pipe_->setMessageHandler([this](std::string_view message) {
        messages_.push_back("<" + std::string(message));
        if (message == "a") {
            farWrites(std::string_view("c\0", 2));
            EXPECT_TRUE(runUntil([&] { return messages_.size() == 5; }));
        }
        messages_.push_back(std::string(message) + ">");
    });
    farWrites(std::string_view("a\0b\0", 4));
    EXPECT_TRUE(runUntil([&] { return messages_.size() == 6; }));
    EXPECT_EQ(messages_, (Messages{"<a", "<b", "b>", "<c", "c>", "a>"}));
}

TEST_F(DevToolsPipeTest, AHandlerMayDestroyThePipe) {
    connect();
    pipe_->setMessageHandler([this](std::string_view message) {
        messages_.emplace_back(message);
        pipe_.reset();
        messages_.emplace_back("still here");
    });
    farWrites(std::string_view("a\0b\0", 4));
    EXPECT_TRUE(runUntil([&] { return messages_.size() == 2; }));
    runUntil([] { return false; }, 20ms);
    EXPECT_EQ(messages_, (Messages{"a", "still here"}));
}

TEST_F(DevToolsPipeTest, AnExceptionOfAHandlerKeepsTheMessagesBehindIt) {
    connect();
    pipe_->setMessageHandler([this](std::string_view message) {
        if (message == "bad") throw std::runtime_error("bad");
        messages_.emplace_back(message);
    });
    farWrites(std::string_view("bad\0good\0", 9));
    EXPECT_THROW(runUntil([] { return false; }), std::runtime_error);
    EXPECT_TRUE(runUntil([&] { return !messages_.empty(); }));
    EXPECT_EQ(messages_, (Messages{"good"}));
}

} // namespace
} // namespace qrv::engine
