#include "cmpicpp/CmpiArgs.h"

#include "cmpicpp/CmpiArray.h"
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

TEST_F(CmpiArgsTest, EveryHostHasNoOtherArguments) {
    for (const char* const manner : {"openpegasus", "sfcb", "strict", "mean"}) {
        CmpiArgs args = makeCmpiArgs(like(manner));
        args.addArg("A", 1);
        EXPECT_EQ(codeOf([&] { args.getArg("Nope"); }), CMPI_RC_ERR_NO_SUCH_PROPERTY) << manner;
        EXPECT_EQ(codeOf([&] { args.getArgAt(1); }), CMPI_RC_ERR_NO_SUCH_PROPERTY) << manner;
    }
}

TEST_F(CmpiArgsTest, TakesNamesOnly) {
    for (const char* const manner : {"standard", "openpegasus", "sfcb"}) {
        CmpiArgs args = makeCmpiArgs(like(manner));
        for (const char* const name :
             {"", "a b", "1a", "a-b", "a.b", "a/", "a:", "a@", "a[", "a`", "a{"}) {
            EXPECT_EQ(codeOf([&] { args.addArg(name, 1); }), CMPI_RC_ERR_INVALID_PARAMETER)
                << manner << ": " << name;
        }
        EXPECT_EQ(codeOf([&] { args.addArg(nullptr, 1); }), CMPI_RC_ERR_INVALID_PARAMETER);
        args.addArg("_a1", 1);
        args.addArg("\xC3\xA4", 1);
        args.addArg("AZaz09", 1);
        EXPECT_EQ(args.getArgCount(), 3U);
    }
}

TEST_F(CmpiArgsTest, RefusesArraysWithNullsThatAHostMayNotSurvive) {
    for (const char* const manner : {"standard", "openpegasus", "sfcb"}) {
        const CmpiBroker host = like(manner);
        CmpiArgs args = makeCmpiArgs(host);
        for (const CMPIType type :
             std::initializer_list<CMPIType>{CMPI_string, CMPI_dateTime, CMPI_ref, CMPI_instance}) {
            const CmpiArray array = makeCmpiArray(host, 2, type);
            EXPECT_EQ(codeOf([&] { args.addArg("A", array); }), CMPI_RC_ERR_INVALID_PARAMETER);
        }
        args.addArg("Numbers", makeCmpiArray(host, 2, CMPI_uint8));
        args.addArg("None", makeCmpiArray(host, 0, CMPI_string));
        EXPECT_EQ(args.getArgCount(), 2U) << manner;
    }
}

}  // namespace
}  // namespace CmpiCpp
