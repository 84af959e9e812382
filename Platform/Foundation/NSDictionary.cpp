#include "Platform/Foundation/NSDictionary.h"

#include "Platform/Foundation/CollectionDescription.h"
#include "Platform/Foundation/DeepRelease.h"
#include "Platform/Foundation/NSException.h"

#include <algorithm>
#include <typeinfo>

namespace qrv {

namespace {

const ClassInfo dictionaryClassInfo{"NSDictionary", &Object::classInfo};

using Entries = NSDictionary::Entries;
using Index = std::unordered_multimap<std::size_t, std::size_t>;

constexpr std::size_t notThere = static_cast<std::size_t>(-1);

std::size_t find(const Entries& entries, const Index& index, const id& key) {
    if (key.isNil()) return notThere;
    const auto [first, last] = index.equal_range(key.hash());
    const auto found =
        std::find_if(first, last, [&](const auto& e) { return entries[e.second].first == key; });
    return found == last ? notThere : found->second;
}

class DictionaryObject final : public Object, public NSCoding {
public:
    DictionaryObject(Entries&& entries, Index&& index)
        : entries_(std::move(entries)), index_(std::move(index)) {}

    ~DictionaryObject() override { releaseDeep(entries_); }

    const ClassInfo& objectClass() const override { return dictionaryClassInfo; }

    bool isEqual(const Object& other) const override {
        const auto* o = dynamic_cast<const DictionaryObject*>(&other);
        if (!o || o->entries_.size() != entries_.size()) return false;
        return std::all_of(entries_.begin(), entries_.end(),
                           [&](const auto& e) { return o->objectForKey(e.first) == e.second; });
    }

    std::size_t hash() const override { return entries_.size(); }

    NSString description() const override {
        Entries entries = entries_;
        Index index = index_;
        return describeCollection(
            NSDictionary(std::make_shared<DictionaryObject>(std::move(entries), std::move(index))));
    }

    id objectForKey(const id& key) const {
        const std::size_t at = find(entries_, index_, key);
        return at == notThere ? id() : entries_[at].second;
    }

    const Entries& entries() const { return entries_; }

private:
    Entries entries_;
    const Index index_;
};

} // namespace

NSDictionary::NSDictionary(std::initializer_list<std::pair<id, id>> entries) {
    NSMutableDictionary dictionary;
    for (const auto& [key, value] : entries) dictionary.setObject_forKey(value, key);
    *this = std::move(dictionary).copy();
}

const ClassInfo& NSDictionary::classInfo() {
    return dictionaryClassInfo;
}

bool NSDictionary::accepts(const Object& payload) {
    return typeid(payload) == typeid(DictionaryObject);
}

const NSDictionary::Entries& NSDictionary::entries() const {
    static const auto& none = *new Entries; // never destroyed
    return isNil() ? none : static_cast<const DictionaryObject&>(*shared()).entries();
}

id NSDictionary::objectForKey(const id& key) const {
    return isNil() ? id() : static_cast<const DictionaryObject&>(*shared()).objectForKey(key);
}

NSArray NSDictionary::allKeys() const {
    std::vector<id> keys;
    keys.reserve(count());
    for (const auto& entry : entries()) keys.push_back(entry.first);
    return NSArray(std::move(keys));
}

NSMutableDictionary NSDictionary::mutableCopy() const {
    NSMutableDictionary copy;
    copy.addEntriesFromDictionary(*this);
    return copy;
}

std::size_t NSMutableDictionary::indexOf(const id& key) const {
    return find(entries_, index_, key);
}

void NSMutableDictionary::setObject_forKey(const id& object, const id& key) {
    if (object.isNil()) {
        throw NSException(NSInvalidArgumentException,
                          NSString::stringWithFormat(u"-[NSMutableDictionary setObject:forKey:]: object "
                                                     u"cannot be nil (key: %@)",
                                                     key));
    }
    if (key.isNil()) {
        throw NSException(NSInvalidArgumentException,
                          u"-[NSMutableDictionary setObject:forKey:]: key cannot be nil");
    }
    const std::size_t at = indexOf(key);
    if (at != notThere) {
        entries_[at].second = object;
        return;
    }
    index_.emplace(key.hash(), entries_.size());
    entries_.emplace_back(key, object);
}

void NSMutableDictionary::removeObjectForKey(const id& key) {
    const std::size_t at = indexOf(key);
    if (at == notThere) return;
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(at));
    index_.clear();
    for (std::size_t i = 0; i < entries_.size(); ++i) index_.emplace(entries_[i].first.hash(), i);
}

void NSMutableDictionary::addEntriesFromDictionary(const NSDictionary& other) {
    for (const auto& [key, value] : other.entries()) setObject_forKey(value, key);
}

id NSMutableDictionary::objectForKey(const id& key) const {
    const std::size_t at = indexOf(key);
    return at == notThere ? id() : entries_[at].second;
}

NSDictionary NSMutableDictionary::copy() const& {
    return NSMutableDictionary(*this).copy();
}

NSDictionary NSMutableDictionary::copy() && {
    NSMutableDictionary taken = std::move(*this);
    *this = NSMutableDictionary();
    return NSDictionary(
        std::make_shared<DictionaryObject>(std::move(taken.entries_), std::move(taken.index_)));
}

} // namespace qrv
