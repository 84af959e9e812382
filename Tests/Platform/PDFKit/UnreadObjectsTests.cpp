#include "Platform/PDFKit/UnreadObjects.h"

#include "Platform/PDFKit/PDFFile.h"
#include "Tests/Platform/PDFKit/SamplePDF.h"

#include <gmock/gmock.h>
#include <qpdf/QPDF.hh>

namespace qrv {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

/// A file with these objects from the fourth on, of which those that begin with "<</Mine" are left unread.
class Left {
public:
    explicit Left(const std::vector<std::string>& objects, const std::set<int>& others = {})
        : Left(NSData(makeOnePage(objects)), others) {}

    explicit Left(const NSData& bytes, const std::set<int>& others = {})
        : document(openPDF(bytes)), unread(*document, bytes, "<</Mine", others) {}

    const std::shared_ptr<QPDF> document;
    UnreadObjects unread;
};

std::vector<std::pair<int, int>> referencesIn(std::string_view text) {
    std::vector<std::pair<int, int>> found;
    forEachReference(text, [&](int number, int generation) { found.emplace_back(number, generation); });
    return found;
}

TEST(UnreadObjects, HaveTheirTextAndAreNumbersInTheDocument) {
    const Left left({"<</Mine  1>>", "<</Other 1>>", "(last)"});
    EXPECT_EQ(left.unread.text(4), "<</Mine  1>>");
    EXPECT_TRUE(left.document->getObject(4, 0).isInteger());
    EXPECT_EQ(left.unread.text(5), "");
    EXPECT_TRUE(left.document->getObject(5, 0).isDictionary());
    EXPECT_EQ(left.unread.text(99), "");
}

TEST(UnreadObjects, AreNotThoseThatAreAskedFor) {
    const Left left({"<</Mine 1>>", "<</Mine 2>>", "(last)"}, {5});
    EXPECT_EQ(left.unread.text(4), "<</Mine 1>>");
    EXPECT_EQ(left.unread.text(5), "");
    EXPECT_TRUE(left.document->getObject(5, 0).isDictionary());
}

TEST(UnreadObjects, AreOnlyThosePlainlyWritten) {
    const Left left({makeStream("contents", "/Mine 1"), "<</Mine (endobj)>>", "<</Mine 1>> % endstream",
                     "<</Mine 1>>", "(last)"});
    for (const int number : {4, 5, 6}) EXPECT_EQ(left.unread.text(number), "") << number;
    EXPECT_EQ(left.unread.text(7), "<</Mine 1>>");
}

TEST(UnreadObjects, AreNotThoseOfObjectStreams) {
    const TemporaryFolder folder;
    const std::string plain = folder.write("plain.pdf", makeOnePage({"<</Mine 1>>", "(last)"})).utf8();
    outputOf("qpdf --object-streams=generate '" + plain + "' '" + folder.pathOf("packed.pdf").utf8() + "'");
    const Left left(NSData(folder.read("packed.pdf")));
    ASSERT_GT(left.document->getObjectCount(), 4u);
    for (int number = 1; number < 20; ++number) EXPECT_EQ(left.unread.text(number), "");
}

TEST(UnreadObjects, ANumberThatIsWrongInTheTableIsRead) {
    std::string file = makeOnePage({"<</Mine 1>>", "<</Mine 2>>", "(last)"});
    const std::size_t rows = file.find("0000000000 65535 f ");
    std::swap_ranges(file.begin() + static_cast<std::ptrdiff_t>(rows + 80),
                     file.begin() + static_cast<std::ptrdiff_t>(rows + 90),
                     file.begin() + static_cast<std::ptrdiff_t>(rows + 100));
    const Left left((NSData(file)));
    EXPECT_EQ(left.unread.text(4), "");
    EXPECT_EQ(left.unread.text(5), "");
}

TEST(UnreadObjects, AreFoundByWhatTheyHold) {
    const Left left({"<</Mine (b)>>", "<</Mine (a)>>", "<</Mine (ab)>>", "<</Other (a)>>"});
    EXPECT_THAT(left.unread.numbersWith("a"), ElementsAre(5, 6));
    EXPECT_THAT(left.unread.numbersWith("c"), IsEmpty());
}

TEST(UnreadObjects, CanBeWrittenInAnotherWay) {
    Left left({"<</Mine 1>>", "<</Mine 2>>", "<</Last>>"});
    left.unread.replaceText(4, "<</Mine 3>>");
    left.unread.replaceText(99, "<</Mine 4>>");
    EXPECT_EQ(left.unread.text(4), "<</Mine 3>>");
    EXPECT_EQ(left.unread.text(5), "<</Mine 2>>");
    EXPECT_EQ(left.unread.text(99), "");
    EXPECT_THAT(left.unread.numbersWith("3"), ElementsAre(4));
    EXPECT_THAT(left.unread.numbersWith("1"), IsEmpty());
}

TEST(References, AreFoundInAnyForm) {
    EXPECT_THAT(referencesIn("<</A 12 0 R/B[3 0 R 4  1\nR]/C 5 0 RG>>"),
                ElementsAre(Pair(12, 0), Pair(3, 0), Pair(4, 1), Pair(5, 0)));
}

TEST(References, AreNotWhatHasNoNumbers) {
    EXPECT_THAT(referencesIn("/R R 0 R (x R) 99999999999 0 R"), IsEmpty());
    EXPECT_THAT(referencesIn(""), IsEmpty());
}

} // namespace
} // namespace qrv
