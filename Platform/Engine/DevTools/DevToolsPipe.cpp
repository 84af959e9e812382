#include "Platform/Engine/DevTools/DevToolsPipe.h"

#include "Platform/Engine/DevTools/MessageReader.h"
#include "Platform/Engine/DevTools/MessageWriter.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/uio.h>

namespace qrv::engine {

namespace {

constexpr std::size_t readBlock = std::size_t{64} << 10;
constexpr std::size_t piecesAtOnce = 16; // that are written
/// The limit per turn of the loop, so that timers are served while a long message arrives.
constexpr std::size_t readPerTurn = std::size_t{4} << 20;

std::string describe(const char* what, int error) {
    return std::string(what) + ": " + std::strerror(error);
}

} // namespace

DevToolsPipe::DevToolsPipe(FileDescriptor socket, NSRunLoop& loop)
    : DevToolsPipe(std::move(socket), loop, Limits()) {}

DevToolsPipe::DevToolsPipe(FileDescriptor socket, NSRunLoop& loop, Limits limits)
    : socket_(std::move(socket)), loop_(loop), limits_(limits) {
    ::fcntl(socket_.get(), F_SETFL, ::fcntl(socket_.get(), F_GETFL) | O_NONBLOCK);
    watchReadable();
}

DevToolsPipe::~DevToolsPipe() = default;

DevToolsTransport::SendResult DevToolsPipe::send(const Json& message) {
    if (ended_) return SendResult::closed;
    const std::vector<NSData> pieces = encodedMessage(message);
    std::size_t size = 0;
    for (const NSData& piece : pieces) size += piece.length();
    if (pieces.empty() || size > limits_.outgoing) return SendResult::tooLarge;
    const bool isIdle = outgoing_.empty();
    outgoing_.insert(outgoing_.end(), pieces.begin(), pieces.end());
    if (isIdle) writeQueued();
    return SendResult::accepted;
}

void DevToolsPipe::writeQueued() {
    while (!outgoing_.empty()) {
        std::array<iovec, piecesAtOnce> parts{};
        const std::size_t count = std::min(outgoing_.size(), parts.size());
        for (std::size_t index = 0; index < count; ++index) {
            const std::string_view bytes = outgoing_[index].bytes();
            parts[index] = {const_cast<char*>(bytes.data()), bytes.size()}; // NOLINT: it is only read
        }
        msghdr message{};
        message.msg_iov = parts.data();
        message.msg_iovlen = count;
        const ssize_t sent = ::sendmsg(socket_.get(), &message, MSG_NOSIGNAL);
        if (sent >= 0) {
            written(static_cast<std::size_t>(sent));
        } else if (errno == EFAULT) {
            // A mapped file was cut short: read by this process, what is missing is zeros.
            for (NSData& piece : outgoing_) piece = NSData(std::string(piece.bytes()));
        } else if (errno == EAGAIN) {
            if (!writing_) writable_ = loop_.watchWritable(socket_.get(), [this] { writeQueued(); });
            writing_ = true;
            return;
        } else if (errno != EINTR) {
            outgoing_.clear();
            ::shutdown(socket_.get(), SHUT_RDWR); // the reading side reports the end, after the last messages
        }
    }
    writable_.cancel();
    writing_ = false;
}

void DevToolsPipe::written(std::size_t count) {
    while (!outgoing_.empty() && count >= outgoing_.front().length()) {
        count -= outgoing_.front().length();
        outgoing_.pop_front();
    }
    if (count == 0) return;
    NSData& rest = outgoing_.front();
    rest = rest.subdataWithRange({count, rest.length() - count});
}

void DevToolsPipe::watchReadable() {
    readable_ = loop_.watchReadable(socket_.get(), [this] { readAvailable(); });
    reading_ = true;
}

/// The end of a long message is read to where it belongs.
void DevToolsPipe::readAvailable() {
    std::array<char, readBlock> block;
    for (std::size_t total = 0; total < readPerTurn && backlog_ < limits_.backlog && !ended_;) {
        const bool isLong = incoming_.size() - arrived_ > block.size();
        char* const place = isLong ? incoming_.data() + arrived_ : block.data();
        const std::size_t most = isLong ? std::min(incoming_.size() - arrived_, readPerTurn) : block.size();
        const ssize_t count = ::recv(socket_.get(), place, most, 0);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0 && errno == EAGAIN) break;
        if (count < 0) {
            end(describe("the connection failed", errno));
        } else if (count == 0) {
            end("the connection was closed");
        } else {
            const auto bytes = static_cast<std::size_t>(count);
            total += bytes;
            if (isLong)
                arrived_ += bytes;
            else
                takeBytes({block.data(), bytes});
            if (isLong && arrived_ == incoming_.size()) takeMessage();
        }
    }
    if (!ended_ && backlog_ >= limits_.backlog) {
        readable_.cancel();
        reading_ = false;
    }
    if ((!received_.empty() || ended_) && !deliveryPosted_) deliverNext();
}

void DevToolsPipe::takeBytes(std::string_view bytes) {
    while (!bytes.empty()) {
        const bool hasLength = arrived_ >= messageHead;
        const std::size_t wanted = (hasLength ? incoming_.size() : messageHead) - arrived_;
        const std::string_view taken = bytes.substr(0, wanted);
        bytes.remove_prefix(taken.size());
        incoming_.replace(arrived_, taken.size(), taken);
        arrived_ += taken.size();
        if (arrived_ == messageHead) {
            const auto size = messageSize(incoming_);
            if (!size) return end("a message did not begin like one");
            if (*size > limits_.incoming) return end("a message was too long");
            incoming_.resize(*size);
        }
        if (arrived_ >= messageHead && arrived_ == incoming_.size()) takeMessage();
    }
}

void DevToolsPipe::takeMessage() {
    backlog_ += incoming_.size() + sizeof(NSData);
    received_.emplace_back(std::exchange(incoming_, {}));
    arrived_ = 0;
}

/// Delivers one message per turn: a caller that waits for a reply continues right after it, whatever else has
/// arrived. The next turn is posted before the handler runs, because the handler may run the loop, throw, or
/// destroy this object.
void DevToolsPipe::deliverNext() {
    if (received_.empty()) {
        if (!ended_ || std::exchange(closeDelivered_, true)) return;
        return deliverClose(std::string(endReason_)); // a copy: the handler may destroy this object
    }
    const NSData bytes = received_.front();
    received_.pop_front();
    backlog_ -= bytes.length() + sizeof(NSData);
    if (!ended_ && !reading_ && backlog_ < limits_.backlog) watchReadable();
    if (!received_.empty() || ended_) {
        deliveryPosted_ = true;
        delivery_ = loop_.performSoon([this] {
            deliveryPosted_ = false;
            deliverNext();
        });
    }
    // What is malformed is dropped: the engine is not trusted to be well-behaved.
    if (const auto message = decodedMessage(bytes)) deliver(*message);
}

void DevToolsPipe::end(std::string reason) {
    readable_.cancel();
    writable_.cancel();
    socket_.reset();
    incoming_.clear();
    outgoing_.clear();
    endReason_ = std::move(reason);
    ended_ = true;
}

} // namespace qrv::engine
