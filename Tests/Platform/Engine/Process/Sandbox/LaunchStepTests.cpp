#include "Platform/Engine/Process/Sandbox/LaunchStep.h"

#include <cerrno>
#include <gmock/gmock.h>
#include <set>
#include <unistd.h>

namespace qrv::engine {
namespace {

using Kind = LaunchStep::Kind;
using ::testing::ContainsRegex;

constexpr Kind kinds[] = {Kind::namespaces,      Kind::identityMap,      Kind::temporaryFolder,
                          Kind::processFolder,   Kind::fileRules,        Kind::sandboxNamespaces,
                          Kind::sandboxRoot,     Kind::engineSandbox,    Kind::identity,
                          Kind::requiredSandbox, Kind::systemCallFilter, Kind::descriptors,
                          Kind::execution};

TEST(LaunchStep, SaysInATextOfItsOwnWhatIsMissingWhyAndWhatCanBeDone) {
    std::set<std::string> texts;
    for (const Kind kind : kinds) {
        const std::string text = LaunchStep{kind, EPERM}.text();
        EXPECT_THAT(text,
                    ContainsRegex("^(the|no) [^.]* \\(Operation not permitted\\)\\. [A-Z].*[a-z1]\\.$"));
        EXPECT_TRUE(texts.insert(text).second) << text;
    }
}

TEST(LaunchStep, OnlyWhatCanNotBeDoneWithoutIsFatal) {
    EXPECT_FALSE((LaunchStep{Kind::engineSandbox, EPERM}).isFatal());
    EXPECT_TRUE((LaunchStep{Kind::identity, EPERM}).isFatal());
}

TEST(LaunchReporter, WritesTheStepWhole) {
    int pipe[2];
    ASSERT_EQ(::pipe(pipe), 0);
    LaunchReporter(pipe[1]).report(Kind::sandboxRoot, ENOENT);
    LaunchStep step{};
    EXPECT_EQ(::read(pipe[0], &step, sizeof step), static_cast<ssize_t>(sizeof step));
    EXPECT_EQ(step.kind, Kind::sandboxRoot);
    EXPECT_EQ(step.error, ENOENT);
    ::close(pipe[0]);
    ::close(pipe[1]);
}

} // namespace
} // namespace qrv::engine
