#pragma once

// Dictionaries. They enumerate their entries in the order in which the keys were first set.

#include "Platform/Foundation/NSArray.h"

#include <unordered_map>
#include <utility>
#include <vector>

namespace qrv {

class NSMutableDictionary;

/// An immutable dictionary; copies share their storage.
class QRV_EXPORT NSDictionary : public Handle<NSDictionary> {
public:
    using Entries = std::vector<std::pair<id, id>>;

    using Handle::Handle;
    NSDictionary() = default;
    /// Of entries with equal keys the last one counts. nil keys and values raise NSInvalidArgumentException.
    NSDictionary(std::initializer_list<std::pair<id, id>> entries);
    static const ClassInfo& classInfo();
    static bool accepts(const Object& payload);

    // + dictionary
    static NSDictionary dictionary() { return NSDictionary(std::initializer_list<std::pair<id, id>>{}); }

    /// 0 for nil.
    std::size_t count() const { return entries().size(); }

    // - objectForKey:
    /// Returns nil if there is no such key, and for a nil key or receiver.
    id objectForKey(const id& key) const;
    // - allKeys
    /// In the order of enumeration.
    NSArray allKeys() const;
    // - mutableCopy
    NSMutableDictionary mutableCopy() const;

    /// Empty for nil. Valid for as long as a handle to this payload exists.
    const Entries& entries() const;

    auto begin() const { return entries().begin(); }

    auto end() const { return entries().end(); }
};

/// A dictionary that can be changed, by one owner.
class QRV_EXPORT NSMutableDictionary {
public:
    NSMutableDictionary() = default;

    // - setObject:forKey:
    /// nil objects and keys raise NSInvalidArgumentException. An existing key keeps its place.
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
