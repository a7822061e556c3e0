#include "cimhost/repository/Repository.h"

#include "cimhost/repository/CimError.h"

#include <gtest/gtest.h>

namespace cimhost {
namespace {

TEST(Repository, FindsNamespacesInAnyCaseAndWithSlashesAround) {
    Repository repository;
    NameSpace& made = repository.make("/root/CIMv2/");
    EXPECT_EQ(made.name(), "root/CIMv2");
    EXPECT_EQ(repository.find("ROOT/cimv2"), &made);
    EXPECT_EQ(repository.find("//root/cimv2//"), &made);
    EXPECT_EQ(&std::as_const(repository).get("root/cimv2/"), &made);
    EXPECT_EQ(repository.find("root"), nullptr);
    EXPECT_EQ(repository.find(""), nullptr);
}

TEST(Repository, MakesANamespaceOnce) {
    Repository repository;
    const NameSpace& made = repository.make("interop");
    EXPECT_EQ(&repository.make("INTEROP"), &made);
    EXPECT_EQ(repository.names(), (std::vector<std::string>{"interop"}));
}

TEST(Repository, ListsNamesInOrder) {
    Repository repository;
    for (const char* const name : {"root/x", "Interop", "root"}) repository.make(name);
    EXPECT_EQ(repository.names(), (std::vector<std::string>{"Interop", "root", "root/x"}));
}

TEST(Repository, AnUnknownNamespaceIsNamedInTheError) {
    const Repository repository;
    try {
        repository.get("root/nope");
        FAIL();
    } catch (const CimError& error) {
        EXPECT_EQ(error.code(), CimCode::invalidNamespace);
        EXPECT_STREQ(error.what(), "namespace 'root/nope' is not known");
    }
}

TEST(Repository, TellsWhichNameWasMeant) {
    Repository repository;
    NameSpace& here = repository.make("root/here");
    Class fan;
    fan.name = "T_Fan";
    here.addClass(fan);
    Class disk;
    disk.name = "T_Disk";
    repository.make("root/there").addClass(disk);
    EXPECT_EQ(repository.meantNameSpace("/root/hare"), "; did you mean 'root/here'?");
    EXPECT_EQ(repository.meantNameSpace("interop"), "");
    EXPECT_EQ(repository.meantClass(here, "T_Fam"), "; did you mean 'T_Fan'?");
    EXPECT_EQ(repository.meantClass(here, "T_Disk"), "; namespace root/there has it");
    EXPECT_EQ(repository.meantClass(here, "T_Printer"), "");
}

TEST(Repository, ANamespaceNeedsAName) {
    Repository repository;
    EXPECT_THROW(repository.make("//"), CimError);
    EXPECT_TRUE(repository.names().empty());
}

TEST(Repository, NamespacesShareOneBudget) {
    Repository repository;
    EXPECT_EQ(&repository.make("a").budget(), &repository.make("b").budget());
}

}  // namespace
}  // namespace cimhost
