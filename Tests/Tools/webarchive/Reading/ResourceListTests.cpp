#include "Source/Tools/webarchive/Reading/ResourceList.h"

#include "Tests/Platform/WebArchive/TestArchive.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace qrv::webarchive {
namespace {

TEST(ResourceList, HasEveryResourceWithItsFrame) {
    const ResourceList list(makeArchive(
        {.main = {"http://h/"},
         .resources = {{"http://h/a"}, {"http://h/a"}},
         .frames = {{.main = {"http://h/f"}, .frames = {{.main = {""}, .resources = {{"http://h/c"}}}}},
                    {.main = {"http://h/g"}}}}));
    std::vector<std::string> lines;
    for (const ListedResource& listed : list.resources) {
        lines.push_back(list.frames[listed.frame].path + (listed.isMain ? " main " : " sub ") +
                        listed.address());
    }
    EXPECT_THAT(lines, testing::ElementsAre(" main http://h/", " sub http://h/a", " sub http://h/a",
                                            "1 main http://h/f", "1.1 main ", "1.1 sub http://h/c",
                                            "2 main http://h/g"));
}

} // namespace
} // namespace qrv::webarchive
