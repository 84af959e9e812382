#pragma once

// What a policy delegate is told about a navigation, and how it answers.

#include "Platform/Foundation/Object.h"

namespace qrv {

/// Why a frame is to navigate, with the platform's numbers.
enum WebNavigationType : int {
    WebNavigationTypeLinkClicked = 0,
    WebNavigationTypeFormSubmitted = 1,
    WebNavigationTypeBackForward = 2,
    WebNavigationTypeReload = 3,
    WebNavigationTypeFormResubmitted = 4,
    WebNavigationTypeOther = 5,
};

/// Keys of the action information: the type as a number, the address as a URL.
inline constexpr char16_t WebActionNavigationTypeKey[] = u"WebActionNavigationTypeKey";
inline constexpr char16_t WebActionOriginalURLKey[] = u"WebActionOriginalURLKey";

/// Receives the answer to one question. What is not answered with `use` is ignored.
class WebPolicyDecisionListener {
public:
    virtual ~WebPolicyDecisionListener() = default;
    // - use
    virtual void use() = 0;
    // - ignore
    virtual void ignore() = 0;
};

} // namespace qrv
