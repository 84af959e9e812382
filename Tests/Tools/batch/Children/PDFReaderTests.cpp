#include "Source/Tools/batch/Children/PDFReader.h"

#include "Tests/Support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace qrv::batch {
namespace {

using ::testing::HasSubstr;

constexpr char emptyPDF[] = "%PDF-1.4\n1 0 obj\n<</Type/Catalog/Pages 2 0 R>>\nendobj\n2 0 obj\n"
                            "<</Type/Pages/Kids[3 0 R]/Count 1/MediaBox[0 0 9 9]>>\nendobj\n3 0 obj\n"
                            "<</Type/Page/Parent 2 0 R>>\nendobj\ntrailer\n<</Root 1 0 R>>\n";

class PDFReaderTest : public ::testing::Test {
protected:
    /// What a program in foreign hands would find out.
    ChildEnd run(const std::string& script) {
        return runPDFReader("/usr/bin/python3", {"-c", "import os, socket\n" + script}, pdf_, {});
    }

    TemporaryFolder folder_;
    std::string pdf_ = folder_.write("a b.pdf", emptyPDF).fileSystemRepresentation();
};

TEST_F(PDFReaderTest, RunsTheProgramsOfPoppler) {
    const ChildEnd info = runPDFReader("/usr/bin/pdfinfo", {pdf_}, pdf_, {});
    EXPECT_TRUE(info.succeeded()) << info.errors;
    EXPECT_THAT(info.output, HasSubstr("Pages:           1\n"));
    const ChildEnd text = runPDFReader("/usr/bin/pdftotext", {"-enc", "UTF-8", pdf_, "-"}, pdf_, {});
    EXPECT_TRUE(text.succeeded()) << text.errors;
    EXPECT_EQ(text.output, "\f");
    const ChildEnd picture = runPDFReader("/usr/bin/pdftoppm", {"-png", "-singlefile", pdf_}, pdf_, {});
    EXPECT_TRUE(picture.succeeded()) << picture.errors;
    EXPECT_THAT(picture.output, HasSubstr("PNG"));
}

TEST_F(PDFReaderTest, ReadsThePDFAndNoOtherFile) {
    const std::string other = folder_.write("other.pdf", emptyPDF).fileSystemRepresentation();
    EXPECT_EQ(run("print(open('" + pdf_ + "').read(4))").output, "%PDF\n");
    EXPECT_THAT(run("open('" + other + "')").errors, HasSubstr("PermissionError"));
    EXPECT_THAT(run("os.listdir('" + folder_.path().string() + "')").errors, HasSubstr("PermissionError"));
    EXPECT_THAT(run("open('/etc/passwd')").errors, HasSubstr("PermissionError"));
}

TEST_F(PDFReaderTest, ChangesNothing) {
    EXPECT_THAT(run("open('" + pdf_ + "', 'a')").errors, HasSubstr("PermissionError"));
    EXPECT_THAT(run("os.remove('" + pdf_ + "')").errors, HasSubstr("PermissionError"));
    EXPECT_THAT(run("open('" + pdf_ + ".new', 'w')").errors, HasSubstr("PermissionError"));
}

TEST_F(PDFReaderTest, SpeaksToNobody) {
    for (const char* family : {"AF_INET", "AF_UNIX", "AF_NETLINK"})
        EXPECT_THAT(run(std::string("socket.socket(socket.") + family + ", socket.SOCK_DGRAM)").errors,
                    HasSubstr("PermissionError"))
            << family;
    EXPECT_THAT(run("socket.socketpair()").errors, HasSubstr("PermissionError"));
}

} // namespace
} // namespace qrv::batch
