#include "common/LocalRequest.h"

#include <gtest/gtest.h>

#include "cmpicpp/CmpiStatus.h"
#include "tests/common/HostName.h"
#include "tests/common/TestBroker.h"

namespace {

using PYL::LocalRequest;

TEST(LocalRequest, ReplacesTheHostByThisHostsName) {
    TestBroker host;
    for (auto const* name : {"elsewhere", "", "SERVER-1", "server-1"}) {
        auto const path = host.path("root/ktq", "PYL_Thing", "a", name);
        LocalRequest request(path);
        EXPECT_EQ(request.path().str(), "//server-1/root/ktq:PYL_Thing.Id=\"a\"") << name;
    }
}

TEST(LocalRequest, LeavesTheRequestItselfAlone) {
    TestBroker host;
    auto const path = host.path("root/ktq", "PYL_Thing", "a", "elsewhere");
    LocalRequest request(path);
    request.path();
    EXPECT_EQ(path.getHost().str(), "elsewhere");
}

TEST(LocalRequest, CopiesOnceForAWholeWalk) {
    TestBroker host;
    auto const path = host.path("root/ktq", "PYL_Thing", "a", "elsewhere");
    LocalRequest request(path);
    auto const* const first = &request.path();
    HostNameIs const renamed("server-2");
    EXPECT_EQ(&request.path(), first);
    EXPECT_EQ(request.path().getHost().str(), "server-1");
}

TEST(LocalRequest, NamesAHostWhoseNameCannotBeReadAsPathBuildersDo) {
    TestBroker host;
    HostNameIs const unreadable(std::nullopt);
    auto const path = host.path("root/ktq", "PYL_Thing", "a", "elsewhere");
    LocalRequest request(path);
    EXPECT_EQ(request.path().getHost().str(), "Host Name Not Defined!");
}

TEST(LocalRequest, FailsForTheEmptyPath) {
    TestBroker host;
    CmpiCpp::CmpiObjectPath const path;
    LocalRequest request(path);
    EXPECT_THROW(request.path(), CmpiCpp::CmpiStatus);
}

}  // namespace
