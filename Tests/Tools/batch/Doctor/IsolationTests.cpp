#include "Source/Tools/batch/Doctor/Isolation.h"

#include "Tests/Tools/batch/Doctor/Support.h"

#include <gmock/gmock.h>

namespace qrv::batch {
namespace {

using testing::HasSubstr;

std::map<std::string, std::string> spaces(const std::string& name) {
    return {{"user", name}, {"pid", name}, {"mnt", name}, {"net", name}, {"ipc", name}};
}

/// A run in which every protection was there.
SampleRun confinedRun() {
    EngineProcess engine;
    engine.ownNamespaces = {"user", "pid", "mnt", "net", "ipc"};
    engine.namespacesAreKnown = true;
    engine.namespaces = spaces("1");
    engine.user = 1000;
    engine.systemCallFilters = 1;
    engine.isFiltered = true;
    engine.hasNoNewPrivileges = true;
    engine.hasCapabilities = false;
    engine.interfacesAreKnown = true;
    EngineProcess renderer = engine;
    renderer.type = "renderer";
    renderer.namespaces = spaces("2");
    renderer.systemCallFilters = 3;
    SampleRun run;
    run.processes = {engine, renderer};
    run.report = SampleReport{"1", {}, 7, {}};
    return run;
}

Finding found(const SampleRun& run, const std::string& check) {
    return findingOf(examineIsolation(run), check);
}

TEST(Isolation, AProcessOfAMomentHasNotGotToItsSandbox) {
    SampleRun run = confinedRun();
    run.processes[1].looks = 40;
    EngineProcess other = run.processes[0];
    other.type = "renderer";
    other.looks = 1;
    run.processes.push_back(other);
    EXPECT_EQ(found(run, "engine's own sandbox").mark, Mark::ok);
    run.processes[2].looks = 39;
    EXPECT_EQ(found(run, "engine's own sandbox").mark, Mark::note);
}

TEST(Isolation, IsFineWhereEveryProtectionIsThere) {
    for (const char* check :
         {"network", "interfaces", "namespaces", "system calls", "privileges", "engine's own sandbox"})
        EXPECT_EQ(found(confinedRun(), check).mark, Mark::ok) << check;
}

TEST(Isolation, AReachedAddressIsAProblem) {
    SampleRun run = confinedRun();
    run.report->reached = {"http://192.0.2.1/"};
    EXPECT_EQ(found(run, "network").mark, Mark::problem);
    EXPECT_THAT(found(run, "network").text, HasSubstr("http://192.0.2.1/"));
}

TEST(Isolation, ACalledPortIsAProblemWhateverThePageSays) {
    SampleRun run = confinedRun();
    run.wasCalled = true;
    EXPECT_EQ(found(run, "network").mark, Mark::problem);
}

TEST(Isolation, MissingNamespacesAreNotedWithWhatTheToolAdvises) {
    SampleRun run = confinedRun();
    run.processes[0].ownNamespaces = {};
    run.processes[0].interfaces = {"eth0"};
    run.remarks = {"no namespaces of its own for the engine; allow them"};
    EXPECT_EQ(found(run, "namespaces").mark, Mark::note);
    EXPECT_EQ(found(run, "namespaces").advice, run.remarks[0]);
    EXPECT_EQ(found(run, "interfaces").mark, Mark::note);
    EXPECT_THAT(found(run, "interfaces").text, HasSubstr("eth0"));
}

TEST(Isolation, SomeNamespacesAreNotAll) {
    SampleRun run = confinedRun();
    run.processes[0].ownNamespaces.erase("net");
    EXPECT_EQ(found(run, "namespaces").mark, Mark::note);
    EXPECT_EQ(found(run, "namespaces").text, "the engine has its own of: ipc, mnt, pid, user");
}

TEST(Isolation, WhatCanNotBeSeenIsSaidToBeSo) {
    SampleRun run = confinedRun();
    run.processes[0].namespacesAreKnown = false;
    run.processes[0].interfacesAreKnown = false;
    EXPECT_EQ(found(run, "namespaces").text, "the engine's namespaces could not be seen");
    EXPECT_EQ(found(run, "interfaces").text, "the engine's network interfaces could not be seen");
    run.processes.clear();
    EXPECT_EQ(found(run, "processes").mark, Mark::note);
}

TEST(Isolation, AProcessWithoutFilterIsAProblem) {
    SampleRun run = confinedRun();
    run.processes[1].isFiltered = false;
    EXPECT_EQ(found(run, "system calls").mark, Mark::problem);
}

TEST(Isolation, RootAndAWayToNewPrivilegesAreProblems) {
    SampleRun run = confinedRun();
    run.processes[0].user = 0;
    EXPECT_EQ(found(run, "privileges").mark, Mark::problem);
    EXPECT_EQ(found(run, "privileges").text, "a process of the engine has the user root");
    run.processes[0].user = 1000;
    run.processes[1].hasNoNewPrivileges = false;
    EXPECT_EQ(found(run, "privileges").text, "a process of the engine has a way to new privileges");
}

TEST(Isolation, CapabilitiesAreAProblemOutsideOfAUserNamespaceOfTheirOwn) {
    SampleRun run = confinedRun();
    run.processes[0].hasCapabilities = true;
    EXPECT_EQ(found(run, "privileges").mark, Mark::ok);
    run.processes[0].ownNamespaces.erase("user");
    EXPECT_EQ(found(run, "privileges").mark, Mark::problem);
    EXPECT_EQ(found(run, "privileges").text, "a process of the engine has capabilities");
}

TEST(Isolation, PagesInTheEnginesNamespacesHaveNoSandboxOfTheirOwn) {
    SampleRun run = confinedRun();
    run.processes[1].namespaces = run.processes[0].namespaces;
    EXPECT_EQ(found(run, "engine's own sandbox").mark, Mark::note);
}

TEST(Isolation, TheToolSaysWhyTheEnginesOwnSandboxCanNotWork) {
    SampleRun run = confinedRun();
    run.remarks = {"the engine's own sandbox gets no root folder of its own (no). Allow chroot.",
                   "the engine's own sandbox can not work here; it runs without"};
    const Finding finding = found(run, "engine's own sandbox");
    EXPECT_EQ(finding.mark, Mark::note);
    EXPECT_THAT(finding.advice, HasSubstr("Allow chroot."));
}

TEST(Isolation, MissingFileRulesAreNoted) {
    SampleRun run = confinedRun();
    run.remarks = {"no file rules for the engine; it can open what its user can (no)."};
    EXPECT_EQ(found(run, "file rules").mark, Mark::note);
    EXPECT_EQ(found(run, "file rules").advice, run.remarks[0]);
}

TEST(Isolation, OtherRemarksOfTheToolAreHandedOnOnce) {
    SampleRun run = confinedRun();
    run.remarks = {"the archive does not hold 3 resources that the page asked for: data http://a/",
                   "WEB2PDF_MEMORY_LIMIT is no positive number and does not count: x",
                   "no namespaces of its own for the engine; allow them", "something else"};
    const Findings findings = examineIsolation(run);
    EXPECT_EQ(findingOf(findings, "remark").text, "the tool says: something else");
    EXPECT_EQ(std::count_if(findings.begin(), findings.end(),
                            [](const Finding& finding) { return finding.check == "remark"; }),
              1);
}

} // namespace
} // namespace qrv::batch
