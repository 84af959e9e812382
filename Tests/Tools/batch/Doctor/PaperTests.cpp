#include "Source/Tools/batch/Doctor/Paper.h"

#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/Variable.h"

#include <gtest/gtest.h>

namespace qrv::batch {
namespace {

Finding paper() {
    return examinePaper().at(0);
}

TEST(Paper, IsNamedWithItsSizeAndItsSource) {
    const Variable name("PAPERSIZE", "A5");
    EXPECT_EQ(paper().mark, Mark::ok);
    EXPECT_EQ(paper().text, "A5, 420 x 595 points, named by PAPERSIZE");
}

TEST(Paper, OfAFileIsNamedByThat) {
    const TemporaryFolder folder;
    const std::string path = folder.write("papersize", "a3").utf8();
    const Variable none("PAPERSIZE", nullptr);
    const Variable file("PAPERCONF", path.c_str());
    EXPECT_EQ(paper().text, "a3, 842 x 1191 points, named by " + path);
}

TEST(Paper, ThatNobodyKnowsIsNoted) {
    const Variable name("PAPERSIZE", "papyrus");
    EXPECT_EQ(paper().mark, Mark::note);
    EXPECT_EQ(paper().text,
              "PAPERSIZE names a paper that is unknown, \"papyrus\": US Letter is used, 612 x 792 points");
}

TEST(Paper, ThatNobodyHasChosenIsNoted) {
    const Variable none("PAPERSIZE", nullptr);
    const Variable file("PAPERCONF", "/nonexistent/papersize");
    const Variable locale("LC_ALL", "C");
    EXPECT_EQ(paper().mark, Mark::note);
    EXPECT_EQ(paper().text, "letter, 612 x 792 points, since nothing names another");
}

} // namespace
} // namespace qrv::batch
