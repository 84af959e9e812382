#pragma once

// Builds the query of a URL from its items.

#include "Platform/Foundation/NSString.h"

#include <utility>
#include <vector>

namespace qrv {

class QRV_EXPORT NSURLQueryItem {
public:
    // + queryItemWithName:value:
    /// A nil value makes an item without "="; a nil name counts as empty.
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

class QRV_EXPORT NSURLComponents {
public:
    // - setQueryItems:
    void setQueryItems(std::vector<NSURLQueryItem> items) { items_ = std::move(items); }

    // - percentEncodedQuery
    /// Joins "name=value" of each item with "&". Characters that a query must not contain, and "&" and "=" in
    /// names and values, are percent-encoded. Unpaired surrogates become U+FFFD. Empty if there are no items.
    NSString percentEncodedQuery() const;

private:
    std::vector<NSURLQueryItem> items_;
};

} // namespace qrv
