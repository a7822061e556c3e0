#include "cimhost/cimxml/HeaderMatch.h"

#include "tests/cimhost/cimxml/Requests.h"

#include <gtest/gtest.h>

namespace cimhost {
namespace {

bool names(std::string_view header, std::string_view target) {
    const bool isClass = target.starts_with("<CLASSNAME");
    const std::string path = isClass ? "LOCALCLASSPATH>" : "LOCALINSTANCEPATH>";
    const std::string xml = "<" + path + nameSpacePath() + std::string(target) + "</" + path;
    const XmlDocument document(xml, {Tag::localClassPath, Tag::localInstancePath});
    return namesTarget(header, document.root());
}

std::string instance(std::string_view keys) {
    return "<INSTANCENAME CLASSNAME=\"C\">" + std::string(keys) + "</INSTANCENAME>";
}

std::string key(std::string_view name, std::string_view value, std::string_view type = "string") {
    return "<KEYBINDING NAME=\"" + std::string(name) + "\"><KEYVALUE VALUETYPE=\"" +
           std::string(type) + "\">" + std::string(value) + "</KEYVALUE></KEYBINDING>";
}

std::string referenceKey(std::string_view name, std::string_view path) {
    return "<KEYBINDING NAME=\"" + std::string(name) + "\"><VALUE.REFERENCE>" + std::string(path) +
           "</VALUE.REFERENCE></KEYBINDING>";
}

std::string localPath(std::string_view instanceName) {
    return "<LOCALINSTANCEPATH>" + nameSpacePath("root/other") + std::string(instanceName) +
           "</LOCALINSTANCEPATH>";
}

TEST(HeaderMatch, DecodesPercentSequencesAndNothingElse) {
    EXPECT_EQ(percentDecode(""), "");
    EXPECT_EQ(percentDecode("root%2Fcimv2%3aC"), "root/cimv2:C");
    EXPECT_EQ(percentDecode("100%"), "100%");
    EXPECT_EQ(percentDecode("%4"), "%4");
    EXPECT_EQ(percentDecode("%zz%-1%+1% 1"), "%zz%-1%+1% 1");
    EXPECT_EQ(percentDecode("%C3%A9+"), "\xC3\xA9+");
    EXPECT_EQ(percentDecode("%2541"), "%41");
}

TEST(HeaderMatch, ComparesNamespacesWithoutCaseAndOuterSlashes) {
    EXPECT_TRUE(sameNameSpace("root/cimv2", "ROOT/CIMv2"));
    EXPECT_TRUE(sameNameSpace("/root/cimv2/", "root/cimv2"));
    EXPECT_FALSE(sameNameSpace("root/cimv2", "root/cimv"));
    EXPECT_FALSE(sameNameSpace("root", ""));
}

TEST(HeaderMatch, MatchesAClass) {
    constexpr std::string_view target = "<CLASSNAME NAME=\"C\"/>";
    EXPECT_TRUE(names("root/test:C", target));
    EXPECT_TRUE(names("Root/Test:c", target));
    for (const std::string_view header :
         {"", "C", "root/test", "root/test:", "root/test:D", "root/other:C", "root/test:CC",
          "root/test:C.Id=\"x\"", "root/test:C x", ":C"}) {
        EXPECT_FALSE(names(header, target)) << header;
    }
}

TEST(HeaderMatch, MatchesAnInstanceWithoutKeys) {
    for (const std::string_view header :
         {"root/test:C", "root/test:C.", "root/test:C.@", "root/test:C=@"}) {
        EXPECT_TRUE(names(header, instance(""))) << header;
    }
    EXPECT_FALSE(names("root/test:C.Id=\"x\"", instance("")));
    EXPECT_FALSE(names("root/test:C", instance(key("Id", "x"))));
}

TEST(HeaderMatch, MatchesKeysInAnyOrderAndCase) {
    const std::string target = instance(key("A", "1") + key("B", "2"));
    EXPECT_TRUE(names("root/test:C.A=\"1\",B=\"2\"", target));
    EXPECT_TRUE(names("root/test:C.b=\"2\",a=\"1\"", target));
    for (const std::string_view header :
         {"root/test:C.A=\"1\"", "root/test:C.A=\"1\",", "root/test:C.A=\"1\",B=\"3\"",
          "root/test:C.A=\"1\",A=\"1\"", "root/test:C.A=\"1\",B=\"2\",C=\"3\"",
          "root/test:C.A=\"1\",B=\"2\"x", "root/test:C.A=\"1\",B=\"2",
          "root/test:C.A=\"1\";B=\"2\"", "root/test:C.A", "root/test:C.=\"1\"",
          "root/test:C.A=,B=\"2\""}) {
        EXPECT_FALSE(names(header, target)) << header;
    }
}

TEST(HeaderMatch, MatchesQuotedTextWithEscapes) {
    EXPECT_TRUE(
        names("root/test:C.A=\"a\\\"b\\\\c,d=e.f:g\"", instance(key("A", "a\"b\\c,d=e.f:g"))));
    EXPECT_TRUE(names("root/test:C.A='x'", instance(key("A", "x"))));
    EXPECT_TRUE(names("root/test:C.A=\"\"", instance(key("A", ""))));
    EXPECT_FALSE(names("root/test:C.A=\"X\"", instance(key("A", "x"))));
    EXPECT_FALSE(names("root/test:C.A=\"x\\", instance(key("A", "x"))));
}

TEST(HeaderMatch, MatchesNumbersAndTruthByValue) {
    EXPECT_TRUE(names("root/test:C.A=16", instance(key("A", "0x10", "numeric"))));
    EXPECT_TRUE(names("root/test:C.A=-5", instance(key("A", "-5", "numeric"))));
    EXPECT_TRUE(names("root/test:C.A=1.0", instance(key("A", "1.0E0", "numeric"))));
    EXPECT_TRUE(names("root/test:C.A=TRUE,B=2",
                      instance(key("A", "true", "boolean") + key("B", "2", "numeric"))));
    EXPECT_FALSE(names("root/test:C.A=17", instance(key("A", "0x10", "numeric"))));
    EXPECT_FALSE(names("root/test:C.A=FALSE", instance(key("A", "true", "boolean"))));
}

TEST(HeaderMatch, MatchesReferencesQuotedAsText) {
    const std::string inner = instance(key("Id", "x\"y"));
    for (const std::string& path : {inner, localPath(inner)}) {
        const std::string target = instance(referenceKey("R", path) + key("K", "1"));
        EXPECT_TRUE(names(R"(root/test:C.K="1",R="root/other:C.Id=\"x\\\"y\"")", target));
        EXPECT_TRUE(names(R"(root/test:C.R="C.Id=\"x\\\"y\"",K="1")", target));
        EXPECT_TRUE(
            names(R"(root/test:C.R="//host:5989/root/other:C.Id=\"x\\\"y\"",K="1")", target));
        EXPECT_FALSE(names(R"(root/test:C.K="1",R="root/other:C.Id=\"z\"")", target));
        EXPECT_FALSE(names(R"(root/test:C.K="1",R="root/other:D.Id=\"x\\\"y\"")", target));
        EXPECT_FALSE(names(R"(root/test:C.K="1",R="root/other:C.Id=\"x\\\"y\"x")", target));
    }
}

TEST(HeaderMatch, MatchesReferencesWrittenBare) {
    const std::string target =
        instance(referenceKey("R", localPath(instance(key("A", "1") + key("B", "2")))) +
                 referenceKey("S", localPath(instance(key("A", "3")))) + key("B", "4"));
    EXPECT_TRUE(names(R"(root/test:C.R=C.A="1",B="2",S=C.A="3",B="4")", target));
    EXPECT_TRUE(names(R"(root/test:C.B="4",S=root/other:C.A="3",R=C.B="2",A="1")", target));
    EXPECT_FALSE(names(R"(root/test:C.R=C.A="1",S=C.A="3",B="4")", target));
    EXPECT_FALSE(names(R"(root/test:C.R=C.A="1",B="2",S=C.A="3",B="5")", target));
}

TEST(HeaderMatch, MatchesReferencesWhoseClassAloneIsQuoted) {
    const std::string target = instance(referenceKey("R", localPath(instance(key("Id", "1")))) +
                                        referenceKey("S", localPath(instance(key("Id", "2")))));
    EXPECT_TRUE(names(R"(root/test:C.R="C",Id="1",S="C",Id="2")", target));
    EXPECT_FALSE(names(R"(root/test:C.R="C",Id="1",S="C",Id="3")", target));
    EXPECT_FALSE(names(R"(root/test:C.R="D",Id="1",S="C",Id="2")", target));
    EXPECT_FALSE(names(R"(root/test:C.R="C",S="C")", target));
}

TEST(HeaderMatch, SurvivesHostileHeaders) {
    const std::string target = instance(key("A", "1"));
    for (const std::string_view piece :
         {":", ".", "=", "\"", ",", "\\", "//", "%", "C.", "A=", "'"}) {
        std::string header = "root/test:C.A=";
        for (int i = 0; i < 4000; ++i) header += piece;
        EXPECT_FALSE(names(header, target)) << piece;
        EXPECT_FALSE(names(header.substr(14), target)) << piece;
    }
    std::string manyKeys;
    for (int i = 0; i < 20'000; ++i) manyKeys += key("k" + std::to_string(i), "1");
    EXPECT_FALSE(names("root/test:C.k1=\"1\"", instance(manyKeys)));
}

}  // namespace
}  // namespace cimhost
