#pragma once

// The description of a navigation for a policy delegate, and its answer.

#include "Platform/Foundation/Object.h"

namespace qrv {

/// Why a frame navigates, with the platform's values.
enum WebNavigationType : int {
    WebNavigationTypeLinkClicked = 0,
    WebNavigationTypeFormSubmitted = 1,
    WebNavigationTypeBackForward = 2,
    WebNavigationTypeReload = 3,
    WebNavigationTypeFormResubmitted = 4,
    WebNavigationTypeOther = 5,
};

/// Keys of the action information: the type (a number) and the address (a URL).
inline constexpr char16_t WebActionNavigationTypeKey[] = u"WebActionNavigationTypeKey";
inline constexpr char16_t WebActionOriginalURLKey[] = u"WebActionOriginalURLKey";

/// Receives the answer to one question. No answer counts as `ignore`.
class WebPolicyDecisionListener {
public:
    virtual ~WebPolicyDecisionListener() = default;
    // - use
    virtual void use() = 0;
    // - ignore
    virtual void ignore() = 0;
};

} // namespace qrv
