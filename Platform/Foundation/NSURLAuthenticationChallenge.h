#pragma once

// A server's demand for credentials, and whom to answer.

#include "Platform/Foundation/NSURL.h"

namespace qrv {

class NSURLAuthenticationChallenge;

class NSURLAuthenticationChallengeSender {
public:
    virtual ~NSURLAuthenticationChallengeSender() = default;
    // - cancelAuthenticationChallenge:
    virtual void cancelAuthenticationChallenge(const NSURLAuthenticationChallenge& challenge) = 0;
};

/// Lives as long as the callback that hands it out.
class NSURLAuthenticationChallenge {
public:
    NSURLAuthenticationChallenge(NSURL url, NSURLAuthenticationChallengeSender& sender)
        : url_(std::move(url)), sender_(sender) {}

    /// The address that asks for credentials.
    const NSURL& URL() const { return url_; }

    // - sender
    NSURLAuthenticationChallengeSender& sender() const { return sender_; }

private:
    NSURL url_;
    NSURLAuthenticationChallengeSender& sender_;
};

} // namespace qrv
