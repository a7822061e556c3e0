#include "cimhost/repository/QualifierRules.h"

#include "cimhost/repository/CimError.h"
#include "cimhost/repository/NameSpace.h"

#include <gtest/gtest.h>

namespace cimhost {
namespace {

Qualifier qualifier(const char* name, Value value, Flavor flavor = {}) {
    return {name, std::move(value), flavor, false};
}

class QualifierRules : public testing::Test {
protected:
    QualifierRules() {
        declare("Key", CimType::boolean, Scope::property);
        declare("Association", CimType::boolean, Scope::association);
        declare("Version", CimType::string, Scope::classes);
    }

    void declare(const char* name, CimType type, Scope scope) {
        QualifierDeclaration declaration;
        declaration.name = name;
        declaration.type = type;
        declaration.scopes = static_cast<std::uint16_t>(scope);
        _nameSpace.setQualifier(declaration);
    }

    std::string refusal(const Qualifiers& qualifiers, std::uint16_t scopes) {
        try {
            checkQualifiers(_nameSpace, qualifiers, scopes, "element 'E'");
        } catch (const CimError& error) {
            EXPECT_EQ(error.code(), CimCode::invalidParameter);
            return error.what();
        }
        return {};
    }

    NameSpace _nameSpace{"root/test"};
    MemoryBudget _budget;
};

TEST_F(QualifierRules, TakeWhatIsDeclaredInScopeAndOfItsType) {
    EXPECT_EQ(refusal({qualifier("KEY", Value::boolean(true))}, scopeMask(Scope::property)), "");
    EXPECT_EQ(
        refusal({qualifier("Version", Value::null(CimType::string))}, scopeMask(Scope::classes)),
        "");
}

TEST_F(QualifierRules, SayWhatIsWrongWithAQualifier) {
    const auto property = scopeMask(Scope::property);
    EXPECT_EQ(refusal({qualifier("Nope", Value::boolean(true))}, property),
              "element 'E': qualifier 'Nope' is not declared");
    EXPECT_EQ(
        refusal({qualifier("Key", Value::boolean(true)), qualifier("key", Value::boolean(true))},
                property),
        "element 'E': qualifier 'key' is given twice");
    EXPECT_EQ(refusal({qualifier("Version", Value::string("1"))}, property),
              "element 'E': qualifier 'Version' has no place here by its scope");
    EXPECT_EQ(refusal({qualifier("Key", Value::string("true"))}, property),
              "element 'E': qualifier 'Key' is declared as boolean");
    EXPECT_EQ(refusal({qualifier("Key", Value::array(CimType::boolean, {}))}, property),
              "element 'E': qualifier 'Key' is declared as boolean");
}

TEST_F(QualifierRules, AReferenceIsAPropertyAndAnAssociationAClass) {
    EXPECT_EQ(refusal({qualifier("Key", Value::boolean(true))}, scopeMask(Scope::reference)), "");
    EXPECT_EQ(refusal({qualifier("Version", Value::string("1"))}, scopeMask(Scope::association)),
              "");
    EXPECT_EQ(refusal({qualifier("Version", Value::string("1"))}, scopeMask(Scope::indication)),
              "");
    EXPECT_NE(refusal({qualifier("Association", Value::boolean(true))}, scopeMask(Scope::classes)),
              "");
}

TEST_F(QualifierRules, AClassIsAnAssociationByItsOwnQualifier) {
    const Qualifiers association{qualifier("Association", Value::boolean(true))};
    EXPECT_EQ(classScopeMask(association), scopeMask(Scope::association));
    EXPECT_EQ(classScopeMask({qualifier("Association", Value::boolean(false))}),
              scopeMask(Scope::classes));
    EXPECT_EQ(classScopeMask({qualifier("Indication", Value::boolean(true))}),
              scopeMask(Scope::indication));
}

TEST_F(QualifierRules, QualifiersTravelByFlavorAndAreMarked) {
    Flavor restricted;
    restricted.toSubclass = false;
    Qualifiers own{qualifier("Version", Value::string("2"))};
    inheritQualifiers(own,
                      {qualifier("Description", Value::string("text")),
                       qualifier("Abstract", Value::boolean(true), restricted),
                       qualifier("version", Value::string("1"))},
                      "class 'C'", _budget);
    ASSERT_EQ(own.size(), 2U);
    EXPECT_EQ(own[0].value, Value::string("2"));
    EXPECT_FALSE(own[0].propagated);
    EXPECT_EQ(own[1].name, "Description");
    EXPECT_TRUE(own[1].propagated);
}

TEST_F(QualifierRules, WhatMustNotBeOverriddenMayOnlyBeRepeated) {
    Flavor fixed;
    fixed.overridable = false;
    const Qualifiers inherited{qualifier("Key", Value::boolean(true), fixed)};
    Qualifiers same{qualifier("key", Value::boolean(true))};
    EXPECT_NO_THROW(inheritQualifiers(same, inherited, "property 'P'", _budget));
    Qualifiers other{qualifier("Key", Value::boolean(false))};
    try {
        inheritQualifiers(other, inherited, "property 'P'", _budget);
        FAIL();
    } catch (const CimError& error) {
        EXPECT_STREQ(error.what(), "property 'P': qualifier 'Key' must not be overridden");
    }
}

TEST_F(QualifierRules, PropagationIsPaidForBeforeItIsDone) {
    _budget.charge(MemoryBudget::limit - 10);
    Qualifiers own;
    EXPECT_THROW(
        inheritQualifiers(own, {qualifier("Description", Value::string("text"))}, "", _budget),
        CimError);
    EXPECT_TRUE(own.empty());
}

}  // namespace
}  // namespace cimhost
