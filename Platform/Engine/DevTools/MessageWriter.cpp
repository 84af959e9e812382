#include "Platform/Engine/DevTools/MessageWriter.h"

#include "Platform/Engine/DevTools/MessageCodes.h"

#include <bit>
#include <limits>

namespace qrv::engine {

namespace {

/// Data below this size are copied: a piece of its own costs more.
constexpr std::size_t leastPiece = std::size_t{16} << 10;

class Writer {
public:
    void write(const Json& value) {
        if (value.isObject() || value.isArray()) {
            writeEnvelope(value);
        } else if (value.isString()) {
            writeStart(MajorType::text, value.stringView().size());
            text_ += value.stringView();
        } else if (value.isData()) {
            writeData(value.data());
        } else if (value.isBool()) {
            text_ += value.boolean() ? simpleTrue : simpleFalse;
        } else if (value.isNumber()) {
            writeNumber(value);
        } else {
            text_ += simpleNull;
        }
    }

    std::vector<NSData> pieces() && {
        if (isTooLong_) return {};
        const NSData text(std::move(text_));
        std::vector<NSData> pieces;
        std::size_t begin = 0;
        for (const auto& [at, data] : insertions_) {
            pieces.push_back(text.subdataWithRange({begin, at - begin}));
            pieces.push_back(data);
            begin = at;
        }
        pieces.push_back(text.subdataWithRange({begin, text.length() - begin}));
        return pieces;
    }

private:
    void writeEnvelope(const Json& value) {
        text_ += envelopeStart;
        const std::size_t length = text_.size();
        text_.append(sizeof(std::uint32_t), '\0');
        const std::size_t before = size();
        text_ += indefinite(value.isObject() ? MajorType::map : MajorType::array);
        for (const auto& [key, member] : value.members()) {
            write(key);
            write(member);
        }
        for (const Json& element : value.elements()) write(element);
        text_ += stop;
        const std::size_t inside = size() - before;
        isTooLong_ = isTooLong_ || inside > std::numeric_limits<std::uint32_t>::max();
        for (std::size_t byte = 0; byte < sizeof(std::uint32_t); ++byte)
            text_[length + byte] = static_cast<char>(inside >> (24 - 8 * byte));
    }

    void writeData(const NSData& data) {
        text_ += tag(base64Tag);
        writeStart(MajorType::bytes, data.length());
        if (data.length() < leastPiece) {
            text_ += data.bytes();
            return;
        }
        insertions_.push_back({text_.size(), data});
        inserted_ += data.length();
    }

    /// The engine knows integers of 32 bits.
    void writeNumber(const Json& value) {
        const std::int64_t integer = value.integer();
        if (value.isInteger() && integer == static_cast<std::int32_t>(integer)) {
            if (integer >= 0)
                writeStart(MajorType::positive, static_cast<std::uint64_t>(integer));
            else
                writeStart(MajorType::negative, static_cast<std::uint64_t>(-1 - integer));
            return;
        }
        text_ += doubleStart;
        writeBytes(std::bit_cast<std::uint64_t>(value.number()), sizeof(double));
    }

    void writeStart(MajorType type, std::uint64_t number) {
        if (number < firstLongLength) {
            text_ += initial(type, static_cast<unsigned>(number));
            return;
        }
        unsigned size = 0; // the binary logarithm of the number's size
        while (size < 3 && number >> (8U << size) != 0) ++size;
        text_ += initial(type, firstLongLength + size);
        writeBytes(number, std::size_t{1} << size);
    }

    void writeBytes(std::uint64_t number, std::size_t count) {
        while (count-- > 0) text_ += static_cast<char>(number >> (8 * count));
    }

    std::size_t size() const { return text_.size() + inserted_; }

    struct Insertion {
        std::size_t at; // in text_
        NSData data;
    };

    std::string text_; // all but the insertions
    std::vector<Insertion> insertions_;
    std::size_t inserted_ = 0; // bytes
    bool isTooLong_ = false;
};

} // namespace

std::vector<NSData> encodedMessage(const Json& message) {
    Writer writer;
    writer.write(message);
    return std::move(writer).pieces();
}

} // namespace qrv::engine
