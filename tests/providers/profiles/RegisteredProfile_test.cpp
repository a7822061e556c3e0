#include "providers/profiles/RegisteredProfile.h"

#include "common/ImplementationClassNames.h"
#include "tests/providers/profiles/ProfilesFixture.h"

namespace {

using cimtest::arrayOf;
using profiles::RegisteredProfile;

struct RegisteredProfileTest : ProfilesFixture {
    std::shared_ptr<const PYL::ProfileDB> db = catalogue(host.logger());

    PYL::PRPDBRec record(unsigned int id) {
        PYL::PRPDBRec found;
        EXPECT_EQ(db->getRecord(id - 1, found), 0);
        return found;
    }
    cimtest::Instance shown(unsigned int id) {
        return host.show(RegisteredProfile(db, record(id)));
    }
};

TEST_F(RegisteredProfileTest, ShowsAProfileOfTheMaker) {
    EXPECT_EQ(shown(47), cimtest::Instance(
                             profile("47"),
                             {{"InstanceID", "KTQ:47"},
                              {"ElementName", "KT Server Product"},
                              {"RegisteredOrganization", 1},
                              {"OtherRegisteredOrganization", "KT WBEM TC"},
                              {"RegisteredName", "KT Server Product"},
                              {"RegisteredVersion", "1.1.1"},
                              {"AdvertiseTypes", arrayOf(2)},
                              {"ImplementationClassNames",
                               arrayOf("PYL_ServerProduct", "PYL_ServerProductPhysicalComponent")},
                              {"ImplementationNameSpaces", arrayOf("root/ktq", "root/ktq")}}));
}

TEST_F(RegisteredProfileTest, LeavesOutWhatAStandardProfileHasNot) {
    EXPECT_EQ(shown(14), cimtest::Instance(profile("14"), {{"InstanceID", "KTQ:14"},
                                                           {"ElementName", "Base Server"},
                                                           {"RegisteredOrganization", 2},
                                                           {"RegisteredName", "Base Server"},
                                                           {"RegisteredVersion", "1.0.0"},
                                                           {"AdvertiseTypes", arrayOf(2)}}));
}

TEST_F(RegisteredProfileTest, ShowsUnderWhichProfilesItIsImplementedToo) {
    EXPECT_EQ(shown(49)["ImplementationProfiles"], arrayOf("KT Configuration Data Collection"));
}

TEST_F(RegisteredProfileTest, IsFoundUnderThePathOfItsOwnVersion) {
    EXPECT_EQ(shown(39).path(), profile("39"));
    EXPECT_EQ(shown(48).path(), profile("48"));
    EXPECT_EQ(shown(48).className(), "PYL_RegisteredProfile");
}

}  // namespace
