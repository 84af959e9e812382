// Any bytes from the engine: what can be read as a message is written as one that reads as the same; every
// command is answered once, the end of the connection is told once, and nothing comes after it.

#include "Fuzz/FuzzInput.h"
#include "Platform/Engine/DevTools/DevToolsClient.h"
#include "Platform/Engine/DevTools/DevToolsPipe.h"
#include "Platform/Engine/DevTools/MessageReader.h"
#include "Platform/Engine/DevTools/MessageWriter.h"

#include <sys/socket.h>

using namespace qrv;
using namespace qrv::engine;
using namespace qrv::fuzz;

namespace {

constexpr std::size_t longestMessage = 4096;

std::string encoded(const Json& message) {
    std::string bytes;
    for (const NSData& piece : encodedMessage(message)) bytes += piece.bytes();
    return bytes;
}

void checkMessage(std::string_view bytes) {
    const auto message = decodedMessage(NSData(std::string(bytes)));
    if (!message) return;
    require(messageSize(bytes) == bytes.size());
    const std::string written = encoded(*message);
    const auto back = decodedMessage(NSData(written));
    require(back && encoded(*back) == written);
    require(message->elements().size() + message->members().size() == message->size());
    require((*message)["id"][0]["x"].string("none") == "none" || message->isObject());
}

class Conversation {
public:
    explicit Conversation(FileDescriptor socket) : pipe_(std::move(socket), loop_, limits()) {
        client_.setClosedHandler([this](const std::string&) { require(++closings_ == 1); });
        for (const char* session : {"", "s"}) {
            for (const char* event : {"Page.frameNavigated", "Target.detachedFromTarget", ""}) {
                subscriptions_.push_back(client_.listen(session, event, [this](const Json& params) {
                    require(closings_ == 0);
                    // A handler may send, and end its own subscription.
                    if (params.size() > 2) subscriptions_.clear();
                    send("s");
                }));
            }
        }
        send("");
        send("s");
    }

    void run() {
        const auto answered = [this] { return closings_ == 1 && answers_ == commands_; };
        require(loop_.runUntil(answered, std::chrono::steady_clock::now() + std::chrono::seconds(5)));
        require(client_.isClosed());
    }

private:
    static DevToolsPipe::Limits limits() { return {.outgoing = 256, .incoming = longestMessage}; }

    void send(const std::string& session) {
        ++commands_;
        client_.send(session, "Page.enable", {}, [this, isAnswered = false](const DevToolsReply&) mutable {
            require(!std::exchange(isAnswered, true));
            ++answers_;
        });
    }

    NSRunLoop loop_;
    DevToolsPipe pipe_;
    DevToolsClient client_{pipe_, loop_};
    std::vector<DevToolsClient::Subscription> subscriptions_;
    int closings_ = 0;
    int commands_ = 0;
    int answers_ = 0;
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view text = FuzzInput(bytes, size).rest();
    checkMessage(text);
    int ends[2];
    require(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) == 0);
    FileDescriptor engine(ends[0]);
    Conversation conversation{FileDescriptor(ends[1])};
    require(::send(engine.get(), text.data(), text.size(), MSG_NOSIGNAL) ==
            static_cast<ssize_t>(text.size()));
    ::shutdown(engine.get(), SHUT_WR);
    conversation.run();
    return 0;
}
