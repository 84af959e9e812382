#include "Source/Tools/webarchive/Extract/PictureChoice.h"

#include <gtest/gtest.h>

namespace qrv::webarchive {
namespace {

TEST(PictureChoice, KeepsWhatIsReplaced) {
    const auto kept = [](std::string_view choice) {
        return withPictures(choice, [](const std::string& address) {
            return address.starts_with("in") ? std::optional("F-" + address) : std::nullopt;
        });
    };
    EXPECT_EQ(kept("in1 1x, a 2x ,in2,in3   100w"), "F-in1 1x, F-in2,in3 100w");
    EXPECT_EQ(kept(" , in1, in2 "), "F-in1, F-in2");
    EXPECT_EQ(kept("a (x, y), in"), "F-in");
    for (const char* none : {"", ",", "  ", "a", "a 1x, b"}) EXPECT_EQ(kept(none), "") << none;
}

} // namespace
} // namespace qrv::webarchive
