#include "cmpicpp/CmpiInstance.h"

#include "tests/cmpicpp/BrokerFixture.h"

namespace CmpiCpp {
namespace {

using test::codeOf;

class CmpiInstanceTest : public test::BrokerTest {
protected:
    CmpiInstance instance() const {
        return makeCmpiInstance(broker(), makeCmpiObjectPath(broker(), "root/ktq", "PYL_Fan"));
    }
};

TEST_F(CmpiInstanceTest, HasItsPath) {
    const CmpiInstance made = makeCmpiInstance(broker(), path());
    EXPECT_EQ(made.getPath(), path());
    EXPECT_EQ(made.getClassName(), "PYL_Fan");
}

TEST_F(CmpiInstanceTest, TakesAnotherPath) {
    CmpiInstance made = instance();
    made.setPath(path());
    EXPECT_EQ(made.getPath(), path());
    EXPECT_EQ(codeOf([&] { made.setPath(CmpiObjectPath()); }), CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(CmpiInstanceTest, KeepsPropertiesInOrder) {
    CmpiInstance made = instance();
    made.setProperty("First", "1");
    made.setProperty(CmpiName("Second"), 2U);
    made.setProperty("FIRST", "replaced");
    ASSERT_EQ(made.getPropertyCount(), 2U);
    EXPECT_EQ(made.getPropertyAt(0).first, "First");
    EXPECT_EQ(made.getPropertyAt(0).second.asString(), "replaced");
    EXPECT_EQ(made.getProperty(CmpiName("second")).asUint64(), 2U);
}

TEST_F(CmpiInstanceTest, HasNoOtherProperties) {
    EXPECT_EQ(codeOf([&] { instance().getProperty("Nope"); }), CMPI_RC_ERR_NOT_FOUND);
    EXPECT_EQ(codeOf([&] { instance().getPropertyAt(0); }), CMPI_RC_ERR_NO_SUCH_PROPERTY);
}

TEST_F(CmpiInstanceTest, KeepsTypedNulls) {
    CmpiInstance made = instance();
    made.setProperty("Null", CmpiValue::null(CMPI_uint16));
    EXPECT_TRUE(made.getProperty("Null").isNull());
    EXPECT_EQ(made.getProperty("Null").getType(), CMPI_uint16);
}

TEST_F(CmpiInstanceTest, ACopyIsIndependent) {
    CmpiInstance made = instance();
    made.setProperty("P", 1);
    CmpiInstance copy = made;
    copy.setProperty("P", 2);
    EXPECT_EQ(made.getProperty("P").asSint64(), 1);
    EXPECT_EQ(copy.getProperty("P").asSint64(), 2);
    EXPECT_EQ(made.clone().getProperty("P").asSint64(), 1);
}

TEST_F(CmpiInstanceTest, DropsWhatAFilterLeavesOut) {
    CmpiInstance made = instance();
    const char* wanted[] = {"Kept", nullptr};
    made.setPropertyFilter(wanted);
    made.setProperty("Kept", 1);
    made.setProperty("Dropped", 2);
    EXPECT_EQ(made.getPropertyCount(), 1U);
    EXPECT_EQ(codeOf([&] { made.getProperty("Dropped"); }), CMPI_RC_ERR_NOT_FOUND);
}

TEST_F(CmpiInstanceTest, IsWrittenLikeMof) {
    CmpiInstance made = instance();
    EXPECT_EQ(made.str(), "instance of PYL_Fan {}");
    made.setProperty("DeviceID", "1");
    made.setProperty("Slot", 2U);
    EXPECT_EQ(made.str(), "instance of PYL_Fan {DeviceID = \"1\"; Slot = 2;}");
}

TEST_F(CmpiInstanceTest, IsWrittenInsideAnother) {
    CmpiInstance outer = instance();
    outer.setProperty("Inner", instance());
    EXPECT_EQ(outer.str(), "instance of PYL_Fan {Inner = instance of PYL_Fan {};}");
}

TEST_F(CmpiInstanceTest, EmptyInstancesReadAsNothing) {
    const CmpiInstance none;
    EXPECT_TRUE(none.empty());
    EXPECT_TRUE(none.getPath().empty());
    EXPECT_TRUE(none.getClassName().empty());
    EXPECT_EQ(none.getPropertyCount(), 0U);
    EXPECT_EQ(none.str(), "");
    EXPECT_EQ(codeOf([&] { none.getProperty("P"); }), CMPI_RC_ERR_NOT_FOUND);
    EXPECT_EQ(codeOf([&] { none.getPropertyAt(0); }), CMPI_RC_ERR_NO_SUCH_PROPERTY);
}

TEST_F(CmpiInstanceTest, EmptyInstancesCannotBeChanged) {
    CmpiInstance none;
    EXPECT_EQ(codeOf([&] { none.setProperty("P", 1); }), CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(codeOf([&] { none.setPath(path()); }), CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(codeOf([&] { none.setPropertyFilter(nullptr); }), CMPI_RC_ERR_INVALID_HANDLE);
}

TEST_F(CmpiInstanceTest, NeedsABrokerAndAPath) {
    EXPECT_EQ(codeOf([&] { makeCmpiInstance(CmpiBroker(nullptr), path()); }),
              CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(codeOf([&] { makeCmpiInstance(broker(), CmpiObjectPath()); }),
              CMPI_RC_ERR_INVALID_PARAMETER);
}

}  // namespace
}  // namespace CmpiCpp
