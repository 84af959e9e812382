#include "Platform/Engine/PDF/PDFPageEdits.h"
#include "Tests/Platform/PDFKit/SamplePDF.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace qrv::engine {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class PDFReaderLimitsTest : public testing::Test {
protected:
    /// Writes the edited document as out.pdf, and returns what is to be logged.
    std::string apply(const std::string& annotations, const std::string& destinations = "") {
        std::string notes;
        const NSData edited =
            pdfByApplying({},
                          NSData(makePDF({"<</Type /Catalog /Pages 2 0 R /Dests <<" + destinations + ">>>>",
                                          "<</Type /Pages /Kids [3 0 R] /Count 1>>",
                                          "<</Type /Page /Parent 2 0 R /MediaBox [0 0 100 200] /Annots [" +
                                              annotations + "]>>"})),
                          &notes);
        folder_.write("out.pdf", edited.bytes());
        return notes;
    }

    std::string run(const std::string& command, const std::string& arguments = "") {
        return outputOf(command + " '" + (folder_.path() / "out.pdf").string() + "' " + arguments);
    }

    const TemporaryFolder folder_;
};

std::string linksWithAddresses(int count) {
    std::string links;
    for (int i = 1; i <= count; ++i) {
        links += "<</Type /Annot /Subtype /Link /Rect [1 1 9 9] /A <</S /URI /URI (http://a.example/" +
                 std::to_string(i) + ")>>>> ";
    }
    return links;
}

TEST_F(PDFReaderLimitsTest, AsManyLinksAsReadersTakeStay) {
    EXPECT_EQ(apply(linksWithAddresses(10'000)), "");
    EXPECT_THAT(run("pdfinfo -url"), HasSubstr("http://a.example/10000\n"));
}

TEST_F(PDFReaderLimitsTest, LinksBeyondThatAreLeftOutAndTheLogSaysSo) {
    EXPECT_THAT(apply(linksWithAddresses(10'001)), HasSubstr("has 10001 links"));
    EXPECT_THAT(run("pdfinfo -url"), HasSubstr("http://a.example/10000\n"));
    EXPECT_THAT(run("pdfinfo -url"), Not(HasSubstr("http://a.example/10001\n")));
    EXPECT_THAT(run("pdftotext", "-"), Not(HasSubstr("Error")));
}

TEST_F(PDFReaderLimitsTest, NamesOfDestinationsWithNumberSignsAreReplaced) {
    apply("<</Type /Annot /Subtype /Link /Dest /a#23zz>>",
          "/a#23zz [3 0 R /XYZ 0 1 null] /b [3 0 R /XYZ 0 2 null]");
    EXPECT_THAT(run("qpdf --check", "2>&1"), Not(HasSubstr("WARNING")));
    EXPECT_THAT(run("pdfinfo -dests", "| tr -s ' '"), HasSubstr("1 null ] \"destination-1\""));
    EXPECT_THAT(run("mutool show", "pages/1/Annots"), HasSubstr("/Dest /destination-1\n"));
}

TEST_F(PDFReaderLimitsTest, NamesOfDestinationsThatReadersCutAreShortened) {
    const std::string longest(127, 'x');
    const std::string tooLong = longest + "a";
    const auto leadingTo = [](const std::string& entry) {
        return "<</Type /Annot /Subtype /Link " + entry + ">>";
    };
    apply(leadingTo("/Dest /" + longest) + leadingTo("/Dest /" + tooLong) +
              leadingTo("/A <</S /GoTo /D /" + tooLong + "b>>") + leadingTo("/Dest /destination-1"),
          "/" + longest + " [3 0 R /XYZ 0 1 null] /" + tooLong + " [3 0 R /XYZ 0 2 null] /" + tooLong +
              "b [3 0 R /XYZ 0 3 null] /destination-1 [3 0 R /XYZ 0 4 null]");
    const std::string places = run("pdfinfo -dests", "| tr -s ' '");
    EXPECT_THAT(places, Not(HasSubstr("Error")));
    EXPECT_THAT(places, HasSubstr("1 null ] \"" + longest + "\""));
    EXPECT_THAT(places, HasSubstr("2 null ] \"destination-2\""));
    EXPECT_THAT(places, HasSubstr("3 null ] \"destination-3\""));
    EXPECT_THAT(places, HasSubstr("4 null ] \"destination-1\""));
    const std::string annotations = run("mutool show", "pages/1/Annots");
    EXPECT_THAT(annotations, HasSubstr("/Dest /" + longest + "\n"));
    EXPECT_THAT(annotations, HasSubstr("/Dest /destination-2\n"));
    EXPECT_THAT(annotations, HasSubstr("/D /destination-3\n"));
    EXPECT_THAT(annotations, HasSubstr("/Dest /destination-1\n"));
}

} // namespace
} // namespace qrv::engine
