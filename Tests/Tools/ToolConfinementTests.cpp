#include "Source/Tools/ToolConfinement.h"

#include "Tests/Support/ErrorBehind.h"
#include "Tests/Support/TemporaryFolder.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <unistd.h>

namespace qrv {
namespace {

class ToolConfinementTest : public ::testing::Test {
protected:
    ToolConfinementTest() {
        for (const char* name : {"out/old.pdf", "other/file", "results/file", "temporary/file"})
            folder_.write(name, "text");
    }

    std::string at(const std::string& name) const { return (folder_.path() / name).string(); }

    /// What `call` returns in a child that makes a PDF at this path and is confined: 0, or the errno value.
    int errorBehind(const std::string& pdf, const std::function<int()>& call) const {
        const auto confine = [&] {
            ::setenv("OutPath", at("results/answer.plist").c_str(), 1);
            ::setenv("TMPDIR", at("temporary").c_str(), 1);
            return toolFiles(NSString::fromFileSystem(pdf)).enforce();
        };
        return qrv::errorBehind(confine, call);
    }

    int errorOfMaking(const std::string& name, const std::string& pdf) const {
        return errorBehind(pdf,
                           [&] { return ::open(at(name).c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600); });
    }

    int errorOfExecuting(const char* program) const {
        return errorBehind(at("out/new.pdf"),
                           [&] { return ::execl(program, program, "--version", nullptr); });
    }

    TemporaryFolder folder_;
};

TEST_F(ToolConfinementTest, OnlyTheOutputsFoldersCanBeChanged) {
    const std::string pdf = at("out/new.pdf");
    EXPECT_EQ(errorOfMaking("out/new.pdf", pdf), 0);
    EXPECT_EQ(errorOfMaking("out/beside", pdf), 0);
    EXPECT_EQ(errorOfMaking("results/answer.plist", pdf), 0);
    EXPECT_EQ(errorOfMaking("temporary/new", pdf), 0);
    EXPECT_EQ(errorOfMaking("other/new", pdf), EACCES);
    EXPECT_EQ(errorOfMaking("other/file", pdf), EACCES);
    EXPECT_EQ(errorBehind(pdf, [&] { return ::unlink(at("other/file").c_str()); }), EACCES);
    EXPECT_EQ(errorBehind(pdf, [&] { return ::open(at("other/file").c_str(), O_RDONLY | O_CLOEXEC); }), 0);
}

TEST_F(ToolConfinementTest, AnOldFileCanBeReplacedWhereALinkLeads) {
    std::filesystem::create_symlink(at("out/old.pdf"), at("other/link.pdf"));
    const std::string link = at("other/link.pdf");
    EXPECT_EQ(
        errorBehind(link,
                    [&] {
                        const int made = ::open(at("out/.new").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
                        return made < 0 ? made : ::rename(at("out/.new").c_str(), at("out/old.pdf").c_str());
                    }),
        0);
}

TEST_F(ToolConfinementTest, AFolderThatIsNotThereOpensNothing) {
    EXPECT_EQ(errorOfMaking("other/new", at("missing/new.pdf")), EACCES);
    EXPECT_EQ(errorOfMaking("other/new", ""), EACCES);
}

TEST_F(ToolConfinementTest, ADeviceOpensNothing) {
    EXPECT_EQ(errorBehind("/dev/full", [] { return ::open("/dev/full", O_WRONLY | O_CLOEXEC); }), EACCES);
    EXPECT_EQ(errorBehind("/dev/full", [] { return ::open("/dev/web2pdf-test", O_WRONLY | O_CREAT, 0600); }),
              EACCES);
    EXPECT_FALSE(std::filesystem::exists("/dev/web2pdf-test"));
}

TEST_F(ToolConfinementTest, NothingIsExecutedButTheEngine) {
    EXPECT_EQ(errorOfExecuting("/bin/true"), EACCES);
    EXPECT_EQ(errorOfExecuting("/usr/bin/env"), EACCES);
    EXPECT_EQ(errorOfExecuting("/usr/lib/chromium/chromium-headless-shell"), 0);
}

} // namespace
} // namespace qrv
