#include "cmpicpp/CmpiValue.h"

#include "cmpicpp/CmpiArray.h"
#include "cmpicpp/CmpiData.h"
#include "cmpicpp/CmpiDateTime.h"
#include "cmpicpp/CmpiInstance.h"
#include "tests/cmpicpp/BrokerFixture.h"

#include <limits>
#include <string>
#include <type_traits>

namespace CmpiCpp {
namespace {

using test::codeOf;

// A pointer to anything but text would otherwise be taken for a boolean.
static_assert(!std::is_constructible_v<CmpiValue, void*>);
static_assert(!std::is_constructible_v<CmpiValue, const unsigned char*>);
static_assert(!std::is_constructible_v<CmpiValue, const CMPIString*>);
static_assert(std::is_constructible_v<CmpiValue, char*>);
static_assert(std::is_constructible_v<CmpiValue, const char (&)[4]>);

class CmpiValueTest : public test::BrokerTest {
protected:
    /// The value after a trip through a property of an instance of the broker.
    CmpiData travelled(CmpiValue value) {
        _instance = makeCmpiInstance(broker(), makeCmpiObjectPath(broker(), "n", "C"));
        _instance.setProperty("P", value);
        return _instance.getProperty("P");
    }

    template <typename Number>
    void expectUnsigned(CMPIType type) {
        for (const Number number : {Number{0}, Number{1}, std::numeric_limits<Number>::max()}) {
            const CmpiData data = travelled(number);
            EXPECT_EQ(data.getType(), type);
            EXPECT_EQ(data.asUint64(), number);
        }
    }

    template <typename Number>
    void expectSigned(CMPIType type) {
        for (const Number number : {std::numeric_limits<Number>::min(), Number{-1}, Number{0},
                                    std::numeric_limits<Number>::max()}) {
            const CmpiData data = travelled(number);
            EXPECT_EQ(data.getType(), type);
            EXPECT_EQ(data.asSint64(), number);
        }
    }

    CmpiInstance _instance;
};

TEST_F(CmpiValueTest, CarriesUnsignedIntegersByTheirCxxType) {
    expectUnsigned<unsigned char>(CMPI_uint8);
    expectUnsigned<unsigned short>(CMPI_uint16);
    expectUnsigned<unsigned int>(CMPI_uint32);
    expectUnsigned<unsigned long>(CMPI_uint64);
    expectUnsigned<unsigned long long>(CMPI_uint64);
}

TEST_F(CmpiValueTest, CarriesSignedIntegersByTheirCxxType) {
    expectSigned<signed char>(CMPI_sint8);
    expectSigned<short>(CMPI_sint16);
    expectSigned<int>(CMPI_sint32);
    expectSigned<long>(CMPI_sint64);
    expectSigned<long long>(CMPI_sint64);
}

TEST_F(CmpiValueTest, CarriesBooleansRealsAndCharacters) {
    EXPECT_TRUE(travelled(true).asBool());
    EXPECT_FALSE(travelled(false).asBool());
    EXPECT_EQ(travelled(1.5F).getType(), CMPI_real32);
    EXPECT_EQ(travelled(1.5F).asReal64(), 1.5);
    EXPECT_EQ(travelled(0.1).getType(), CMPI_real64);
    EXPECT_EQ(travelled(0.1).asReal64(), 0.1);
    EXPECT_EQ(travelled(CmpiValue::char16('x')).getType(), CMPI_char16);
    EXPECT_EQ(travelled(CmpiValue::char16('x')).asString(), "x");
}

TEST_F(CmpiValueTest, CarriesTextsAsStrings) {
    EXPECT_EQ(travelled("literal").getType(), CMPI_string);
    EXPECT_EQ(travelled("literal").asString(), "literal");
    EXPECT_EQ(travelled(std::string(10'000, 'x')).asString(), std::string(10'000, 'x'));
    EXPECT_EQ(travelled("").asString(), "");
    EXPECT_FALSE(travelled("").isNull());
}

TEST_F(CmpiValueTest, CarriesObjects) {
    EXPECT_EQ(travelled(path()).asObjectPath(), path());
    const CmpiInstance inner = makeCmpiInstance(broker(), path());
    EXPECT_EQ(travelled(inner).asInstance().getPath(), path());
    const CmpiDateTime dateTime = makeCmpiDateTime(broker(), "20240131235959.123456+060");
    EXPECT_EQ(travelled(dateTime).asDateTime().str(), dateTime.str());
}

TEST_F(CmpiValueTest, CarriesArraysOfEveryElementType) {
    CmpiArray array = makeCmpiArray(broker(), 2, CMPI_uint8);
    array.setElementAt(0, static_cast<unsigned char>(0xFF));
    const CmpiData data = travelled(array);
    EXPECT_TRUE(data.isArray());
    EXPECT_EQ(data.getType(), CMPI_uint8);
    EXPECT_EQ(data.asArray().str(), "{255, NULL}");
}

TEST_F(CmpiValueTest, CarriesWhatWasRead) {
    const CmpiData number = travelled(static_cast<unsigned short>(7));
    EXPECT_EQ(travelled(number).getType(), CMPI_uint16);
    char characters[] = "text";
    CMPIData chars{CMPI_chars, CMPI_goodValue, {}};
    chars.value.chars = characters;
    EXPECT_EQ(travelled(CmpiData(handle(), chars)).asString(), "text");
}

TEST_F(CmpiValueTest, CarriesNulls) {
    const char* const text = nullptr;
    EXPECT_TRUE(travelled(text).isNull());
    EXPECT_EQ(travelled(text).getType(), CMPI_string);
    EXPECT_TRUE(travelled(CmpiObjectPath()).isNull());
    EXPECT_EQ(travelled(CmpiObjectPath()).getType(), CMPI_ref);
    EXPECT_EQ(travelled(CmpiInstance()).getType(), CMPI_instance);
    EXPECT_EQ(travelled(CmpiDateTime()).getType(), CMPI_dateTime);
    EXPECT_TRUE(travelled(CmpiValue::null(CMPI_uint8A)).isArray());
    const CmpiData null(nullptr, CMPIData{CMPI_sint8, CMPI_nullValue, {}});
    EXPECT_EQ(travelled(null).getType(), CMPI_sint8);
    EXPECT_TRUE(CmpiValue(CmpiArray()).isNull());
}

TEST_F(CmpiValueTest, DoesNotPassOnABadValue) {
    const CmpiData bad(nullptr, CMPIData{CMPI_sint8, CMPI_badValue, {}});
    EXPECT_EQ(codeOf([&] { travelled(bad); }), CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(CmpiValueTest, NeedsABrokerForTextsOnly) {
    CmpiValue text("x");
    EXPECT_EQ(codeOf([&] { text.toCMPI(nullptr); }), CMPI_RC_ERR_INVALID_HANDLE);
    CmpiValue number(5);
    EXPECT_EQ(number.toCMPI(nullptr)->sint32, 5);
}

TEST_F(CmpiValueTest, MakesItsStringOnce) {
    CmpiValue text("x");
    const CMPIString* const first = text.toCMPI(handle())->string;
    EXPECT_EQ(text.toCMPI(handle())->string, first);
}

}  // namespace
}  // namespace CmpiCpp
