#include "Source/Tools/Common/SHA256.h"

#include "Platform/Foundation/FileDescriptor.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <nettle/sha2.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace qrv {

namespace {

class Hash {
public:
    Hash() { sha256_init(&context_); }

    void add(std::string_view bytes) {
        sha256_update(&context_, bytes.size(), reinterpret_cast<const std::uint8_t*>(bytes.data()));
    }

    std::string text() {
        std::array<std::uint8_t, SHA256_DIGEST_SIZE> digest{};
        sha256_digest(&context_, digest.size(), digest.data());
        std::string text;
        for (const std::uint8_t byte : digest) {
            constexpr std::string_view digits = "0123456789abcdef";
            text += digits[byte >> 4];
            text += digits[byte & 15];
        }
        return text;
    }

private:
    sha256_ctx context_{};
};

} // namespace

std::string sha256(std::string_view bytes) {
    Hash hash;
    hash.add(bytes);
    return hash.text();
}

std::optional<std::string> sha256OfFile(const std::string& path) {
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));

    struct stat status {};

    if (!file || ::fstat(file.get(), &status) != 0) return std::nullopt;
    if (!S_ISREG(status.st_mode)) {
        errno = S_ISDIR(status.st_mode) ? EISDIR : ENOTSUP;
        return std::nullopt;
    }
    Hash hash;
    std::string part(1 << 20, '\0');
    for (;;) {
        const ssize_t size = ::read(file.get(), part.data(), part.size());
        if (size < 0 && errno == EINTR) continue;
        if (size < 0) return std::nullopt;
        if (size == 0) return hash.text();
        hash.add(std::string_view(part).substr(0, static_cast<std::size_t>(size)));
    }
}

} // namespace qrv
