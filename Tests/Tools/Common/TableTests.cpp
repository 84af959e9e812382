#include "Source/Tools/Common/Table.h"

#include <gtest/gtest.h>
#include <sstream>

namespace qrv {
namespace {

std::string text(const Table& table) {
    std::ostringstream stream;
    table.write(stream);
    return stream.str();
}

TEST(Table, ColumnsAreAsWideAsTheirWidestCell) {
    Table table({{"N", 8, true}, {"NAME", 20}, {"REST", 20}});
    table.add({"5", "a", "x"});
    table.add({"123", "longer", ""});
    EXPECT_EQ(text(table), "  N  NAME    REST\n"
                           "  5  a       x\n"
                           "123  longer\n");
}

TEST(Table, GoesByColumnsOfTheTerminal) {
    Table table({{"A", 20}, {"B", 5}});
    table.add({"日本", "|"});
    table.add({"größe", "|"});
    table.add({"a\u0301", "|"});
    EXPECT_EQ(text(table), "A      B\n"
                           "日本   |\n"
                           "größe  |\n"
                           "a\u0301      |\n");
}

TEST(Table, CellsAreHarmlessAndCut) {
    Table table({{"A", 4}, {"B", 5}});
    table.add({"\x1b[2J\n", "|"});
    table.add({"日本語", "|"});
    EXPECT_EQ(text(table), "A     B\n"
                           "\uFFFD[2…  |\n"
                           "日…   |\n");
}

} // namespace
} // namespace qrv
