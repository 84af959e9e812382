#include "Source/Tools/batch/Doctor/Fonts.h"

#include "Tests/Tools/batch/Doctor/Support.h"

#include <gmock/gmock.h>

namespace qrv::batch {
namespace {

using testing::HasSubstr;

SampleRun runWithoutFontsFor(const std::string& name) {
    SampleRun run;
    run.report.emplace();
    for (const WritingSystem& system : writingSystems()) {
        run.report->missing.push_back(system.name == name ? 4 : 0);
        run.fonts.push_back({"FontOf" + std::string(system.language)});
    }
    return run;
}

TEST(Fonts, AreNamedForEachWritingSystemWithItsSample) {
    const Findings findings = examineFonts(runWithoutFontsFor(""));
    EXPECT_EQ(findings.size(), writingSystems().size());
    const Finding& thai = findingOf(findings, "Thai");
    EXPECT_EQ(thai.mark, Mark::ok);
    EXPECT_EQ(thai.text, "มนุษย์ทั้งหลาย  FontOfth");
    EXPECT_EQ(thai.advice, "");
}

TEST(Fonts, AMissingOneIsNotedWithItsPackage) {
    const Findings findings = examineFonts(runWithoutFontsFor("Thai"));
    const Finding& thai = findingOf(findings, "Thai");
    EXPECT_EQ(thai.mark, Mark::note);
    EXPECT_THAT(thai.text, HasSubstr("no font for 4 of these characters"));
    EXPECT_EQ(thai.advice, "Install the package fonts-noto-core.");
    EXPECT_FALSE(std::get<bool>(thai.facts[0].second));
    EXPECT_EQ(findingOf(findings, "Khmer").mark, Mark::ok);
}

TEST(Fonts, NothingIsReadableWithoutOneForLatin) {
    EXPECT_EQ(findingOf(examineFonts(runWithoutFontsFor("Latin")), "Latin").mark, Mark::problem);
}

TEST(Fonts, AreNotKnownWithoutAPage) {
    const Findings findings = examineFonts({});
    ASSERT_EQ(findings.size(), 1);
    EXPECT_EQ(findings[0].mark, Mark::note);
}

TEST(Fonts, MayHaveNoName) {
    SampleRun run = runWithoutFontsFor("");
    run.fonts.clear();
    EXPECT_THAT(findingOf(examineFonts(run), "Thai").text, HasSubstr("in a font without a name"));
}

} // namespace
} // namespace qrv::batch
