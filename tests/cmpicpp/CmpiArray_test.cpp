#include "cmpicpp/CmpiArray.h"

#include "cmpicpp/CmpiArgs.h"
#include "cmpicpp/CmpiDateTime.h"
#include "cmpicpp/CmpiInstance.h"
#include "tests/cmpicpp/BrokerFixture.h"

#include <string>

namespace CmpiCpp {
namespace {

using test::codeOf;

class CmpiArrayTest : public test::BrokerTest {
protected:
    CmpiArray array(unsigned int size, CMPIType type) const {
        return makeCmpiArray(broker(), size, type);
    }
};

TEST_F(CmpiArrayTest, StartsWithNulls) {
    const CmpiArray made = array(2, CMPI_uint8);
    EXPECT_EQ(made.getSize(), 2U);
    EXPECT_EQ(made.getType(), CMPI_uint8);
    EXPECT_TRUE(made.getElementAt(1).isNull());
    EXPECT_EQ(made.str(), "{NULL, NULL}");
}

TEST_F(CmpiArrayTest, MayHaveNoElements) {
    const CmpiArray made = array(0, CMPI_string);
    EXPECT_EQ(made.getSize(), 0U);
    EXPECT_FALSE(made.empty());
    EXPECT_EQ(made.str(), "{}");
}

TEST_F(CmpiArrayTest, TakesElementsAndNulls) {
    CmpiArray made = array(3, CMPI_string);
    made.setElementAt(0, "a");
    made.setElementAt(2, "c");
    made.setElementAt(2, CmpiValue::null(CMPI_null));
    EXPECT_EQ(made.str(), "{\"a\", NULL, NULL}");
}

TEST_F(CmpiArrayTest, RefusesOtherTypesAndPlaces) {
    CmpiArray made = array(1, CMPI_uint8);
    EXPECT_EQ(codeOf([&] { made.setElementAt(0, "text"); }), CMPI_RC_ERR_TYPE_MISMATCH);
    EXPECT_EQ(codeOf([&] { made.setElementAt(1, static_cast<unsigned char>(1)); }),
              CMPI_RC_ERR_NO_SUCH_PROPERTY);
    EXPECT_EQ(codeOf([&] { made.getElementAt(1); }), CMPI_RC_ERR_NO_SUCH_PROPERTY);
}

TEST_F(CmpiArrayTest, ACopyIsIndependent) {
    CmpiArray made = array(1, CMPI_uint8);
    const CmpiArray copy = made;
    made.setElementAt(0, static_cast<unsigned char>(1));
    EXPECT_TRUE(copy.getElementAt(0).isNull());
    EXPECT_EQ(made.clone().getElementAt(0).asUint64(), 1U);
}

TEST_F(CmpiArrayTest, EmptyArraysReadAsNothing) {
    CmpiArray none;
    EXPECT_TRUE(none.empty());
    EXPECT_EQ(none.getSize(), 0U);
    EXPECT_EQ(none.str(), "");
    EXPECT_EQ(codeOf([&] { none.getType(); }), CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(codeOf([&] { none.getElementAt(0); }), CMPI_RC_ERR_NO_SUCH_PROPERTY);
    EXPECT_EQ(codeOf([&] { none.setElementAt(0, 1); }), CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(none.toCMPI(), nullptr);
    EXPECT_EQ(none.broker(), nullptr);
}

TEST_F(CmpiArrayTest, NeedsABroker) {
    EXPECT_EQ(codeOf([] { makeCmpiArray(CmpiBroker(nullptr), 1, CMPI_uint8); }),
              CMPI_RC_ERR_INVALID_HANDLE);
}

class CmpiArrayOfHosts : public CmpiArrayTest, public testing::WithParamInterface<const char*> {
protected:
    CmpiArray hosted(unsigned int size, CMPIType type) { return makeCmpiArray(_host, size, type); }
    CmpiObjectPath hostedPath(const char* id) {
        CmpiObjectPath made = makeCmpiObjectPath(_host, "root/ktq", "PYL_Fan");
        made.setHost("here");
        made.addKey("DeviceID", id);
        made.addKey("Slot", 2U);
        return made;
    }

    const CmpiBroker _host = like(GetParam());
};

INSTANTIATE_TEST_SUITE_P(Manners, CmpiArrayOfHosts,
                         testing::Values("standard", "openpegasus", "sfcb", "strict", "mean"));

TEST_P(CmpiArrayOfHosts, TakesNulls) {
    for (const CMPIType type :
         std::initializer_list<CMPIType>{CMPI_uint8, CMPI_boolean, CMPI_string, CMPI_ref}) {
        CmpiArray made = hosted(2, type);
        made.setElementAt(0, CmpiValue::null(type));
        made.setElementAt(1, CmpiValue::null(CMPI_null));
        EXPECT_EQ(made.str(), "{NULL, NULL}");
    }
    CmpiArray numbers = hosted(1, CMPI_uint8);
    numbers.setElementAt(0, static_cast<unsigned char>(1));
    numbers.setElementAt(0, CmpiValue::null(CMPI_uint8));
    EXPECT_EQ(numbers.str(), "{NULL}");
}

TEST_P(CmpiArrayOfHosts, RefusesOtherTypesAndPlaces) {
    CmpiArray made = hosted(1, CMPI_uint8);
    EXPECT_EQ(codeOf([&] { made.setElementAt(0, "text"); }), CMPI_RC_ERR_TYPE_MISMATCH);
    EXPECT_EQ(codeOf([&] { made.setElementAt(0, CmpiValue::null(CMPI_string)); }),
              CMPI_RC_ERR_TYPE_MISMATCH);
    EXPECT_EQ(codeOf([&] { made.setElementAt(1, static_cast<unsigned char>(1)); }),
              CMPI_RC_ERR_NO_SUCH_PROPERTY);
    EXPECT_EQ(codeOf([&] { made.getElementAt(1); }), CMPI_RC_ERR_NO_SUCH_PROPERTY);
    EXPECT_EQ(made.getType(), CMPI_uint8);
}

TEST_P(CmpiArrayOfHosts, KeepsWhatItHolds) {
    CmpiArray paths = hosted(1, CMPI_ref);
    CmpiArray instances = hosted(1, CMPI_instance);
    CmpiArray dates = hosted(1, CMPI_dateTime);
    const std::string expected = "//here/root/ktq:PYL_Fan.DeviceID=\"2\",Slot=2";
    {
        CmpiObjectPath owned = hostedPath("1");
        const CmpiObjectPath copy = owned;
        owned = hostedPath("2").clone();
        paths.setElementAt(0, owned);
        CmpiInstance instance = makeCmpiInstance(_host, owned).clone();
        instance.setProperty("Speed", 7U);
        instance.setProperty("Name", CmpiValue::null(CMPI_string));
        instances.setElementAt(0, instance);
        dates.setElementAt(0, makeCmpiDateTime(_host, "20240131235959.123456+060").clone());
    }
    EXPECT_EQ(paths.getElementAt(0).asObjectPath().str(), expected);
    const CmpiInstance kept = instances.getElementAt(0).asInstance();
    EXPECT_EQ(kept.getProperty("Speed").asUint64(), 7U);
    EXPECT_TRUE(kept.getProperty("Name").isNull());
    EXPECT_EQ(kept.getPath().str(), expected);
    EXPECT_EQ(dates.getElementAt(0).asString(), "20240131235959.123456+060");
    CmpiArgs args = makeCmpiArgs(_host);
    args.addArg("Paths", paths);
    EXPECT_EQ(args.getArg("Paths").asArray().getSize(), 1U);
}

/// Notes what is put into an array, as a host that keeps the pointers of its elements does.
class CmpiArrayElements : public CmpiArrayTest {
protected:
    /// Puts the value into an array of this type, and tells the object that the host was given.
    template <typename T>
    const void* givenFor(CMPIType type, const T& value) {
        static CMPIArrayFT noting;
        CMPIArray* const array = handle()->eft->newArray(handle(), 1, type, nullptr);
        noting = *array->ft;
        noting.setElementAt = _note;
        array->ft = &noting;
        CmpiArray(CmpiHandle<CMPIArray>::fresh(handle(), array)).setElementAt(0, value);
        return _given;
    }

    CmpiInstance instance() const {
        CmpiInstance made = makeCmpiInstance(broker(), path());
        made.setProperty("Name", "text");
        made.setProperty("Since", makeCmpiDateTime(broker(), "20240131235959.123456+060"));
        return made;
    }

private:
    static CMPIStatus _note(const CMPIArray*, CMPICount, const CMPIValue* value, CMPIType) {
        _given = value->string;
        return {CMPI_RC_OK, nullptr};
    }

    static inline const void* _given = nullptr;
};

TEST_F(CmpiArrayElements, AreNewObjectsThemselves) {
    const CmpiObjectPath fresh = path();
    const void* const given = givenFor(CMPI_ref, fresh);
    EXPECT_EQ(given, fresh.toCMPI());
}

TEST_F(CmpiArrayElements, AreCopiesOfWhatMayEndBeforeTheArray) {
    CmpiArray paths = array(1, CMPI_ref);
    paths.setElementAt(0, path());
    const CmpiArray keptPaths = paths.clone();
    const CmpiData element = keptPaths.getElementAt(0);
    const CMPIObjectPath* const part = element.toCMPI().value.ref;
    EXPECT_NE(givenFor(CMPI_ref, element), part);
    EXPECT_NE(givenFor(CMPI_ref, element.asObjectPath()), part);

    const CmpiInstance kept = instance().clone();
    EXPECT_NE(givenFor(CMPI_instance, kept), kept.toCMPI());
    const CmpiData text = kept.getProperty("Name");
    EXPECT_NE(givenFor(CMPI_string, text), text.toCMPI().value.string);
    const CmpiData since = kept.getProperty("Since");
    EXPECT_NE(givenFor(CMPI_dateTime, since), since.toCMPI().value.dateTime);
}

}  // namespace
}  // namespace CmpiCpp
