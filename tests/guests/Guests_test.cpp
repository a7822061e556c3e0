#include <cimhost/testing.h>
#include <gtest/gtest.h>

namespace {

using cimtest::failureOf;
using cimtest::Path;
using Paths = std::vector<Path>;

constexpr const char* guestClasses = R"(
class TST_Thing { [Key] string Name; uint32 Number; };
class TST_Guest {
    [Key] string Name;
    string MakePathWithoutNameSpace();
    string KeepArgumentsInAnArray();
    string KeepAnEnumerationInAnArray();
    string FillArraysOfAllTypes();
    string GetAnInstanceByAForeignKey();
    string ReleaseWhatIsNotTheirs();
};
class TST_ErrorGuest { [Key] string Name; string Fail(); };
[Association] class TST_Link { [Key] TST_Thing REF Left; [Key] TST_Thing REF Right; };
[Association] class TST_OtherLink { [Key] TST_Thing REF Left; [Key] TST_Thing REF Right; };
)";

constexpr const char* registrationLines =
    "TST_Guest root/test MethodGuest methodGuest method\n"
    "TST_Thing root/test InstanceGuest instanceGuest instance\n"
    "TST_ErrorGuest root/test ErrorGuest errorGuest method\n"
    "TST_OtherLink root/test ShyGuest associationGuest association\n"
    "TST_Link root/test AnsweringGuest associationGuest association\n";

/// A host that has loaded the guests.
class Guests : public testing::Test {
protected:
    Guests() {
        host.readMofText(guestClasses);
        host.loadText(registrationLines, GUEST_FOLDER);
    }

    /// What the guest's method answers.
    std::string ask(const std::string& method) {
        return host.invoke("TST_Guest.Name=\"g\"", method).returned.text();
    }
    /// The number alone.
    template <typename Call>
    static std::string codeOf(Call call) {
        const std::string words = failureOf(call);
        return words.substr(0, words.find(' '));
    }

    cimtest::Host host;
    const Path thing{"TST_Thing.Name=\"t\""};
};

TEST_F(Guests, MakePathsWithoutANameSpace) {
    EXPECT_EQ(ask("MakePathWithoutNameSpace"), "|root/test:TST_Thing");
}

TEST_F(Guests, KeepArgumentsInAnArrayAndReadTheirText) {
    EXPECT_EQ(ask("KeepArgumentsInAnArray"), " Operation:2\nnull");
}

TEST_F(Guests, KeepAnEnumerationInAnArray) {
    EXPECT_EQ(ask("KeepAnEnumerationInAnArray"), "something");
}

TEST_F(Guests, FillArraysOfAllTypes) {
    EXPECT_EQ(ask("FillArraysOfAllTypes"), std::string(19, '.'));
}

TEST_F(Guests, GetAnInstanceByAKeyThatTheClassHasNot) {
    EXPECT_EQ(ask("GetAnInstanceByAForeignKey"), "found by Colour");
    EXPECT_EQ(codeOf([&] { host.get("TST_Thing.Colour=\"red\""); }), "4") << "a client is told";
}

TEST_F(Guests, ReleaseWhatIsNotTheirsAndAreToldOnceEach) {
    ask("ReleaseWhatIsNotTheirs");
    EXPECT_EQ(host.log().all().size(), 1U);
    host.names("TST_Thing");  // the other guest does so too
    ask("ReleaseWhatIsNotTheirs");
    host.names("TST_Thing");
    const auto lines = host.log().take();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].message, "release on a CMPIString that it must not end: ignored");
    EXPECT_EQ(lines[1].message, lines[0].message);
}

TEST_F(Guests, SayThatAnAssociationIsNoneOfTheirsAndTheOthersAnswer) {
    const Paths found{"TST_Thing.Name=\"found\""};
    EXPECT_EQ(host.associatorNames(thing), found);
    EXPECT_EQ(host.referenceNames(thing), found);
}

TEST_F(Guests, SayThatNoAssociationIsTheirsAndTheClientHearsIt) {
    EXPECT_EQ(codeOf([&] { host.associators(thing); }), "7");
    EXPECT_EQ(codeOf([&] { host.references(thing); }), "7");
    EXPECT_EQ(codeOf([&] { host.associatorNames(thing, {.role = "Left"}); }), "7")
        << "who refuses a filter may have had a result";
}

TEST_F(Guests, TellInAnErrorObjectWhatWentWrong) {
    EXPECT_EQ(failureOf([&] { host.invoke("TST_ErrorGuest.Name=\"e\"", "Fail"); }),
              "2 the disk is on fire");
}

}  // namespace
