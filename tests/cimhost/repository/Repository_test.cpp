#include "cimhost/repository/Repository.h"

#include "cimhost/repository/CimError.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <utility>
#include <vector>

namespace cimhost {
namespace {

Class namedClass(const char* name) {
    Class definition;
    definition.name = name;
    return definition;
}

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

TEST(Repository, IsReplacedUnderItsReaders) {
    Repository repository;
    repository.make("root/first").addClass(namedClass("A"));
    const Class* const before = repository.get("root/first").findClass("A");
    std::atomic<bool> isOver = false;
    std::atomic<int> misses = 0;
    std::vector<std::thread> readers;
    for (int reader = 0; reader < 4; ++reader) {
        readers.emplace_back([&] {
            const Repository& constant = repository;
            while (!isOver) {
                const NameSpace* const found = constant.find("root/first");
                if (!found || !found->findClass("A")) ++misses;
            }
        });
    }
    for (int round = 0; round < 200; ++round) {
        Repository next;
        next.make("root/first").addClass(namedClass("A"));
        repository.replaceBy(next);
        EXPECT_TRUE(next.names().empty());
    }
    isOver = true;
    for (std::thread& reader : readers) reader.join();
    EXPECT_EQ(misses, 0);
    EXPECT_EQ(before->name, "A");
    EXPECT_NE(repository.get("root/first").findClass("A"), before);
}

TEST(Repository, NamespacesShareOneBudget) {
    Repository repository;
    EXPECT_EQ(&repository.make("a").budget(), &repository.make("b").budget());
}

}  // namespace
}  // namespace cimhost
