#include "cmpicpp/CmpiArray.h"

#include "tests/cmpicpp/BrokerFixture.h"

namespace CmpiCpp {
namespace {

using test::codeOf;

class CmpiArrayTest : public test::BrokerTest {
protected:
    CmpiArray array(unsigned int size, CMPIType type) const {
        return makeCmpiArray(broker(), size, type);
    }
};

TEST_F(CmpiArrayTest, StartsWithNulls) {
    const CmpiArray made = array(2, CMPI_uint8);
    EXPECT_EQ(made.getSize(), 2U);
    EXPECT_EQ(made.getType(), CMPI_uint8);
    EXPECT_TRUE(made.getElementAt(1).isNull());
    EXPECT_EQ(made.str(), "{NULL, NULL}");
}

TEST_F(CmpiArrayTest, MayHaveNoElements) {
    const CmpiArray made = array(0, CMPI_string);
    EXPECT_EQ(made.getSize(), 0U);
    EXPECT_FALSE(made.empty());
    EXPECT_EQ(made.str(), "{}");
}

TEST_F(CmpiArrayTest, TakesElementsAndNulls) {
    CmpiArray made = array(3, CMPI_string);
    made.setElementAt(0, "a");
    made.setElementAt(2, "c");
    made.setElementAt(2, CmpiValue::null(CMPI_null));
    EXPECT_EQ(made.str(), "{\"a\", NULL, NULL}");
}

TEST_F(CmpiArrayTest, RefusesOtherTypesAndPlaces) {
    CmpiArray made = array(1, CMPI_uint8);
    EXPECT_EQ(codeOf([&] { made.setElementAt(0, "text"); }), CMPI_RC_ERR_TYPE_MISMATCH);
    EXPECT_EQ(codeOf([&] { made.setElementAt(1, static_cast<unsigned char>(1)); }),
              CMPI_RC_ERR_NO_SUCH_PROPERTY);
    EXPECT_EQ(codeOf([&] { made.getElementAt(1); }), CMPI_RC_ERR_NO_SUCH_PROPERTY);
}

TEST_F(CmpiArrayTest, ACopyIsIndependent) {
    CmpiArray made = array(1, CMPI_uint8);
    const CmpiArray copy = made;
    made.setElementAt(0, static_cast<unsigned char>(1));
    EXPECT_TRUE(copy.getElementAt(0).isNull());
    EXPECT_EQ(made.clone().getElementAt(0).asUint64(), 1U);
}

TEST_F(CmpiArrayTest, EmptyArraysReadAsNothing) {
    CmpiArray none;
    EXPECT_TRUE(none.empty());
    EXPECT_EQ(none.getSize(), 0U);
    EXPECT_EQ(none.str(), "");
    EXPECT_EQ(codeOf([&] { none.getType(); }), CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(codeOf([&] { none.getElementAt(0); }), CMPI_RC_ERR_NO_SUCH_PROPERTY);
    EXPECT_EQ(codeOf([&] { none.setElementAt(0, 1); }), CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(none.toCMPI(), nullptr);
    EXPECT_EQ(none.broker(), nullptr);
}

TEST_F(CmpiArrayTest, NeedsABroker) {
    EXPECT_EQ(codeOf([] { makeCmpiArray(CmpiBroker(nullptr), 1, CMPI_uint8); }),
              CMPI_RC_ERR_INVALID_HANDLE);
}

}  // namespace
}  // namespace CmpiCpp
