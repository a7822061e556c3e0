#include "cimhost/server/RegistrationCheck.h"

#include "cimhost/mof/MofReader.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cimhost {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* schema = R"(
    Qualifier Key : boolean = false, Scope(property, reference);
    Qualifier Abstract : boolean = false, Scope(class, association, indication);
    Qualifier Association : boolean = false, Scope(association);
    Qualifier Indication : boolean = false, Scope(class, indication);
    class Fan { [Key] string Name; uint32 Spin(); };
    [Abstract] class Device { [Key] string Name; };
    [Association] class Cools { [Key] Fan REF Who; [Key] Fan REF What; };
    [Indication] class Alert { string Text; };
    class Loose { string Text; };
)";

Findings findingsOf(const std::string& lines) {
    Repository repository;
    MofReader(repository, "root/x").readText(schema, "schema");
    Registrations registrations;
    registrations.readText(lines, "r");
    return checkClasses(repository, registrations);
}

TEST(RegistrationCheck, FindsNothingWhereAllIsWell) {
    EXPECT_THAT(findingsOf("Fan root/x P M instance method\nCools ROOT/X P M instance association\n"
                           "Alert root/x P M indication\n"),
                IsEmpty());
}

TEST(RegistrationCheck, FindsClassesAndNamespacesThatNoSchemaHas) {
    EXPECT_THAT(
        findingsOf("fan ROOT/X P M instance\nFam root/x P M instance\nFan root/y P M instance\n"
                   "Printer root/x P M instance\n"),
        ElementsAre("r:2: provider P is registered for root/x:Fam, which does not exist; did you "
                    "mean 'Fan'?",
                    "r:3: provider P is registered for root/y:Fan, and no schema is in namespace "
                    "root/y; did you mean 'root/x'?",
                    "r:4: provider P is registered for root/x:Printer, which does not exist"));
}

TEST(RegistrationCheck, HoldsTypesAgainstTheKindOfClass) {
    EXPECT_THAT(findingsOf("Fan root/x P M association indication\n"),
                ElementsAre("r:1: provider P is registered for root/x:Fan as association, but the "
                            "class is none: it has no [Association]",
                            "r:1: provider P is registered for root/x:Fan as indication, but the "
                            "class is none: it has no [Indication]"));
    EXPECT_THAT(findingsOf("Alert root/x P M instance\n"),
                ElementsAre("r:1: provider P is registered for root/x:Alert as instance, but the "
                            "class is an indication: register it as indication"));
    EXPECT_THAT(findingsOf("Device root/x P M instance\n"),
                ElementsAre("r:1: provider P is registered for root/x:Device as instance, but the "
                            "class is abstract: nothing can be an instance of it"));
    EXPECT_THAT(findingsOf("Loose root/x P M instance method\n"),
                ElementsAre("r:1: provider P is registered for root/x:Loose as instance, but the "
                            "class has no [Key]: no client could name an instance",
                            "r:1: provider P is registered for root/x:Loose as method, but the "
                            "class has no methods"));
}

TEST(RegistrationCheck, WantsAssociationsToBeWalked) {
    EXPECT_THAT(findingsOf("Cools root/x P M instance\n"),
                ElementsAre("r:1: provider P is registered for root/x:Cools as instance, but the "
                            "class is an association: without association no client can follow "
                            "it"));
    EXPECT_THAT(findingsOf("Cools root/x P M instance\nCools root/x Q M association\n"), IsEmpty())
        << "another provider may do that";
}

TEST(ModuleFilesCheck, FindsModulesThatAreNotThereOrNoModules) {
    const TemporaryFolder folder;
    folder.write("libFans.so", "no library");
    Registrations registrations;
    registrations.readText("A n P Fan instance\nB n Q Fans instance\nC n Q Fans instance\n", "r");
    const std::string path = folder.path().string();
    EXPECT_THAT(checkModuleFiles(registrations, {"/absent", folder.path()}),
                ElementsAre("r:1: module Fan: libFan.so was not found in /absent, " + path +
                                "; did you mean 'Fans'?",
                            "r:2: module Fans cannot be loaded: " + path +
                                "/libFans.so: it is no library of this machine"));
}

}  // namespace
}  // namespace cimhost
