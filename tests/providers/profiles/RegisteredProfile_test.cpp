#include "providers/profiles/RegisteredProfile.h"

#include "common/ImplementationClassNames.h"
#include "tests/providers/profiles/ProfilesFixture.h"

namespace {

using profiles::RegisteredProfile;

struct RegisteredProfileTest : ProfilesFixture {
    std::shared_ptr<const PYL::ProfileDB> db = catalogue(log.logger);

    PYL::PRPDBRec record(unsigned int id) {
        PYL::PRPDBRec found;
        EXPECT_EQ(db->getRecord(id - 1, found), 0);
        return found;
    }
    std::string shown(unsigned int id) {
        return RegisteredProfile(db, record(id)).getInstance().str();
    }
};

TEST_F(RegisteredProfileTest, ShowsAProfileOfTheMaker) {
    EXPECT_EQ(shown(47),
              "instance of PYL_RegisteredProfile {InstanceID = \"KTQ:47\"; ElementName = \"KT "
              "Server Product\"; RegisteredOrganization = 1; OtherRegisteredOrganization = \"KT "
              "WBEM TC\"; RegisteredName = \"KT Server Product\"; RegisteredVersion = \"1.1.1\"; "
              "AdvertiseTypes = {2}; ImplementationClassNames = {\"PYL_ServerProduct\", "
              "\"PYL_ServerProductPhysicalComponent\"}; ImplementationNameSpaces = {\"root/ktq\", "
              "\"root/ktq\"};}");
}

TEST_F(RegisteredProfileTest, LeavesOutWhatAStandardProfileHasNot) {
    EXPECT_EQ(shown(14),
              "instance of PYL_RegisteredProfile {InstanceID = \"KTQ:14\"; ElementName = \"Base "
              "Server\"; RegisteredOrganization = 2; RegisteredName = \"Base Server\"; "
              "RegisteredVersion = \"1.0.0\"; AdvertiseTypes = {2};}");
}

TEST_F(RegisteredProfileTest, ShowsUnderWhichProfilesItIsImplementedToo) {
    EXPECT_NE(shown(49).find("ImplementationProfiles = {\"KT Configuration Data Collection\"};"),
              std::string::npos);
}

TEST_F(RegisteredProfileTest, IsFoundUnderThePathOfItsOwnVersion) {
    EXPECT_EQ(RegisteredProfile(db, record(39)).getPath().str(), profileText("39"));
    EXPECT_EQ(RegisteredProfile(db, record(48)).getPath().str(), profileText("48"));
    EXPECT_EQ(RegisteredProfile(db, record(48)).getClassName().str(), "PYL_RegisteredProfile");
}

}  // namespace
