#include "Platform/Engine/Scripts/PageScripts.h"

#include <gtest/gtest.h>

namespace qrv::engine {
namespace {

TEST(PageScripts, MeasuringScriptNamesEveryField) {
    std::string script = measuringScript();
    for (const char* name : {"viewWidth",
                             "viewHeight",
                             "scrollWidth",
                             "scrollHeight",
                             "isQuirky",
                             "rootIsHtml",
                             "hasBody",
                             "rootDisplay",
                             "bodyWritingMode",
                             "bodyDirection",
                             "rootMarginTop",
                             "rootMarginBottom",
                             "rootMarginLeft",
                             "rootBorderTop",
                             "rootBorderRight",
                             "rootBorderBottom",
                             "rootBorderLeft",
                             "rootPaddingTop",
                             "rootPaddingRight",
                             "rootPaddingBottom",
                             "rootPaddingLeft",
                             "rootWidth",
                             "rootHeight",
                             "rootHeightIsAuto",
                             "rootIsContainer",
                             "bodyMarginLeft",
                             "bodyWidth",
                             "bodyHeight",
                             "bodyOverflowSpreads",
                             "canvasHasImage",
                             "canvasImages",
                             "canvasIsFixed",
                             "canvasColor",
                             "canvasPositionX",
                             "canvasPositionY",
                             "canvasSize",
                             "rootHasEffect",
                             "canvasRatios",
                             "canvasOrigin",
                             "canvasRepeat",
                             "bodyHeightIsAuto",
                             "rootBorderTopColor",
                             "rootBorderRightColor",
                             "rootBorderBottomColor",
                             "rootBorderLeftColor"}) {
        EXPECT_NE(script.find(std::string(name) + ":"), std::string::npos) << name;
    }
    for (const char* name :
         {"structureCost,", "rootZoom,", "bodyZoom,", "rootContainsFixed,", "canvasFromBody,"}) {
        EXPECT_NE(script.find(std::string("        ") + name), std::string::npos) << name;
    }
}

TEST(PageScripts, ApplyingScriptQuotesTheSheet) {
    PrintPlan plan;
    plan.styleSheet = "a{content:'\\'}\n</style>";
    std::string call = R"--(('a{content:\x27\x5c\x27}\x0a\x3c/style>','','','',false))--";
    EXPECT_TRUE(applyingScript(plan).ends_with(call)) << applyingScript(plan);
}

TEST(PageScripts, ApplyingScriptIsToldOfTheImages) {
    PrintPlan plan;
    plan.imageTarget = "head";
    plan.imageSource = "body";
    plan.imagesOnTop = "linear-gradient(red,red),";
    EXPECT_TRUE(applyingScript(plan).ends_with("('','head','body','linear-gradient(red,red),',false)"));
}

TEST(PageScripts, ApplyingScriptIsToldToReleaseStickyBoxes) {
    PrintPlan plan;
    plan.releasesBoxes = true;
    EXPECT_TRUE(applyingScript(plan).ends_with("('','','','',true)"));
}

} // namespace
} // namespace qrv::engine
