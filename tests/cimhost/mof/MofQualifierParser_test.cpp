#include "cimhost/mof/MofQualifierParser.h"

#include "tests/cimhost/mof/MofText.h"

#include <gtest/gtest.h>

namespace cimhost {
namespace {

using test::MofText;

class MofQualifierParser : public testing::Test {
protected:
    const QualifierDeclaration& declare(const std::string& text, const char* name) {
        _mof.read(text);
        return *_mof.nameSpace().findQualifier(name);
    }
    const Qualifier* used(const std::string& list, const char* name) {
        const std::string className = "Q" + std::to_string(_count++);
        _mof.read("[" + list + "] class " + className + " {};");
        return findQualifier(_mof.classOf(className).qualifiers, name);
    }
    MofText _mof;
    int _count = 0;
};

TEST_F(MofQualifierParser, ReadsADeclarationInFull) {
    const auto& declaration = declare(
        "QUALIFIER Range : uint32[3] = {1, 2}, SCOPE(Property, method),\n"
        "FLAVOR(DisableOverride, Restricted, Translatable);",
        "range");
    EXPECT_EQ(declaration.name, "Range");
    EXPECT_EQ(declaration.type, CimType::uint32);
    EXPECT_TRUE(declaration.isArray);
    EXPECT_EQ(declaration.arraySize, 3U);
    EXPECT_EQ(declaration.defaultValue.get<Value::Array>()->size(), 2U);
    EXPECT_EQ(declaration.scopes,
              static_cast<unsigned>(Scope::property) | static_cast<unsigned>(Scope::method));
    EXPECT_FALSE(declaration.flavor.overridable);
    EXPECT_FALSE(declaration.flavor.toSubclass);
    EXPECT_TRUE(declaration.flavor.translatable);
}

TEST_F(MofQualifierParser, FillsInWhatADeclarationLeavesOut) {
    const auto& declaration = declare("Qualifier Plain : string, Scope(any);", "Plain");
    EXPECT_EQ(declaration.defaultValue, Value::null(CimType::string));
    EXPECT_EQ(declaration.scopes, static_cast<unsigned>(Scope::any));
    EXPECT_TRUE(declaration.flavor.overridable);
    EXPECT_TRUE(declaration.flavor.toSubclass);
    EXPECT_FALSE(declaration.flavor.translatable);
}

TEST_F(MofQualifierParser, KnowsEveryScope) {
    const char* const scopes[] = {"schema",   "class",     "association", "indication",
                                  "property", "reference", "method",      "parameter"};
    for (unsigned i = 0; i < 8; ++i) {
        const auto& declaration =
            declare(std::string("Qualifier S : string, Scope(") + scopes[i] + ");", "S");
        EXPECT_EQ(declaration.scopes, 1U << i) << scopes[i];
    }
}

TEST_F(MofQualifierParser, ALaterDeclarationReplacesAnEarlierOne) {
    declare("Qualifier R : string, Scope(any);", "R");
    EXPECT_EQ(declare("Qualifier r : uint8, Scope(any);", "R").type, CimType::uint8);
}

TEST_F(MofQualifierParser, ReadsValuesInTheirDeclaredType) {
    _mof.read("Qualifier N : sint64, Scope(any); Qualifier L : string[], Scope(any);");
    EXPECT_EQ(used("N(5)", "N")->value, Value::signedInteger(CimType::sint64, 5));
    EXPECT_EQ(used("Description(\"a\" \"b\")", "Description")->value, Value::string("ab"));
    EXPECT_EQ(used("L{\"a\", \"b\"}", "L")->value,
              Value::array(CimType::string, {Value::string("a"), Value::string("b")}));
    EXPECT_EQ(used("L({\"a\"})", "L")->value, Value::array(CimType::string, {Value::string("a")}));
    EXPECT_EQ(used("Abstract(false)", "Abstract")->value, Value::boolean(false));
    EXPECT_EQ(used("Description(null)", "Description")->value, Value::null(CimType::string));
}

TEST_F(MofQualifierParser, WithoutAValueABooleanIsTrueAndOthersTakeTheDefault) {
    _mof.read("Qualifier D : string = \"def\", Scope(any);");
    EXPECT_EQ(used("Abstract", "Abstract")->value, Value::boolean(true));
    EXPECT_EQ(used("D", "D")->value, Value::string("def"));
    EXPECT_EQ(used("Description", "Description")->value, Value::null(CimType::string));
}

TEST_F(MofQualifierParser, FlavorsOfAUseOverrideTheDeclared) {
    const Qualifier* const qualifier =
        used("description(\"x\") : DisableOverride RESTRICTED ToInstance", "Description");
    EXPECT_EQ(qualifier->name, "Description");
    EXPECT_FALSE(qualifier->flavor.overridable);
    EXPECT_FALSE(qualifier->flavor.toSubclass);
    EXPECT_TRUE(qualifier->flavor.translatable);
}

TEST_F(MofQualifierParser, SaysWhatIsWrongInADeclaration) {
    EXPECT_EQ(_mof.errorOf("Qualifier : string;"),
              "t.mof:1:11: expected the qualifier's name, found ':'");
    EXPECT_EQ(_mof.errorOf("Qualifier Q string;"),
              "t.mof:1:13: expected ':' after the qualifier's name, found 'string'");
    EXPECT_EQ(_mof.errorOf("Qualifier Q : text;"), "t.mof:1:15: expected a type, found 'text'");
    EXPECT_EQ(_mof.errorOf("Qualifier Q : string;"),
              "t.mof:1:21: expected ',' before the scope, found ';'");
    EXPECT_EQ(_mof.errorOf("Qualifier Q : string, Flavor(Restricted);"),
              "t.mof:1:23: expected 'scope' of the qualifier, found 'Flavor'");
    EXPECT_EQ(_mof.errorOf("Qualifier Q : string, Scope any;"),
              "t.mof:1:29: expected '(' after 'scope', found 'any'");
    EXPECT_EQ(_mof.errorOf("Qualifier Q : string, Scope(all);"),
              "t.mof:1:29: expected a scope, found 'all'");
    EXPECT_EQ(_mof.errorOf("Qualifier Q : string, Scope(any;"),
              "t.mof:1:32: expected ')' or ',' after the scope, found ';'");
    EXPECT_EQ(_mof.errorOf("Qualifier Q : string, Scope(any), Flavor(Sweet);"),
              "t.mof:1:42: expected a flavor, found 'Sweet'");
    EXPECT_EQ(_mof.errorOf("Qualifier Q : string, Scope(any), Flavor(ToSubclass, Restricted);"),
              "t.mof:1:54: 'Restricted' contradicts 'ToSubclass'");
    EXPECT_EQ(_mof.errorOf("Qualifier Q : string, Scope(any) class"),
              "t.mof:1:34: expected ';' after the qualifier declaration, found 'class'");
    EXPECT_EQ(_mof.errorOf("Qualifier Q : uint8 = 300, Scope(any);"),
              "t.mof:1:23: 300 is out of range for uint8 (0 to 255)");
}

TEST_F(MofQualifierParser, SaysWhatIsWrongInAList) {
    EXPECT_EQ(_mof.errorOf("[Nonsense] class C {};"),
              "t.mof:1:2: qualifier 'Nonsense' is not declared");
    EXPECT_EQ(_mof.errorOf("[] class C {};"), "t.mof:1:2: expected a qualifier, found ']'");
    EXPECT_EQ(_mof.errorOf("[Abstract, abstract] class C {};"),
              "t.mof:1:12: qualifier 'Abstract' is given twice");
    EXPECT_EQ(_mof.errorOf("[Abstract Version] class C {};"),
              "t.mof:1:11: expected ']' or ',' after the qualifier, found 'Version'");
    EXPECT_EQ(_mof.errorOf("[Version(\"1\"] class C {};"),
              "t.mof:1:13: expected ')' after the qualifier's value, found ']'");
    EXPECT_EQ(_mof.errorOf("[Version(1)] class C {};"),
              "t.mof:1:10: an integer is not of type string");
    EXPECT_EQ(_mof.errorOf("[Version{\"1\"}] class C {};"),
              "t.mof:1:9: expected a single value of type string");
    EXPECT_EQ(_mof.errorOf("[Version(\"1\") : ] class C {};"),
              "t.mof:1:17: expected a flavor, found ']'");
    EXPECT_EQ(_mof.errorOf("[Version : EnableOverride DisableOverride] class C {};"),
              "t.mof:1:27: 'DisableOverride' contradicts 'EnableOverride'");
    EXPECT_EQ(_mof.errorOf("[Key] class C {};"),
              "t.mof:1:2: class 'C': qualifier 'Key' has no place here by its scope");
    EXPECT_EQ(
        _mof.errorOf("class C { [Abstract] uint8 P; };"),
        "t.mof:1:12: property 'P' of 'C': qualifier 'Abstract' has no place here by its scope");
}

}  // namespace
}  // namespace cimhost
