#include "Platform/Foundation/MDItem.h"

#include "Tests/Platform/Foundation/Printing.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace qrv {

TEST(KeywordsOfFile, NilWithoutTheAttribute) {
    const TemporaryFolder folder;
    EXPECT_TRUE(keywordsOfFile(folder.write("file", "x")).isNil());
    EXPECT_TRUE(keywordsOfFile(folder.pathOf("missing")).isNil());
    EXPECT_TRUE(keywordsOfFile(NSString()).isNil());
    EXPECT_TRUE(keywordsOfFile(u"/proc/self/status").isNil());
}

} // namespace qrv
