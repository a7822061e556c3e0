// Paths and instances of brokers that differ from ours, as the C++ values see them.

#include "cmpicpp/CmpiDateTime.h"
#include "cmpicpp/CmpiInstance.h"
#include "tests/cmpicpp/BrokerFixture.h"
#include "tests/support/MannerCall.h"

namespace CmpiCpp {
namespace {

using test::codeOf;

constexpr const char* allManners[] = {"standard", "openpegasus", "sfcb", "strict", "mean"};

struct PathManners : cimhost::MannerCall {
    explicit PathManners(const char* manner) : MannerCall(manner) {}

    CmpiBroker asked() const { return CmpiBroker(broker()); }
    CmpiObjectPath classPath(const char* className = "Test_Base") const {
        return makeCmpiObjectPath(asked(), "root/test", className);
    }
    /// Without the key that the class has.
    CmpiObjectPath otherKey(const char* className = "Test_Base") const {
        CmpiObjectPath made = classPath(className);
        made.addKey("Other", "x");
        return made;
    }
};

TEST(PathMannersTest, HaveTheKeysThatAreSet) {
    for (const char* manner : allManners) {
        SCOPED_TRACE(manner);
        const PathManners host(manner);
        const CmpiObjectPath path = host.otherKey();
        ASSERT_EQ(path.getKeyCount(), 1U);
        EXPECT_EQ(path.getKeyAt(0).first, "Other");
        EXPECT_EQ(codeOf([&] { path.getKeyAt(1); }), CMPI_RC_ERR_NO_SUCH_PROPERTY);
        EXPECT_EQ(path.str(), "/root/test:Test_Base.Other=\"x\"");
        EXPECT_EQ(host.classPath().str(), "/root/test:Test_Base");
    }
}

TEST(PathMannersTest, AreEqualByTheKeysThatAreSet) {
    for (const char* manner : allManners) {
        SCOPED_TRACE(manner);
        const PathManners host(manner);
        EXPECT_EQ(host.otherKey(), host.otherKey());
        CmpiObjectPath more = host.otherKey();
        more.addKey("Name", "n");
        EXPECT_FALSE(more == host.otherKey());
        EXPECT_FALSE(host.otherKey() == more);
        EXPECT_FALSE(host.classPath() == more);
        EXPECT_FALSE(more == host.classPath());
        EXPECT_EQ(more, more.clone());
    }
}

TEST(PathMannersTest, LackAKeyByOneCode) {
    for (const char* manner : allManners) {
        SCOPED_TRACE(manner);
        const PathManners host(manner);
        EXPECT_EQ(codeOf([&] { host.classPath().getKey("Name"); }), CMPI_RC_ERR_NO_SUCH_PROPERTY);
        EXPECT_EQ(codeOf([&] { host.classPath().getKey("Nope"); }), CMPI_RC_ERR_NO_SUCH_PROPERTY);
    }
}

TEST(PathMannersTest, EndAtTheirLastItem) {
    for (const char* manner : allManners) {
        SCOPED_TRACE(manner);
        const PathManners host(manner);
        const CmpiObjectPath path = host.classPath("Test_Nobody");
        EXPECT_EQ(codeOf([&] { path.getKeyAt(0); }), CMPI_RC_ERR_NO_SUCH_PROPERTY);
        const CmpiInstance instance = makeCmpiInstance(host.asked(), path);
        EXPECT_EQ(codeOf([&] { instance.getPropertyAt(0); }), CMPI_RC_ERR_NO_SUCH_PROPERTY);
        EXPECT_EQ(codeOf([&] { instance.getProperty("P"); }), CMPI_RC_ERR_NOT_FOUND);
    }
}

}  // namespace
}  // namespace CmpiCpp
