#include "providers/profiles/ProfileCatalogue.h"

#include "common/ImplementationClassNames.h"
#include "tests/providers/profiles/ProfilesFixture.h"

namespace {

using profiles::addCatalogue;
using profiles::forEachRecord;

struct CatalogueCollectionTest : ProfilesFixture {
    PYL::CmpiManagedInstanceCollection collection{host.logger()};

    std::size_t count(const char* className) {
        std::size_t found = 0;
        for (unsigned int i = 0; i < collection.size(); ++i) {
            if (collection.getManagedInstance(i)->getClassName() == className) ++found;
        }
        return found;
    }
};

TEST_F(CatalogueCollectionTest, AddsEveryProfileAndEveryRelation) {
    addCatalogue(catalogue(host.logger()), collection);
    EXPECT_EQ(count("PYL_RegisteredProfile"), 49U);
    EXPECT_EQ(count("PYL_ReferencedProfile"), 32U);
    EXPECT_EQ(count("PYL_ExtendsProfile"), 19U);
    EXPECT_EQ(collection.size(), 100U);
}

TEST_F(CatalogueCollectionTest, LeavesOutARelationToAProfileThatIsNotThere) {
    const int references[] = {1, 77, 0};
    const int extends[] = {78, 0};
    const auto db = std::make_shared<PYL::ProfileDB>(host.logger());
    db->make({1, 2, "", "one", "1", PYL::emptyString, PYL::emptyString, PYL::emptyString,
              references, extends});
    addCatalogue(db, collection);
    EXPECT_EQ(count("PYL_RegisteredProfile"), 1U);
    EXPECT_EQ(count("PYL_ReferencedProfile"), 1U);
    EXPECT_EQ(count("PYL_ExtendsProfile"), 0U);
}

TEST_F(CatalogueCollectionTest, VisitsNothingOfAnEmptyDatabase) {
    forEachRecord(PYL::ProfileDB(host.logger()), [](const PYL::PRPDBRec&) { FAIL(); });
}

}  // namespace
