#include "cimhost/objects/Description.h"

#include "tests/support/BrokerFixture.h"

namespace cimhost {
namespace {

class Description : public BrokerTest {
protected:
    std::string text(const void* object) {
        return textOf(eft().toString(broker(), object, &status));
    }
};

TEST_F(Description, ShowsWhatAnObjectHolds) {
    const CMPIArgs* const args =
        makeArgs(realBroker, {{"A", Value::boolean(true)}, {"B", Value::string("x")}});
    EXPECT_EQ(text(args), " A:TRUE\n B:x\n");
    EXPECT_EQ(text(newString("plain")), "plain");
    EXPECT_EQ(text(eft().newDateTimeFromBinary(broker(), 0, 0, nullptr)),
              "19700101000000.000000+000");
    EXPECT_EQ(text(eft().newArray(broker(), 2, CMPI_uint8, nullptr)), "{NULL, NULL}");
    EXPECT_EQ(text(eft().newArray(broker(), 2, CMPI_args, nullptr)), "CMPIArray");
    EXPECT_EQ(text(newInstance()), "instance of Test_Base { }");
    EXPECT_EQ(text(makeContext(realBroker, {})), "CMPIContext");
}

}  // namespace
}  // namespace cimhost
