#include "cmpicpp/CmpiData.h"

#include "cmpicpp/CmpiArray.h"
#include "cmpicpp/CmpiDateTime.h"
#include "cmpicpp/CmpiInstance.h"
#include "cmpicpp/CmpiValue.h"
#include "tests/cmpicpp/BrokerFixture.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <string>

namespace CmpiCpp {
namespace {

using test::codeOf;
using test::messageOf;

CMPIData raw(CMPIType type, CMPIValueState state = CMPI_goodValue) { return {type, state, {}}; }

/// The low bytes of the number in the member of that type, and others in the rest of the value.
CmpiData uint64(CMPIUint64 value, CMPIType type = CMPI_uint64) {
    CMPIData data = raw(type);
    std::memset(&data.value, 0xA5, sizeof data.value);
    switch (type) {
        case CMPI_uint8:
        case CMPI_sint8: data.value.uint8 = static_cast<CMPIUint8>(value); break;
        case CMPI_uint16:
        case CMPI_sint16: data.value.uint16 = static_cast<CMPIUint16>(value); break;
        case CMPI_uint32:
        case CMPI_sint32: data.value.uint32 = static_cast<CMPIUint32>(value); break;
        default: data.value.uint64 = value; break;
    }
    return {nullptr, data};
}

CmpiData sint64(CMPISint64 value, CMPIType type = CMPI_sint64) {
    return uint64(static_cast<CMPIUint64>(value), type);
}

CmpiData real64(double value) {
    CMPIData data = raw(CMPI_real64);
    data.value.real64 = value;
    return {nullptr, data};
}

CmpiData char16(CMPIChar16 value) {
    CMPIData data = raw(CMPI_char16);
    data.value.char16 = value;
    return {nullptr, data};
}

CmpiData boolean(CMPIBoolean value) {
    CMPIData data = raw(CMPI_boolean);
    data.value.boolean = value;
    return {nullptr, data};
}

class CmpiDataTest : public test::BrokerTest {
protected:
    CmpiData text(const std::string& characters) const {
        CmpiValue value(characters);
        CMPIData data = raw(CMPI_string);
        data.value = *value.toCMPI(handle());
        return {handle(), data};
    }

    CmpiData of(CmpiValue value) const {
        CMPIData data = raw(value.type());
        data.value = *value.toCMPI(handle());
        return {handle(), data};
    }
};

TEST(CmpiData, IsANullOfNoTypeFromTheStart) {
    const CmpiData data;
    EXPECT_TRUE(data.isNull());
    EXPECT_FALSE(data.isArray());
    EXPECT_EQ(data.getType(), CMPI_null);
    EXPECT_EQ(data.str(), "NULL");
}

TEST(CmpiData, NullsKeepTheirType) {
    const CmpiData data(nullptr, raw(CMPI_uint16A, CMPI_nullValue));
    EXPECT_TRUE(data.isNull());
    EXPECT_TRUE(data.isArray());
    EXPECT_EQ(data.getType(), CMPI_uint16);
}

TEST(CmpiData, AMissingObjectIsNull) {
    for (const int type :
         {CMPI_string, CMPI_chars, CMPI_ref, CMPI_instance, CMPI_dateTime, CMPI_uint8A}) {
        EXPECT_TRUE(CmpiData(nullptr, raw(static_cast<CMPIType>(type))).isNull()) << type;
    }
}

TEST(CmpiData, AKeyIsNoNull) {
    EXPECT_FALSE(CmpiData(nullptr, raw(CMPI_uint8, CMPI_keyValue)).isNull());
}

TEST(CmpiData, ConvertsAmongIntegerWidths) {
    EXPECT_EQ(uint64(0xFF, CMPI_uint8).asUint64(), 255U);
    EXPECT_EQ(uint64(0xFFFF, CMPI_uint16).asSint64(), 65535);
    EXPECT_EQ(uint64(0xFFFFFFFF, CMPI_uint32).asSint64(), 4294967295);
    EXPECT_EQ(sint64(-1, CMPI_sint8).asSint64(), -1);
    EXPECT_EQ(sint64(-2, CMPI_sint16).asSint64(), -2);
    EXPECT_EQ(sint64(-3, CMPI_sint32).asSint64(), -3);
    EXPECT_EQ(sint64(std::numeric_limits<long long>::max()).asUint64(), 9'223'372'036'854'775'807U);
    EXPECT_EQ(sint64(std::numeric_limits<long long>::min()).asSint64(),
              std::numeric_limits<long long>::min());
}

TEST(CmpiData, ReadsOnlyTheBytesOfItsWidth) {
    EXPECT_EQ(uint64(0x1234567890ABCDEF, CMPI_uint8).asUint64(), 0xEFU);
    EXPECT_EQ(uint64(0x1234567890ABCDEF, CMPI_uint16).asUint64(), 0xCDEFU);
    EXPECT_EQ(uint64(0x1234567890ABCDEF, CMPI_uint32).asUint64(), 0x90ABCDEFU);
}

TEST(CmpiData, RefusesIntegersThatDoNotFit) {
    EXPECT_EQ(codeOf([] { sint64(-1).asUint64(); }), CMPI_RC_ERR_TYPE_MISMATCH);
    EXPECT_EQ(messageOf([] { sint64(-5, CMPI_sint32).asUint64(); }),
              "Expected uint64, got sint32 -5");
    EXPECT_EQ(uint64(9'223'372'036'854'775'807U).asSint64(), std::numeric_limits<long long>::max());
    EXPECT_EQ(messageOf([] { uint64(9'223'372'036'854'775'808U).asSint64(); }),
              "Expected sint64, got uint64 9223372036854775808");
}

TEST(CmpiData, RefusesOtherKindsAndNamesBothTypes) {
    EXPECT_EQ(messageOf([] { boolean(1).asUint64(); }), "Expected uint64, got boolean");
    EXPECT_EQ(messageOf([] { real64(1).asSint64(); }), "Expected sint64, got real64");
    EXPECT_EQ(messageOf([] { uint64(1).asReal64(); }), "Expected real64, got uint64 1");
    EXPECT_EQ(messageOf([] { uint64(1).asBool(); }), "Expected boolean, got uint64 1");
    EXPECT_EQ(messageOf([] { uint64(1).asString(); }), "Expected string, got uint64 1");
    EXPECT_EQ(messageOf([] { uint64(1).asObjectPath(); }), "Expected reference, got uint64 1");
    EXPECT_EQ(messageOf([] { uint64(1).asInstance(); }), "Expected instance, got uint64 1");
    EXPECT_EQ(messageOf([] { uint64(1).asDateTime(); }), "Expected datetime, got uint64 1");
    EXPECT_EQ(messageOf([] { uint64(1).asArray(); }), "Expected an array, got uint64 1");
    EXPECT_EQ(codeOf([] { uint64(1).asArray(); }), CMPI_RC_ERR_TYPE_MISMATCH);
}

TEST(CmpiData, RefusesNullsAndBadValues) {
    const CmpiData null(nullptr, raw(CMPI_uint32, CMPI_nullValue));
    EXPECT_EQ(messageOf([&] { null.asUint64(); }), "Expected uint64, got NULL uint32");
    const CmpiData nullArray(nullptr, raw(CMPI_stringA, CMPI_nullValue));
    EXPECT_EQ(messageOf([&] { nullArray.asString(); }), "Expected string, got NULL string array");
    const CmpiData bad(nullptr, raw(CMPI_uint32, CMPI_badValue));
    EXPECT_EQ(messageOf([&] { bad.asUint64(); }), "Expected uint64, got a bad value");
    EXPECT_FALSE(bad.isNull());
}

TEST(CmpiData, AnyByteButZeroIsTrue) {
    EXPECT_TRUE(boolean(1).asBool());
    EXPECT_TRUE(boolean(0x80).asBool());
    EXPECT_FALSE(boolean(0).asBool());
}

TEST(CmpiData, ReadsRealsOfBothWidths) {
    CMPIData narrow = raw(CMPI_real32);
    narrow.value.real32 = 1.5F;
    EXPECT_EQ(CmpiData(nullptr, narrow).asReal64(), 1.5);
    EXPECT_EQ(real64(-2.25).asReal64(), -2.25);
}

TEST(CmpiData, ReadsAChar16AsUtf8) {
    EXPECT_EQ(char16('A').asString(), "A");
    EXPECT_EQ(char16(0xE4).asString(), "\xC3\xA4");
    EXPECT_EQ(char16(0x20AC).asString(), "\xE2\x82\xAC");
    EXPECT_EQ(messageOf([] { char16(0xD83D).asString(); }),
              "Expected string, got char16 '\\xD83D'");
}

TEST(CmpiData, NamesTypes) {
    EXPECT_STREQ(CmpiData::typeToString(CMPI_uint8), "uint8");
    EXPECT_STREQ(CmpiData::typeToString(CMPI_sint64), "sint64");
    EXPECT_STREQ(CmpiData::typeToString(CMPI_string), "string");
    EXPECT_STREQ(CmpiData::typeToString(CMPI_stringA), "string");
    EXPECT_STREQ(CmpiData::typeToString(CMPI_dateTime), "datetime");
    EXPECT_STREQ(CmpiData::typeToString(CMPI_ref), "reference");
    EXPECT_STREQ(CmpiData::typeToString(CMPI_instance), "instance");
    EXPECT_STREQ(CmpiData::typeToString(CMPI_boolean), "boolean");
    EXPECT_STREQ(CmpiData::typeToString(CMPI_null), "null");
    EXPECT_STREQ(CmpiData::typeToString(0x0777), "unknown");
    EXPECT_STREQ(CmpiData::typeToString(0xFFFF), "unknown");
}

TEST(CmpiData, WritesNumbers) {
    EXPECT_EQ(uint64(12, CMPI_uint8).str(), "12");
    EXPECT_EQ(sint64(-9'223'372'036'854'775'807 - 1).str(), "-9223372036854775808");
    EXPECT_EQ(uint64(std::numeric_limits<CMPIUint64>::max()).str(), "18446744073709551615");
    EXPECT_EQ(boolean(2).str(), "true");
    EXPECT_EQ(boolean(0).str(), "false");
}

TEST(CmpiData, WritesRealsThatReadBackAsThemselvesWithAPoint) {
    EXPECT_EQ(real64(3).str(), "3.0");
    EXPECT_EQ(real64(0.1).str(), "0.1");
    EXPECT_EQ(real64(1e300).str(), "1.0e+300");
    EXPECT_EQ(real64(1.5e-7).str(), "1.5e-07");
    EXPECT_EQ(real64(std::numeric_limits<double>::infinity()).str(), "inf");
    EXPECT_EQ(real64(std::nan("")).str(), "nan");
    CMPIData narrow = raw(CMPI_real32);
    narrow.value.real32 = 0.1F;
    EXPECT_EQ(CmpiData(nullptr, narrow).str(), "0.1");
}

TEST(CmpiData, WritesChar16InSingleQuotes) {
    EXPECT_EQ(char16('A').str(), "'A'");
    EXPECT_EQ(char16('\'').str(), "'\\''");
    EXPECT_EQ(char16('"').str(), "'\"'");
    EXPECT_EQ(char16('\n').str(), "'\\n'");
    EXPECT_EQ(char16(0xDC00).str(), "'\\xDC00'");
}

TEST(CmpiData, WritesWhatCannotBeReadAsBadValue) {
    EXPECT_EQ(CmpiData(nullptr, raw(CMPI_uint8, CMPI_badValue)).str(), "<bad value>");
    EXPECT_EQ(CmpiData(nullptr, raw(CMPI_uint8, CMPI_notFound)).str(), "<bad value>");
    EXPECT_EQ(CmpiData(nullptr, raw(CMPI_enumeration)).str(), "<bad value>");
    EXPECT_EQ(CmpiData(nullptr, raw(0x0777)).str(), "<bad value>");
}

TEST(CmpiData, ReadsAndWritesCStrings) {
    char characters[] = "a\"b";
    CMPIData data = raw(CMPI_chars);
    data.value.chars = characters;
    EXPECT_EQ(CmpiData(nullptr, data).asString(), "a\"b");
    EXPECT_EQ(CmpiData(nullptr, data).str(), "\"a\\\"b\"");
}

TEST_F(CmpiDataTest, WritesTextsOnOneLineWithMofEscapes) {
    EXPECT_EQ(text("").str(), "\"\"");
    EXPECT_EQ(text("a \"text\"").str(), "\"a \\\"text\\\"\"");
    EXPECT_EQ(text("C:\\x").str(), "\"C:\\\\x\"");
    EXPECT_EQ(text("\b\t\n\f\r").str(), "\"\\b\\t\\n\\f\\r\"");
    EXPECT_EQ(text("\x01"
                   "1\x7F")
                  .str(),
              "\"\\x00011\\x007F\"");
    EXPECT_EQ(text("Gr\xC3\xBC\xC3\x9F"
                   "e \xFF")
                  .str(),
              "\"Gr\xC3\xBC\xC3\x9F"
              "e \xFF\"");
    EXPECT_EQ(text("it's 100%").str(), "\"it's 100%\"");
}

TEST_F(CmpiDataTest, ReadsTextsAndDateTimes) {
    EXPECT_EQ(text("fan").asString(), "fan");
    const CmpiDateTime dateTime = makeCmpiDateTime(broker(), "20240131235959.123456+060");
    EXPECT_EQ(of(dateTime).asString(), "20240131235959.123456+060");
    EXPECT_EQ(of(dateTime).asDateTime().str(), "20240131235959.123456+060");
    EXPECT_EQ(of(dateTime).str(), "\"20240131235959.123456+060\"");
}

TEST_F(CmpiDataTest, ReadsObjects) {
    EXPECT_EQ(of(path()).asObjectPath(), path());
    CmpiInstance instance = makeCmpiInstance(broker(), path());
    EXPECT_EQ(of(instance).asInstance().getPath(), path());
    const CmpiArray array = makeCmpiArray(broker(), 2, CMPI_uint8);
    EXPECT_EQ(of(array).asArray().getSize(), 2U);
}

TEST_F(CmpiDataTest, WritesReferencesInQuotes) {
    EXPECT_EQ(of(path()).str(), "\"/root/ktq:PYL_Fan.DeviceID=\\\"1\\\",Slot=2\"");
}

TEST_F(CmpiDataTest, WritesArraysWithTheirNulls) {
    CmpiArray array = makeCmpiArray(broker(), 3, CMPI_uint16);
    array.setElementAt(0, static_cast<unsigned short>(1));
    array.setElementAt(1, static_cast<unsigned short>(2));
    EXPECT_EQ(of(array).str(), "{1, 2, NULL}");
}

TEST_F(CmpiDataTest, IntegersAreEqualByNumber) {
    EXPECT_EQ(uint64(5, CMPI_uint8), sint64(5));
    EXPECT_EQ(sint64(-1, CMPI_sint8), sint64(-1));
    EXPECT_FALSE(sint64(-1) == uint64(std::numeric_limits<CMPIUint64>::max()));
    EXPECT_FALSE(uint64(5) == uint64(6));
}

TEST_F(CmpiDataTest, KindsAreNeverEqualToEachOther) {
    EXPECT_FALSE(uint64(1) == boolean(1));
    EXPECT_FALSE(uint64(1) == real64(1));
    EXPECT_FALSE(uint64('A') == char16('A'));
    EXPECT_FALSE(text("1") == uint64(1));
    const CmpiData dateTime = of(makeCmpiDateTime(broker(), "20240131235959.123456+060"));
    EXPECT_FALSE(text("20240131235959.123456+060") == dateTime);
    EXPECT_EQ(dateTime, of(makeCmpiDateTime(broker(), "20240131235959.123456+060")));
}

TEST_F(CmpiDataTest, TextsAreEqualExactly) {
    EXPECT_EQ(text("fan"), text("fan"));
    EXPECT_FALSE(text("fan") == text("Fan"));
    EXPECT_FALSE(text("fan") == text("fan "));
}

TEST_F(CmpiDataTest, SimpleValuesAreEqualByValue) {
    EXPECT_EQ(boolean(1), boolean(2));
    EXPECT_FALSE(boolean(1) == boolean(0));
    EXPECT_EQ(char16('A'), char16('A'));
    EXPECT_FALSE(char16('A') == char16('a'));
    EXPECT_EQ(real64(0.5), real64(0.5));
    EXPECT_FALSE(real64(std::nan("")) == real64(std::nan("")));
}

TEST_F(CmpiDataTest, NullsAreEqualWhateverTheirType) {
    EXPECT_EQ(CmpiData(), CmpiData(nullptr, raw(CMPI_uint8, CMPI_nullValue)));
    EXPECT_FALSE(CmpiData() == uint64(0));
}

TEST_F(CmpiDataTest, BadAndForeignValuesEqualNothing) {
    const CmpiData bad(nullptr, raw(CMPI_uint8, CMPI_badValue));
    EXPECT_FALSE(bad == bad);
    const CmpiData foreign(nullptr, raw(CMPI_args));
    EXPECT_FALSE(foreign == foreign);
}

TEST_F(CmpiDataTest, ArraysAreEqualElementByElement) {
    CmpiArray left = makeCmpiArray(broker(), 2, CMPI_uint8);
    CmpiArray right = makeCmpiArray(broker(), 2, CMPI_uint16);
    left.setElementAt(0, static_cast<unsigned char>(7));
    EXPECT_FALSE(of(left) == of(right));
    right.setElementAt(0, static_cast<unsigned short>(7));
    EXPECT_EQ(of(left), of(right));
    EXPECT_EQ(of(left), of(left));
    EXPECT_FALSE(of(left) == of(makeCmpiArray(broker(), 3, CMPI_uint8)));
}

TEST_F(CmpiDataTest, InstancesAreEqualByPathAndProperties) {
    CmpiInstance left = makeCmpiInstance(broker(), path());
    CmpiInstance right = makeCmpiInstance(broker(), path());
    left.setProperty("A", 1U);
    left.setProperty("B", "x");
    right.setProperty("b", "x");
    EXPECT_FALSE(of(left) == of(right));
    EXPECT_FALSE(of(right) == of(left)) << "all of its properties are there, and one more";
    right.setProperty("a", 1U);
    EXPECT_EQ(of(left), of(right));
    EXPECT_EQ(of(left), of(left));
    right.setProperty("A", 2U);
    EXPECT_FALSE(of(left) == of(right));
}

}  // namespace
}  // namespace CmpiCpp
