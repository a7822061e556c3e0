// The module as an object manager loads it, by its registration.

#include "common/PYLUtil.h"

#include <gtest/gtest.h>
#include <pylcommon/testing.h>

namespace {

TEST(ProfilesModule, AnswersByItsRegistration) {
    const cimtest::FakeHost machine;
    cimtest::ProviderHost host("interop", {"base/base.mof", "PYL_Profiles.mof"});
    host.readMof("base/base.mof", "root/ktq");
    host.readMof("PYL_Profiles.mof", "root/ktq");
    host.load(PYL_SCHEMA_FOLDER "/pylProfiles.registration", PYL_PROFILES_FOLDER);
    EXPECT_EQ(host.names("PYL_RegisteredProfile").size(), 49U);
    EXPECT_EQ(PYL::PYLUtil::getBroker(), host.handle());
    EXPECT_EQ(host.log().countOf("PYL_Profiles: returned 49 objects from enumInstanceNames()"), 1U);
    EXPECT_EQ(host.associatorNames("PYL_RegisteredProfile.InstanceID=\"KTQ:14\"",
                                   {.associationClass = "PYL_ReferencedProfile"})
                  .size(),
              13U);
    const auto classes =
        host.invoke("root/ktq:PYL_PXDataCollection.InstanceID=\"KTQ:PYL_PXDataCollection:1\"",
                    "GetCollectedClasses", {{"RegisteredName", "KT Memory"}});
    EXPECT_EQ(classes["ClassLevels"], cimtest::arrayOf(2, 2, 2, 2));
}

}  // namespace
