#include "Platform/Foundation/URLPieces.h"

#include <gtest/gtest.h>
#include <string>

namespace qrv {
namespace {

/// All pieces, "-" for an authority that is not there.
std::string piecesOf(std::string_view url) {
    const URLPieces pieces = splitURL(url);
    EXPECT_TRUE(pieces.hasAuthority || pieces.authority.empty());
    std::string text(pieces.scheme);
    text.append(" | ").append(pieces.hasAuthority ? pieces.authority : "-");
    return text.append(" | ").append(pieces.path).append(" | ").append(pieces.tail);
}

TEST(URLPieces, AreThoseOfTheGenericSyntax) {
    EXPECT_EQ(piecesOf("http://u:p@host:80/a/b?q#f"), "http | u:p@host:80 | /a/b | ?q#f");
    EXPECT_EQ(piecesOf("HTTP://Host"), "HTTP | Host |  | ");
    EXPECT_EQ(piecesOf("file:///a"), "file |  | /a | ");
    EXPECT_EQ(piecesOf("file:/a"), "file | - | /a | ");
    EXPECT_EQ(piecesOf("about:blank"), "about | - | blank | ");
    EXPECT_EQ(piecesOf("a+b-c.9:x"), "a+b-c.9 | - | x | ");
    EXPECT_EQ(piecesOf("http:"), "http | - |  | ");
}

TEST(URLPieces, MayBeMissing) {
    EXPECT_EQ(piecesOf(""), " | - |  | ");
    EXPECT_EQ(piecesOf("//host/a"), " | host | /a | ");
    EXPECT_EQ(piecesOf("/a/b"), " | - | /a/b | ");
    EXPECT_EQ(piecesOf("a/b:c"), " | - | a/b:c | ");
    EXPECT_EQ(piecesOf("?q"), " | - |  | ?q");
    EXPECT_EQ(piecesOf("#f?g"), " | - |  | #f?g");
}

TEST(URLPieces, WhatIsNoSchemeBelongsToThePath) {
    for (const char* url : {":x", "1a:/x", "+a:x", "a b:x", "\xC3\xA9:x", "http", "%68ttp:x"})
        EXPECT_EQ(piecesOf(url), " | - | " + std::string(url) + " | ");
    EXPECT_EQ(piecesOf("a?b:c"), " | - | a | ?b:c");
}

TEST(URLPieces, AnAuthorityEndsAtASlashOrATail) {
    EXPECT_EQ(piecesOf("http://h?a/b"), "http | h |  | ?a/b");
    EXPECT_EQ(piecesOf("http://h#a/b"), "http | h |  | #a/b");
    EXPECT_EQ(piecesOf("http:////h"), "http |  | //h | ");
}

TEST(URLPieces, AFragmentIsTakenOff) {
    EXPECT_EQ(withoutFragment("http://h/a?b#c#d"), "http://h/a?b");
    EXPECT_EQ(withoutFragment("http://h/"), "http://h/");
    EXPECT_EQ(withoutFragment("#"), "");
}

} // namespace
} // namespace qrv
