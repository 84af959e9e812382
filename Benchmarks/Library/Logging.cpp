#include "Platform/Foundation/NSNumber.h"
#include "Platform/Logging/os_log.h"
#include "QRVFoundation/Source/QRVLog.h"
#include "QRVFoundation/Source/QRVOSLogWriter.h"
#include "Tests/Platform/Logging/LogReceiver.h"
#include "Tests/Support/TemporaryFolder.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <spdlog/logger.h>
#include <spdlog/sinks/stdout_sinks.h>
#include <string>
#include <unistd.h>

namespace qrv {

namespace {

// Every line in these rows is the same but for its date.

constexpr std::string_view lineAfterDate =
    " [org.quillvane.LibraryBenchmarks] [Benchmark] page.webarchive has 3 pages";
constexpr std::size_t lengthOfDate = std::string_view("2026-11-21 12:00:00.123").size();

enum class Target { file, null };
enum class Journal { leftOut, missing, there };

/// Standard error goes there for as long as this lives. A file begins empty.
class StandardErrorTo {
public:
    explicit StandardErrorTo(Target target)
        : path_(target == Target::null ? "/dev/null" : (folder_.path() / "log").string()),
          before_(fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3)) {
        const int file = open(path_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        dup2(file, STDERR_FILENO);
        close(file);
    }

    ~StandardErrorTo() {
        dup2(before_, STDERR_FILENO);
        close(before_);
    }

    StandardErrorTo(const StandardErrorTo&) = delete;
    StandardErrorTo& operator=(const StandardErrorTo&) = delete;

    /// Whether that many lines were written, and the first is the expected one. True for what keeps nothing.
    bool holds(std::size_t lines) const {
        if (path_ == "/dev/null") return true;
        std::ifstream file(path_);
        std::string first;
        if (std::getline(file, first) && !first.ends_with(lineAfterDate)) return false;
        return std::filesystem::file_size(path_) == lines * (lengthOfDate + lineAfterDate.size() + 1);
    }

private:
    TemporaryFolder folder_;
    std::string path_;
    int before_;
};

/// What the lines find in the journal's place for as long as this lives.
class JournalFor {
public:
    explicit JournalFor(Journal journal) : there_(journal == Journal::there) {
        setJournalSocketForTesting(there_ ? receiver_.path() : receiver_.path() + ".missing");
        if (journal == Journal::leftOut) setenv("QRVIsInXcode", "YES", 1); // for writers that are made now
    }

    ~JournalFor() { unsetenv("QRVIsInXcode"); }

    JournalFor(const JournalFor&) = delete;
    JournalFor& operator=(const JournalFor&) = delete;

    bool isThere() const { return there_; }

    /// Whether that many lines have arrived since the last call.
    bool got(std::size_t lines) { return receiver_.discard() == lines; }

private:
    LogReceiver receiver_;
    const bool there_;
};

/// Writes lines until the time is over, and makes sure that they have gone where they should.
template <class Write>
void measure(benchmark::State& state, Target to, JournalFor& journal, const Write& writeLine) {
    // As many as wait for a journal on every machine. Taking them adds little to what they cost.
    constexpr int linesAtOnce = 8;
    const StandardErrorTo target(to);
    while (state.KeepRunningBatch(linesAtOnce)) {
        for (int line = 0; line < linesAtOnce; ++line) writeLine();
        if (!journal.isThere()) continue;
        state.PauseTiming();
        if (!journal.got(linesAtOnce)) state.SkipWithError("the journal missed a line");
        state.ResumeTiming();
    }
    if (!target.holds(static_cast<std::size_t>(state.iterations()))) {
        state.SkipWithError("other lines were written");
    }
}

void installLogger(bool areaIsOn) {
    QRVLogger::setSharedLogger(std::make_shared<QRVLogger>(
        NSDictionary{{NSString(u"Benchmark"), NSNumber::numberWithBool(areaIsOn)}},
        std::make_unique<QRVOSLogWriter>()));
}

void logLine(const NSString& name, int pages) {
    QRV_LOG("Benchmarks/Library/Logging", "void logLine()", u"Benchmark", u"%@ has %d pages", name, pages);
}

void areaOff(benchmark::State& state) {
    const NSString name = u"page.webarchive";
    const StandardErrorTo target(Target::file);
    installLogger(false);
    for ([[maybe_unused]] auto turn : state) logLine(name, 3);
    if (!target.holds(0)) state.SkipWithError("a line was written");
    QRVLogger::setSharedLogger(nullptr);
}

void line(benchmark::State& state, Target to, Journal place) {
    const NSString name = u"page.webarchive";
    JournalFor journal(place);
    installLogger(true);
    measure(state, to, journal, [&] { logLine(name, 3); });
    QRVLogger::setSharedLogger(nullptr);
}

void lineWithoutSharedLogger(benchmark::State& state, Target to) {
    const NSString name = u"page.webarchive";
    JournalFor journal(Journal::there);
    measure(state, to, journal, [&] { logLine(name, 3); });
}

void lineOfSpdlog(benchmark::State& state, Target to) {
    const std::string name = "page.webarchive";
    JournalFor journal(Journal::leftOut);
    // Its stream is not buffered: each line is written at once.
    spdlog::logger logger("org.quillvane.LibraryBenchmarks",
                          std::make_shared<spdlog::sinks::stderr_sink_mt>());
    logger.set_pattern("%Y-%m-%d %H:%M:%S.%e [%n] %v");
    measure(state, to, journal, [&] { logger.info("[Benchmark] {} has {} pages", name, 3); });
}

} // namespace

BENCHMARK(areaOff);
BENCHMARK_CAPTURE(line, file, Target::file, Journal::leftOut);
BENCHMARK_CAPTURE(line, null, Target::null, Journal::leftOut);
BENCHMARK_CAPTURE(lineOfSpdlog, file, Target::file);
BENCHMARK_CAPTURE(lineOfSpdlog, null, Target::null);
BENCHMARK_CAPTURE(line, journal_file, Target::file, Journal::there);
BENCHMARK_CAPTURE(line, journal_null, Target::null, Journal::there);
BENCHMARK_CAPTURE(line, missing_journal_file, Target::file, Journal::missing);
BENCHMARK_CAPTURE(line, missing_journal_null, Target::null, Journal::missing);
BENCHMARK_CAPTURE(lineWithoutSharedLogger, file, Target::file);
BENCHMARK_CAPTURE(lineWithoutSharedLogger, null, Target::null);

} // namespace qrv
