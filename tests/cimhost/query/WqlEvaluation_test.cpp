#include "cimhost/query/WqlEvaluation.h"

#include "cimhost/query/WqlParser.h"

#include <gtest/gtest.h>

namespace cimhost {
namespace {

Instance part(const char* className) {
    Instance instance;
    instance.path.className = className;
    instance.set("Speed", Value::unsignedInteger(CimType::uint16, 9));
    return instance;
}

class WqlEvaluation : public testing::Test {
protected:
    WqlEvaluation() : nameSpace("root/test") {
        Class base;
        base.name = "CIM_Fan";
        nameSpace.addClass(base);
        Class derived;
        derived.name = "ACME_Fan";
        derived.superClass = "CIM_Fan";
        nameSpace.addClass(derived);

        instance.path.className = "ACME_Fan";
        instance.set("Small", Value::unsignedInteger(CimType::uint8, 5));
        instance.set("Big", Value::unsignedInteger(CimType::uint64, UINT64_MAX));
        instance.set("Low", Value::signedInteger(CimType::sint32, -3));
        instance.set("Real", Value(CimType::real64, 2.5));
        instance.set("Float", Value(CimType::real32, static_cast<double>(0.1F)));
        instance.set("Text", Value::string("fan"));
        instance.set("Flag", Value::boolean(true));
        instance.set("Letter", Value::unsignedInteger(CimType::char16, 'x'));
        instance.set("Made", Value(CimType::dateTime, std::string("20260501120000.000000+000")));
        instance.set("Nothing", Value::null(CimType::string));
        instance.set("List", Value::array(CimType::uint8, {}));
        instance.set("SourceInstance", Value::instance(part("ACME_Fan")));
    }

    Truth truth(const std::string& condition) {
        const WqlQuery query = parseQuery("WQL", "SELECT * FROM CIM_Fan WHERE " + condition);
        InstanceValues values(instance);
        return evaluate(*query.condition, values, &nameSpace);
    }

    NameSpace nameSpace;
    Instance instance;
};

TEST_F(WqlEvaluation, ComparesNumbersByValueWhateverTheirTypes) {
    for (const char* const condition :
         {"Small = 5", "Small = 5.0", "Small <> 6", "Small > Low", "Low < 0", "Low = -3",
          "Low < 18446744073709551615", "Big = 18446744073709551615", "Big > -1",
          "Big <> 18446744073709551614", "Real >= 2.5", "Real < 3", "Float = 0.1", "5 <= Small"}) {
        EXPECT_EQ(truth(condition), Truth::yes) << condition;
    }
    for (const char* const condition : {"Small = 6", "Small < Low", "Big < 0", "Real = 2"}) {
        EXPECT_EQ(truth(condition), Truth::no) << condition;
    }
}

TEST_F(WqlEvaluation, ComparesSignedAndUnsignedZeros) {
    instance.set("None", Value::signedInteger(CimType::sint32, 0));
    instance.set("Empty", Value::unsignedInteger(CimType::uint64, 0));
    for (const char* const condition :
         {"None = 0", "0 = None", "None = Empty", "Empty = None", "None >= Empty", "Empty <= None",
          "Low < Empty", "Empty > Low", "None < Small", "Small > None", "None > -1",
          "None = 0.0"}) {
        EXPECT_EQ(truth(condition), Truth::yes) << condition;
    }
    for (const char* const condition :
         {"None <> 0", "None < Empty", "Empty > None", "Empty < -1"}) {
        EXPECT_EQ(truth(condition), Truth::no) << condition;
    }
}

TEST_F(WqlEvaluation, KnowsNothingOfHalfACharacter) {
    const auto letterIs = [this](std::uint64_t code, const std::string& text) {
        instance.set("Letter", Value::unsignedInteger(CimType::char16, code));
        return truth("Letter = '" + text + "'");
    };
    EXPECT_EQ(letterIs(0xD7FF, "\xED\x9F\xBF"), Truth::yes);
    EXPECT_EQ(letterIs(0xE000, "\xEE\x80\x80"), Truth::yes);
    for (const std::uint64_t surrogate : {0xD800U, 0xDBFFU, 0xDC00U, 0xDFFFU}) {
        EXPECT_EQ(letterIs(surrogate, "x"), Truth::unknown) << surrogate;
        EXPECT_EQ(truth("Letter <> 'x'"), Truth::unknown) << surrogate;
        EXPECT_EQ(truth("Letter = Letter"), Truth::unknown) << surrogate;
        EXPECT_EQ(truth("Letter = " + std::to_string(surrogate)), Truth::unknown) << surrogate;
    }
}

TEST_F(WqlEvaluation, ComparesTextsCharactersFlagsAndTimes) {
    for (const char* const condition :
         {"Text = 'fan'", "text > \"fab\"", "Text <> 'Fan'", "Text LIKE 'f%'", "Text NOT LIKE 'g%'",
          "Flag = TRUE", "Flag <> false", "Letter = 'x'", "Letter < 'y'",
          "Made = '20260501140000.000000+120'", "Made < '20260501120000.000001+000'"}) {
        EXPECT_EQ(truth(condition), Truth::yes) << condition;
    }
}

TEST_F(WqlEvaluation, KnowsNothingOfNullAndOfWhatCannotBeCompared) {
    for (const char* const condition :
         {"Nothing = 'a'", "Nothing <> 'a'", "Missing = 1", "NOT Missing = 1", "Nothing LIKE '%'",
          "Text = 5", "Small = 'five'", "Flag > TRUE", "Flag = 1", "List = 1", "Made = 'yesterday'",
          "Made < '20260231000000.000000+000'", "Made = '00000001000000.000000:000'",
          "SourceInstance.Missing = 1", "Small.Part = 1"}) {
        EXPECT_EQ(truth(condition), Truth::unknown) << condition;
    }
    EXPECT_EQ(truth("Nothing IS NULL"), Truth::yes);
    EXPECT_EQ(truth("Missing IS NULL"), Truth::yes);
    EXPECT_EQ(truth("Text IS NOT NULL"), Truth::yes);
    EXPECT_EQ(truth("Text IS NULL"), Truth::no);
}

TEST_F(WqlEvaluation, JoinsThreeValues) {
    EXPECT_EQ(truth("Missing = 1 OR Small = 5"), Truth::yes);
    EXPECT_EQ(truth("Missing = 1 OR Small = 6"), Truth::unknown);
    EXPECT_EQ(truth("Missing = 1 AND Small = 6"), Truth::no);
    EXPECT_EQ(truth("Missing = 1 AND Small = 5"), Truth::unknown);
    EXPECT_EQ(truth("NOT (Small = 6 OR Low = 1)"), Truth::yes);
}

TEST_F(WqlEvaluation, LooksIntoEmbeddedInstancesAndTheirClasses) {
    for (const char* const condition :
         {"SourceInstance.Speed = 9", "SourceInstance ISA 'CIM_Fan'", "SourceInstance ISA ACME_Fan",
          "NOT SourceInstance ISA CIM_Pump", "__CLASS = 'ACME_Fan'", "__CLASS ISA CIM_Fan"}) {
        EXPECT_EQ(truth(condition), Truth::yes) << condition;
    }
}

TEST_F(WqlEvaluation, SelectsByClassAndTruth) {
    const WqlQuery fans = parseQuery("WQL", "SELECT * FROM cim_fan");
    EXPECT_TRUE(selects(fans, instance, &nameSpace));
    EXPECT_FALSE(selects(fans, instance, nullptr));
    EXPECT_FALSE(selects(parseQuery("WQL", "SELECT * FROM CIM_Fan WHERE Nothing = 'a'"), instance,
                         &nameSpace));
    EXPECT_FALSE(selects(parseQuery("WQL", "SELECT * FROM CIM_Pump"), instance, &nameSpace));
    EXPECT_TRUE(selects(parseQuery("WQL", "SELECT * FROM ACME_Fan"), instance, nullptr));
}

}  // namespace
}  // namespace cimhost
