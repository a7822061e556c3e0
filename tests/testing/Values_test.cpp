#include <gtest/gtest.h>
#include <pylcommon/testing.h>

#include <sstream>

namespace {

using cimtest::arrayOf;
using cimtest::failureOf;
using cimtest::Instance;
using cimtest::Path;
using cimtest::Value;

template <typename Thing>
std::string printed(const Thing& thing) {
    std::ostringstream text;
    text << thing;
    return text.str();
}

TEST(Values, CompareByWhatTheyAre) {
    EXPECT_EQ(Value(3U), Value(3LL));
    EXPECT_EQ(Value(3), Value(3.0));
    EXPECT_NE(Value(-1), Value(~0ULL));
    EXPECT_NE(Value(1), Value(true));
    EXPECT_NE(Value("a"), Value("A"));
    EXPECT_NE(Value("1"), Value(1));
    EXPECT_EQ(Value(), Value());
    EXPECT_NE(Value(), Value(0));
    EXPECT_EQ(arrayOf(1, 2), arrayOf(1U, 2U));
    EXPECT_NE(arrayOf(1, 2), arrayOf(2, 1));
    EXPECT_NE(arrayOf(1), arrayOf(1, 2));
    EXPECT_NE(arrayOf(1), Value(1));
}

TEST(Values, PrintAsMofWritesThem) {
    EXPECT_EQ(printed(Value("a \"b\"")), R"("a \"b\"")");
    EXPECT_EQ(printed(arrayOf(1, 2)), "{1, 2}");
    EXPECT_EQ(printed(Value()), "NULL");
    EXPECT_EQ(printed(Value(true)), "TRUE");
    EXPECT_EQ(printed(Instance("ACME_Port.Name=\"a\"", {{"Speed", 5}})),
              "instance of ACME_Port { Speed = 5; } at ACME_Port.Name=\"a\"");
}

TEST(Values, TellTheirTypes) {
    EXPECT_EQ(Value("a").type(), "string");
    EXPECT_EQ(arrayOf(1U).type(), "uint64[]");
    EXPECT_EQ(Value("a").text(), "a");
    EXPECT_EQ(failureOf([] { Value(1).elements(); }), "1 is no array");
    EXPECT_EQ(arrayOf("x").elements().at(0), "x");
}

TEST(Paths, CompareWithoutRegardToCaseOrderAndWhatIsNotSaid) {
    EXPECT_EQ(Path("acme_PORT.b=1,A=\"x\""), Path("ACME_Port", {{"A", "x"}, {"B", 1}}));
    EXPECT_EQ(Path("//h/root/x:C.K=1"), Path("C.K=1"));
    EXPECT_EQ(Path("//h/root/x:C.K=1"), Path("root/X:C.K=1"));
    EXPECT_NE(Path("root/y:C.K=1"), Path("root/x:C.K=1"));
    EXPECT_NE(Path("//g/root/x:C.K=1"), Path("//h/root/x:C.K=1"));
    EXPECT_NE(Path("C.K=1"), Path("C.K=2"));
    EXPECT_NE(Path("C.K=1"), Path("C.K=1,L=1"));
    EXPECT_EQ(Value("C.K=1"), Value(Path("C.K=1")));
}

TEST(Paths, SayWhatTheyHave) {
    const Path path("//h/root/x:C.K=1");
    EXPECT_EQ(path["k"], 1);
    EXPECT_EQ(path.host() + " " + path.nameSpace() + " " + path.className(), "h root/x C");
    EXPECT_EQ(failureOf([&] { path["L"]; }), "//h/root/x:C.K=1 has no L; it has K");
}

TEST(Instances, AreEqualByPathAndPropertiesInAnyOrder) {
    const Instance instance("C.K=1", {{"A", 1}, {"B", 2}});
    EXPECT_EQ(instance, Instance("C.K=1", {{"b", 2U}, {"a", 1U}}));
    EXPECT_EQ(instance, Instance("C.K=1", {{"B", 2}, {"N", Value()}, {"A", 1}}));
    EXPECT_FALSE(Instance("C.K=1", {{"N", Value()}}).has("N"));
    EXPECT_NE(instance, Instance("C.K=1", {{"A", 1}}));
    EXPECT_NE(instance, Instance("C.K=2", {{"A", 1}, {"B", 2}}));
    EXPECT_EQ(failureOf([&] { instance["X"]; }), "an instance of C has no X; it has A, B");
}

}  // namespace
