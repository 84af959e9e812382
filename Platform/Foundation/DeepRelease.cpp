#include "Platform/Foundation/DeepRelease.h"

#include <iterator>

namespace qrv {

namespace {

/// What the outermost call on this thread has still to release; null outside of one. A pointer, since
/// payloads are destroyed when the thread's own objects are gone, too.
thread_local std::vector<id>* waiting = nullptr;

template <class Move>
void release(const Move& moveTo) {
    if (waiting) return moveTo(*waiting);
    std::vector<id> outermost;
    waiting = &outermost;
    moveTo(outermost);
    while (!outermost.empty()) {
        const id last = std::move(outermost.back());
        outermost.pop_back();
    }
    waiting = nullptr;
}

} // namespace

void releaseDeep(std::vector<id>& contents) {
    if (contents.empty()) return;
    release([&](std::vector<id>& list) {
        list.insert(list.end(), std::move_iterator(contents.begin()), std::move_iterator(contents.end()));
    });
}

void releaseDeep(std::vector<std::pair<id, id>>& contents) {
    if (contents.empty()) return;
    release([&](std::vector<id>& list) {
        for (auto& [key, value] : contents) {
            list.push_back(std::move(key));
            list.push_back(std::move(value));
        }
    });
}

} // namespace qrv
