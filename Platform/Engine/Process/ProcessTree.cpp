#include "Platform/Engine/Process/ProcessTree.h"

#include "Platform/Foundation/FileDescriptor.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <dirent.h>
#include <fcntl.h>
#include <map>
#include <memory>
#include <string_view>
#include <unistd.h>

namespace qrv::engine {

namespace {

constexpr std::size_t mostProcesses = 4096;

using Children = std::vector<pid_t>;

/// The file's start; all of it for those that are read here. Empty when it cannot be read.
std::string startOf(const std::string& path) {
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    std::array<char, 8192> block;
    const ssize_t count = file ? ::read(file.get(), block.data(), block.size()) : -1;
    return {block.data(), count > 0 ? static_cast<std::size_t>(count) : 0};
}

template <class Number>
Number numberAt(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    Number number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

/// What follows the name at the start of a line; empty for none.
std::string_view field(std::string_view status, std::string_view name) {
    const std::size_t at = status.find("\n" + std::string(name) + ":");
    return at == std::string_view::npos ? std::string_view() : status.substr(at + name.size() + 2);
}

/// A process that names itself joins its arguments by blanks.
std::string typeIn(std::string_view commandLine) {
    constexpr std::string_view option = "--type=";
    const std::size_t at = commandLine.find(option);
    if (at == std::string_view::npos) return {};
    const std::string_view value = commandLine.substr(at + option.size());
    return std::string(value.substr(0, value.find_first_of(std::string_view(" \0", 2))));
}

ProcessState stateOf(pid_t pid, const std::string& process) {
    constexpr std::size_t kibibyte = 1024;
    const std::string status = startOf(process + "/status");
    std::string_view letter = field(status, "State");
    letter.remove_prefix(std::min(letter.find_first_not_of(" \t"), letter.size()));
    ProcessState state;
    state.pid = pid;
    state.parent = numberAt<pid_t>(field(status, "PPid"));
    state.isAlive = !letter.empty() && letter[0] != 'Z' && letter[0] != 'X';
    if (!state.isAlive) return state;
    state.memory =
        (numberAt<std::size_t>(field(status, "RssAnon")) + numberAt<std::size_t>(field(status, "RssShmem"))) *
        kibibyte;
    state.type = typeIn(startOf(process + "/cmdline"));
    return state;
}

template <class Function>
void forEachNumberIn(const std::string& folder, const Function& function) {
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(::opendir(folder.c_str()), ::closedir);
    if (!entries) return;
    while (const dirent* entry = ::readdir(entries.get()))
        if (const auto number = numberAt<pid_t>(entry->d_name)) function(number);
}

/// Each thread's children are in a file of their own.
Children childrenOf(const std::string& process) {
    Children children;
    forEachNumberIn(process + "/task", [&](pid_t thread) {
        const std::string list = startOf(process + "/task/" + std::to_string(thread) + "/children");
        for (std::string_view rest = list; !rest.empty();) {
            if (const auto child = numberAt<pid_t>(rest)) children.push_back(child);
            rest.remove_prefix(std::min(rest.find(' '), rest.size() - 1) + 1);
        }
    });
    return children;
}

/// For kernels without the lists of children.
std::map<pid_t, Children> allChildren(const std::string& folder) {
    std::map<pid_t, Children> children;
    forEachNumberIn(folder, [&](pid_t pid) {
        const std::string status = startOf(folder + "/" + std::to_string(pid) + "/status");
        children[numberAt<pid_t>(field(status, "PPid"))].push_back(pid);
    });
    return children;
}

} // namespace

std::vector<ProcessState> readProcessTree(pid_t root, const std::string& folder) {
    const auto pathOf = [&](pid_t pid) { return folder + "/" + std::to_string(pid); };
    const std::string list = pathOf(root) + "/task/" + std::to_string(root) + "/children";
    const bool hasLists = ::access(list.c_str(), R_OK) == 0;
    std::map<pid_t, Children> byParent;
    if (!hasLists) byParent = allChildren(folder);

    std::vector<ProcessState> tree{stateOf(root, pathOf(root))};
    for (std::size_t next = 0; next < tree.size() && tree.size() < mostProcesses; ++next) {
        const pid_t parent = tree[next].pid;
        for (const pid_t child : hasLists ? childrenOf(pathOf(parent)) : byParent[parent])
            tree.push_back(stateOf(child, pathOf(child)));
    }
    return tree;
}

} // namespace qrv::engine
