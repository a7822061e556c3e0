#include "cimhost/objects/Description.h"

#include "tests/support/BrokerFixture.h"

namespace cimhost {
namespace {

ObjectPath somePath() {
    ObjectPath path{"", "root/test", "Test_Base", {}};
    path.setKey("Name", Value::string("a"));
    return path;
}

TEST(Description, OfAPathLeavesOutWhatIsEmpty) {
    EXPECT_EQ(describe(ObjectPath{}), "");
    EXPECT_EQ(describe(ObjectPath{"", "", "C", {}}), "C");
    EXPECT_EQ(describe(ObjectPath{"h", "n", "C", {}}), "//h/n:C");
    EXPECT_EQ(describe(somePath()), "root/test:Test_Base.Name=\"a\"");
}

TEST(Description, OfKeysSeparatesThemAndQuotesPaths) {
    ObjectPath path{"", "", "Link", {}};
    path.setKey("From", Value::reference(somePath()));
    path.setKey("Weight", Value::signedInteger(CimType::sint8, -3));
    path.setKey("Up", Value::boolean(true));
    EXPECT_EQ(describe(path), "Link.From=\"root/test:Test_Base.Name=\\\"a\\\"\",Weight=-3,Up=TRUE");
}

TEST(Description, OfValuesReadsLikeMof) {
    EXPECT_EQ(describe(Value::null(CimType::uint8)), "NULL");
    EXPECT_EQ(describe(Value::boolean(false)), "FALSE");
    EXPECT_EQ(describe(Value(CimType::real64, 0.25)), "0.25");
    EXPECT_EQ(describe(Value(CimType::real64, -1500.0)), "-1500.0");
    EXPECT_EQ(describe(Value(CimType::real64, 1e300)), "1.0e+300");
    EXPECT_EQ(describe(Value::unsignedInteger(CimType::char16, 'x')), "'x'");
    EXPECT_EQ(describe(Value::unsignedInteger(CimType::char16, '\'')), "'\\''");
    EXPECT_EQ(describe(Value::unsignedInteger(CimType::char16, 0xE4)), "'\xC3\xA4'");
    EXPECT_EQ(describe(Value::unsignedInteger(CimType::char16, 0xD800)), R"('\xd800')");
    EXPECT_EQ(describe(Value::array(CimType::string, {Value::string("a"), Value()})),
              "{\"a\", NULL}");
    EXPECT_EQ(describe(Value::array(CimType::uint8, {})), "{}");
}

TEST(Description, OfAnInstanceListsItsProperties) {
    Instance instance{somePath(), {}};
    instance.set("Name", Value::string("a"));
    instance.set("Size", Value::unsignedInteger(CimType::uint32, 3));
    EXPECT_EQ(describe(instance), "instance of Test_Base { Name = \"a\"; Size = 3; }");
}

class ObjectDescription : public BrokerTest {
protected:
    std::string text(const void* object) {
        return textOf(eft().toString(broker(), object, &status));
    }
};

TEST_F(ObjectDescription, ShowsWhatAnObjectHolds) {
    const CMPIArgs* const args =
        makeArgs(realBroker, {{"A", Value::boolean(true)}, {"B", Value::string("x")}});
    EXPECT_EQ(text(args), "(A = TRUE, B = \"x\")");
    EXPECT_EQ(text(newString("plain")), "plain");
    EXPECT_EQ(text(eft().newDateTimeFromBinary(broker(), 0, 0, nullptr)),
              "19700101000000.000000+000");
    EXPECT_EQ(text(eft().newArray(broker(), 2, CMPI_uint8, nullptr)), "{NULL, NULL}");
    EXPECT_EQ(text(newInstance()), "instance of Test_Base { }");
    EXPECT_EQ(text(makeContext(realBroker, {})), "CMPIContext");
}

}  // namespace
}  // namespace cimhost
