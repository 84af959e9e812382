#include "Source/Tools/batch/Batch.h"

#include "Tests/Support/TemporaryFolder.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace qrv::batch {
namespace {

/// A run may end before its time, such as when there can be no more threads.
TEST(Batch, StopsWhenItIsDestroyed) {
    const TemporaryFolder folder;
    const std::string tool = folder.write("tool", "#!/bin/sh\nexec sleep 600\n").fileSystemRepresentation();
    std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
    const std::vector<Item> items{{folder.write("a", "").fileSystemRepresentation(), "a.pdf"}};
    ConversionOptions conversion;
    conversion.tool = tool;
    conversion.output = (folder.path() / "out").string();
    const History history(conversion.output, {});
    const Resumption resumption(history, conversion, Repeats::nothing);
    ResultsFile results(conversion.output, {});
    const auto progress = makeProgress({}, true);
    {
        Batch batch(items, 1, conversion, resumption, results, *progress);
        batch.start();
    }
    EXPECT_EQ(folder.read("out/web2pdf-batch.jsonl"), "");
}

} // namespace
} // namespace qrv::batch
