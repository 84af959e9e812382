#include "Platform/Foundation/NSDateFormatter.h"

#include "Platform/Foundation/PlainDatePattern.h"
#include "Platform/Foundation/Unicode.h"

#include <functional>
#include <map>
#include <mutex>

namespace qrv {

struct NSDateFormatter::Pattern {
    explicit Pattern(std::u16string_view pattern)
        : text(pattern), plain(PlainDatePattern::parse(pattern)), isASCII(plain && plain->isASCII()) {}

    std::u16string format(double secondsSince1970) const {
        const LocalTime local = localTime(secondsSince1970);
        if (plain && PlainDatePattern::canFormat(local)) {
            std::u16string shown;
            plain->append(shown, local);
            return shown;
        }
        std::call_once(isMade, [this] { full = std::make_unique<unicode::DatePattern>(text); });
        return full->format(secondsSince1970, local.parts.tm_gmtoff);
    }

    void appendUTF8(std::string& out, double secondsSince1970) const {
        const LocalTime local = localTime(secondsSince1970);
        if (isASCII && PlainDatePattern::canFormat(local)) {
            plain->append(out, local);
        } else {
            out += unicode::toUTF8Lossy(format(secondsSince1970));
        }
    }

    const std::u16string text;
    const std::optional<PlainDatePattern> plain;
    const bool isASCII;
    mutable std::once_flag isMade;
    mutable std::unique_ptr<const unicode::DatePattern> full;
};

namespace {

/// A pattern that was made before serves all formatters: a logger may be made for every line. Never
/// destroyed.
template <class Pattern>
std::shared_ptr<const Pattern> sharedPattern(std::u16string_view text) {
    constexpr std::size_t mostPatterns = 64;
    static auto& patterns = *new std::map<std::u16string, std::shared_ptr<const Pattern>, std::less<>>;
    static std::mutex mutex;
    const std::lock_guard lock(mutex);
    if (const auto known = patterns.find(text); known != patterns.end()) return known->second;
    if (patterns.size() >= mostPatterns) patterns.clear();
    return patterns.emplace(text, std::make_shared<const Pattern>(text)).first->second;
}

} // namespace

void NSDateFormatter::setDateFormat(const NSString& format) {
    readTimeZone();
    pattern_ = format.length() > 0 ? sharedPattern<Pattern>(format.view()) : nullptr;
}

void NSDateFormatter::appendUTF8(std::string& out, double secondsSinceReferenceDate) const {
    if (pattern_) pattern_->appendUTF8(out, secondsSinceReferenceDate + NSTimeIntervalSince1970);
}

NSString NSDateFormatter::stringFromDate(const NSDate& date) const {
    if (date.isNil()) return {};
    if (!pattern_) return u"";
    return NSString(pattern_->format(date.timeIntervalSinceReferenceDate() + NSTimeIntervalSince1970));
}

} // namespace qrv
