#include "cimhost/objects/EnumerationFilterHandle.h"

#include "tests/support/BrokerFixture.h"

namespace cimhost {
namespace {

class EnumerationFilterHandle : public BrokerTest {
protected:
    CMPIEnumerationFilter* newFilter(const char* language, const char* text) {
        return eft().newEnumerationFilter(broker(), language, text, &status);
    }
};

TEST_F(EnumerationFilterHandle, WithoutLanguageOrTextLetsAllPass) {
    for (const auto* const filter :
         {newFilter(nullptr, nullptr), newFilter("DMTF:FQL", nullptr), newFilter(nullptr, "x")}) {
        ASSERT_NE(filter, nullptr);
        EXPECT_NE(filter->ft->match(filter, newInstance(), &status), 0);
        EXPECT_EQ(status, CMPI_RC_OK);
        EXPECT_EQ(filter->ft->match(filter, nullptr, &status), 0);
        EXPECT_EQ(status, CMPI_RC_ERR_INVALID_HANDLE);
    }
}

TEST_F(EnumerationFilterHandle, ThatWouldHaveToLookIsNotSupported) {
    EXPECT_EQ(newFilter("DMTF:FQL", "Size = 3"), nullptr);
    EXPECT_EQ(status, CMPI_RC_ERR_NOT_SUPPORTED);
}

TEST_F(EnumerationFilterHandle, ClonesAndReleases) {
    const CMPIEnumerationFilter* const filter = newFilter(nullptr, nullptr);
    CMPIEnumerationFilter* const copy = filter->ft->clone(filter, &status);
    EXPECT_NE(copy->ft->match(copy, newInstance(), &status), 0);
    EXPECT_EQ(copy->ft->release(copy), CMPI_RC_OK);
    EXPECT_EQ(filter->ft->match(nullptr, newInstance(), &status), 0);
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_HANDLE);
}

}  // namespace
}  // namespace cimhost
