#include "cimhost/objects/Values.h"

#include "cimhost/repository/CimError.h"
#include "tests/support/BrokerFixture.h"

#include <array>

namespace cimhost {
namespace {

class Values : public BrokerTest {
protected:
    Value thereAndBack(const Value& value) {
        const CMPIData data = toCmpi(realBroker, value);
        EXPECT_EQ(data.type, cmpiType(value.type(), value.isArray()));
        return fromCmpi((data.state & CMPI_nullValue) != 0 ? nullptr : &data.value, data.type);
    }
};

ObjectPath somePath() {
    ObjectPath path{"host", "root/test", "Test_Base", {}};
    path.setKey("Name", Value::string("a"));
    return path;
}

std::vector<Value> valuesOfEveryType() {
    Instance instance{somePath(), {}};
    instance.set("Size", Value::unsignedInteger(CimType::uint32, 3));
    return {
        Value::boolean(true),
        Value::boolean(false),
        Value::unsignedInteger(CimType::char16, 0xffff),
        Value::unsignedInteger(CimType::uint8, 0xff),
        Value::unsignedInteger(CimType::uint16, 0xffff),
        Value::unsignedInteger(CimType::uint32, 0xffffffff),
        Value::unsignedInteger(CimType::uint64, ~std::uint64_t{0}),
        Value::signedInteger(CimType::sint8, -128),
        Value::signedInteger(CimType::sint16, -32768),
        Value::signedInteger(CimType::sint32, std::numeric_limits<std::int32_t>::min()),
        Value::signedInteger(CimType::sint64, std::numeric_limits<std::int64_t>::min()),
        Value(CimType::real32, 0.5),
        Value(CimType::real64, 1e300),
        Value::string("text"),
        Value::string(""),
        Value(CimType::dateTime, std::string("20240229120000.000000+060")),
        Value::reference(somePath()),
        Value::instance(instance),
    };
}

TEST_F(Values, OfEveryTypeGoThereAndBack) {
    for (const Value& value : valuesOfEveryType()) {
        EXPECT_EQ(thereAndBack(value), value) << typeName(value.type());
    }
}

TEST_F(Values, OfEveryTypeGoThereAndBackInArrays) {
    for (const Value& value : valuesOfEveryType()) {
        const Value array = Value::array(value.type(), {value, Value::null(value.type()), value});
        EXPECT_EQ(thereAndBack(array), array) << typeName(value.type());
    }
}

TEST_F(Values, ThatAreNullKeepTheirType) {
    for (const Value& value : valuesOfEveryType()) {
        EXPECT_EQ(thereAndBack(Value::null(value.type())), Value::null(value.type()));
        EXPECT_EQ(thereAndBack(Value::nullArray(value.type())), Value::nullArray(value.type()));
    }
}

TEST_F(Values, ZeroTheUnusedBytes) {
    const CMPIData data = toCmpi(realBroker, Value::signedInteger(CimType::sint8, -1));
    CMPIValue expected{};
    expected.sint8 = -1;
    EXPECT_EQ(data.value.uint64, expected.uint64);
}

// A number of a provider's own, given as a CMPIValue, at an odd address.
template <typename Number>
Value valueOfOddNumber(Number number, CMPIType type) {
    alignas(CMPIValue) std::array<unsigned char, sizeof number + 1> bytes{};
    std::memcpy(bytes.data() + 1, &number, sizeof number);
    return fromCmpi(reinterpret_cast<const CMPIValue*>(bytes.data() + 1), type);
}

TEST_F(Values, AreReadFromNoMoreBytesThanTheirTypeHasWhereverTheyLie) {
    EXPECT_EQ(valueOfOddNumber(CMPIUint16{0xfedc}, CMPI_uint16),
              Value::unsignedInteger(CimType::uint16, 0xfedc));
    EXPECT_EQ(valueOfOddNumber(CMPIChar16{'x'}, CMPI_char16),
              Value::unsignedInteger(CimType::char16, 'x'));
    EXPECT_EQ(valueOfOddNumber(CMPIBoolean{1}, CMPI_boolean), Value::boolean(true));
    EXPECT_EQ(valueOfOddNumber(CMPISint32{-5}, CMPI_sint32),
              Value::signedInteger(CimType::sint32, -5));
    EXPECT_EQ(valueOfOddNumber(CMPIReal32{0.5F}, CMPI_real32), Value(CimType::real32, 0.5));
    EXPECT_EQ(valueOfOddNumber(newString("a"), CMPI_string), Value::string("a"));
    EXPECT_EQ(valueOfOddNumber(static_cast<CMPIArray*>(nullptr), CMPI_uint8A),
              Value::nullArray(CimType::uint8));
}

TEST_F(Values, OfEveryBooleanByteAreTrueButZero) {
    CMPIValue value{};
    value.boolean = 2;
    EXPECT_EQ(fromCmpi(&value, CMPI_boolean), Value::boolean(true));
}

TEST_F(Values, TakeCharsForStrings) {
    EXPECT_EQ(fromCmpi(charsValue("text"), CMPI_chars), Value::string("text"));
    EXPECT_EQ(fromCmpi(nullptr, CMPI_chars), Value::null(CimType::string));
}

TEST_F(Values, TakeCharsFromAnyAddress) {
    const char text[] = "a text";
    for (std::size_t i = 0; i < sizeof text; ++i) {
        EXPECT_EQ(fromCmpi(charsValue(text + i), CMPI_chars), Value::string(text + i));
    }
}

TEST_F(Values, OfTypesThatCimHasNotAreRefused) {
    CMPIValue value{};
    for (const int type : {CMPI_null, CMPI_args, CMPI_class, CMPI_filter, CMPI_enumeration,
                           CMPI_ptr, CMPI_charsptr, CMPI_ARRAY, CMPI_charsptrA, 0x0001, 0x4002}) {
        EXPECT_EQ(cimType(static_cast<CMPIType>(type)), CimType::none) << type;
        EXPECT_THROW(fromCmpi(&value, static_cast<CMPIType>(type)), CimError) << type;
    }
}

TEST_F(Values, OfForeignObjectsAreRefusedWithAReason) {
    CMPIString foreign = foreignHandle(newString("x"));
    CMPIValue value{};
    value.string = &foreign;
    try {
        fromCmpi(&value, CMPI_string);
        FAIL();
    } catch (const CimError& error) {
        EXPECT_EQ(error.code(), CimCode::failed);
        EXPECT_STREQ(error.what(), "a value holds an object that is not of this broker");
    }
}

TEST_F(Values, OfTypeStringAreNotTakenForDates) {
    CMPIValue value{};
    value.string = newString("x");
    EXPECT_THROW(fromCmpi(&value, CMPI_dateTime), CimError);
}

}  // namespace
}  // namespace cimhost
