#include "cmpicpp/CmpiArgs.h"

#include "tests/cmpicpp/BrokerFixture.h"

namespace CmpiCpp {
namespace {

using test::codeOf;

class CmpiArgsTest : public test::BrokerTest {};

TEST_F(CmpiArgsTest, KeepsArgumentsByNameAndInOrder) {
    CmpiArgs args = makeCmpiArgs(broker());
    EXPECT_EQ(args.getArgCount(), 0U);
    args.addArg("ClassName", "PYL_Fan");
    args.addArg(CmpiName("Status"), static_cast<unsigned short>(2));
    ASSERT_EQ(args.getArgCount(), 2U);
    EXPECT_EQ(args.getArgAt(0).first, "ClassName");
    EXPECT_EQ(args.getArgAt(1).second.getType(), CMPI_uint16);
    EXPECT_EQ(args.getArg(CmpiName("classname")).asString(), "PYL_Fan");
}

TEST_F(CmpiArgsTest, HasNoOtherArguments) {
    const CmpiArgs args = makeCmpiArgs(broker());
    EXPECT_EQ(codeOf([&] { args.getArg("Nope"); }), CMPI_RC_ERR_NO_SUCH_PROPERTY);
    EXPECT_EQ(codeOf([&] { args.getArgAt(0); }), CMPI_RC_ERR_NO_SUCH_PROPERTY);
}

TEST_F(CmpiArgsTest, ACopyIsIndependent) {
    CmpiArgs args = makeCmpiArgs(broker());
    const CmpiArgs copy = args;
    args.addArg("A", 1);
    EXPECT_EQ(copy.getArgCount(), 0U);
    EXPECT_EQ(args.clone().getArgCount(), 1U);
}

TEST_F(CmpiArgsTest, EmptyContainersReadAsNothing) {
    CmpiArgs none;
    EXPECT_TRUE(none.empty());
    EXPECT_EQ(none.getArgCount(), 0U);
    EXPECT_EQ(codeOf([&] { none.getArg("A"); }), CMPI_RC_ERR_NO_SUCH_PROPERTY);
    EXPECT_EQ(codeOf([&] { none.getArgAt(0); }), CMPI_RC_ERR_NO_SUCH_PROPERTY);
    EXPECT_EQ(codeOf([&] { none.addArg("A", 1); }), CMPI_RC_ERR_INVALID_HANDLE);
}

TEST_F(CmpiArgsTest, NeedsABroker) {
    EXPECT_EQ(codeOf([] { makeCmpiArgs(CmpiBroker(nullptr)); }), CMPI_RC_ERR_INVALID_HANDLE);
}

}  // namespace
}  // namespace CmpiCpp
