#include "Platform/Foundation/LiteralSearch.h"

#include <gtest/gtest.h>
#include <random>
#include <string>

namespace qrv {

TEST(LiteralSearch, AgreesWithThePlainSearch) {
    std::mt19937 random(7);
    for (int round = 0; round < 3000; ++round) {
        const auto some = [&](std::size_t length) {
            std::u16string text(length, u'a');
            for (char16_t& c : text) c = static_cast<char16_t>(u'a' + (random() % 8 == 0));
            return text;
        };
        const std::u16string text = some(random() % 200);
        const std::u16string needle =
            random() % 2 && text.size() > 40 ? text.substr(random() % 20, 20) : some(random() % 40);
        const std::size_t from = random() % 30;
        ASSERT_EQ(LiteralSearch(needle).find(text, from), text.find(needle, from));
    }
}

TEST(LiteralSearch, RepetitiveTextsOfTenMillionUnitsAreSearchedInLinearTime) {
    const std::u16string text(10'000'000, u'a');
    const std::u16string needle = std::u16string(5'000'000, u'a') + u'b';
    // The plain search would look at 25 million million pairs.
    EXPECT_EQ(LiteralSearch(needle).find(text), std::u16string_view::npos);
}

} // namespace qrv
