#include "Source/Tools/batch/Doctor/Settings.h"

#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/Variable.h"
#include "Tests/Tools/batch/Doctor/Support.h"

#include <gmock/gmock.h>

namespace qrv::batch {
namespace {

using testing::HasSubstr;

class Settings : public testing::Test {
protected:
    std::string write(const std::string& folder, const std::string& name, const std::string& entries) const {
        return files
            .write(folder + "/preferences/" + name + ".plist",
                   "<plist version=\"1.0\"><dict>" + entries + "</dict></plist>")
            .utf8();
    }

    TemporaryFolder files;
    Variable own{"XDG_CONFIG_HOME", files.pathOf("own").utf8().c_str()};
    Variable shared{"XDG_CONFIG_DIRS", files.pathOf("shared").utf8().c_str()};
    const std::string domain = "org.quillvane.Quillvane";
};

TEST_F(Settings, AreDefaultsWithoutAnyFile) {
    const Findings findings = examineSettings();
    EXPECT_THAT(findingOf(findings, "file").text,
                HasSubstr("there is none; the first that would count is " + files.path().string()));
    EXPECT_EQ(findingOf(findings, "WebToolExtraLoadingTime").text, "2, by default");
    EXPECT_EQ(findingOf(findings, "Web2PDFUnrollScrollers").text, "true, by default");
}

TEST_F(Settings, TheFirstFileThatHasTheKeyDecides) {
    const std::string first = write("own", domain, "<key>Web2PDFPageMargin</key><integer>54</integer>");
    const std::string second =
        write("shared", domain,
              "<key>Web2PDFPageMargin</key><integer>9</integer><key>Web2PDFWritesXMP</key><true/>");
    const std::string global =
        write("own", ".GlobalPreferences", "<key>WebToolExtraLoadingTime</key><string>0</string>");
    const Findings findings = examineSettings();
    EXPECT_EQ(findingOf(findings, "Web2PDFPageMargin").text, "54, from " + first);
    EXPECT_EQ(findingOf(findings, "Web2PDFWritesXMP").text, "true, from " + second);
    EXPECT_EQ(findingOf(findings, "WebToolExtraLoadingTime").text, "0, from " + global);
    EXPECT_EQ(findings[0].text, first);
    EXPECT_EQ(findings[1].text, second);
    EXPECT_EQ(findings[2].text, global);
    for (const Finding& finding : findings) EXPECT_EQ(finding.mark, Mark::ok) << finding.check;
}

TEST_F(Settings, AValueOfAnotherKindDoesNotCount) {
    const std::string file = write("own", domain, "<key>Web2PDFPageMargin</key><string>wide</string>");
    const Finding finding = findingOf(examineSettings(), "Web2PDFPageMargin");
    EXPECT_EQ(finding.mark, Mark::note);
    EXPECT_EQ(finding.text, "36, by default: what " + file + " has is not an integer and does not count");
}

TEST_F(Settings, KeysThatChangeNothingAreNoted) {
    write("own", domain,
          "<key>Web2PDFPageMargins</key><integer>9</integer><key>WebToolTimeout</key><integer>9</integer>");
    const Findings findings = examineSettings();
    EXPECT_EQ(findingOf(findings, "Web2PDFPageMargins").mark, Mark::note);
    EXPECT_THAT(findingOf(findings, "Web2PDFPageMargins").text, HasSubstr("unknown"));
    EXPECT_THAT(findingOf(findings, "WebToolTimeout").text, HasSubstr("it changes nothing"));
}

TEST_F(Settings, AFileThatCanNotBeReadIsNoted) {
    const std::string file = files.write("own/preferences/" + domain + ".plist", "no list").utf8();
    const Findings findings = examineSettings();
    EXPECT_EQ(findings[1].check, "file");
    EXPECT_EQ(findings[1].mark, Mark::note);
    EXPECT_THAT(findings[1].text, HasSubstr("Preferences " + file + " cannot be read: "));
}

} // namespace
} // namespace qrv::batch
