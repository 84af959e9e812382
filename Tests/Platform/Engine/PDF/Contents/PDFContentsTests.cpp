#include "Platform/Engine/PDF/Contents/PDFContents.h"

#include <gmock/gmock.h>

namespace qrv::engine {
namespace {

using ::testing::ElementsAre;
using ::testing::Eq;
using ::testing::Optional;

Operator with(const std::vector<std::string>& operands) {
    Operator operation;
    operation.operands = operands;
    return operation;
}

TEST(PDFContentsTest, OperandsAreNumbersIfAllAreAndAsManyAsAskedFor) {
    EXPECT_THAT((with({"1", "-.5"}).numbers<2>()), Optional(ElementsAre(1, -0.5)));
    EXPECT_THAT((with({"1", "2"}).numbers<1>()), Eq(std::nullopt));
    EXPECT_THAT((with({"1", "2"}).numbers<4>()), Eq(std::nullopt));
    EXPECT_THAT((with({"1", "(2)"}).numbers<2>()), Eq(std::nullopt));
    EXPECT_THAT((with({"/1", "2"}).numbers<2>()), Eq(std::nullopt));
}

TEST(PDFContentsTest, TheLastOperandMayBeAName) {
    EXPECT_EQ(with({"1", "/P1"}).lastName(), "/P1");
    EXPECT_EQ(with({"/P1", "1"}).lastName(), "");
    EXPECT_EQ(with({"(/P1)"}).lastName(), "");
    EXPECT_EQ(with({}).lastName(), "");
}

} // namespace
} // namespace qrv::engine
