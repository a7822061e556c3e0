#include "cimhost/server/SchemaOptions.h"

#include "cimhost/mof/MofReader.h"
#include "cimhost/server/Command.h"
#include "tests/cimhost/server/CommandLine.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cimhost {
namespace {

using testing::ElementsAre;

struct SchemaOptionsTest : testing::Test {
    TemporaryFolder folder;
    CommandLine<SchemaOptions> line;

    std::vector<std::string> placesOf(const std::vector<std::string>& words) {
        std::vector<std::string> places;
        for (const SchemaFile& schema : line.parse(words).files()) {
            places.push_back(schema.nameSpace + "=" + schema.file.string());
        }
        return places;
    }
};

TEST_F(SchemaOptionsTest, PutsFilesIntoTheUsualNamespace) {
    EXPECT_THAT(placesOf({"--schema", "a", "--schema", "b"}),
                ElementsAre("root/cimv2=a", "root/cimv2=b"));
}

TEST_F(SchemaOptionsTest, PutsFilesIntoTheNamespaceNamedBefore) {
    EXPECT_THAT(placesOf({"--namespace", "x", "--schema", "a", "--schema=b", "--namespace", "y",
                          "--schema", "c", "--namespace", "x", "--schema", "d"}),
                ElementsAre("x=a", "x=b", "y=c", "x=d"));
}

TEST_F(SchemaOptionsTest, PutsEarlierFilesIntoTheFirstNamespace) {
    EXPECT_THAT(
        placesOf({"--schema", "a", "--namespace", "x", "--schema", "b", "--namespace", "y"}),
        ElementsAre("x=a", "x=b"));
}

TEST_F(SchemaOptionsTest, LoadsClassesAndFindsIncludes) {
    std::filesystem::create_directory(folder / "more");
    folder.write("more/base.mof", "class A { [key] string K; };");
    folder.write("a.mof",
                 "Qualifier Key : boolean = false, Scope(property, reference);\n"
                 "#pragma include (\"base.mof\")\nclass B : A {};");
    Repository repository;
    line.parse({"--namespace", "root/x", "--schema", folder / "a.mof", "--include-dir",
                folder / "more", "--namespace", "root/empty"})
        .loadInto(repository);
    ASSERT_NE(repository.find("root/x"), nullptr);
    EXPECT_TRUE(repository.get("root/x").isA("B", "A"));
    EXPECT_NE(repository.find("root/empty"), nullptr);
}

TEST_F(SchemaOptionsTest, WantsAtLeastOneFile) {
    Repository repository;
    EXPECT_THROW(line.parse({}).loadInto(repository), UsageError);
}

TEST_F(SchemaOptionsTest, ReadsRegistrationsInOrder) {
    folder.write("one", "A root/x P M instance\n");
    folder.write("two", "B root/x P M instance association\n");
    Registrations registrations;
    line.parse({"--registration", folder / "one", "--registration", folder / "two"})
        .loadInto(registrations);
    ASSERT_EQ(registrations.all().size(), 2U);
    EXPECT_EQ(registrations.all().back().className, "B");
}

}  // namespace
}  // namespace cimhost
