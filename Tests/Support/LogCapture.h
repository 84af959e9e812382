#pragma once

// The log lines of a test, as a log writer would put them together.

#include "Platform/Foundation/NSNumber.h"
#include "QRVFoundation/Source/QRVLogger.h"

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace qrv {

class LogCapture {
public:
    LogCapture() { install({QRVLoggerAllAreas}); }

    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    ~LogCapture() { QRVLogger::setSharedLogger(nullptr); }

    /// A logger with just these switches on, and the area shown.
    void install(const std::vector<NSString>& switches) {
        NSMutableDictionary settings;
        for (const NSString& name : switches) {
            settings.setObject_forKey(NSNumber::numberWithBool(true), name);
        }
        QRVLogger::setSharedLogger(std::make_shared<QRVLogger>(settings, std::make_unique<Writer>(*lines_)));
    }

    const std::vector<std::string>& lines() const { return *lines_; }

    bool contains(const std::string& line) const { return count(line) > 0; }

    std::ptrdiff_t count(const std::string& line) const {
        return std::count(lines_->begin(), lines_->end(), line);
    }

    std::vector<std::string> startingWith(std::string_view beginning) const {
        std::vector<std::string> found;
        std::copy_if(lines_->begin(), lines_->end(), std::back_inserter(found),
                     [&](const std::string& line) { return line.starts_with(beginning); });
        return found;
    }

    void clear() { lines_->clear(); }

private:
    class Writer final : public QRVLogWriter {
    public:
        explicit Writer(std::vector<std::string>& lines) : lines_(lines) {}

        void writePrefix_message_area(const NSString& prefix, const NSString& message,
                                      const NSString& /*area*/) override {
            lines_.push_back(combinePrefix_andMessage(prefix, message).utf8());
        }

    private:
        std::vector<std::string>& lines_;
    };

    const std::unique_ptr<std::vector<std::string>> lines_ = std::make_unique<std::vector<std::string>>();
};

} // namespace qrv
