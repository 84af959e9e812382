#include "Platform/MHTML/MIMEMessage.h"

#include <gmock/gmock.h>

namespace qrv {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

std::string message(const std::string& parameters, const std::string& parts) {
    return "MIME-Version: 1.0\r\nContent-Type: multipart/related; boundary=\"b\"" + parameters + "\r\n\r\n" +
           parts + "--b--\r\n";
}

std::string part(const std::string& headers, const std::string& body) {
    return "--b\r\n" + headers + "\r\n\r\n" + body + "\r\n";
}

TEST(MIMEMessage, ReadsPartsWithTheirHeaders) {
    const auto read = readMIMEMessage(message(
        "", part("Content-Type: Text/HTML; charset=\"Shift_JIS\"\r\nContent-ID: <a@b>\r\n"
                 "Content-Location: http://h/a%20b?c=d\r\nContent-Transfer-Encoding: quoted-printable",
                 "a=3Db=\r\nc=00=FF") +
                part("Content-Type: image/png\r\nContent-Transfer-Encoding: base64", "AAEC\r\n/w==") +
                part("Content-Type: text/css\r\nContent-Transfer-Encoding: 8bit", "a{\xC3\xA4}")));
    ASSERT_TRUE(read);
    ASSERT_EQ(read->parts.size(), 3u);
    EXPECT_EQ(read->root, 0u);
    EXPECT_EQ(read->parts[0].type, "text/html");
    EXPECT_EQ(read->parts[0].charset, "Shift_JIS");
    EXPECT_EQ(read->parts[0].identifier, "a@b");
    EXPECT_EQ(read->parts[0].location, "http://h/a%20b?c=d");
    EXPECT_EQ(read->parts[0].bytes, std::string("a=bc\0\xFF", 6));
    EXPECT_EQ(read->parts[1].type, "image/png");
    EXPECT_EQ(read->parts[1].bytes, std::string("\0\1\2\xFF", 4));
    EXPECT_EQ(read->parts[1].charset + read->parts[1].identifier + read->parts[1].location, "");
    EXPECT_EQ(read->parts[2].bytes, "a{\xC3\xA4}");
}

TEST(MIMEMessage, LocationsAreWholeAfterALineBreak) {
    const auto read = readMIMEMessage(message(
        "", part("Content-Type: text/html\r\nContent-Location:\r\n http://h/long/\r\n\taddress", "x")));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->parts[0].location, "http://h/long/address");
}

TEST(MIMEMessage, TheRootIsTheOneToStartWithOrTheFirstPage) {
    const std::string parts = part("Content-Type: text/css", "c") + part("Content-Type: text/html", "first") +
                              part("Content-Type: text/html\r\nContent-ID: <s@x>", "second");
    EXPECT_EQ(readMIMEMessage(message("", parts))->root, 1u);
    EXPECT_EQ(readMIMEMessage(message("; start=\"<s@x>\"", parts))->root, 2u);
    EXPECT_EQ(readMIMEMessage(message("; start=\"<gone@x>\"", parts))->root, 1u);
}

TEST(MIMEMessage, PartsInPartsAreInOrder) {
    const std::string inner =
        "Content-Type: multipart/alternative; boundary=\"i\"\r\n\r\n--i\r\nContent-Type: "
        "text/plain\r\n\r\none\r\n--i\r\nContent-Type: text/html\r\n\r\ntwo\r\n--i--\r\n";
    const auto read =
        readMIMEMessage(message("", "--b\r\n" + inner + part("Content-Type: image/gif", "three")));
    ASSERT_TRUE(read);
    ASSERT_EQ(read->parts.size(), 3u);
    EXPECT_EQ(read->parts[read->root].bytes, "two");
    EXPECT_EQ(read->parts[2].bytes, "three");
}

TEST(MIMEMessage, IsNothingWithoutAPage) {
    for (const std::string& text :
         {std::string(), std::string("<html></html>"), std::string("Content-Type: text/plain\r\n\r\nx"),
          message("", ""), message("", part("Content-Type: image/png", "x")), std::string(1000, '\0'),
          std::string("Content-Type: multipart/related; boundary=\"b\"\r\n\r\n")}) {
        EXPECT_FALSE(readMIMEMessage(text)) << text;
    }
}

TEST(MIMEMessage, IsReadAsItWasWritten) {
    std::string everything;
    for (int byte = 0; byte < 256; ++byte) everything += static_cast<char>(byte);
    MIMEMessage written;
    written.parts = {{"http://h/style.css", "", "text/css", "UTF-8", "\r\nlines\n\rof\r\n\n"},
                     {"http://h/" + std::string(3000, 'a'), "root@x", "text/html", "", everything},
                     {"", "", "", "", ""},
                     {"", "frame@x", "image/png", "", std::string(100'000, '=')}};
    written.root = 1;
    const std::string text = writeMIMEMessage(written);
    const auto read = readMIMEMessage(text);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->root, 0u);
    ASSERT_EQ(read->parts.size(), 4u);
    const std::size_t order[] = {1, 0, 2, 3};
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(read->parts[i].location, written.parts[order[i]].location);
        EXPECT_EQ(read->parts[i].identifier, written.parts[order[i]].identifier);
        EXPECT_EQ(read->parts[i].charset, written.parts[order[i]].charset);
        EXPECT_EQ(read->parts[i].bytes, written.parts[order[i]].bytes);
    }
    EXPECT_EQ(read->parts[3].type, "image/png");
    EXPECT_EQ(writeMIMEMessage(written), text);
}

TEST(MIMEMessage, LinesEndInBothCharacters) {
    MIMEMessage written;
    written.parts = {{"http://h/", "", "text/html", "UTF-8", std::string(500, 'x')}};
    const std::string text = writeMIMEMessage(written);
    for (std::size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + 1))
        ASSERT_EQ(text[at - 1], '\r') << text;
}

TEST(MIMEMessage, NothingEscapesFromAHeader) {
    MIMEMessage written;
    written.parts = {
        {"http://h/\r\nX-Own: 1", "a>\r\nX-Own: 2", "text/html\r\n\r\nX-Own: 3", "UTF\"-8\r\nX-Own: 4", "x"}};
    EXPECT_THAT(writeMIMEMessage(written), Not(HasSubstr("\nX-Own")));
}

} // namespace
} // namespace qrv
