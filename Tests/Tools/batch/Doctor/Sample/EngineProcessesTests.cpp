#include "Source/Tools/batch/Doctor/Sample/EngineProcesses.h"

#include "Tests/Support/TemporaryFolder.h"

#include <chrono>
#include <gmock/gmock.h>
#include <unistd.h>

namespace qrv::batch {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A /proc in which this process has children.
class Processes : public TemporaryFolder {
public:
    void add(pid_t pid, pid_t parent, const std::string& commandLine, const std::string& status,
             const std::string& space, const std::string& devices = "") const {
        const std::string name = std::to_string(pid);
        write(name + "/status",
              "Name:\tx\nState:\tS (sleeping)\nPPid:\t" + std::to_string(parent) + "\n" + status);
        write(name + "/cmdline", commandLine);
        write(name + "/net/dev", "Inter-|   Receive\n face |bytes\n" + devices);
        std::filesystem::create_directory(path() / name / "ns");
        for (const char* kind : {"user", "pid", "mnt", "net", "ipc"})
            std::filesystem::create_symlink(kind + (":[" + space + "]"), path() / name / "ns" / kind);
        std::filesystem::create_symlink("/opt/engine", path() / name / "exe");
    }

    std::vector<EngineProcess> watched() const {
        EngineWatching watching(path().string());
        const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(200);
        while (std::chrono::steady_clock::now() < end) usleep(1000);
        return watching.end();
    }
};

constexpr char confined[] =
    "Uid:\t1000\t65534\t1\t1\nCapEff:\t0000000000000000\nNoNewPrivs:\t1\nSeccomp:\t2\n"
    "Seccomp_filters:\t3\n";
constexpr char free[] = "Uid:\t0\t0\t0\t0\nCapEff:\t00000000000000ff\nNoNewPrivs:\t0\nSeccomp:\t0\n";

TEST(EngineProcesses, AreThoseWithATypeAndWhatTheyDescendFromBelowTheTool) {
    const Processes processes;
    processes.add(getpid(), 1, "tests", free, "1");
    processes.add(4000001, getpid(), "web2pdf", free, "1");
    processes.add(4000002, 4000001, "engine", confined, "2", "    lo: 0\n  eth0: 5 6\n");
    processes.add(4000003, 4000002, "engine --type=renderer", confined, "3", "    lo: 0\n");
    processes.add(4000004, 4000001, "web2pdf", free, "1"); // another child of the tool
    const std::vector<EngineProcess> seen = processes.watched();
    ASSERT_EQ(seen.size(), 2);

    EXPECT_EQ(seen[0].type, "");
    EXPECT_EQ(seen[0].program, "/opt/engine");
    EXPECT_TRUE(seen[0].namespacesAreKnown);
    EXPECT_THAT(seen[0].ownNamespaces, ElementsAre("ipc", "mnt", "net", "pid", "user"));
    EXPECT_EQ(seen[0].namespaces.at("net"), "net:[2]");
    EXPECT_EQ(seen[0].user, 65534);
    EXPECT_EQ(seen[0].systemCallFilters, 3);
    EXPECT_TRUE(seen[0].isFiltered);
    EXPECT_TRUE(seen[0].hasNoNewPrivileges);
    EXPECT_FALSE(seen[0].hasCapabilities);
    EXPECT_THAT(seen[0].interfaces, ElementsAre("eth0"));

    EXPECT_EQ(seen[1].type, "renderer");
    EXPECT_TRUE(seen[1].interfacesAreKnown);
    EXPECT_THAT(seen[1].interfaces, IsEmpty());
}

TEST(EngineProcesses, WithoutProtectionAreSeenAsSuch) {
    const Processes processes;
    processes.add(getpid(), 1, "tests", free, "1");
    processes.add(4000001, getpid(), "web2pdf", free, "1");
    processes.add(4000002, 4000001, "engine --type=zygote", free, "1");
    const std::vector<EngineProcess> seen = processes.watched();
    ASSERT_EQ(seen.size(), 1);
    EXPECT_THAT(seen[0].ownNamespaces, IsEmpty());
    EXPECT_EQ(seen[0].user, 0);
    EXPECT_FALSE(seen[0].isFiltered);
    EXPECT_FALSE(seen[0].hasNoNewPrivileges);
    EXPECT_TRUE(seen[0].hasCapabilities);
}

TEST(EngineProcesses, ThatAreEndingStayAsTheyWereSeenBefore) {
    const Processes processes;
    processes.add(getpid(), 1, "tests", free, "1");
    processes.add(4000001, getpid(), "web2pdf", free, "1");
    processes.add(4000002, 4000001, "engine --type=zygote", confined, "2", "  lo: 0\n");
    EngineWatching watching(processes.path().string());
    usleep(200'000);
    std::filesystem::remove_all(processes.path() / "4000002" / "net");
    std::filesystem::remove_all(processes.path() / "4000002" / "ns");
    usleep(200'000);
    const std::vector<EngineProcess> seen = watching.end();
    ASSERT_EQ(seen.size(), 1);
    EXPECT_TRUE(seen[0].interfacesAreKnown);
    EXPECT_TRUE(seen[0].namespacesAreKnown);
}

TEST(EngineProcesses, AreNoneWithoutAnEngine) {
    const Processes processes;
    processes.add(getpid(), 1, "tests", free, "1");
    EXPECT_THAT(processes.watched(), IsEmpty());
}

} // namespace
} // namespace qrv::batch
