#include "Source/Tools/batch/Doctor/Engine.h"

#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/Variable.h"
#include "Tests/Tools/batch/Doctor/Support.h"

#include <gmock/gmock.h>

namespace qrv::batch {
namespace {

using testing::HasSubstr;

TEST(DoctorsEngine, IsTheOneThatTheVariableNames) {
    const TemporaryFolder folder;
    const std::string path = folder.write("chromium", "").utf8();
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    const Variable engine("WEB2PDF_ENGINE", path.c_str());
    const Finding finding = findingOf(examineEngine("/bin/sh"), "program");
    EXPECT_EQ(finding.mark, Mark::ok);
    EXPECT_EQ(finding.text, path + ", a full browser, named by WEB2PDF_ENGINE");
}

TEST(DoctorsEngine, ThatTheVariableNamesAndIsNotThereIsAProblem) {
    const Variable engine("WEB2PDF_ENGINE", "/nonexistent");
    const Finding finding = findingOf(examineEngine("/bin/sh"), "program");
    EXPECT_EQ(finding.mark, Mark::problem);
    EXPECT_THAT(finding.text, HasSubstr("/nonexistent"));
    EXPECT_THAT(finding.advice, HasSubstr("unset it"));
}

TEST(DoctorsEngine, AToolThatIsNotThereIsAProblem) {
    EXPECT_EQ(findingOf(examineEngine("/bin/sh"), "tool").mark, Mark::ok);
    EXPECT_EQ(findingOf(examineEngine(""), "tool").mark, Mark::problem);
    const Finding finding = findingOf(examineEngine("/nonexistent"), "tool");
    EXPECT_EQ(finding.text, "/nonexistent can not be run: No such file or directory");
    EXPECT_THAT(finding.advice, HasSubstr("--tool"));
}

TEST(DoctorsEngine, AConversionThatFailedIsAProblemAndTheToolSaysWhy) {
    SampleRun run;
    run.error = "There is no web engine.";
    run.remarks = {"the web engine exited"};
    const Finding finding = findingOf(examineConversion(run), "conversion");
    EXPECT_EQ(finding.mark, Mark::problem);
    EXPECT_THAT(finding.text, HasSubstr(run.error));
    EXPECT_THAT(finding.advice, HasSubstr(run.remarks[0]));
}

TEST(DoctorsEngine, APageThatSaysNothingIsAProblem) {
    EXPECT_EQ(findingOf(examineConversion({}), "version").mark, Mark::problem);
}

TEST(DoctorsEngine, TellsItsVersionAndItsProgram) {
    SampleRun run;
    run.report.emplace().version = "156.0.1.2";
    run.processes.emplace_back().program = "/opt/engine";
    const Findings findings = examineConversion(run);
    EXPECT_THAT(findingOf(findings, "version").text, HasSubstr("156.0.1.2"));
    EXPECT_THAT(findingOf(findings, "process").text, HasSubstr("/opt/engine"));
}

} // namespace
} // namespace qrv::batch
