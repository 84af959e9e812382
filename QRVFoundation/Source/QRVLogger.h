#pragma once

// The library's logger: decides by named area whether a line is logged, builds its prefix and passes both to
// a log writer. Its settings are fixed when it is made. Use the macro of QRVLog.h for logging.

#include "Platform/Foundation/NSDictionary.h"
#include "QRVFoundation/Source/QRVLogWriter.h"

#include <memory>
#include <string_view>
#include <vector>

namespace qrv {

// Keys of the settings, beside those that are area names. Values are anything with a boolean value; the
// prefix is any object and shown by its description.

inline constexpr char16_t QRVLoggerAllAreas[] = u"QRVLoggerAllAreas";
inline constexpr char16_t QRVLoggerIncludeFile[] = u"QRVLoggerIncludeFile";
inline constexpr char16_t QRVLoggerIncludeLine[] = u"QRVLoggerIncludeLine";
inline constexpr char16_t QRVLoggerIncludeThread[] = u"QRVLoggerIncludeThread";
inline constexpr char16_t QRVLoggerIncludeFunction[] = u"QRVLoggerIncludeFunction";
inline constexpr char16_t QRVLoggerIncludeArea[] = u"QRVLoggerIncludeArea";
inline constexpr char16_t QRVLoggerPrefix[] = u"QRVLoggerPrefix";

/// The area of a log statement: a literal, of which no string is made unless it is logged, or a string.
class QRV_EXPORT QRVLogArea {
public:
    QRVLogArea(const char16_t* name)
        : name_(name ? std::u16string_view(name) : std::u16string_view()), isNil_(!name) {}

    QRVLogArea(const NSString& name) : string_(name), name_(string_.view()), isNil_(string_.isNil()) {}

    QRVLogArea(std::nullptr_t) {}

    QRVLogArea(const QRVLogArea&) = delete;
    QRVLogArea& operator=(const QRVLogArea&) = delete;

    bool isNil() const { return isNil_; }

    std::u16string_view name() const { return name_; }

    NSString string() const { return string_ || isNil_ ? string_ : NSString(name_); }

private:
    NSString string_;
    std::u16string_view name_;
    bool isNil_ = true;
};

/// Every operation may be called from any thread. The logging operations log unconditionally: callers first
/// ask `isEnabledForArea`, so that the arguments of a disabled line are never formatted.
class QRV_EXPORT QRVLogger : public Object, public std::enable_shared_from_this<QRVLogger> {
public:
    static const ClassInfo classInfo;

    // + sharedLogger
    /// Returns the installed logger; if there is none, a new disposable one with every area enabled.
    static std::shared_ptr<QRVLogger> sharedLogger();
    /// The shared logger, as sharedLogger returns it, if it has the area enabled; else null.
    static std::shared_ptr<QRVLogger> sharedLoggerForArea(const QRVLogArea& area);
    // + setSharedLogger:
    /// Installs a logger; null removes it.
    static void setSharedLogger(std::shared_ptr<QRVLogger> logger);

    // + setUpWithPersistentDomainName:
    /// Installs a logger with the settings of that domain.
    static void setUpWithPersistentDomainName(const NSString& name);

    // - init
    /// Takes its settings from all of the standard user defaults.
    QRVLogger();
    // - initDisposableLogger
    /// Has every area enabled.
    static std::shared_ptr<QRVLogger> initDisposableLogger();
    // - initWithPersistentDomainName:
    /// Takes its settings from one domain of the user defaults; an unknown or nil domain has none.
    static std::shared_ptr<QRVLogger> initWithPersistentDomainName(const NSString& name);
    // - initWithDefaultsDictionary:
    /// Prefixes consist of the area only, unless the dictionary says otherwise; nil adds nothing. Lines go to
    /// the unified log if it is available, else to the system log.
    explicit QRVLogger(const NSDictionary& defaults);
    /// Uses the given writer, which must not be null.
    QRVLogger(const NSDictionary& defaults, std::unique_ptr<QRVLogWriter> writer);

    const ClassInfo& objectClass() const override { return classInfo; }

    // - logFile:line:function:area:format:
    /// `file` is a source path and `function` the caller's name, in UTF-8; null counts as empty. A nil format
    /// logs "(null)".
    template <class... Arguments>
    void logFile_line_function_area_format(const char* file, unsigned long line, const char* function,
                                           const NSString& area, FormatFor<Arguments...> format,
                                           const Arguments&... arguments) {
        log(file, line, function, area, NSString::expanded(format, PassedFormatArguments(arguments...)));
    }

    // - logFile:line:function:area:format:arguments:
    void logFile_line_function_area_format_arguments(const char* file, unsigned long line,
                                                     const char* function, const NSString& area,
                                                     const NSString& format,
                                                     const FormatArguments& arguments);
    // - logFile:line:function:area:message:
    /// Logs the object's description unchanged, percent signs included.
    void logFile_line_function_area_message(const char* file, unsigned long line, const char* function,
                                            const NSString& area, const id& message);
    // - logPrefix:message:area:
    /// Passes all three to the writer. A nil prefix is reported to the assertion handler, which raises an
    /// exception.
    void logPrefix_message_area(const NSString& prefix, const NSString& message, const NSString& area);

    // - isEnabledForArea:
    /// A nil area always is enabled; any other if all areas are or its own switch is on.
    bool isEnabledForArea(const NSString& area) const;
    // - isOptionEnabled:
    /// False for a missing key, a value without a boolean value and nil.
    bool isOptionEnabled(const NSString& key) const;

    const QRVLogWriter& writer() const { return *_writer; }

private:
    void log(const char* file, unsigned long line, const char* function, const NSString& area,
             const NSString& message);
    NSString prefix(const char* file, unsigned long line, const char* function, const NSString& area) const;

    /// What the settings say, looked up once: they never change.
    class Options {
    public:
        explicit Options(const NSDictionary& settings);

        bool isOn(std::u16string_view name) const;

        bool hasArea(std::u16string_view name) const { return allAreas || isOn(name); }

        bool allAreas;
        bool includesFile;
        bool includesLine;
        bool includesThread;
        bool includesFunction;
        bool includesArea;
        id prefix;

    private:
        std::vector<NSString> switchedOn_; // areas and options, in their order
    };

    const Options options_;
    const std::unique_ptr<QRVLogWriter> _writer;
};

} // namespace qrv
