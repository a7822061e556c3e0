#include "cimhost/indications/SubscriptionText.h"

#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

#include <algorithm>

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

const std::string fileName = "state";

const Repository& repository() {
    static const Repository filled = [] {
        Repository made;
        for (const char* const nameSpace : {"interop", "root/interop"}) {
            MofReader(made, nameSpace)
                .readText(R"(
Qualifier Association : boolean = false, Scope(association), Flavor(DisableOverride, ToSubclass);
class CIM_IndicationFilter {
    string Name; string SourceNamespaces[]; string Empty[]; boolean Supported; string Nothing;
};
[Association] class CIM_IndicationSubscription {
    CIM_IndicationFilter REF Filter; CIM_X REF Handler; uint16 State; sint16 Low; real64 Part; datetime Start;
};
class CIM_X { uint16 a; string Name; string Names[]; };)",
                          "classes");
        }
        return made;
    }();
    return filled;
}

std::vector<DeclaredInstance> parsed(std::string_view text) {
    return parseSubscriptions(repository(), text, fileName);
}

std::string refusalOf(const std::string& text) {
    return cimhost::refusalOf<MofError>([&] { parsed(text); });
}

std::size_t refusedLineOf(const std::string& text) {
    try {
        parsed(text);
    } catch (const MofError& error) {
        return error.line();
    }
    return 0;
}

const std::string oldForm = R"(cimhost subscriptions 1
CIM_IndicationFilter in interop
    Name = "a \"b\" \\ \\x41 \x0a\x01f \x7f"
    SourceNamespaces = {"x, y", "}"}
    Empty = {}
    Supported = FALSE
CIM_IndicationSubscription in root/interop
    Filter = "interop:CIM_IndicationFilter.Name=\"a \\\"b\\\"\""
    State = 2
    Low = -2
    Part = 1.0e+300
    Start = "20240229123456.000000+000"
end of 2 instances
)";

void expectTheTwo(const std::vector<DeclaredInstance>& read) {
    ASSERT_EQ(read.size(), 2U);
    const Instance& filter = read[0].instance;
    EXPECT_EQ(filter.className(), "CIM_IndicationFilter");
    EXPECT_EQ(filter.path.nameSpace, "interop");
    EXPECT_EQ(filter.find("SourceNamespaces")->value.get<Value::Array>()->size(), 2U);
    EXPECT_TRUE(filter.find("Empty")->value.get<Value::Array>()->empty());
    EXPECT_FALSE(*filter.find("Supported")->value.get<bool>());
    EXPECT_EQ(filter.find("Nothing"), nullptr);
    const Instance& subscription = read[1].instance;
    EXPECT_EQ(subscription.path.nameSpace, "root/interop");
    EXPECT_EQ(subscription.find("Filter")->value, Value::reference(filterPath()));
    EXPECT_EQ(*subscription.find("State")->value.get<std::uint64_t>(), 2U);
    EXPECT_EQ(*subscription.find("Low")->value.get<std::int64_t>(), -2);
}

TEST(SubscriptionText, IsReadAsItWasWritten) {
    const std::vector<DeclaredInstance> read = parsed(formatSubscriptions(twoInstances()));
    expectTheTwo(read);
    EXPECT_EQ(read[0].position.line, 3U);
    EXPECT_EQ(*read[0].instance.find("Name")->value.get<Text>(), "a \"b\" \\ \n\x01 \xC3\xA9");
}

TEST(SubscriptionText, IsMofBetweenTwoLinesOfItsOwn) {
    Instance instance;
    instance.path.nameSpace = "interop";
    instance.path.className = "CIM_X";
    instance.set("Name", Value::string("a\nb"));
    EXPECT_EQ(formatSubscriptions({instance}),
              "// cimhost subscriptions 2\n#pragma namespace (\"interop\")\n"
              "instance of CIM_X {\n    Name = \"a\\nb\";\n};\n// end of 1 instances\n");
}

TEST(SubscriptionText, IsReadInItsOldForm) {
    EXPECT_TRUE(isOldForm(oldForm));
    const std::vector<DeclaredInstance> read = parsed(oldForm);
    expectTheTwo(read);
    EXPECT_EQ(read[0].position.line, 2U);
    EXPECT_EQ(read[1].position.line, 7U);
    EXPECT_EQ(*read[0].instance.find("Name")->value.get<Text>(),
              "a \"b\" \\ \\x41 \n\x01"
              "f \x7f");
    EXPECT_EQ(read[1].instance.find("Part")->value, Value(CimType::real64, 1e300));
    EXPECT_EQ(read[1].instance.find("Start")->value.type(), CimType::dateTime);
}

TEST(SubscriptionText, OfTheOldFormIsTheSameInTheNewOne) {
    std::vector<Instance> instances;
    for (const DeclaredInstance& each : parsed(oldForm)) instances.push_back(each.instance);
    const std::string text = formatSubscriptions(instances);
    EXPECT_FALSE(isOldForm(text));
    const std::vector<DeclaredInstance> read = parsed(text);
    expectTheTwo(read);
    EXPECT_TRUE(std::ranges::equal(
        instances, read, [](const Instance& before, const DeclaredInstance& after) {
            return Value::instance(before) == Value::instance(after.instance);
        }));
}

TEST(SubscriptionText, MayBeEmpty) {
    EXPECT_TRUE(parsed(formatSubscriptions({})).empty());
    EXPECT_TRUE(parsed("cimhost subscriptions 1\nend of 0 instances\n").empty());
}

TEST(SubscriptionText, IsRefusedWhereverItIsCutOff) {
    for (const std::string& text : {formatSubscriptions(twoInstances()), oldForm}) {
        for (std::size_t size = 0; size < text.size(); ++size) {
            EXPECT_NE(refusedLineOf(text.substr(0, size)), 0U) << size;
        }
    }
}

TEST(SubscriptionText, IsRefusedWithTheLineThatIsDamaged) {
    const std::string head =
        "// cimhost subscriptions 2\n#pragma namespace (\"interop\")\ninstance of CIM_X {\n";
    const std::string tail = "\n};\n// end of 1 instances\n";
    EXPECT_EQ(refusedLineOf(head + "    Name = \"a\";" + tail), 0U);
    for (const char* const line :
         {"    Name = ;", "    Name = \"a;", "    Name = \"a\" b;", "    Names = {\"a\";",
          "    Names = {\"a\" b};", "    a = 5x;", "    Name = \"\\x\";", "    Name = \"\\x0\";",
          "    7 = 5;", "    Colour = 5;", "    a = 65536;", "    Name = \"\xFF\";", "    x;"}) {
        EXPECT_EQ(refusedLineOf(head + line + tail), 4U) << line;
    }
    EXPECT_EQ(refusalOf("something else\n"),
              "state:1:1: the line '// cimhost subscriptions 2' is expected");
    EXPECT_EQ(refusalOf(head + "};\n// end of 2 instances\n"),
              "state:5:1: there are 1 instances, but the last line does not say so");
    EXPECT_EQ(refusedLineOf(head + "a = 1;\nA = 2;" + tail), 5U);
    EXPECT_EQ(refusedLineOf(head + "a = 1;" + tail + "x\n"), 7U);
    EXPECT_EQ(refusedLineOf(head + "a = 1;" + tail + "// x\n"), 7U);
}

TEST(SubscriptionText, OfTheOldFormIsRefusedWithTheLineThatIsDamaged) {
    const std::string head = "cimhost subscriptions 1\nCIM_X in interop\n";
    const std::string tail = "\nend of 1 instances\n";
    for (const char* const line :
         {"    Name =", "    Name = \"a", "    Name = \"a\" b", "    Names = {\"a\"",
          "    Names = {\"a\" b}", "    a = 5x", "    Name = \"\\x0\"", "    Name = \"\\xgg\"",
          "    7 = 5", "CIM_X of interop", "CIM_X in ", "CIM_X in nowhere"}) {
        EXPECT_EQ(refusedLineOf(head + line + tail), 3U) << line;
    }
    EXPECT_EQ(refusedLineOf("cimhost subscriptions 1\n    a = 5\nend of 0 instances\n"), 2U);
    EXPECT_EQ(refusedLineOf(head + "    a = 1\n    A = 2" + tail), 4U);
    EXPECT_EQ(refusalOf(head + "end of 2 instances\n"),
              "state:3:1: there are 1 instances, but the last line does not say so");
    EXPECT_EQ(refusedLineOf(head + "    a = 1" + tail + "x\n"), 5U);
}

}  // namespace
}  // namespace cimhost
