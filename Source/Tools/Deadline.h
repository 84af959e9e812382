#pragma once

// The end of a run that takes too long. A thread of its own waits for it, since everything else may hang: at
// the deadline it answers in the run's place, and ends the process.
//
//     Deadline::start(seconds, [] { deliver(timeoutError); });
//     ...
//     Deadline::claimAnswer();
//     deliver(result);

#include <functional>
#include <optional>
#include <string>

namespace qrv {

class Deadline {
public:
    /// Reads a number of seconds, which may be a fraction; nothing for what is none, or not above 0.
    static std::optional<double> secondsFromText(const std::string& text);

    /// In this many seconds, calls the function on the deadline's thread and ends the process with status 0,
    /// and within 0.7 seconds more if the function hangs or the answer has been claimed before. Once in a
    /// process, and by the thread that claims the answer. Children of other threads must end by themselves
    /// (PR_SET_PDEATHSIG).
    static void start(double seconds, std::function<void()> answer);

    /// Takes the right to answer, of which there is one; again for a second try. Does not return if the
    /// deadline has taken it: the process is about to end. Does nothing before a start.
    static void claimAnswer();

    /// For as long as it lives, the deadline has no thread, so that what holds for one thread and those that
    /// it starts, or wants to be the only one, can be done: Landlock, namespaces. A deadline that passes
    /// meanwhile strikes at the end of it. Does nothing before a start; by the thread that started.
    class Suspension {
    public:
        Suspension();
        ~Suspension();
        Suspension(const Suspension&) = delete;
        Suspension& operator=(const Suspension&) = delete;
    };
};

} // namespace qrv
