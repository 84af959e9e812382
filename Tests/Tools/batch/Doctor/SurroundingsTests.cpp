#include "Source/Tools/batch/Doctor/Surroundings.h"

#include "Platform/Logging/os_log.h"
#include "Tests/Platform/Logging/LogReceiver.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/Variable.h"
#include "Tests/Tools/batch/Doctor/Support.h"

#include <gmock/gmock.h>

namespace qrv::batch {
namespace {

using testing::HasSubstr;

Finding found(const std::string& check) {
    return findingOf(examineSurroundings(3), check);
}

TEST(Surroundings, AJournalIsThereOrNot) {
    const LogReceiver journal;
    setJournalSocketForTesting(journal.path());
    EXPECT_EQ(found("journal").mark, Mark::ok);
    setJournalSocketForTesting("/nonexistent/socket");
    EXPECT_EQ(found("journal").mark, Mark::note);
    EXPECT_THAT(found("journal").text, HasSubstr("standard error only"));
}

TEST(Surroundings, ProgramsAreLookedForInPath) {
    const TemporaryFolder folder;
    const std::string program = folder.write("pdfinfo", "").utf8();
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    const Variable path("PATH", folder.path().c_str());
    EXPECT_THAT(found("pdfinfo").text, HasSubstr(program));
    EXPECT_EQ(found("pdftotext").mark, Mark::note);
    EXPECT_EQ(found("pdftotext").advice, "Install the package poppler-utils.");
}

TEST(Surroundings, MemoryThatIsScarceIsNoted) {
    const Variable limit("WEB2PDF_MEMORY_LIMIT", "100");
    EXPECT_EQ(found("memory").mark, Mark::note);
    EXPECT_THAT(found("memory").text, HasSubstr("an engine alone may hold 100 MiB"));
}

TEST(Surroundings, ProcessorsAreForSoManyConversions) {
    EXPECT_THAT(found("processors").text, HasSubstr("for 3 conversions at once"));
}

TEST(Surroundings, AFolderForTemporaryFilesThatIsNotThereIsAProblem) {
    const Variable folder("TMPDIR", "/nonexistent");
    EXPECT_EQ(found("temporary files").mark, Mark::problem);
}

TEST(Surroundings, AMissingFolderOfSharedMemoryIsNoted) {
    const Findings findings = examineSurroundings(1, "/nonexistent");
    EXPECT_EQ(findingOf(findings, "shared memory").mark, Mark::note);
    EXPECT_EQ(found("shared memory").mark, Mark::ok);
}

} // namespace
} // namespace qrv::batch
