#include "cimhost/mof/MofReader.h"
#include "tests/cimhost/operations/OperationsFixture.h"

#include <gmock/gmock.h>

#include <optional>

namespace cimhost::test {
namespace {

using testing::ElementsAre;

constexpr const char* guestClasses = R"(
Qualifier Key : boolean = false, Scope(property, reference), Flavor(DisableOverride, ToSubclass);
Qualifier Association : boolean = false, Scope(association), Flavor(DisableOverride, ToSubclass);
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
        request.nameSpace = "root/test";
        MofReader(repository, "root/test").readText(guestClasses, "guests");
        Registrations registrations;
        registrations.readText(registrationLines, "guests");
        host.emplace(broker, std::move(registrations),
                     std::vector<std::filesystem::path>{GUEST_FOLDER});
        operations.emplace(broker, *host);
        broker.setOperations(&*operations);
    }

    ~Guests() override {
        broker.setOperations(nullptr);
        host.reset();
    }

    /// What the guest's method answers.
    std::string ask(const std::string& method, const Arguments& in = {}) {
        const MethodResult result =
            operations->invokeMethod(request, named("TST_Guest", "g"), method, in);
        return std::string(std::string_view(*result.returnValue.get<Text>()));
    }

    Repository repository;
    CapturingLog log;
    Broker broker{repository, log, fillUpCalls, mannerUnderTest()};
    RequestContext request;
    std::optional<ModuleHost> host;
    std::optional<Operations> operations;
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
    FoundInstances instances;
    EXPECT_EQ(codeOfCall([&] {
                  operations->getInstance(
                      request, pathOf("TST_Thing", "Colour", Value::string("red")), {}, instances);
              }),
              4)
        << "a client is told";
}

TEST_F(Guests, ReleaseWhatIsNotTheirsAndAreToldOnceEach) {
    ask("ReleaseWhatIsNotTheirs");
    EXPECT_EQ(log.lines().size(), 1U);
    FoundPaths names;  // the other guest does so too
    operations->enumerateInstanceNames(request, classPath("TST_Thing"), names);
    ask("ReleaseWhatIsNotTheirs");
    operations->enumerateInstanceNames(request, classPath("TST_Thing"), names);
    ASSERT_EQ(log.lines().size(), 2U);
    EXPECT_EQ(log.lines()[0].message, "release on a CMPIString that it must not end: ignored");
    EXPECT_EQ(log.lines()[1].message, log.lines()[0].message);
}

TEST_F(Guests, SayThatAnAssociationIsNoneOfTheirsAndTheOthersAnswer) {
    const ObjectPath thing = named("TST_Thing", "t");
    FoundPaths names;
    operations->associatorNames(request, thing, {}, names);
    operations->referenceNames(request, thing, {}, names);
    EXPECT_THAT(names.texts(), ElementsAre("TST_Thing.found", "TST_Thing.found"));
}

TEST_F(Guests, SayThatNoAssociationIsTheirsAndTheClientHearsIt) {
    const ObjectPath thing = named("TST_Thing", "t");
    FoundInstances instances;
    EXPECT_EQ(codeOfCall([&] { operations->associators(request, thing, {}, {}, instances); }), 7);
    EXPECT_EQ(codeOfCall([&] { operations->references(request, thing, {}, {}, instances); }), 7);
    AssociationFilter filter;
    filter.role = "Left";
    FoundPaths names;
    EXPECT_EQ(codeOfCall([&] { operations->associatorNames(request, thing, filter, names); }), 7)
        << "who refuses a filter may have had a result";
}

TEST_F(Guests, TellInAnErrorObjectWhatWentWrong) {
    EXPECT_EQ(failureOfCall([&] {
                  operations->invokeMethod(request, named("TST_ErrorGuest", "e"), "Fail", {});
              }),
              "2: the disk is on fire");
}

}  // namespace
}  // namespace cimhost::test
