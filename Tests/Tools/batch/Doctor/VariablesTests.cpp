#include "Source/Tools/batch/Doctor/Variables.h"

#include "Tests/Support/Variable.h"
#include "Tests/Tools/batch/Doctor/Support.h"

#include <gmock/gmock.h>

namespace qrv::batch {
namespace {

using testing::HasSubstr;

/// With one variable set.
Finding with(const char* name, const char* value, const std::vector<std::string>& log = {}) {
    const qrv::Variable set(name, value);
    return findingOf(examineVariables(log), name);
}

TEST(Variables, AreListedWithTheirValues) {
    EXPECT_EQ(with("SOURCE_DATE_EPOCH", "1").text, "1");
    EXPECT_EQ(with("SOURCE_DATE_EPOCH", "1").mark, Mark::ok);
    EXPECT_EQ(with("FONTCONFIG_FILE", "/a").text, "/a");
}

TEST(Variables, ThatAreNotSetAreNotListed) {
    const qrv::Variable none("WEB2PDF_ENGINE", nullptr);
    for (const Finding& finding : examineVariables({})) EXPECT_NE(finding.check, "WEB2PDF_ENGINE");
}

TEST(Variables, ValuesThatDoNotCountAreNoted) {
    for (const auto& [name, value] :
         std::vector<std::pair<const char*, const char*>>{{"WEB2PDF_DEADLINE", "abc"},
                                                          {"WEB2PDF_DEADLINE", "0"},
                                                          {"WEB2PDF_ENGINE_START_TIMEOUT", "-3"},
                                                          {"WEB2PDF_REQUIRE_SANDBOX", "yes"},
                                                          {"XDG_CONFIG_HOME", "settings"}}) {
        const Finding finding = with(name, value);
        EXPECT_EQ(finding.mark, Mark::note) << name;
        EXPECT_EQ(finding.text, std::string(value) + "  (does not count)");
    }
    EXPECT_EQ(with("WEB2PDF_DEADLINE", "2.5").mark, Mark::ok);
    EXPECT_EQ(with("WEB2PDF_REQUIRE_SANDBOX", "1").mark, Mark::ok);
}

TEST(Variables, TheToolSaysWhichOthersDoNotCount) {
    const std::vector<std::string> log{"WEB2PDF_MEMORY_LIMIT is no positive number and does not count: much"};
    EXPECT_EQ(with("WEB2PDF_MEMORY_LIMIT", "much", log).mark, Mark::note);
    EXPECT_EQ(with("WEB2PDF_MEMORY_LIMIT", "2048").mark, Mark::ok);
}

} // namespace
} // namespace qrv::batch
