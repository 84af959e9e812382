#include "Platform/Engine/DevTools/DevToolsPipe.h"

#include "Platform/Engine/DevTools/MessageReader.h"
#include "Platform/Engine/DevTools/MessageWriter.h"
#include "Platform/Foundation/MappedFile.h"
#include "Tests/Platform/Engine/EngineTestSupport.h"
#include "Tests/Support/TemporaryFolder.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <gtest/gtest.h>
#include <stdexcept>
#include <sys/socket.h>
#include <vector>

namespace qrv::engine {
namespace {

using namespace std::chrono_literals;
using SendResult = DevToolsTransport::SendResult;

std::string bytesOf(const std::string& text) {
    std::string bytes;
    for (const NSData& piece : encodedMessage(saying(text))) bytes += piece.bytes();
    return bytes;
}

class DevToolsPipeTest : public ::testing::Test {
protected:
    void connect(DevToolsPipe::Limits limits = {}) {
        int ends[2];
        ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, ends), 0);
        far_ = FileDescriptor(ends[1]);
        pipe_ = std::make_unique<DevToolsPipe>(FileDescriptor(ends[0]), loop_, limits);
        pipe_->setMessageHandler([this](const Json& message) { messages_.push_back(said(message)); });
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

TEST_F(DevToolsPipeTest, TellsMessagesApartWhereverTheyAreCut) {
    connect();
    const std::string all = bytesOf("one") + bytesOf("") + bytesOf("two");
    for (std::size_t cut = 0; cut <= all.size(); ++cut) {
        messages_.clear();
        farWrites(std::string_view(all).substr(0, cut));
        runUntil([] { return true; });
        loop_.runUntil([] { return false; }, std::chrono::steady_clock::now() + 1ms);
        farWrites(std::string_view(all).substr(cut));
        EXPECT_TRUE(runUntil([&] { return messages_.size() == 3; }));
        EXPECT_EQ(messages_, (Messages{"one", "", "two"}));
    }
}

TEST_F(DevToolsPipeTest, ReadsNoMoreThanCanBeDelivered) {
    connect({.backlog = 1000});
    constexpr std::size_t all = 500'000;
    const std::string one = bytesOf("message");
    std::size_t written = 0;
    std::size_t delivered = 0;
    std::size_t mostWaiting = 0;
    pipe_->setMessageHandler([&](const Json&) { ++delivered; });
    EXPECT_TRUE(runUntil([&] {
        while (written < all &&
               ::write(far_.get(), one.data(), one.size()) == static_cast<ssize_t>(one.size()))
            ++written;
        mostWaiting = std::max(mostWaiting, written - delivered);
        return delivered > all / 10;
    }));
    EXPECT_LT(mostWaiting, 100'000u); // what the socket and one block hold, generously
}

TEST_F(DevToolsPipeTest, ALongMessageWaitsForTheReaderAndKeepsTheOrder) {
    connect();
    const std::string longOne(5'000'000, 'x');
    EXPECT_EQ(pipe_->send(saying(longOne)), SendResult::accepted);
    EXPECT_EQ(pipe_->send(saying("next")), SendResult::accepted);
    const std::string expected = bytesOf(longOne) + bytesOf("next");
    EXPECT_TRUE(farReads(expected.size()) == expected);
}

TEST_F(DevToolsPipeTest, DataOfMessagesAreWrittenInTheirPlaces) {
    connect();
    std::vector<Json::Member> members;
    for (int number = 0; number < 40; ++number) // more pieces than are written at once
        members.emplace_back(std::to_string(number), NSData(std::string(20'000 + number, 'a')));
    const Json message = Json::object(members);
    std::string expected;
    for (const NSData& piece : encodedMessage(message)) expected += piece.bytes();
    EXPECT_EQ(pipe_->send(message), SendResult::accepted);
    EXPECT_TRUE(farReads(expected.size()) == expected);
}

TEST_F(DevToolsPipeTest, ALongMessageArrivesWhole) {
    connect();
    const std::string longOne(9'000'000, 'y');
    const std::string all = bytesOf(longOne) + bytesOf("next");
    std::string_view rest = all;
    EXPECT_TRUE(runUntil([&] {
        ssize_t count = ::write(far_.get(), rest.data(), rest.size());
        if (count > 0) rest.remove_prefix(static_cast<std::size_t>(count));
        return messages_.size() == 2;
    }));
    EXPECT_TRUE(messages_.at(0) == longOne);
    EXPECT_EQ(messages_.at(1), "next");
}

TEST_F(DevToolsPipeTest, WhatIsMalformedIsDropped) {
    connect();
    farWrites(std::string_view("\xd8\x18\x5a\0\0\0\0\xd8\x18\x5a\0\0\0\1\xff", 15));
    farWrites(bytesOf("good"));
    EXPECT_TRUE(runUntil([&] { return !messages_.empty(); }));
    EXPECT_EQ(messages_, (Messages{"good"}));
    EXPECT_EQ(closings_, Messages{});
}

TEST_F(DevToolsPipeTest, WhatIsNoMessageEndsTheConnection) {
    connect();
    farWrites(bytesOf("good") + "no message");
    EXPECT_TRUE(runUntil([&] { return !closings_.empty(); }));
    EXPECT_EQ(messages_, (Messages{"good"}));
    EXPECT_EQ(closings_, (Messages{"a message did not begin like one"}));
}

// A mapped file that was cut short, for one: the kernel cannot read there, and this process reads zeros.
TEST_F(DevToolsPipeTest, WhatTheKernelCannotReadIsSentAsThisProcessReadsIt) {
    allowMappedFiles();
    const TemporaryFolder folder;
    const NSString path = folder.write("large", std::string(std::size_t{8} << 20, 'x'));
    const NSData data = NSData::initWithContentsOfFile_options_error(path, 0, nullptr);
    std::filesystem::resize_file(path.utf8(), 4096);
    connect();
    EXPECT_EQ(pipe_->send(Json::object({{"data", data}})), SendResult::accepted);
    const std::string got = farReads(std::size_t{8} << 20);
    EXPECT_GT(got.size(), std::size_t{8} << 20);
    EXPECT_EQ(std::count(got.begin(), got.end(), 'x'), 4096);
    EXPECT_TRUE(data.isCutOff());
    EXPECT_EQ(closings_, Messages{});
}

TEST_F(DevToolsPipeTest, DeliversOneMessagePerTurn) {
    connect();
    farWrites(bytesOf("a") + bytesOf("b") + bytesOf("c"));
    EXPECT_TRUE(loop_.runUntil([&] { return !messages_.empty(); }, std::chrono::steady_clock::now() + 20s));
    EXPECT_EQ(messages_, (Messages{"a"}));
    EXPECT_TRUE(runUntil([&] { return messages_.size() == 3; }));
}

TEST_F(DevToolsPipeTest, RefusesAMessageThatTheEngineWouldNotTake) {
    const std::string most = bytesOf("123456789");
    connect({.outgoing = most.size(), .incoming = 100});
    EXPECT_EQ(pipe_->send(saying("1234567890")), SendResult::tooLarge);
    EXPECT_EQ(pipe_->send(saying("123456789")), SendResult::accepted);
    EXPECT_EQ(farReads(most.size()), most);
}

TEST_F(DevToolsPipeTest, AMessageOverTheIncomingLimitEndsTheConnection) {
    const std::string most = bytesOf("1234567890");
    connect({.outgoing = 100, .incoming = most.size()});
    farWrites(most);
    EXPECT_TRUE(runUntil([&] { return messages_.size() == 1; }));
    farWrites(bytesOf("12345678901").substr(0, messageHead));
    EXPECT_TRUE(runUntil([&] { return !closings_.empty(); }));
    EXPECT_EQ(closings_, (Messages{"a message was too long"}));
    EXPECT_EQ(pipe_->send(saying("x")), SendResult::closed);
    char byte;
    EXPECT_EQ(::read(far_.get(), &byte, 1), 0);
}

TEST_F(DevToolsPipeTest, TheEndComesOnceAndAfterTheLastMessage) {
    connect();
    farWrites(bytesOf("a") + bytesOf("b") + bytesOf("unfinished").substr(0, 9));
    far_.reset();
    EXPECT_TRUE(runUntil([&] { return !closings_.empty(); }));
    EXPECT_EQ(messages_, (Messages{"a", "b"}));
    runUntil([] { return false; }, 20ms);
    EXPECT_EQ(closings_.size(), 1u);
    EXPECT_EQ(pipe_->send(saying("x")), SendResult::closed);
}

TEST_F(DevToolsPipeTest, MessagesThatCameBeforeAFailedWriteAreDelivered) {
    connect();
    farWrites(bytesOf("last"));
    ::shutdown(far_.get(), SHUT_RD);
    pipe_->send(saying("into the void"));
    EXPECT_TRUE(runUntil([&] { return !closings_.empty(); }));
    EXPECT_EQ(messages_, (Messages{"last"}));
    EXPECT_EQ(closings_.size(), 1u);
}

TEST_F(DevToolsPipeTest, AHandlerMayRunTheLoopAndGetsTheNextMessagesThere) {
    connect();
    pipe_->setMessageHandler([this](const Json& message) {
        messages_.push_back("<" + said(message));
        if (said(message) == "a") {
            farWrites(bytesOf("c"));
            EXPECT_TRUE(runUntil([&] { return messages_.size() == 5; }));
        }
        messages_.push_back(said(message) + ">");
    });
    farWrites(bytesOf("a") + bytesOf("b"));
    EXPECT_TRUE(runUntil([&] { return messages_.size() == 6; }));
    EXPECT_EQ(messages_, (Messages{"<a", "<b", "b>", "<c", "c>", "a>"}));
}

TEST_F(DevToolsPipeTest, AHandlerMayDestroyThePipe) {
    connect();
    pipe_->setMessageHandler([this](const Json& message) {
        messages_.push_back(said(message));
        pipe_.reset();
        messages_.emplace_back("still here");
    });
    farWrites(bytesOf("a") + bytesOf("b"));
    EXPECT_TRUE(runUntil([&] { return messages_.size() == 2; }));
    runUntil([] { return false; }, 20ms);
    EXPECT_EQ(messages_, (Messages{"a", "still here"}));
}

TEST_F(DevToolsPipeTest, AnExceptionOfAHandlerKeepsTheMessagesBehindIt) {
    connect();
    pipe_->setMessageHandler([this](const Json& message) {
        if (said(message) == "bad") throw std::runtime_error("bad");
        messages_.push_back(said(message));
    });
    farWrites(bytesOf("bad") + bytesOf("good"));
    EXPECT_THROW(runUntil([] { return false; }), std::runtime_error);
    EXPECT_TRUE(runUntil([&] { return !messages_.empty(); }));
    EXPECT_EQ(messages_, (Messages{"good"}));
}

} // namespace
} // namespace qrv::engine
