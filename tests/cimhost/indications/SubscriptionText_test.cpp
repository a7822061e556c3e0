#include "cimhost/indications/SubscriptionText.h"

#include <gtest/gtest.h>

namespace cimhost {
namespace {

ObjectPath filterPath() {
    ObjectPath path;
    path.nameSpace = "interop";
    path.className = "CIM_IndicationFilter";
    path.setKey("Name", Value::string("a \"b\""));
    return path;
}

std::vector<Instance> twoInstances() {
    Instance filter;
    filter.path.nameSpace = "interop";
    filter.path.className = "CIM_IndicationFilter";
    filter.set("Name", Value::string("a \"b\" \\ \n\x01 \xC3\xA9"));
    filter.set("SourceNamespaces",
               Value::array(CimType::string, {Value::string("x, y"), Value::string("}")}));
    filter.set("Empty", Value::array(CimType::string, {}));
    filter.set("Supported", Value::boolean(false));
    filter.set("Nothing", Value::null(CimType::string));
    Instance subscription;
    subscription.path.nameSpace = "root/interop";
    subscription.path.className = "CIM_IndicationSubscription";
    subscription.set("Filter", Value::reference(filterPath()));
    subscription.set("State", Value::unsignedInteger(CimType::uint16, 2));
    subscription.set("Low", Value::signedInteger(CimType::sint16, -2));
    return {filter, subscription};
}

struct Refusal {
    std::size_t line = 0;
    std::string message;
};

Refusal refusalOf(const std::string& text) {
    try {
        parseSubscriptions(text);
    } catch (const SubscriptionTextError& error) {
        return {error.line(), error.what()};
    }
    return {};
}

TEST(SubscriptionText, IsReadAsItWasWritten) {
    const std::string text = formatSubscriptions(twoInstances());
    const std::vector<ReadInstance> read = parseSubscriptions(text);
    ASSERT_EQ(read.size(), 2U);
    const Instance& filter = read[0].instance;
    EXPECT_EQ(read[0].line, 2U);
    EXPECT_EQ(filter.className(), "CIM_IndicationFilter");
    EXPECT_EQ(filter.path.nameSpace, "interop");
    EXPECT_EQ(*filter.find("Name")->value.get<Text>(), "a \"b\" \\ \n\x01 \xC3\xA9");
    EXPECT_EQ(filter.find("SourceNamespaces")->value.get<Value::Array>()->size(), 2U);
    EXPECT_TRUE(filter.find("Empty")->value.get<Value::Array>()->empty());
    EXPECT_FALSE(*filter.find("Supported")->value.get<bool>());
    EXPECT_EQ(filter.find("Nothing"), nullptr);
    const Instance& subscription = read[1].instance;
    EXPECT_EQ(*subscription.find("Filter")->value.get<Text>(),
              "interop:CIM_IndicationFilter.Name=\"a \\\"b\\\"\"");
    EXPECT_EQ(*subscription.find("State")->value.get<std::uint64_t>(), 2U);
    EXPECT_EQ(*subscription.find("Low")->value.get<std::int64_t>(), -2);
}

TEST(SubscriptionText, MayBeEmpty) {
    EXPECT_TRUE(parseSubscriptions(formatSubscriptions({})).empty());
}

TEST(SubscriptionText, IsRefusedWhereverItIsCutOff) {
    const std::string text = formatSubscriptions(twoInstances());
    for (std::size_t size = 0; size < text.size(); ++size) {
        EXPECT_NE(refusalOf(text.substr(0, size)).line, 0U) << size;
    }
}

TEST(SubscriptionText, IsRefusedWithTheLineThatIsDamaged) {
    const std::string head = "cimhost subscriptions 1\nCIM_X in interop\n";
    const std::string tail = "\nend of 1 instances\n";
    for (const char* const line :
         {"    Name", "    Name =", "    Name = ", "    Name = \"a", "    Name = \"a\" b",
          "    Name = {\"a\"", "    Name = {\"a\" \"b\"}", "    Name = 5x", "    Name = \"\\x0\"",
          "    Name = \"\\xgg\"", "    7 = 5", "   Name = 5", "", "CIM_X of interop",
          "CIM_X in "}) {
        EXPECT_EQ(refusalOf(head + line + tail).line, 3U) << line;
    }
    EXPECT_EQ(refusalOf("something else\n").line, 1U);
    EXPECT_EQ(refusalOf("cimhost subscriptions 1\n    Name = 5\nend of 0 instances\n").line, 2U);
    EXPECT_EQ(refusalOf(head + "    a = 1\n    A = 2" + tail).line, 4U);
    EXPECT_EQ(refusalOf(head + "end of 2 instances\n").message,
              "there are 1 instances before the line 'end of 2 instances'");
    EXPECT_EQ(refusalOf(head + "    a = 1" + tail + "x\n").line, 5U);
    EXPECT_EQ(refusalOf(head + "    a = \"\xFF\"" + tail).line, 1U);
}

}  // namespace
}  // namespace cimhost
