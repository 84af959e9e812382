#include "Tests/Platform/Engine/EngineTestSupport.h"

#include "Platform/Confinement/SystemCallFilter.h"

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <fstream>
#include <grp.h>
#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sched.h>
#include <sstream>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace qrv::engine {

namespace fs = std::filesystem;

namespace {

/// Reads an envelope's length and then its contents, of which only the text that was said is kept; writes a
/// map with the one text.
constexpr char speech[] = R"bash(
LC_ALL=C
byte() { IFS= read -r -d '' -n 1 -u 3 letter || return 1; printf -v number '%d' "'$letter"; number=$((number & 255)); }
receive() {
    local at length=0
    message=
    for at in 1 2 3 4 5 6 7; do byte || return 1; length=$(((length << 8 | number) & 0xffffffff)); done
    for ((at = 0; at < length; ++at)); do byte || return 1; [[ $letter == [[:print:]] ]] && message+=$letter; done
    message=${message#csay?}
}
say() {
    local size=${#1} head
    printf -v head '\\x%02x' 216 24 90 0 0 $(((size + 9) >> 8)) $(((size + 9) & 255)) 191 99 115 97 121 \
        121 $((size >> 8)) $((size & 255))
    printf "$head%s\\xff" "$1" >&4
}
)bash";

} // namespace

Json saying(const std::string& text) {
    return Json::object({{"say", text}});
}

std::string said(const Json& message) {
    return message["say"].string();
}

OpenDirectory::OpenDirectory() {
    std::string name = (fs::temp_directory_path() / "engine-test-XXXXXX").string();
    EXPECT_NE(::mkdtemp(name.data()), nullptr);
    path_ = name;
    fs::permissions(path_, fs::perms::all);
}

OpenDirectory::~OpenDirectory() {
    fs::remove_all(path_);
}

std::string OpenDirectory::addScript(const std::string& name, const std::string& body) const {
    fs::path path = path_ / name;
    std::ofstream(path) << "#!/bin/bash\n" << speech << "cd '" << path_.string() << "'\n" << body << "\n";
    fs::permissions(path, fs::perms::owner_all | fs::perms::group_read | fs::perms::group_exec |
                              fs::perms::others_read | fs::perms::others_exec);
    return path.string();
}

EngineSearch only(const std::string& path) {
    return {.chosen = path, .places = {}, .path = {}};
}

std::string installedEngine() {
    auto found = locateEngine(EngineSearch::fromEnvironment());
    EXPECT_TRUE(found) << "these tests need the engine";
    return found.value_or("");
}

std::unique_ptr<EngineProcess> launch(EngineOptions options, NSRunLoop& loop) {
    auto result = EngineProcess::launch(std::move(options), loop);
    if (auto* error = std::get_if<EngineLaunchError>(&result)) throw std::runtime_error(error->message);
    return std::move(std::get<std::unique_ptr<EngineProcess>>(result));
}

std::vector<pid_t> livingInGroup(pid_t group) {
    std::vector<pid_t> living;
    for (const auto& entry : fs::directory_iterator("/proc")) {
        std::ifstream file(entry.path() / "stat");
        std::string line;
        if (!std::getline(file, line)) continue;
        // pid (name) state parent group; the name may hold blanks and parentheses
        std::istringstream rest(line.substr(line.rfind(')') + 1));
        char state = 0;
        pid_t parent = 0;
        pid_t itsGroup = 0;
        rest >> state >> parent >> itsGroup;
        if (itsGroup == group && state != 'Z' && state != 'X') living.push_back(std::stoi(line));
    }
    return living;
}

bool eventually(const std::function<bool()>& condition) {
    auto deadline = std::chrono::steady_clock::now() + patience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

int inChildProcess(const std::function<int()>& function) {
    // No handlers for forks: one that starts a thread, as the thread sanitizer's does, would bar the child
    // from user namespaces.
    pid_t child = ::_Fork();
    if (child == 0) {
        int result = 99;
        try {
            result = function();
        } catch (const std::exception& error) {
            std::fprintf(stderr, "%s\n", error.what());
        }
        ::_exit(result);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void becomeOrdinaryUser() {
    constexpr unsigned user = 31415;
    if (::geteuid() != 0) return;
    if (::setgroups(0, nullptr) != 0 || ::setresgid(user, user, user) != 0 ||
        ::setresuid(user, user, user) != 0)
        throw std::runtime_error("root can not be given up");
}

void refuseNamespaces(Refused refused) {
    unsigned flags = CLONE_NEWUSER;
    if (refused == Refused::allNamespaces) flags |= CLONE_NEWNET | CLONE_NEWPID;
    sock_filter program[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_unshare, 2, 0),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_clone, 1, 0),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, static_cast<unsigned>(offsetof(seccomp_data, args))),
        BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, flags, 1, 0),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EPERM),
    };
    sock_fprog filter{static_cast<unsigned short>(sizeof program / sizeof program[0]), program};
    if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
        ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter, 0, 0) != 0)
        throw std::runtime_error("the filter can not be installed");
}

void refuseCall(int number) {
    auto filter = SystemCallFilter::allowingAll();
    filter.refuse({number}, EPERM);
    filter.compile();
    if (!filter.install()) throw std::runtime_error("the filter can not be installed");
}

std::string attachToPage(DevToolsClient& client) {
    DevToolsReply targets = client.call({}, "Target.getTargets", {}, patience);
    for (const Json& target : targets.result["targetInfos"].elements()) {
        if (target["type"].stringView() != "page") continue;
        Json params = Json::object({{"targetId", target["targetId"]}, {"flatten", true}});
        return client.call({}, "Target.attachToTarget", params, patience).result["sessionId"].string();
    }
    ADD_FAILURE() << "there is no page: " << targets.errorMessage;
    return {};
}

Json evaluate(DevToolsClient& client, const std::string& session, const std::string& expression) {
    Json params = Json::object({{"expression", expression}, {"awaitPromise", true}, {"returnByValue", true}});
    DevToolsReply reply = client.call(session, "Runtime.evaluate", params, patience);
    EXPECT_TRUE(reply.ok()) << reply.errorMessage;
    return reply.result["result"]["value"];
}

} // namespace qrv::engine
