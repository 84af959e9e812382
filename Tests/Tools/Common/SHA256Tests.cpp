#include "Source/Tools/Common/SHA256.h"

#include "Tests/Support/TemporaryFolder.h"

#include <cerrno>
#include <gtest/gtest.h>

namespace qrv {
namespace {

TEST(SHA256, IsThatOfTheStandard) {
    EXPECT_EQ(sha256(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ(sha256("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(sha256(std::string(1'000'000, 'a')),
              "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

TEST(SHA256, OfAFileIsThatOfItsBytes) {
    const TemporaryFolder folder;
    const std::string bytes(3'000'001, 'x');
    EXPECT_EQ(sha256OfFile(folder.write("large", bytes).fileSystemRepresentation()), sha256(bytes));
    EXPECT_EQ(sha256OfFile(folder.write("empty", "").fileSystemRepresentation()), sha256(""));
}

TEST(SHA256, OfNoFileIsNothing) {
    const TemporaryFolder folder;
    EXPECT_EQ(sha256OfFile((folder.path() / "missing").string()), std::nullopt);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(sha256OfFile(folder.path().string()), std::nullopt);
    EXPECT_EQ(errno, EISDIR);
    EXPECT_EQ(sha256OfFile("/dev/zero"), std::nullopt);
    EXPECT_EQ(errno, ENOTSUP);
}

} // namespace
} // namespace qrv
