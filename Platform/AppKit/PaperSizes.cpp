#include "Platform/AppKit/PaperSizes.h"

#include "Platform/Foundation/ASCII.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace qrv {

namespace {

struct Paper {
    std::string_view name;
    NSSize size;
};

NSSize millimetres(int width, int height) {
    const auto inWholePoints = [](int length) { return std::round(length * 72 / 25.4); };
    return {inWholePoints(width), inWholePoints(height)};
}

const Paper papers[] = {
    {"a4", millimetres(210, 297)},
    {"letter", {612, 792}},
    {"note", {612, 792}},
    {"legal", {612, 1008}},
    {"executive", {522, 756}},
    {"halfletter", {396, 612}},
    {"halfexecutive", {378, 522}},
    {"11x17", {792, 1224}},
    {"statement", {396, 612}},
    {"folio", {612, 936}},
    {"quarto", {610, 780}},
    {"10x14", {720, 1008}},
    {"ledger", {1224, 792}},
    {"tabloid", {792, 1224}},
    {"a0", millimetres(841, 1189)},
    {"a1", millimetres(594, 841)},
    {"a2", millimetres(420, 594)},
    {"a3", millimetres(297, 420)},
    {"a5", millimetres(148, 210)},
    {"a6", millimetres(105, 148)},
    {"a7", millimetres(74, 105)},
    {"a8", millimetres(52, 74)},
    {"a9", millimetres(37, 52)},
    {"a10", millimetres(26, 37)},
    {"b0", millimetres(1000, 1414)},
    {"b1", millimetres(707, 1000)},
    {"b2", millimetres(500, 707)},
    {"b3", millimetres(353, 500)},
    {"b4", millimetres(250, 353)},
    {"b5", millimetres(176, 250)},
    {"b6", millimetres(125, 176)},
    {"b7", millimetres(88, 125)},
    {"b8", millimetres(62, 88)},
    {"b9", millimetres(44, 62)},
    {"b10", millimetres(31, 44)},
    {"c2", millimetres(458, 648)},
    {"c3", millimetres(324, 458)},
    {"c4", millimetres(229, 324)},
    {"c5", millimetres(162, 229)},
    {"c6", millimetres(114, 162)},
    {"c7", millimetres(81, 114)},
    {"c8", millimetres(57, 81)},
    {"DL", millimetres(110, 220)},
    {"Comm10", {297, 684}},
    {"Monarch", {279, 540}},
    {"archE", {2592, 3456}},
    {"archD", {1728, 2592}},
    {"archC", {1296, 1728}},
    {"archB", {864, 1296}},
    {"archA", {648, 864}},
    {"flsa", {612, 936}},
    {"flse", {612, 936}},
    {"csheet", {1224, 1584}},
    {"dsheet", {1584, 2448}},
    {"esheet", {2448, 3168}},
};

} // namespace

std::optional<NSSize> paperSizeNamed(std::string_view name) {
    const std::string sought = lowered(name);
    const auto* const found = std::find_if(std::begin(papers), std::end(papers),
                                           [&](const Paper& paper) { return lowered(paper.name) == sought; });
    if (found == std::end(papers)) return std::nullopt;
    return found->size;
}

} // namespace qrv
