#include "cimhost/mof/MofReader.h"

#include "cimhost/repository/CimError.h"
#include "tests/cimhost/mof/MofText.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace cimhost {
namespace {

TEST(MofReader, ReadsTextsAndFilesIntoItsNamespace) {
    const TemporaryFolder folder;
    Repository repository;
    MofReader reader(repository, "root/a");
    reader.readText("class A {};", "text");
    reader.readFile(folder.write("b.mof",
                                 "\xEF\xBB\xBF"
                                 "class B : A {};"));
    EXPECT_NE(repository.get("ROOT/A").findClass("B"), nullptr);
}

TEST(MofReader, ANamespacePragmaDoesNotOutliveItsText) {
    Repository repository;
    MofReader reader(repository, "root/a");
    reader.readText("#pragma namespace(\"root/b\") class B {};", "text");
    reader.readText("class A {};", "text");
    EXPECT_NE(repository.get("root/a").findClass("A"), nullptr);
    EXPECT_NE(repository.get("root/b").findClass("B"), nullptr);
}

TEST(MofReader, AnEmptyTextIsRight) {
    Repository repository;
    MofReader(repository, "root/a").readText("", "empty");
    MofReader(repository, "root/a").readText("\xEF\xBB\xBF", "mark");
    MofReader(repository, "root/a").readText(" // only a comment", "comment");
    EXPECT_EQ(repository.get("root/a").classCount(), 0U);
}

TEST(MofReader, AliasesDoNotOutliveTheirText) {
    Repository repository;
    MofReader reader(repository, "root/a");
    reader.readText(test::qualifiers +
                        "class A { [Key] uint8 K; };"
                        "[Association] class L { [Key] A REF X; [Key] A REF Y; };"
                        "instance of A as $a { K = 1; };",
                    "one");
    EXPECT_THROW(reader.readText("instance of L { X = $a; Y = $a; };", "two"), MofError);
}

TEST(MofReader, ErrorsTellFileLineAndColumnApart) {
    Repository repository;
    try {
        MofReader(repository, "root/a").readText("class A {\n  uint8 B\n};", "some.mof");
        FAIL();
    } catch (const MofError& error) {
        EXPECT_EQ(error.file(), "some.mof");
        EXPECT_EQ(error.line(), 3U);
        EXPECT_EQ(error.column(), 1U);
        EXPECT_STREQ(error.what(), "some.mof:3:1: expected ';' after the property, found '}'");
    }
}

TEST(MofReader, NeedsANamespaceWithAName) {
    Repository repository;
    EXPECT_THROW(MofReader(repository, "").readText("", "x"), CimError);
}

TEST(MofReader, ClassesOfOneNamespaceAreNotThoseOfAnother) {
    Repository repository;
    MofReader(repository, "a").readText("class C {};", "x");
    MofReader(repository, "b").readText("class C {};", "x");
    EXPECT_THROW(MofReader(repository, "c").readText("class D : C {};", "x"), MofError);
}

}  // namespace
}  // namespace cimhost
