#include "Source/Tools/batch/Doctor/Isolation.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string_view>
#include <sys/syscall.h>
#include <unistd.h>

namespace qrv::batch {

namespace {

constexpr char area[] = "isolation";

using Processes = std::vector<EngineProcess>;

std::string joined(const std::set<std::string>& names) {
    std::string text;
    for (const std::string& name : names) text += (text.empty() ? "" : ", ") + name;
    return text;
}

/// The tool's remark that has this in it, with what to do; empty if there is none.
std::string remarkWith(const SampleRun& run, std::string_view part) {
    const auto found =
        std::find_if(run.remarks.begin(), run.remarks.end(),
                     [part](const std::string& remark) { return remark.find(part) != std::string::npos; });
    return found == run.remarks.end() ? std::string() : *found;
}

/// The process that the tool started: the last one without a type, since a script may have started it.
const EngineProcess* mainProcess(const SampleRun& run) {
    const auto found = std::find_if(run.processes.rbegin(), run.processes.rend(),
                                    [](const EngineProcess& process) { return process.type.empty(); });
    return found == run.processes.rend() ? nullptr : &*found;
}

Finding namespacesOf(const SampleRun& run, const EngineProcess& engine) {
    const std::string remark = remarkWith(run, "no namespaces of its own");
    const std::string own = joined(engine.ownNamespaces);
    Finding finding{area, "namespaces", Mark::note, "the engine has none of its own", remark, {{"own", own}}};
    if (!engine.namespacesAreKnown) {
        finding.text = "the engine's namespaces could not be seen";
        return finding;
    }
    // Root gives the engine another identity in the place of other users.
    std::set<std::string> expected{"ipc", "mnt", "net", "pid"};
    if (engine.user == ::geteuid()) expected.insert("user");
    if (!own.empty()) finding.text = "the engine has its own of: " + own;
    const auto isOwn = [&](const std::string& name) { return engine.ownNamespaces.contains(name); };
    if (std::all_of(expected.begin(), expected.end(), isOwn)) finding.mark = Mark::ok;
    return finding;
}

Finding interfacesOf(const SampleRun& run, const EngineProcess& engine) {
    const std::string names = joined(engine.interfaces);
    Finding finding{area, "interfaces",           Mark::ok, "the engine sees no network interface but lo",
                    {},   {{"interfaces", names}}};
    if (!engine.interfacesAreKnown) {
        finding.mark = Mark::note;
        finding.text = "the engine's network interfaces could not be seen";
    } else if (!names.empty()) {
        finding.mark = Mark::note;
        finding.text = "the engine sees the machine's network (" + names +
                       "), from which the filter of system calls keeps it";
        finding.advice = remarkWith(run, "no namespaces of its own");
    } else if (!engine.ownNamespaces.contains("net")) {
        finding.text = "there is no network interface but lo";
    }
    return finding;
}

/// The page's own attempts, and who heard of them.
Finding networkOf(const SampleRun& run) {
    Finding finding{area, "network", Mark::ok, {}, {}, {{"called", run.wasCalled}}};
    if (run.wasCalled || (run.report && !run.report->reached.empty())) {
        std::string reached;
        if (run.report)
            for (const std::string& address : run.report->reached) reached += " " + address;
        finding.mark = Mark::problem;
        finding.text = "a page reached the network" +
                       (reached.empty() ? ": it called a port of this machine" : ":" + reached);
        finding.advice = "Convert nothing here before this is understood, and report it.";
    } else if (run.report) {
        finding.text = "a page tried " + std::to_string(run.report->tried) +
                       " addresses here and elsewhere, and reached none";
        finding.facts.emplace_back("tried", static_cast<std::int64_t>(run.report->tried));
    } else {
        finding.mark = Mark::note;
        finding.text =
            "no page could tell whether it reaches the network; a port of this machine was not called";
    }
    return finding;
}

Finding filterOf(const Processes& processes) {
    const auto isFree = [](const EngineProcess& process) { return !process.isFiltered; };
    const bool isFiltered = std::none_of(processes.begin(), processes.end(), isFree);
    return {area,
            "system calls",
            isFiltered ? Mark::ok : Mark::problem,
            isFiltered ? "each of the engine's processes is behind a filter"
                       : "a process of the engine has no filter of system calls",
            isFiltered ? "" : "Convert nothing here before this is understood, and report it.",
            {{"filtered", isFiltered}}};
}

/// Capabilities in a user namespace of the process's own are no rights outside of it.
bool hasRights(const EngineProcess& process) {
    return process.hasCapabilities && process.namespacesAreKnown && !process.ownNamespaces.contains("user");
}

Finding privilegesOf(const Processes& processes) {
    const auto has = [&](const auto& isSo) { return std::any_of(processes.begin(), processes.end(), isSo); };
    std::string what;
    if (has([](const EngineProcess& process) { return process.user == 0; })) what += ", the user root";
    if (has(hasRights)) what += ", capabilities";
    if (has([](const EngineProcess& process) { return !process.hasNoNewPrivileges; }))
        what += ", a way to new privileges";
    if (what.empty())
        return {area,     "privileges",
                Mark::ok, "the engine is not root, has no capabilities and can gain none",
                {},       {{"user", std::int64_t{processes.front().user}}}};
    return {area, "privileges", Mark::problem, "a process of the engine has" + what.substr(1),
            "Convert nothing here before this is understood, and report it."};
}

/// Processes of pages; without those that were seen for a moment only, and may not have got to their sandbox.
Processes renderersOf(const SampleRun& run) {
    int most = 0;
    Processes renderers;
    for (const EngineProcess& process : run.processes) {
        if (process.type != "renderer") continue;
        most = std::max(most, process.looks);
        renderers.push_back(process);
    }
    std::erase_if(renderers, [most](const EngineProcess& process) { return 2 * process.looks < most; });
    return renderers;
}

/// The engine's own sandbox gives its page processes namespaces of their own, and more filters.
Finding sandboxOf(const SampleRun& run, const EngineProcess& engine) {
    Finding finding{area, "engine's own sandbox", Mark::note, {}, {}, {}};
    std::optional<bool> isInside;
    for (const EngineProcess& process : renderersOf(run)) {
        const auto differs = [&](const char* name) {
            const auto own = process.namespaces.find(name);
            const auto outer = engine.namespaces.find(name);
            return own != process.namespaces.end() && outer != engine.namespaces.end() &&
                   own->second != outer->second;
        };
        const bool hasMoreFilters = engine.systemCallFilters < 0 || // a kernel that does not tell
                                    process.systemCallFilters > engine.systemCallFilters;
        isInside = isInside.value_or(true) && differs("net") && differs("pid") && hasMoreFilters;
    }
    const std::string remark = remarkWith(run, "the engine's own sandbox can not work here");
    if (!remark.empty()) {
        finding.text = "it can not work here: the engine runs without";
        for (const char* reason :
             {"gets no user namespace", "gets no root folder of its own", "identity can not be mapped"})
            if (const std::string why = remarkWith(run, reason); !why.empty()) finding.advice += why + "\n";
        finding.advice += remark;
    } else if (!isInside) {
        finding.text = "no process of a page could be seen";
    } else if (*isInside) {
        finding.mark = Mark::ok;
        finding.text = "the processes of pages have namespaces and filters of their own inside the engine's";
    } else {
        finding.text = "the processes of pages were not seen in namespaces of their own";
    }
    finding.facts = {{"works", finding.mark == Mark::ok}};
    return finding;
}

/// 0 where the kernel has no Landlock, or does not let this process use it.
long landlockVersion() {
    constexpr unsigned long askVersion = 1;
#ifndef SYS_landlock_create_ruleset
    constexpr long SYS_landlock_create_ruleset = 444;
#endif
    return std::max(0L, ::syscall(SYS_landlock_create_ruleset, nullptr, 0UL, askVersion));
}

Finding fileRules(const SampleRun& run) {
    const long version = landlockVersion();
    const std::string remark = remarkWith(run, "no file rules for the ");
    Finding finding{area,
                    "file rules",
                    Mark::ok,
                    "the tool and the engine can open what they need and no other file (Landlock " +
                        std::to_string(version) + ")",
                    {},
                    {{"landlock", static_cast<std::int64_t>(version)}}};
    if (version > 0 && remark.empty()) return finding;
    finding.mark = Mark::note;
    finding.text = "there are none: the engine can open what its user can";
    finding.advice = remark;
    return finding;
}

/// What a page lacks is told here in another way, and what is told above is told once.
bool isToldElsewhere(const std::string& remark, const Findings& findings) {
    return remark.starts_with("the archive does not hold ") ||
           remark.find(" does not count: ") < remark.size() ||
           std::any_of(findings.begin(), findings.end(), [&](const Finding& finding) {
               return finding.advice.find(remark) != std::string::npos;
           });
}

} // namespace

Findings examineIsolation(const SampleRun& run) {
    Findings findings{networkOf(run)};
    if (const EngineProcess* engine = mainProcess(run)) {
        findings.push_back(interfacesOf(run, *engine));
        findings.push_back(namespacesOf(run, *engine));
        findings.push_back(filterOf(run.processes));
        findings.push_back(privilegesOf(run.processes));
        findings.push_back(sandboxOf(run, *engine));
    } else {
        findings.push_back({area, "processes", Mark::note, "no process of the engine could be seen",
                            "This needs a /proc that shows the processes of its user."});
    }
    findings.push_back(fileRules(run));
    for (const std::string& remark : run.remarks)
        if (!isToldElsewhere(remark, findings))
            findings.push_back({area, "remark", Mark::note, "the tool says: " + remark});
    return findings;
}

} // namespace qrv::batch
