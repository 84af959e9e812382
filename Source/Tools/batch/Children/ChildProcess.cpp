#include "Source/Tools/batch/Children/ChildProcess.h"

#include "Platform/Confinement/ForkedChild.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <functional>

#include <linux/close_range.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <boost/asio.hpp>
#include <boost/optional.hpp>

#define BOOST_PROCESS_USE_STD_FS
#include <boost/process/v2/process.hpp>
#include <boost/process/v2/stdio.hpp>

namespace qrv::batch {

namespace asio = boost::asio;
namespace process = boost::process::v2;

namespace {

/// What outlives its parent, and holds its pipes open, is not waited for.
constexpr std::chrono::seconds mostSilence{2};

/// How many files a child may have open, where this process may have more.
std::optional<rlimit> openFilesOfChildren;

/// Called by the library in the child, before and instead of the program. Async-signal-safe.
class ChildSetup {
public:
    ChildSetup(const std::vector<std::string>& environment, const ChildCommand& command)
        : command_(command), parent_(getpid()) {
        for (const std::string& entry : environment) environment_.push_back(entry.c_str());
        environment_.push_back(nullptr);
    }

    /// Called in this process, before the child is made.
    template <class Launcher>
    boost::system::error_code on_setup(Launcher& launcher, const std::filesystem::path&,
                                       const char* const*) const {
        launcher.env = environment_.data();
        return {};
    }

    template <class Launcher>
    boost::system::error_code on_exec_setup(Launcher&, const std::filesystem::path&,
                                            const char* const*) const {
        setpgid(0, 0);
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() != parent_) _exit(EXIT_FAILURE); // it has ended meanwhile
        resetSignals();
        // The library closes only what is above the last descriptor that it needs.
        close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
        if (openFilesOfChildren) setrlimit(RLIMIT_NOFILE, &*openFilesOfChildren);
        if (command_.memoryLimit) {
            const rlimit limit{*command_.memoryLimit, *command_.memoryLimit};
            setrlimit(RLIMIT_AS, &limit);
        }
        if (command_.files) command_.files->enforce();
        if (command_.calls && !command_.calls->install()) return {errno, boost::system::system_category()};
        return {};
    }

    /// The library would end the child by exit, and so run what was registered for this process.
    template <class... Details>
    void on_exec_error(Details&&...) const {
        _exit(EXIT_FAILURE);
    }

private:
    std::vector<const char*> environment_;
    const ChildCommand& command_;
    pid_t parent_;
};

std::vector<std::string> environmentWith(const decltype(ChildCommand::variables)& variables) {
    const auto isReplaced = [&](std::string_view entry) {
        return std::any_of(variables.begin(), variables.end(),
                           [entry](const auto& variable) { return entry.starts_with(variable.first + "="); });
    };
    std::vector<std::string> entries;
    for (char** entry = environ; *entry; ++entry) {
        if (!isReplaced(*entry)) entries.emplace_back(*entry);
    }
    for (const auto& [name, value] : variables) {
        if (value) entries.push_back(std::string(name).append("=").append(*value));
    }
    return entries;
}

/// Reads one stream of the child to its end.
class Stream {
public:
    Stream(asio::io_context& context, std::size_t most) : pipe(context), most_(most) {}

    void read(std::function<void()> whenAtEnd) {
        whenAtEnd_ = std::move(whenAtEnd);
        readOn();
    }

    asio::readable_pipe pipe;
    std::string text;
    bool isAtEnd = false;

private:
    void readOn() {
        pipe.async_read_some(asio::buffer(part_),
                             [this](const boost::system::error_code& error, std::size_t size) {
                                 text.append(part_.data(), std::min(size, most_ - text.size()));
                                 if (!error) return readOn();
                                 isAtEnd = true;
                                 whenAtEnd_();
                             });
    }

    std::size_t most_;
    std::array<char, 16384> part_{};
    std::function<void()> whenAtEnd_;
};

/// One child, from its start to its end.
class Run {
public:
    explicit Run(const ChildCommand& command)
        : command_(command), output_(context_, command.mostOutput), errors_(context_, command.mostOutput),
          timer_(context_), child_(context_) {}

    ChildEnd toEnd(const std::stop_token& stop) {
        if (const int error = start()) return {ChildEnd::Kind::notStarted, error, {}, {}};
        output_.read([this] { leaveWhenDone(); });
        errors_.read([this] { leaveWhenDone(); });
        child_.async_wait([this](const boost::system::error_code&, int) { ended(); });
        if (command_.timeLimit) killAfter(*command_.timeLimit);
        {
            const std::stop_callback whenStopped(
                stop, [this] { asio::post(context_, [this] { kill(ChildEnd::Kind::stopped); }); });
            context_.run();
        }
        end_.output = std::move(output_.text);
        end_.errors = std::move(errors_.text);
        return std::move(end_);
    }

private:
    int start() {
        if (access(command_.program.c_str(), X_OK) != 0) return errno;
        const std::vector<std::string> environment = environmentWith(command_.variables);
        boost::system::error_code error;
        child_ = process::default_process_launcher()(
            context_.get_executor(), error, command_.program, command_.arguments,
            process::process_stdio{nullptr, output_.pipe, errors_.pipe}, ChildSetup(environment, command_));
        return error ? error.value() : 0;
    }

    void killAfter(std::chrono::milliseconds time) {
        timer_.expires_after(time);
        timer_.async_wait([this](const boost::system::error_code& error) {
            if (!error) kill(ChildEnd::Kind::timedOut);
        });
    }

    void kill(ChildEnd::Kind reason) {
        if (hasEnded_) return;
        reason_ = reason;
        // Its group is its own from the start: the child makes it before the program begins.
        ::kill(-child_.id(), SIGKILL);
    }

    void ended() {
        hasEnded_ = true;
        end_.kind = reason_.value_or(ChildEnd::Kind::ended);
        end_.status = child_.native_exit_code();
        // What the child has left behind in its group, whose number is nobody else's while it has a member.
        ::kill(-child_.id(), SIGKILL);
        timer_.expires_after(mostSilence);
        timer_.async_wait([this](const boost::system::error_code& error) {
            if (!error) context_.stop();
        });
        leaveWhenDone();
    }

    /// The context has nothing to do any more.
    void leaveWhenDone() {
        if (hasEnded_ && output_.isAtEnd && errors_.isAtEnd) timer_.cancel();
    }

    const ChildCommand& command_;
    asio::io_context context_;
    Stream output_;
    Stream errors_;
    asio::steady_timer timer_;
    process::process child_;
    std::optional<ChildEnd::Kind> reason_;
    bool hasEnded_ = false;
    ChildEnd end_{};
};

} // namespace

std::string ChildEnd::text() const {
    switch (kind) {
    case Kind::ended:
        return endText(status);
    case Kind::timedOut:
        return "was killed, since its time was over";
    case Kind::stopped:
        return "was stopped";
    case Kind::notStarted:
        break;
    }
    return std::string("could not be started: ") + std::strerror(status);
}

void allowManyChildren() {
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
    const rlimit most{limit.rlim_max, limit.rlim_max};
    if (setrlimit(RLIMIT_NOFILE, &most) == 0) openFilesOfChildren = limit;
}

ChildEnd runChild(const ChildCommand& command, const std::stop_token& stop) {
    return Run(command).toEnd(stop);
}

} // namespace qrv::batch
