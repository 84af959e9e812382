// What measure.js answers in the real engine, to the last field: a plain page, and pages that differ from it.

#include "Platform/Engine/Print/PageMeasurements.h"
#include "Tests/Platform/Engine/JsonText.h"
#include "Tests/Platform/Engine/Scripts/ScriptPage.h"

#include <boost/json.hpp>
#include <gmock/gmock.h>
#include <map>

namespace qrv::engine {
namespace {

constexpr char plainPage[] =
    "<!DOCTYPE html><head><style></style></head><body><div style=height:100px></div>";

constexpr char plainAnswer[] = R"json({
    "view": {"width": 600, "height": 400},
    "scroll": {"width": 600, "height": 400},
    "isQuirky": false,
    "structureCost": 6,
    "root": {
        "isHtml": true, "display": "block", "zoom": 1, "marginTop": 0, "marginBottom": 0, "marginLeft": 0,
        "border": {"top": 0, "right": 0, "bottom": 0, "left": 0},
        "borderColor": {"top": "rgb(0, 0, 0)", "right": "rgb(0, 0, 0)", "bottom": "rgb(0, 0, 0)",
                        "left": "rgb(0, 0, 0)"},
        "padding": {"top": 0, "right": 0, "bottom": 0, "left": 0},
        "width": 600, "height": 116, "heightIsAuto": true, "isContainer": false, "containsFixed": false,
        "hasEffect": false
    },
    "body": {
        "exists": true, "zoom": 1, "writingMode": "horizontal-tb", "direction": "ltr", "marginLeft": 8,
        "width": 584, "height": 100, "heightIsAuto": true, "overflowSpreads": true
    },
    "canvas": {
        "isBody": false, "hasImage": false, "images": "none", "ratios": "0", "origin": "padding-box",
        "isFixed": false, "color": "rgba(0, 0, 0, 0)", "positionX": "0%", "positionY": "0%", "size": "auto",
        "repeat": "repeat"
    }
})json";

namespace json = boost::json;

/// The value with the members of another in the place of its own.
json::value merged(json::value value, const json::value& changes) {
    if (!value.is_object() || !changes.is_object()) return changes;
    for (const auto& [key, change] : changes.get_object()) {
        json::value& member = value.get_object()[key];
        member = merged(member, change);
    }
    return value;
}

using Fields = std::map<std::string, std::string>;

/// Each field's name, such as "root.border.top", and its value as text.
Fields fieldsOf(const json::value& value, const std::string& prefix = {}) {
    Fields fields;
    for (const auto& [key, member] : value.as_object()) {
        const std::string name = prefix + std::string(key);
        if (member.is_object()) {
            fields.merge(fieldsOf(member, name + "."));
        } else {
            fields[name] =
                json::serialize(member.is_number() ? json::value(member.to_number<double>()) : member);
        }
    }
    return fields;
}

json::value plain() {
    return json::parse(plainAnswer);
}

struct Row {
    const char* name;
    const char* styles; ///< of the plain page
    const char* body;   ///< in the place of its own, unless empty
    const char* changes;

    friend void PrintTo(const Row& row, std::ostream* stream) { *stream << row.name; }
};

std::string pageOf(const Row& row) {
    const std::string body = *row.body ? row.body : "<div style=height:100px></div>";
    return "<!DOCTYPE html><head><style>" + std::string(row.styles) + "</style></head><body>" + body;
}

class MeasureTest : public ScriptPageTest {
protected:
    Fields measured() { return fieldsOf(json::parse(jsonText(answer(scripts::measure)))); }

    void expectAnswer(const json::value& expected) {
        const Fields found = measured();
        EXPECT_EQ(found.size(), fieldsOf(expected).size());
        for (const auto& [name, value] : fieldsOf(expected)) {
            const auto field = found.find(name);
            EXPECT_EQ(field == found.end() ? "missing" : field->second, value) << name;
        }
    }
};

TEST_F(MeasureTest, EveryFieldIsReadAndNoOtherAnswered) {
    show(plainPage);
    std::vector<std::string> names;
    for (const auto& [name, value] : measured()) names.push_back(name);
    EXPECT_THAT(names, ::testing::UnorderedElementsAreArray(pageMeasurementNames()));
}

TEST_F(MeasureTest, APlainPage) {
    show(plainPage);
    expectAnswer(plain());
}

TEST_F(MeasureTest, APageWithoutADocumentType) {
    show("<head><style></style></head><body><div style=height:100px></div>");
    expectAnswer(merged(plain(), json::parse(R"({"isQuirky": true, "root": {"height": 400},
        "body": {"height": 384}})")));
}

TEST_F(MeasureTest, APageWithoutARoot) {
    show("<!DOCTYPE html><script>document.documentElement.remove()</script>");
    expectAnswer(json::parse(R"({"view": {"width": 600, "height": 400}})"));
}

TEST_F(MeasureTest, ADrawingAsRoot) {
    show("<svg xmlns='http://www.w3.org/2000/svg' width='700' height='300'/>", "image/svg+xml");
    const PageMeasurements measured = pageMeasurementsFromJson(answer(scripts::measure));
    EXPECT_FALSE(measured.root.isHtml);
    EXPECT_FALSE(measured.body.exists);
    EXPECT_FALSE(measured.root.hasEffect);
    EXPECT_FALSE(measured.body.overflowSpreads);
    EXPECT_EQ(measured.scroll.width, 700);
}

TEST_F(MeasureTest, AFramesetIsNoBody) {
    show("<!DOCTYPE html><head></head><frameset></frameset>");
    const PageMeasurements measured = pageMeasurementsFromJson(answer(scripts::measure));
    EXPECT_TRUE(measured.root.isHtml);
    EXPECT_FALSE(measured.body.exists);
}

TEST_F(MeasureTest, AnEffectNeedsAHeadToWorkOn) {
    show("<!DOCTYPE html><head></head><body><style>html{opacity:0.5}</style>"
         "<script>document.head.remove()</script><div style=height:100px></div>");
    EXPECT_FALSE(pageMeasurementsFromJson(answer(scripts::measure)).root.hasEffect);
}

constexpr Row rows[] = {
    {"MarginsBordersAndPaddings",
     "html{margin:1px 2px 3px 4px;border:5px solid;border-color:red lime blue gold;padding:6px 7px 8px 9px}",
     "",
     R"json({"root": {"marginTop": 1, "marginBottom": 3, "marginLeft": 4,
         "border": {"top": 5, "right": 5, "bottom": 5, "left": 5},
         "borderColor": {"top": "rgb(255, 0, 0)", "right": "rgb(0, 255, 0)", "bottom": "rgb(0, 0, 255)",
                         "left": "rgb(255, 215, 0)"},
         "padding": {"top": 6, "right": 7, "bottom": 8, "left": 9}, "width": 568}, "body": {"width": 552}})json"},
    {"BoxesWithTheirBorders", "html,body{box-sizing:border-box;border:5px solid;padding:10px}", "",
     R"({"root": {"border": {"top": 5, "right": 5, "bottom": 5, "left": 5},
         "padding": {"top": 10, "right": 10, "bottom": 10, "left": 10}, "width": 570, "height": 146},
         "body": {"width": 524}})"},
    {"ZoomedRoot", "html{zoom:2;border-top:3px solid}", "",
     R"({"root": {"zoom": 2, "border": {"top": 6}, "height": 232}, "body": {"width": 284}})"},
    {"ZoomedBody", "body{zoom:2}", "", R"({"root": {"height": 232}, "body": {"zoom": 2, "width": 284}})"},
    {"RightToLeft", "html{direction:rtl}#w{width:900px;height:100px}", "<div id=w></div>",
     R"({"scroll": {"width": 908}, "body": {"direction": "rtl"}})"},
    {"BodyRightToLeft", "body{direction:rtl}", "", R"({"body": {"direction": "rtl"}})"},
    {"VerticalText", "body{writing-mode:vertical-rl}", "",
     R"({"root": {"width": 8, "height": 400, "marginLeft": 592},
         "body": {"writingMode": "vertical-rl", "marginLeft": 0, "width": 0, "height": 384}})"},
    {"FlexRoot", "html{display:flex}", "", R"({"root": {"display": "flex"}, "body": {"width": 0}})"},
    {"HeightsThatAreGiven", "html{height:50%}body{height:80px}", "",
     R"({"root": {"height": 200, "heightIsAuto": false},
         "body": {"height": 80, "heightIsAuto": false}})"},
    {"WideAndTall", "#w{width:1500px;height:3000px}", "<div id=w></div>",
     R"({"scroll": {"width": 1508, "height": 3016}, "root": {"height": 3016},
         "body": {"height": 3000}})"},
    {"ManyChildren", "", "<p><i></i><i></i><i></i><i></i><i></i><i></i></p>",
     R"({"structureCost": 42, "root": {"height": 16}, "body": {"height": 0}})"},

    {"PositionedRoot", "html{position:relative}", "", R"({"root": {"isContainer": true}})"},
    {"TransformedRoot", "html{margin-left:5px;transform:translateX(50px)}", "",
     R"({"scroll": {"width": 650}, "root": {"marginLeft": 5, "width": 595, "isContainer": true,
         "containsFixed": true}, "body": {"width": 579}})"},
    {"TranslatedRoot", "html{translate:0 0}", "",
     R"({"root": {"isContainer": true, "containsFixed": true}})"},
    {"RotatedRoot", "html{rotate:0deg}", "", R"({"root": {"isContainer": true, "containsFixed": true}})"},
    {"ScaledRoot", "html{scale:1}", "", R"({"root": {"isContainer": true, "containsFixed": true}})"},
    {"ScaledBody", "body{margin-left:30px;transform:scale(2);transform-origin:0 0}", "",
     R"({"scroll": {"width": 1154}, "body": {"marginLeft": 30, "width": 562}})"},
    {"PerspectiveOfTheRoot", "html{perspective:500px}", "",
     R"({"root": {"isContainer": true, "containsFixed": true}})"},
    {"TransformStyleOfTheRoot", "html{transform-style:preserve-3d}", "",
     R"({"root": {"isContainer": true, "containsFixed": true}})"},
    {"AnnouncedTransformOfTheRoot", "html{will-change:transform}", "",
     R"({"root": {"isContainer": true, "containsFixed": true}})"},
    {"AnnouncedPerspectiveOfTheRoot", "html{will-change:perspective}", "",
     R"({"root": {"isContainer": true, "containsFixed": true}})"},
    {"AnnouncedContainmentOfTheRoot", "html{will-change:contain}", "",
     R"({"root": {"isContainer": true, "containsFixed": true}})"},
    {"AnnouncedOpacityOfTheRoot", "html{will-change:opacity}", "", "{}"},
    {"ContainerTypeOfTheRoot", "html{container-type:inline-size}", "",
     R"({"root": {"isContainer": true, "containsFixed": true},
         "body": {"overflowSpreads": false}})"},
    {"ContainerTypeOfTheBody", "body{container-type:inline-size}", "",
     R"({"body": {"overflowSpreads": false}})"},
    {"ContainedRoot", "html{contain:layout}", "",
     R"({"root": {"isContainer": true, "containsFixed": true},
         "body": {"overflowSpreads": false}})"},
    {"ContainedBody", "body{contain:paint;background:red}", "", R"({"body": {"overflowSpreads": false}})"},
    {"HiddenOverflowOfTheRoot", "html{overflow-x:hidden}", "", R"({"body": {"overflowSpreads": false}})"},

    {"Opacity", "html{opacity:0.5}", "", R"({"root": {"hasEffect": true}})"},
    {"Filter", "html{filter:grayscale(1)}", "", R"({"root": {"hasEffect": true}})"},
    {"ClipPath", "html{clip-path:inset(1px)}", "", R"({"root": {"hasEffect": true}})"},
    {"Mask", "html{mask-image:linear-gradient(black,red)}", "", R"({"root": {"hasEffect": true}})"},

    {"ColorOfTheRoot", "html{background:red}body{background:lime}", "",
     R"json({"canvas": {"color": "rgb(255, 0, 0)"}})json"},
    {"ColorOfTheBody", "body{background:lime}", "",
     R"json({"canvas": {"isBody": true, "color": "rgb(0, 255, 0)"}})json"},
    {"ImageOfTheRoot", "html{background-image:linear-gradient(red,lime)}body{background:lime}", "",
     R"({"canvas": {"hasImage": true, "images": "linear-gradient"}})"},
    {"ImagesOfTheBody",
     "body{background:radial-gradient(red,lime) fixed,"
     "url(data:image/"
     "png;base64,iVBORw0KGgoAAAANSUhEUgAAAB4AAAAUCAIAAAAVyRqTAAAAH0lEQVR42mNQWOBGI8QwavSo0aNGjxo9avSo0UPR"
     "aAD6xmYvA/tkegAAAABJRU5ErkJggg==) no-repeat right 3px top 5%/cover content-box}",
     "",
     R"json({"canvas": {"isBody": true, "hasImage": true, "images": "radial-gradient,url",
         "ratios": "0,1.5", "origin": "padding-box", "isFixed": true, "positionX": "0%, calc(100% - 3px)",
         "positionY": "0%, 5%", "size": "auto, cover", "repeat": "repeat, no-repeat"}})json"},
    {"AnImageThatIsNotAtHand", "html{background:url(data:image/png,broken) content-box}", "",
     R"({"canvas": {"hasImage": true, "images": "url", "origin": "content-box"}})"},
};

class MeasuredPageTest : public MeasureTest, public ::testing::WithParamInterface<Row> {};

TEST_P(MeasuredPageTest, HasItsMeasurements) {
    show(pageOf(GetParam()));
    expectAnswer(merged(plain(), json::parse(GetParam().changes)));
}

INSTANTIATE_TEST_SUITE_P(Measure, MeasuredPageTest, ::testing::ValuesIn(rows),
                         [](const auto& instance) { return std::string(instance.param.name); });

} // namespace
} // namespace qrv::engine
