#include "cimhost/mof/MofReader.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cimhost {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct MofComplaintsTest : testing::Test {
    Repository repository;
    MofComplaints complaints;

    std::vector<std::string> errorsOf(std::string_view text) {
        MofReader reader(repository, "root/x");
        reader.keepErrors(complaints);
        reader.readText(text, "t.mof");
        return complaints.errors;
    }
    bool has(std::string_view name) { return repository.get("root/x").findClass(name) != nullptr; }
};

TEST_F(MofComplaintsTest, TellAllThatIsWrongAndReadTheRest) {
    EXPECT_THAT(errorsOf("class A { uint23 n; };\n"
                         "class B { string s; };\n"
                         "[Nonsense] class C { string s; };\n"
                         "class D : Nobody { };\n"
                         "class E { string s; };\n"),
                ElementsAre("t.mof:1:11: 'uint23' is not a type; did you mean 'uint32'?",
                            "t.mof:3:2: qualifier 'Nonsense' is not declared",
                            "t.mof:4:11: superclass 'Nobody' is not known"));
    EXPECT_TRUE(has("B"));
    EXPECT_TRUE(has("E"));
}

TEST_F(MofComplaintsTest, LeaveOutWhatOnlyFollows) {
    EXPECT_EQ(errorsOf("class A { uint23 n; };\nclass B : A { };\nclass C : B { };\n"
                       "instance of A { n = 1; };\n")
                  .size(),
              1U);
}

TEST_F(MofComplaintsTest, KnowWhereTheNextBeginsWhenAnEndIsMissing) {
    EXPECT_EQ(errorsOf("class A { string s; }\nclass B { string s; };\n").size(), 1U);
    EXPECT_TRUE(has("B"));
}

TEST_F(MofComplaintsTest, GoOnBehindAnIncludeThatIsNotThere) {
    EXPECT_THAT(errorsOf("#pragma include (\"absent.mof\")\nclass B { string s; };\n"),
                ElementsAre("t.mof:1:18: the included file 'absent.mof' is not found"));
    EXPECT_TRUE(has("B"));
}

TEST_F(MofComplaintsTest, TellOfFilesThatIncludeBrokenOnes) {
    const TemporaryFolder folder;
    folder.write("inner.mof", "class A { \"");
    const std::string outer =
        folder.write("outer.mof", "#pragma include (\"inner.mof\")\nclass B { string s; };\n");
    MofReader reader(repository, "root/x");
    reader.keepErrors(complaints);
    reader.readFile(outer);
    reader.readFile(folder / "absent.mof");
    EXPECT_EQ(complaints.errors.size(), 2U);
    EXPECT_TRUE(has("B"));
}

TEST_F(MofComplaintsTest, AreNoneWhereNothingIsWrong) {
    EXPECT_THAT(errorsOf("class A { string s; };\ninstance of A { s = \"x\"; };\n"), IsEmpty());
}

}  // namespace
}  // namespace cimhost
