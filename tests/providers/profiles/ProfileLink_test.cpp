#include "providers/profiles/ProfileLink.h"

#include "cmpicpp/CmpiInstance.h"
#include "tests/providers/profiles/ProfilesFixture.h"

namespace {

using namespace profiles;

struct ProfileLinkTest : ProfilesFixture {
    ProfileLink::End at(const char* key) {
        return [this, key] { return host.path("PYL_Fan", key); };
    }
    ProfileLink link{elementConformsToProfile, "interop", at("1"), at("2")};
};

TEST_F(ProfileLinkTest, HasItsEndsAsKeysInItsOwnNamespace) {
    const auto path = link.getPath();
    EXPECT_EQ(path.getNameSpace().str(), "interop");
    EXPECT_EQ(path.getHost().str(), "server-1");
    EXPECT_EQ(link.getClassName().str(), "PYL_ElementConformsToProfile");
    ASSERT_EQ(path.getKeyCount(), 2U);
    EXPECT_EQ(path.getKey("ConformantStandard").asObjectPath().str(), elementText("PYL_Fan", "1"));
    EXPECT_EQ(path.getKey("ManagedElement").asObjectPath().str(), elementText("PYL_Fan", "2"));
    EXPECT_EQ(link.getInstance().getPropertyCount(), 2U);
}

TEST_F(ProfileLinkTest, LeadsFromEachEndToTheOther) {
    EXPECT_EQ(link.getAssociatedPath(host.path("PYL_Fan", "1")).str(), elementText("PYL_Fan", "2"));
    EXPECT_EQ(link.getAssociatedPath(host.path("PYL_Fan", "2")).str(), elementText("PYL_Fan", "1"));
    EXPECT_TRUE(link.getAssociatedPath(host.path("PYL_Fan", "3")).empty());
    EXPECT_TRUE(link.getAssociatedPath({}).empty());
}

}  // namespace
