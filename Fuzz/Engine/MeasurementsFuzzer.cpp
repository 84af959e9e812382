// Any value as what a page says of its measurements: the plan's numbers are ones that the engine takes, and
// nothing in its style sheet is more than a value. The first line is the paper's width, height and margin.

#include "Fuzz/FuzzInput.h"
#include "Platform/Engine/DevTools/Json.h"
#include "Platform/Engine/DevTools/MessageReader.h"
#include "Platform/Engine/Print/PrintLayout.h"

#include <cmath>
#include <sstream>

using namespace qrv;
using namespace qrv::engine;
using namespace qrv::fuzz;

namespace {

bool isBetween(double value, double low, double high) {
    return value >= low && value <= high; // false for no number
}

/// Rules, and in them declarations that are all important.
void checkSheet(const std::string& sheet) {
    require(sheet.find_first_of("\"'\\<") == std::string::npos);
    require(sheet.find("/*") == std::string::npos);
    int blocks = 0;
    int parentheses = 0;
    for (std::size_t i = 0; i < sheet.size(); ++i) {
        const char c = sheet[i];
        require(c >= ' ' && c < 0x7F);
        blocks += (c == '{') - (c == '}');
        parentheses += (c == '(') - (c == ')');
        require(parentheses >= 0 && (parentheses == 0 || (c != '{' && c != '}' && c != ';')));
        require(c != ';' || std::string_view(sheet).substr(0, i).ends_with("!important"));
        require(blocks >= 0 && (blocks > 0 || c != ';'));
    }
    require(blocks == 0 && parentheses == 0);
}

void checkPlan(const PrintPlan& plan) {
    constexpr double longest = 1e8;
    checkSheet(plan.styleSheet);
    require(isBetween(plan.scale, 0.1, 2));
    require(isBetween(plan.shrink, 1e-3, longest));
    for (const NSSize& size : {plan.paper, plan.page})
        require(isBetween(size.width, 1e-3, longest) && isBetween(size.height, 1e-3, longest));
    require(isBetween(plan.documentLength, 1, longest));
    require(isBetween(plan.viewportPageLength, 0, longest));
    require(isBetween(plan.pageLength, 0, longest * 10));
    require(isBetween(plan.pageMargin, 0, longest));
    require(plan.imagesOnTop.find_first_of("\"';{}") == std::string::npos);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzInput input(bytes, size);
    std::istringstream sizes{std::string(input.line())};
    NSSize paper;
    double margin = 0;
    sizes >> paper.width >> paper.height >> margin;
    const auto answer = decodedMessage(NSData(std::string(input.rest())));
    if (!answer) return 0;
    const PageMeasurements measured = pageMeasurementsFromJson(*answer);
    checkPlan(screenPlan(measured));
    checkPlan(plainScreenPlan(measured));
    checkPlan(paginatedPlan(measured, paper, margin));
    checkPlan(plainPaginatedPlan(measured, paper, margin));
    const NSSize view = paginatedView(paper, margin);
    require(isBetween(view.width, 72, 20'000) && isBetween(view.height, 72, 20'000));
    require(isBetween(screenView(paper).width, 72, 14'400));
    return 0;
}
