#pragma once

// Keyed collections. They enumerate their entries in the order in which the keys were first set.

#include "Platform/Foundation/NSArray.h"

#include <unordered_map>
#include <utility>
#include <vector>

namespace qrv {

class NSMutableDictionary;

/// Immutable. Copies share.
class NSDictionary : public id {
public:
    using Entries = std::vector<std::pair<id, id>>;

    using id::id;
    NSDictionary() = default;
    /// Later entries replace earlier ones of an equal key. nil keys or values raise
    /// NSInvalidArgumentException.
    NSDictionary(std::initializer_list<std::pair<id, id>> entries);
    static const ClassInfo& classInfo();

    // + dictionary
    static NSDictionary dictionary() { return NSDictionary(std::initializer_list<std::pair<id, id>>{}); }

    /// 0 for nil.
    std::size_t count() const { return entries().size(); }

    // - objectForKey:
    /// nil when there is none, for a nil key and for nil.
    id objectForKey(const id& key) const;
    // - allKeys
    /// In the order of enumeration.
    NSArray allKeys() const;
    // - mutableCopy
    NSMutableDictionary mutableCopy() const;

    /// Empty for nil. Valid as long as any handle on this payload lives.
    const Entries& entries() const;

    auto begin() const { return entries().begin(); }

    auto end() const { return entries().end(); }
};

/// A dictionary in the making; it belongs to one owner.
class NSMutableDictionary {
public:
    NSMutableDictionary() = default;

    // - setObject:forKey:
    /// nil objects or keys raise NSInvalidArgumentException. A key that is there keeps its place.
    void setObject_forKey(const id& object, const id& key);
    // - removeObjectForKey:
    void removeObjectForKey(const id& key);
    // - addEntriesFromDictionary:
    /// nil adds nothing.
    void addEntriesFromDictionary(const NSDictionary& other);
    // - objectForKey:
    id objectForKey(const id& key) const;

    std::size_t count() const { return entries_.size(); }

    // - copy
    NSDictionary copy() const&;
    NSDictionary copy() &&;

    operator NSDictionary() const { return copy(); }

private:
    std::size_t indexOf(const id& key) const;

    NSDictionary::Entries entries_;
    std::unordered_multimap<std::size_t, std::size_t> index_; // hash of a key -> its place in entries_
};

} // namespace qrv
