#include "Platform/Engine/DevTools/MessageReader.h"

#include "Platform/Engine/DevTools/MessageCodes.h"
#include "Platform/Foundation/Unicode.h"

#include <bit>
#include <limits>

namespace qrv::engine {

namespace {

constexpr int maximumDepth = 512;

/// Thrown at what is no message, and caught in decodedMessage.
struct Malformed {};

class Reader {
public:
    explicit Reader(const NSData& message) : message_(message), rest_(message.bytes()) {}

    Json readMessage() {
        Json value = readEnvelope();
        if (!rest_.empty()) throw Malformed();
        return value;
    }

private:
    Json read() {
        const char start = peek();
        const MajorType type = majorType(start);
        switch (type) {
        case MajorType::positive:
        case MajorType::negative:
            return readInteger(type);
        case MajorType::text:
            return std::string_view(take(readNumber()));
        case MajorType::bytes:
            return readUTF16();
        case MajorType::tag:
            return start == tag(base64Tag) ? readData() : readEnvelope();
        case MajorType::other:
            return readOther();
        default:
            throw Malformed(); // a list or map outside of an envelope
        }
    }

    Json readEnvelope() {
        if (++depth_ > maximumDepth || take(envelopeStart.size()) != envelopeStart) throw Malformed();
        const auto length = static_cast<std::size_t>(readBytes(sizeof(std::uint32_t)));
        if (length > rest_.size()) throw Malformed();
        const std::size_t after = rest_.size() - length;
        Json value = readContainer();
        if (rest_.size() != after) throw Malformed();
        --depth_;
        return value;
    }

    Json readContainer() {
        const char start = take(1).front();
        if (start == indefinite(MajorType::array)) {
            std::vector<Json> elements;
            while (!takeStop()) elements.push_back(read());
            return Json::array(std::move(elements));
        }
        if (start != indefinite(MajorType::map)) throw Malformed();
        std::vector<Json::Member> members;
        while (!takeStop()) {
            const Json key = read();
            if (!key.isString()) throw Malformed();
            members.emplace_back(key.string(), read());
        }
        return Json::object(std::move(members));
    }

    Json readInteger(MajorType type) {
        const std::uint64_t number = readNumber();
        if (number > std::numeric_limits<std::int64_t>::max()) throw Malformed();
        const auto integer = static_cast<std::int64_t>(number);
        return type == MajorType::negative ? -1 - integer : integer;
    }

    /// Bytes without a tag are text, with the lower byte of each unit first.
    Json readUTF16() {
        const std::string_view bytes = take(readNumber());
        if (bytes.size() % 2 != 0) throw Malformed();
        std::u16string text(bytes.size() / 2, u'\0');
        for (std::size_t at = 0; at < text.size(); ++at)
            text[at] = static_cast<char16_t>(static_cast<unsigned char>(bytes[2 * at]) |
                                             static_cast<unsigned char>(bytes[2 * at + 1]) << 8);
        return unicode::toUTF8Lossy(text);
    }

    Json readData() {
        take(1);
        if (majorType(peek()) != MajorType::bytes) throw Malformed();
        const std::string_view bytes = take(readNumber());
        return message_.subdataWithRange(
            {static_cast<std::size_t>(bytes.data() - message_.bytes().data()), bytes.size()});
    }

    Json readOther() {
        switch (take(1).front()) {
        case simpleFalse:
            return false;
        case simpleTrue:
            return true;
        case simpleNull:
            return {};
        case doubleStart:
            return std::bit_cast<double>(readBytes(sizeof(double)));
        default:
            throw Malformed();
        }
    }

    /// The number that belongs to a type.
    std::uint64_t readNumber() {
        const unsigned more = static_cast<unsigned char>(take(1).front()) & noLength;
        if (more < firstLongLength) return more;
        if (more > firstLongLength + 3) throw Malformed();
        return readBytes(std::size_t{1} << (more - firstLongLength));
    }

    std::uint64_t readBytes(std::size_t count) {
        std::uint64_t number = 0;
        for (const char byte : take(count)) number = number << 8 | static_cast<unsigned char>(byte);
        return number;
    }

    bool takeStop() {
        if (peek() != stop) return false;
        take(1);
        return true;
    }

    char peek() const {
        if (rest_.empty()) throw Malformed();
        return rest_.front();
    }

    std::string_view take(std::uint64_t count) {
        if (count > rest_.size()) throw Malformed();
        const std::string_view taken = rest_.substr(0, count);
        rest_.remove_prefix(count);
        return taken;
    }

    const NSData& message_;
    std::string_view rest_;
    int depth_ = 0;
};

} // namespace

std::optional<std::size_t> messageSize(std::string_view start) {
    if (start.size() < messageHead || !start.starts_with(envelopeStart)) return std::nullopt;
    std::size_t length = 0;
    for (const char byte : start.substr(envelopeStart.size(), messageHead - envelopeStart.size()))
        length = length << 8 | static_cast<unsigned char>(byte);
    return messageHead + length;
}

std::optional<Json> decodedMessage(const NSData& message) {
    try {
        return Reader(message).readMessage();
    } catch (const Malformed&) {
        return std::nullopt;
    }
}

} // namespace qrv::engine
