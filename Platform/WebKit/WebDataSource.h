#pragma once

// What a frame is loading or has loaded: the request, the main resource's type and the page's title.

#include "Platform/Foundation/NSURLRequest.h"
#include "Platform/WebArchive/WebResource.h"

namespace qrv {

class WebDataSource {
public:
    explicit WebDataSource(NSURLRequest request, WebResource mainResource = {})
        : request_(std::move(request)), mainResource_(std::move(mainResource)) {}

    // - request
    const NSURLRequest& request() const { return request_; }

    // - mainResource
    /// nil until the load is committed. Has only type and URL, no bytes.
    const WebResource& mainResource() const { return mainResource_; }

    // - pageTitle
    /// nil if the page has no title.
    const NSString& pageTitle() const { return pageTitle_; }

    void setMainResource(WebResource resource) { mainResource_ = std::move(resource); }

    void setPageTitle(NSString title) { pageTitle_ = std::move(title); }

private:
    NSURLRequest request_;
    WebResource mainResource_;
    NSString pageTitle_;
};

} // namespace qrv
