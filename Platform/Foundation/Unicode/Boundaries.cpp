#include "Platform/Foundation/Unicode.h"

#include <mutex>
#include <unicode/ubrk.h>
#include <vector>

namespace qrv::unicode {

namespace {

struct CloseBreaker {
    void operator()(UBreakIterator* breaker) const { ubrk_close(breaker); }
};

using Breaker = std::unique_ptr<UBreakIterator, CloseBreaker>;

/// Breakers that are not in use: making one takes longer than using it. Never destroyed nor bound to a
/// thread, since lines are split until the very end of the process.
class Breakers {
public:
    static Breakers& shared() {
        static Breakers& instance = *new Breakers;
        return instance;
    }

    Breaker take() {
        {
            const std::lock_guard lock(mutex_);
            if (!idle_.empty()) {
                Breaker breaker = std::move(idle_.back());
                idle_.pop_back();
                return breaker;
            }
        }
        UErrorCode status = U_ZERO_ERROR;
        return Breaker(ubrk_open(UBRK_CHARACTER, "", nullptr, 0, &status));
    }

    void giveBack(Breaker breaker) {
        const std::lock_guard lock(mutex_);
        idle_.push_back(std::move(breaker));
    }

private:
    std::mutex mutex_;
    std::vector<Breaker> idle_;
};

/// A breaker at the start of a text.
class BreakerOfText {
public:
    explicit BreakerOfText(std::u16string_view text) : breaker_(Breakers::shared().take()) {
        UErrorCode status = U_ZERO_ERROR;
        ubrk_setText(breaker_.get(), text.data(), static_cast<int32_t>(text.size()), &status);
    }

    ~BreakerOfText() { Breakers::shared().giveBack(std::move(breaker_)); }

    BreakerOfText(const BreakerOfText&) = delete;
    BreakerOfText& operator=(const BreakerOfText&) = delete;

    UBreakIterator* get() const { return breaker_.get(); }

private:
    Breaker breaker_;
};

/// Below U+0300 nothing joins with its neighbours, except CR with LF.
bool isPlain(std::u16string_view text, std::size_t index) {
    return index >= text.size() || (text[index] < 0x300 && text[index] != u'\r' && text[index] != u'\n');
}

} // namespace

Span composedSequenceAt(std::u16string_view text, std::size_t index) {
    if (isPlain(text, index) && isPlain(text, index + 1) && (index == 0 || isPlain(text, index - 1))) {
        return {index, index + 1};
    }
    const BreakerOfText breaker(text);
    const int32_t end = ubrk_following(breaker.get(), static_cast<int32_t>(index));
    const int32_t start = ubrk_previous(breaker.get());
    return {static_cast<std::size_t>(start), static_cast<std::size_t>(end)};
}

struct ComposedSequences::Iterator {
    explicit Iterator(std::u16string_view text) : breaker(text) {}

    const BreakerOfText breaker;
};

ComposedSequences::ComposedSequences(std::u16string_view text)
    : text_(text), iterator_(std::make_unique<Iterator>(text)) {}

ComposedSequences::~ComposedSequences() = default;

std::optional<Span> ComposedSequences::next() {
    if (at_ >= text_.size()) return std::nullopt;
    const Span sequence{at_, static_cast<std::size_t>(ubrk_next(iterator_->breaker.get()))};
    at_ = sequence.end;
    return sequence;
}

} // namespace qrv::unicode
