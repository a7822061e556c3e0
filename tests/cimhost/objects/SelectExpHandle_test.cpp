#include "cimhost/objects/SelectExpHandle.h"

#include "cimhost/objects/SelectCondHandle.h"
#include "tests/support/BrokerFixture.h"

namespace cimhost {
namespace {

class SelectExpHandle : public BrokerTest {
protected:
    CMPISelectExp* query(const std::string& text, CMPIArray** projection = nullptr) {
        return eft().newSelectExp(broker(), text.c_str(), "WQL", projection, &status);
    }
    CMPISelectExp* where(const std::string& condition) {
        return query("SELECT * FROM Test_Base WHERE " + condition);
    }

    bool selects(const CMPISelectExp* expression, const CMPIInstance* instance) {
        return expression->ft->evaluate(expression, instance, &status) != 0;
    }

    struct Parts {
        CMPIType type = 0;
        CMPIPredOp operation = CMPI_PredOp_Equals;
        std::string left;
        std::string right;
    };

    static Parts partsOf(const CMPIPredicate* predicate) {
        Parts parts;
        CMPIString* left = nullptr;
        CMPIString* right = nullptr;
        EXPECT_EQ(predicate->ft->getData(predicate, &parts.type, &parts.operation, &left, &right),
                  CMPI_RC_OK);
        parts.left = textOf(left);
        parts.right = textOf(right);
        return parts;
    }

    /// The left and right sides of all predicates: "A=1,B=2|C=3".
    std::string termsOf(const CMPISelectCond* condition) {
        std::string text;
        const CMPICount count = condition->ft->getCountAndType(condition, nullptr, &status);
        for (CMPICount i = 0; i < count; ++i) {
            if (i > 0) text += "|";
            const CMPISubCond* const term = condition->ft->getSubCondAt(condition, i, &status);
            const CMPICount size = term->ft->getCount(term, &status);
            for (CMPICount j = 0; j < size; ++j) {
                const Parts parts = partsOf(term->ft->getPredicateAt(term, j, &status));
                text += (j > 0 ? "," : "") + parts.left + "=" + parts.right;
            }
        }
        return text;
    }
};

TEST_F(SelectExpHandle, SelectsInstancesOfItsClassAndSubclassesThatMeetTheCondition) {
    const CMPISelectExp* const expression = where("Count > 3");
    CMPIInstance* const base = newInstance();
    CMPIInstance* const derived = newInstance("Test_Derived");
    CMPIInstance* const other = newInstance("Test_Other");
    for (CMPIInstance* const each : {base, derived, other}) {
        const CMPIValue four = uint32Value(4);
        each->ft->setProperty(each, "Count", &four, CMPI_uint32);
    }
    EXPECT_TRUE(selects(expression, base));
    EXPECT_TRUE(selects(expression, derived));
    EXPECT_FALSE(selects(expression, other));
    EXPECT_EQ(status, CMPI_RC_OK);
    const CMPIValue three = uint32Value(3);
    base->ft->setProperty(base, "Count", &three, CMPI_uint32);
    EXPECT_FALSE(selects(expression, base));
    EXPECT_FALSE(selects(expression, nullptr));
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_HANDLE);
}

TEST_F(SelectExpHandle, TellsWhatIsSelected) {
    CMPIArray* projection = nullptr;
    ASSERT_NE(query("SELECT Name, Test_Base.Count FROM Test_Base", &projection), nullptr);
    ASSERT_NE(projection, nullptr);
    ASSERT_EQ(projection->ft->getSize(projection, nullptr), 2U);
    EXPECT_EQ(textOf(projection->ft->getElementAt(projection, 1, nullptr).value.string), "Count");

    ASSERT_NE(query("SELECT * FROM Test_Base", &projection), nullptr);
    EXPECT_EQ(projection, nullptr);
}

TEST_F(SelectExpHandle, RefusesWhatIsNoQuery) {
    CMPIArray* projection = eft().newArray(broker(), 1, CMPI_uint8, nullptr);
    EXPECT_EQ(query("SELECT * FRM x", &projection), nullptr);
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_QUERY);
    EXPECT_NE(textOf(status.msg).find("character 10"), std::string::npos);
    EXPECT_EQ(projection, nullptr);
    EXPECT_EQ(eft().newSelectExp(broker(), "SELECT * FROM x", "SQL", nullptr, &status), nullptr);
    EXPECT_EQ(status, CMPI_RC_ERR_QUERY_LANGUAGE_NOT_SUPPORTED);
    EXPECT_EQ(eft().newSelectExp(broker(), nullptr, "WQL", nullptr, &status), nullptr);
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(SelectExpHandle, ClonesOutliveTheScope) {
    CMPISelectExp* copy = nullptr;
    {
        const CallScope inner;
        const CMPISelectExp* const expression = where("Name = 'a'");
        copy = expression->ft->clone(expression, &status);
    }
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(textOf(copy->ft->getString(copy, &status)),
              "SELECT * FROM Test_Base WHERE Name = 'a'");
    EXPECT_EQ(copy->ft->release(copy), CMPI_RC_OK);
}

struct Asked {
    std::vector<std::string> names;
    CMPIData answer{};
};

CMPIData answerWith(const char* name, void* parameter) {
    auto& asked = *static_cast<Asked*>(parameter);
    asked.names.emplace_back(name);
    return asked.answer;
}

TEST_F(SelectExpHandle, AsksACallbackForValuesOnce) {
    const CMPISelectExp* const expression = where("Count > 3 AND Count < 9");
    Asked asked;
    asked.answer.type = CMPI_uint32;
    asked.answer.value.uint32 = 5;
    EXPECT_NE(expression->ft->evaluateUsingAccessor(expression, answerWith, &asked, &status), 0);
    EXPECT_EQ(asked.names, std::vector<std::string>{"Count"});
    asked.answer.state = CMPI_nullValue;
    EXPECT_EQ(expression->ft->evaluateUsingAccessor(expression, answerWith, &asked, &status), 0);
    EXPECT_EQ(status, CMPI_RC_OK);
    EXPECT_EQ(expression->ft->evaluateUsingAccessor(expression, nullptr, nullptr, &status), 0);
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(SelectExpHandle, GivesBothNormalForms) {
    const CMPISelectExp* const expression = where("A = 1 AND (B = 2 OR C = 3)");
    int form = -1;
    const CMPISelectCond* const doc = expression->ft->getDOC(expression, &status);
    EXPECT_EQ(doc->ft->getCountAndType(doc, &form, &status), 2U);
    EXPECT_EQ(form, 0);
    EXPECT_EQ(termsOf(doc), "A=1,B=2|A=1,C=3");
    const CMPISelectCond* const cod = expression->ft->getCOD(expression, &status);
    EXPECT_EQ(cod->ft->getCountAndType(cod, &form, &status), 2U);
    EXPECT_EQ(form, 1);
    EXPECT_EQ(termsOf(cod), "A=1|B=2,C=3");
}

TEST_F(SelectExpHandle, HasNoNormalFormThatIsTooLong) {
    std::string condition;
    for (int i = 0; i < 16; ++i) condition += (i ? " AND (" : "(") + std::string("A=1 OR B=2)");
    const CMPISelectExp* const expression = where(condition);
    EXPECT_EQ(expression->ft->getDOC(expression, &status), nullptr);
    EXPECT_EQ(status, CMPI_RC_ERR_NOT_SUPPORTED);
    EXPECT_NE(expression->ft->getCOD(expression, &status), nullptr);
}

TEST_F(SelectExpHandle, TakesPredicatesApart) {
    const CMPISelectExp* const expression = where(
        "A <> 'it''s' AND B >= -2 AND C IS NOT NULL AND NOT (D = TRUE) AND E ISA X AND F = G");
    const CMPISelectCond* const doc = expression->ft->getDOC(expression, &status);
    const CMPISubCond* const term = doc->ft->getSubCondAt(doc, 0, &status);
    struct Row {
        CMPIType type;
        CMPIPredOp operation;
        const char* left;
        const char* right;
    };
    const Row rows[] = {
        {CMPI_charString, CMPI_PredOp_NotEquals, "A", "it's"},
        {CMPI_integerString, CMPI_PredOp_GreaterThanOrEquals, "B", "-2"},
        {CMPI_null, CMPI_PredOp_Not_Null, "C", "<null>"},
        {CMPI_booleanString, CMPI_PredOp_NotEquals, "D", "TRUE"},
        {CMPI_classNameString, CMPI_PredOp_Isa, "E", "X"},
        {CMPI_nameString, CMPI_PredOp_Equals, "F", "G"},
    };
    for (const Row& row : rows) {
        const CMPIPredicate* const predicate = term->ft->getPredicate(term, row.left, &status);
        ASSERT_NE(predicate, nullptr) << row.left;
        const Parts parts = partsOf(predicate);
        EXPECT_EQ(parts.type, row.type) << row.left;
        EXPECT_EQ(parts.operation, row.operation) << row.left;
        EXPECT_EQ(parts.left, row.left);
        EXPECT_EQ(parts.right, row.right);
    }
    EXPECT_EQ(term->ft->getPredicate(term, "Z", &status), nullptr);
    EXPECT_EQ(status, CMPI_RC_ERR_NO_SUCH_PROPERTY);
    EXPECT_EQ(term->ft->getPredicateAt(term, 6, &status), nullptr);
    EXPECT_EQ(doc->ft->getSubCondAt(doc, 1, &status), nullptr);
}

TEST_F(SelectExpHandle, EvaluatesOnePredicate) {
    const CMPISelectExp* const expression = where("Count > 3");
    const CMPISelectCond* const doc = expression->ft->getDOC(expression, &status);
    const CMPISubCond* const term = doc->ft->getSubCondAt(doc, 0, &status);
    CMPIPredicate* const predicate = term->ft->getPredicateAt(term, 0, &status);
    CMPIPredicate* const copy = predicate->ft->clone(predicate, &status);
    Asked asked;
    asked.answer.type = CMPI_uint32;
    asked.answer.value.uint32 = 4;
    EXPECT_NE(copy->ft->evaluateUsingAccessor(copy, answerWith, &asked, &status), 0);
    EXPECT_EQ(textOf(eft().toString(broker(), copy, &status)), "Count > 3");
    EXPECT_EQ(copy->ft->release(copy), CMPI_RC_OK);
    EXPECT_EQ(predicate->ft->release(predicate), CMPI_RC_ERR_INVALID_HANDLE);
}

}  // namespace
}  // namespace cimhost
