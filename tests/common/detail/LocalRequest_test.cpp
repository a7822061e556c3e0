#include "common/detail/LocalRequest.h"

#include "cmpicpp/CmpiStatus.h"
#include "testing/cimhost/testing/HostName.h"
#include "tests/support/TestBroker.h"

#include <gtest/gtest.h>

namespace {

using PYL::LocalRequest;

TEST(LocalRequest, ReplacesTheHostByThisHostsName) {
    TestBroker host;
    for (const auto* name : {"elsewhere", "", "SERVER-1", "server-1"}) {
        const auto path = host.path("root/ktq", "PYL_Thing", "a", name);
        LocalRequest request(path);
        EXPECT_EQ(request.path().str(), "//server-1/root/ktq:PYL_Thing.Id=\"a\"") << name;
    }
}

TEST(LocalRequest, LeavesTheRequestItselfAlone) {
    TestBroker host;
    const auto path = host.path("root/ktq", "PYL_Thing", "a", "elsewhere");
    LocalRequest request(path);
    request.path();
    EXPECT_EQ(path.getHost().str(), "elsewhere");
}

TEST(LocalRequest, CopiesOnceForAWholeWalk) {
    TestBroker host;
    const auto path = host.path("root/ktq", "PYL_Thing", "a", "elsewhere");
    LocalRequest request(path);
    const auto* const first = &request.path();
    const cimtest::HostNameIs renamed("server-2");
    EXPECT_EQ(&request.path(), first);
    EXPECT_EQ(request.path().getHost().str(), "server-1");
}

TEST(LocalRequest, NamesAHostWhoseNameCannotBeReadAsPathBuildersDo) {
    TestBroker host;
    const cimtest::HostNameIs unreadable(std::nullopt);
    const auto path = host.path("root/ktq", "PYL_Thing", "a", "elsewhere");
    LocalRequest request(path);
    EXPECT_EQ(request.path().getHost().str(), "Host Name Not Defined!");
}

TEST(LocalRequest, FailsForTheEmptyPath) {
    TestBroker host;
    const CmpiCpp::CmpiObjectPath path;
    LocalRequest request(path);
    EXPECT_THROW(request.path(), CmpiCpp::CmpiStatus);
}

}  // namespace
