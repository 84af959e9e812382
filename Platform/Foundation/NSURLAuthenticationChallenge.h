#pragma once

// A server's demand for credentials, and the object that answers it.

#include "Platform/Foundation/NSURL.h"

namespace qrv {

class NSURLAuthenticationChallenge;

class NSURLAuthenticationChallengeSender {
public:
    virtual ~NSURLAuthenticationChallengeSender() = default;
    // - cancelAuthenticationChallenge:
    virtual void cancelAuthenticationChallenge(const NSURLAuthenticationChallenge& challenge) = 0;
};

/// Valid during the callback that delivers it only.
class NSURLAuthenticationChallenge {
public:
    NSURLAuthenticationChallenge(NSURL url, NSURLAuthenticationChallengeSender& sender)
        : url_(std::move(url)), sender_(sender) {}

    /// The address that demands credentials.
    const NSURL& URL() const { return url_; }

    // - sender
    NSURLAuthenticationChallengeSender& sender() const { return sender_; }

private:
    NSURL url_;
    NSURLAuthenticationChallengeSender& sender_;
};

} // namespace qrv
