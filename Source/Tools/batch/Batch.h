#pragma once

// Converts all archives of a list, several at once, and keeps the results.

#include "Source/Tools/batch/Conversion/Conversion.h"
#include "Source/Tools/batch/Progress/Progress.h"
#include "Source/Tools/batch/Results/ResultsFile.h"
#include "Source/Tools/batch/Resumption.h"
#include "Source/Tools/batch/Selection/ArchiveList.h"

#include <atomic>
#include <exception>
#include <mutex>
#include <stop_token>
#include <thread>
#include <vector>

namespace qrv::batch {

/// Each conversion has a thread of its own, which waits for its processes.
class Batch {
public:
    /// All of these have to live as long as the batch.
    Batch(const std::vector<Item>& items, std::size_t jobs, const ConversionOptions& conversion,
          const Resumption& resumption, ResultsFile& results, Progress& progress);
    Batch(const Batch&) = delete;
    Batch& operator=(const Batch&) = delete;
    /// Stops what is under way.
    ~Batch();

    /// Begins; returns at once.
    void start();
    /// Ends what is under way, of which nothing is left, and begins nothing more.
    void stop();
    /// Lets the progress show how far it is. False when all threads have ended.
    bool isUnderWay();
    /// What became of the archives, when all threads have ended. Throws what ended the run: results that
    /// could not be written, or no memory.
    Tally tally();

private:
    void work();
    void convertOne(const Item& item);
    void waitForMemory();
    void finish(const Record& record, Outcome outcome, bool isNew);
    std::chrono::duration<double> elapsed() const;

    const std::vector<Item>& items_;
    std::size_t jobs_;
    const ConversionOptions& conversion_;
    const Resumption& resumption_;
    ResultsFile& results_;
    Progress& progress_;
    std::chrono::steady_clock::time_point start_;
    std::stop_source stop_;
    std::atomic<std::size_t> next_ = 0;
    std::atomic<std::size_t> converting_ = 0;
    std::atomic<std::size_t> working_ = 0;
    std::mutex mutex_; // guards what follows, results and progress
    Tally tally_;
    std::exception_ptr failure_;
    std::vector<std::jthread> threads_; // last: they end first
};

} // namespace qrv::batch
