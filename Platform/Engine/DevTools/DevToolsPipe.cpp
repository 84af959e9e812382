#include "Platform/Engine/DevTools/DevToolsPipe.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/socket.h>

namespace qrv::engine {

namespace {

constexpr std::size_t readBlock = std::size_t{64} << 10;
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

DevToolsTransport::SendResult DevToolsPipe::send(std::string message) {
    if (ended_) return SendResult::closed;
    if (message.size() >= limits_.outgoing) return SendResult::tooLarge;
    outgoing_.push_back(std::move(message));
    if (outgoing_.size() == 1) writeQueued();
    return SendResult::accepted;
}

void DevToolsPipe::writeQueued() {
    while (!outgoing_.empty()) {
        const std::string& message = outgoing_.front();
        std::size_t size = message.size() + 1; // the string's own terminator ends the message
        ssize_t count = ::send(socket_.get(), message.c_str() + written_, size - written_, MSG_NOSIGNAL);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0 && errno == EAGAIN) {
            if (!writing_) writable_ = loop_.watchWritable(socket_.get(), [this] { writeQueued(); });
            writing_ = true;
            return;
        }
        if (count < 0) {
            outgoing_.clear();
            ::shutdown(socket_.get(), SHUT_RDWR); // the reading side reports the end, after the last messages
            break;
        }
        written_ += static_cast<std::size_t>(count);
        if (written_ < size) continue;
        outgoing_.pop_front();
        written_ = 0;
    }
    writable_.cancel();
    writing_ = false;
}

void DevToolsPipe::watchReadable() {
    readable_ = loop_.watchReadable(socket_.get(), [this] { readAvailable(); });
    reading_ = true;
}

void DevToolsPipe::readAvailable() {
    std::array<char, readBlock> block;
    for (std::size_t total = 0; total < readPerTurn && backlog_ < limits_.backlog && !ended_;) {
        ssize_t count = ::recv(socket_.get(), block.data(), block.size(), 0);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0 && errno == EAGAIN) break;
        if (count < 0) {
            end(describe("the connection failed", errno));
        } else if (count == 0) {
            end("the connection was closed");
        } else {
            total += static_cast<std::size_t>(count);
            takeBytes({block.data(), static_cast<std::size_t>(count)});
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
        std::size_t messageEnd = bytes.find('\0');
        incoming_.append(bytes.substr(0, messageEnd));
        if (incoming_.size() > limits_.incoming) return end("a message was too long");
        if (messageEnd == std::string_view::npos) return;
        backlog_ += incoming_.size() + sizeof(std::string);
        received_.push_back(std::exchange(incoming_, {}));
        bytes.remove_prefix(messageEnd + 1);
    }
}

/// Delivers one message per turn: a caller that waits for a reply continues right after it, whatever else has
/// arrived. The next turn is posted before the handler runs, because the handler may run the loop, throw, or
/// destroy this object.
void DevToolsPipe::deliverNext() {
    if (received_.empty()) {
        if (!ended_ || std::exchange(closeDelivered_, true)) return;
        return deliverClose(std::string(endReason_)); // a copy: the handler may destroy this object
    }
    std::string message = std::move(received_.front());
    received_.pop_front();
    backlog_ -= message.size() + sizeof(std::string);
    if (!ended_ && !reading_ && backlog_ < limits_.backlog) watchReadable();
    if (!received_.empty() || ended_) {
        deliveryPosted_ = true;
        delivery_ = loop_.performSoon([this] {
            deliveryPosted_ = false;
            deliverNext();
        });
    }
    deliver(message);
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
