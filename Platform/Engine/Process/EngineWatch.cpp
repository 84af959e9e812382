#include "Platform/Engine/Process/EngineWatch.h"

#include <algorithm>
#include <utility>

namespace qrv::engine {

namespace {

constexpr char zygote[] = "zygote";
constexpr char page[] = "renderer";
/// One for what runs in the engine's sandbox, one for the rest; both are there before the first answer.
constexpr std::size_t zygotesOfAnEngine = 2;

} // namespace

EngineWatch::EngineWatch(pid_t engine, std::size_t memoryLimit, std::string processFolder)
    : engine_(engine), memoryLimit_(memoryLimit), processFolder_(std::move(processFolder)) {}

std::optional<EngineWatch::Fault> EngineWatch::look(bool hasAnswered) {
    const std::vector<ProcessState> tree = readProcessTree(engine_, processFolder_);
    std::size_t memory = 0;
    for (const ProcessState& process : tree) memory += process.memory;
    if (memory > memoryLimit_) return Fault::memoryExceeded;

    const std::optional<Fault> fault = absence(tree, hasAnswered);
    absentLooks_ = fault ? absentLooks_ + 1 : 0;
    return absentLooks_ < looksToBelieve ? std::nullopt : fault;
}

std::optional<EngineWatch::Fault> EngineWatch::absence(const std::vector<ProcessState>& tree,
                                                       bool hasAnswered) {
    if (!tree.front().isAlive) return Fault::ended;
    std::set<pid_t> browsers;
    for (const ProcessState& process : tree)
        if (process.isAlive && process.type.empty()) browsers.insert(process.pid);
    // What a zygote forks has its name at first, so only one that a browser started is one for certain.
    std::set<pid_t> zygotes;
    for (const ProcessState& process : tree)
        if (process.type == zygote && browsers.contains(process.parent)) zygotes.insert(process.pid);
    zygotes_.insert(zygotes.begin(), zygotes.end());
    const bool hasPage = std::any_of(tree.begin(), tree.end(),
                                     [](const ProcessState& process) { return process.type == page; });
    hadPage_ = hadPage_ || hasPage;
    // One may have been lost before the first look, and its page with it.
    const bool shouldHaveAll = hadPage_ || (hasAnswered && !zygotes_.empty());
    if (zygotes.size() < zygotes_.size() || (shouldHaveAll && zygotes.size() < zygotesOfAnEngine))
        return Fault::zygoteLost;
    return hadPage_ && !hasPage ? std::optional(Fault::pageLost) : std::nullopt;
}

} // namespace qrv::engine
