#include "Platform/Foundation/Unicode.h"

#include <unicode/ubrk.h>

namespace qrv::unicode {

namespace {

struct CloseBreaker {
    void operator()(UBreakIterator* breaker) const { ubrk_close(breaker); }
};

using Breaker = std::unique_ptr<UBreakIterator, CloseBreaker>;

/// Creating a breaker reads its rules; copies share them.
Breaker copyOfBreaker() {
    static const Breaker original = [] {
        UErrorCode status = U_ZERO_ERROR;
        return Breaker(ubrk_open(UBRK_CHARACTER, "", nullptr, 0, &status));
    }();
    UErrorCode status = U_ZERO_ERROR;
    return Breaker(ubrk_clone(original.get(), &status));
}

void setText(UBreakIterator* breaker, std::u16string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    ubrk_setText(breaker, text.data(), static_cast<int32_t>(text.size()), &status);
}

/// Below U+0300 nothing joins with its neighbours, except CR with LF.
bool isPlain(std::u16string_view text, std::size_t index) {
    return index >= text.size() || (text[index] < 0x300 && text[index] != u'\r' && text[index] != u'\n');
}

} // namespace

Span composedSequenceAt(std::u16string_view text, std::size_t index) {
    if (isPlain(text, index) && isPlain(text, index + 1) && (index == 0 || isPlain(text, index - 1))) {
        return {index, index + 1};
    }
    thread_local const Breaker breaker = copyOfBreaker();
    setText(breaker.get(), text);
    const int32_t end = ubrk_following(breaker.get(), static_cast<int32_t>(index));
    const int32_t start = ubrk_previous(breaker.get());
    return {static_cast<std::size_t>(start), static_cast<std::size_t>(end)};
}

struct ComposedSequences::Iterator {
    Breaker breaker = copyOfBreaker();
};

ComposedSequences::ComposedSequences(std::u16string_view text)
    : text_(text), iterator_(std::make_unique<Iterator>()) {
    setText(iterator_->breaker.get(), text);
}

ComposedSequences::~ComposedSequences() = default;

std::optional<Span> ComposedSequences::next() {
    if (at_ >= text_.size()) return std::nullopt;
    const Span sequence{at_, static_cast<std::size_t>(ubrk_next(iterator_->breaker.get()))};
    at_ = sequence.end;
    return sequence;
}

} // namespace qrv::unicode
