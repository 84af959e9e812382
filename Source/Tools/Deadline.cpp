#include "Source/Tools/Deadline.h"

#include "Platform/Foundation/FileDescriptor.h"
#include "Platform/Foundation/FileReplacement.h"
#include "Platform/Foundation/SignalsBlocked.h"

#include <algorithm>
#include <atomic>
#include <charconv>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/time.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace qrv {

namespace {

using Clock = std::chrono::steady_clock;

constexpr double longest = 1e9; // seconds; far more, and far less than the clock can count

// How long the process may live on after the deadline. Together they keep it within a second.
constexpr std::chrono::milliseconds timeToDeliver{400}; // for a run that has claimed the answer
constexpr suseconds_t timeToEnd = 700'000;              // microseconds; for everything

enum class Claim { none, run, deadline };

struct State {
    Clock::time_point end;
    std::function<void()> answer;
    std::atomic<Claim> claim = Claim::none;
    FileDescriptor stop; // becomes readable when the thread is to end
    std::thread thread;
    std::atomic<pid_t> threadID = 0;
};

/// Null without a deadline. Never destroyed: the thread may outlive the statics.
State* state = nullptr;

/// Whether the answer is the claimant's.
bool claim(Claim claimant) {
    Claim present = Claim::none;
    return state->claim.compare_exchange_strong(present, claimant) || present == claimant;
}

[[noreturn]] void endProcess(int /*signal*/) {
    ::_exit(EXIT_SUCCESS);
}

/// By a timer, whose signal is taken by whatever thread can.
void endProcessSoon() {
    std::signal(SIGALRM, &endProcess);
    sigset_t alarm;
    ::sigemptyset(&alarm);
    ::sigaddset(&alarm, SIGALRM);
    ::pthread_sigmask(SIG_UNBLOCK, &alarm, nullptr);
    const itimerval once{.it_interval = {0, 0}, .it_value = {0, timeToEnd}};
    ::setitimer(ITIMER_REAL, &once, nullptr);
}

[[noreturn]] void strike() {
    endProcessSoon();
    const bool isOurs = claim(Claim::deadline);
    if (!isOurs) std::this_thread::sleep_for(timeToDeliver);
    abandonReplacements();
    try {
        if (isOurs) state->answer();
    } catch (const std::exception&) {
        endProcess(SIGALRM); // there is no other answer, and no time
    }
    endProcess(SIGALRM);
}

/// False if the thread has been told to end before.
bool waitForTheEnd() {
    for (;;) {
        const auto left = std::chrono::nanoseconds(state->end - Clock::now()).count();
        if (left <= 0) return true;
        constexpr long long second = 1'000'000'000;
        const timespec time{.tv_sec = left / second, .tv_nsec = left % second};
        pollfd stop{.fd = state->stop.get(), .events = POLLIN, .revents = 0};
        if (::ppoll(&stop, 1, &time, nullptr) > 0) return false;
    }
}

/// The thread takes no signals: they are for the thread that can finish what it is doing.
void startThread() {
    state->stop = FileDescriptor(::eventfd(0, EFD_CLOEXEC));
    if (!state->stop) throw std::system_error(errno, std::generic_category(), "watching the deadline");
    const SignalsBlocked inherited;
    state->thread = std::thread([] {
        state->threadID = ::gettid();
        if (waitForTheEnd()) strike();
    });
}

} // namespace

std::optional<double> Deadline::secondsFromText(const std::string& text) {
    double seconds = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, seconds);
    if (error != std::errc() || rest != end || !std::isfinite(seconds) || seconds <= 0) return {};
    return seconds;
}

void Deadline::start(double seconds, std::function<void()> answer) {
    const std::chrono::duration<double> time(std::min(seconds, longest));
    state = new State;
    state->end = Clock::now() + std::chrono::duration_cast<Clock::duration>(time);
    state->answer = std::move(answer);
    startThread();
}

void Deadline::claimAnswer() {
    if (!state || claim(Claim::run)) return;
    for (;;) ::pause();
}

Deadline::Suspension::Suspension() {
    if (!state) return;
    ::eventfd_write(state->stop.get(), 1);
    state->thread.join();
    // The system may count it still.
    while (::tgkill(::getpid(), state->threadID, 0) == 0) std::this_thread::yield();
}

Deadline::Suspension::~Suspension() {
    if (state) startThread();
}

} // namespace qrv
