#include "Platform/Engine/Loading/NetErrors.h"

#include "Tests/Platform/Foundation/Printing.h"

#include <gtest/gtest.h>

namespace qrv::engine {
namespace {

const NSURL url = NSURL::URLWithString(u"http://h/a");

TEST(NetErrors, HaveTheCodesOfTheURLErrorDomain) {
    const std::pair<const char*, long long> codes[] = {
        {"ERR_ABORTED", -999},
        {"ERR_BLOCKED_BY_CLIENT", -999},
        {"ERR_INVALID_URL", -1000},
        {"ERR_TIMED_OUT", -1001},
        {"ERR_CONNECTION_TIMED_OUT", -1001},
        {"ERR_UNKNOWN_URL_SCHEME", -1002},
        {"ERR_DISALLOWED_URL_SCHEME", -1002},
        {"ERR_NAME_NOT_RESOLVED", -1003},
        {"ERR_CONNECTION_REFUSED", -1004},
        {"ERR_CONNECTION_FAILED", -1004},
        {"ERR_ADDRESS_UNREACHABLE", -1004},
        {"ERR_CONNECTION_CLOSED", -1005},
        {"ERR_CONNECTION_RESET", -1005},
        {"ERR_CONNECTION_ABORTED", -1005},
        {"ERR_TOO_MANY_REDIRECTS", -1007},
        {"ERR_FILE_NOT_FOUND", -1008},
        {"ERR_FAILED", -1008},
        {"ERR_INTERNET_DISCONNECTED", -1009},
        {"ERR_NETWORK_ACCESS_DENIED", -1009},
        {"ERR_INVALID_AUTH_CREDENTIALS", -1013},
        {"ERR_SSL_PROTOCOL_ERROR", -1200},
    };
    for (const auto& [text, code] : codes) {
        EXPECT_EQ(urlError(std::string("net::") + text, url).code(), code) << text;
        const NSError error = urlError(text, url);
        EXPECT_EQ(error.code(), code) << text;
        EXPECT_EQ(error.domain(), NSString(u"NSURLErrorDomain"));
    }
}

TEST(NetErrors, OfUnknownTextAreUnknown) {
    for (const char* text :
         {"", "net::", "ERR_", "net::ERR_ABORTED2", "err_aborted", "net::net::ERR_ABORTED"}) {
        EXPECT_EQ(urlError(text, url).code(), -1) << text;
    }
}

TEST(NetErrors, CarryTheAddressUnderBothKeys) {
    const NSDictionary userInfo = urlError("net::ERR_FAILED", url).userInfo();
    EXPECT_EQ(userInfo.count(), 2u);
    EXPECT_EQ(userInfo.objectForKey(NSString(u"NSErrorFailingURLKey")), url);
    EXPECT_EQ(userInfo.objectForKey(NSString(u"NSErrorFailingURLStringKey")), NSString(u"http://h/a"));
}

TEST(NetErrors, OfNoAddressCarryNone) {
    EXPECT_EQ(urlError("net::ERR_FAILED", NSURL()).userInfo().count(), 0u);
}

TEST(NetErrors, TakeACodeAndADescription) {
    const NSError error = urlError(NSURLErrorNetworkConnectionLost, url, u"The engine went away.");
    EXPECT_EQ(error.code(), -1005);
    EXPECT_EQ(error.localizedDescription(), NSString(u"The engine went away."));
    EXPECT_EQ(error.userInfo().count(), 3u);
    EXPECT_EQ(urlError(NSURLErrorNetworkConnectionLost, url).userInfo().count(), 2u);
}

} // namespace
} // namespace qrv::engine
