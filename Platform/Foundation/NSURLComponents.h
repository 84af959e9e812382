#pragma once

// The query of a URL from its pieces.

#include "Platform/Foundation/NSString.h"

#include <utility>
#include <vector>

namespace qrv {

class NSURLQueryItem {
public:
    // + queryItemWithName:value:
    /// A nil value makes an item without "="; a nil name counts as the empty one.
    static NSURLQueryItem queryItemWithName_value(NSString name, NSString value) {
        return {std::move(name), std::move(value)};
    }

    // - name
    const NSString& name() const { return name_; }

    // - value
    const NSString& value() const { return value_; }

private:
    NSURLQueryItem(NSString name, NSString value) : name_(std::move(name)), value_(std::move(value)) {}

    NSString name_;
    NSString value_;
};

class NSURLComponents {
public:
    // - setQueryItems:
    void setQueryItems(std::vector<NSURLQueryItem> items) { items_ = std::move(items); }

    // - percentEncodedQuery
    /// "name=value" for each item, joined with "&"; escaped is what a query may not hold, and "&" and "=" in
    /// names and values. Unpaired surrogates become U+FFFD. Empty without items.
    NSString percentEncodedQuery() const;

private:
    std::vector<NSURLQueryItem> items_;
};

} // namespace qrv
