#include "cimhost/objects/ArrayHandle.h"

#include "tests/support/BrokerFixture.h"

#include <list>

namespace cimhost {
namespace {

class ArrayHandle : public BrokerTest {
protected:
    CMPIArray* newArray(CMPICount count, int type) {
        return eft().newArray(broker(), count, static_cast<CMPIType>(type), &status);
    }
};

TEST_F(ArrayHandle, BeginsWithNullElementsOfItsType) {
    const CMPIArray* const array = newArray(3, CMPI_uint16);
    EXPECT_EQ(array->ft->getSize(array, &status), 3U);
    EXPECT_EQ(array->ft->getSimpleType(array, &status), CMPI_uint16);
    const CMPIData data = array->ft->getElementAt(array, 2, &status);
    EXPECT_EQ(status, CMPI_RC_OK);
    EXPECT_EQ(data.type, CMPI_uint16);
    EXPECT_EQ(data.state, CMPI_nullValue);
}

TEST_F(ArrayHandle, MayBeEmpty) {
    const CMPIArray* const array = newArray(0, CMPI_string);
    EXPECT_EQ(array->ft->getSize(array, &status), 0U);
    array->ft->getElementAt(array, 0, &status);
    EXPECT_EQ(status, CMPI_RC_ERR_NO_SUCH_PROPERTY);
}

TEST_F(ArrayHandle, IsNotMadeOfTypesThatElementsCannotHave) {
    for (const int type : {CMPI_null, CMPI_uint8A, CMPI_class, CMPI_ptr, 0xffff}) {
        EXPECT_EQ(newArray(1, type), nullptr) << type;
        EXPECT_EQ(status, CMPI_RC_ERR_INVALID_DATA_TYPE) << type;
    }
}

TEST_F(ArrayHandle, OfAbsurdLengthIsRefused) {
    EXPECT_EQ(newArray(~CMPICount{0}, CMPI_uint8), nullptr);
    EXPECT_EQ(status, CMPI_RC_ERR_SERVER_LIMITS_EXCEEDED);
}

TEST_F(ArrayHandle, ChecksTheTypeOfElements) {
    const CMPIArray* const array = newArray(1, CMPI_uint16);
    CMPIValue value{};
    value.uint16 = 7;
    EXPECT_EQ(array->ft->setElementAt(array, 0, &value, CMPI_uint16), CMPI_RC_OK);
    for (const int type : {CMPI_uint8, CMPI_sint16, CMPI_uint16A, CMPI_string, CMPI_args}) {
        EXPECT_EQ(array->ft->setElementAt(array, 0, &value, static_cast<CMPIType>(type)),
                  CMPI_RC_ERR_TYPE_MISMATCH);
    }
    EXPECT_EQ(array->ft->getElementAt(array, 0, &status).value.uint16, 7);
    EXPECT_EQ(array->ft->setElementAt(array, 1, &value, CMPI_uint16), CMPI_RC_ERR_NO_SUCH_PROPERTY);
}

TEST_F(ArrayHandle, SetsElementsToNullInBothManners) {
    const CMPIArray* const array = newArray(2, CMPI_uint16);
    CMPIValue value{};
    array->ft->setElementAt(array, 0, &value, CMPI_uint16);
    array->ft->setElementAt(array, 1, &value, CMPI_uint16);
    EXPECT_EQ(array->ft->setElementAt(array, 0, nullptr, CMPI_uint16), CMPI_RC_OK);
    EXPECT_EQ(array->ft->setElementAt(array, 1, &value, CMPI_null), CMPI_RC_OK);
    EXPECT_EQ(array->ft->getElementAt(array, 0, &status).state, CMPI_nullValue);
    EXPECT_EQ(array->ft->getElementAt(array, 1, &status).state, CMPI_nullValue);
}

TEST_F(ArrayHandle, OfCharsHoldsStrings) {
    const CMPIArray* const array = newArray(2, CMPI_chars);
    EXPECT_EQ(array->ft->getSimpleType(array, &status), CMPI_string);
    EXPECT_EQ(array->ft->setElementAt(array, 0, charsValue("a"), CMPI_chars), CMPI_RC_OK);
    CMPIValue value{};
    value.string = newString("b");
    EXPECT_EQ(array->ft->setElementAt(array, 1, &value, CMPI_string), CMPI_RC_OK);
    EXPECT_EQ(textOf(array->ft->getElementAt(array, 0, &status).value.string), "a");
    EXPECT_EQ(textOf(array->ft->getElementAt(array, 1, &status).value.string), "b");
}

TEST_F(ArrayHandle, OfObjectsThatAreNoValuesKeepsTheirHandles) {
    const CMPIArray* const array = newArray(2, CMPI_args);
    ASSERT_NE(array, nullptr);
    EXPECT_EQ(array->ft->getSimpleType(array, &status), CMPI_args);
    EXPECT_EQ(array->ft->getElementAt(array, 0, &status).state, CMPI_nullValue);
    CMPIValue value{};
    value.args = makeArgs(realBroker, {});
    EXPECT_EQ(array->ft->setElementAt(array, 0, &value, CMPI_enumeration),
              CMPI_RC_ERR_TYPE_MISMATCH);
    EXPECT_EQ(array->ft->setElementAt(array, 0, &value, CMPI_args), CMPI_RC_OK);
    const CMPIArray* const copy = array->ft->clone(array, &status);
    EXPECT_EQ(copy->ft->getElementAt(copy, 0, &status).value.args, value.args);
    EXPECT_EQ(copy->ft->getElementAt(copy, 0, &status).type, CMPI_args);
    EXPECT_EQ(copy->ft->getElementAt(copy, 1, &status).state, CMPI_nullValue);
    EXPECT_EQ(copy->ft->setElementAt(copy, 0, nullptr, CMPI_args), CMPI_RC_OK);
    EXPECT_EQ(copy->ft->getElementAt(copy, 0, &status).state, CMPI_nullValue);
    EXPECT_EQ(copy->ft->release(const_cast<CMPIArray*>(copy)), CMPI_RC_OK);
}

TEST_F(ArrayHandle, OfObjectsThatAreNoValuesIsNoValueItself) {
    CMPIValue value{};
    value.array = newArray(1, CMPI_args);
    const CMPIInstance* const instance = newInstance();
    for (const int type : {CMPI_ARRAY | CMPI_args, CMPI_uint64A, CMPI_ARRAY}) {
        EXPECT_NE(
            instance->ft->setProperty(instance, "Numbers", &value, static_cast<CMPIType>(type)),
            CMPI_RC_OK)
            << type;
    }
}

TEST_F(ArrayHandle, PutInAPropertyIsCopied) {
    CMPIArray* const array = newArray(1, CMPI_uint32);
    CMPIValue element = uint32Value(1);
    array->ft->setElementAt(array, 0, &element, CMPI_uint32);
    CMPIInstance* const instance = newInstance();
    CMPIValue value{};
    value.array = array;
    EXPECT_EQ(instance->ft->setProperty(instance, "List", &value, CMPI_uint32A), CMPI_RC_OK);
    element = uint32Value(2);
    array->ft->setElementAt(array, 0, &element, CMPI_uint32);
    const CMPIData data = instance->ft->getProperty(instance, "List", &status);
    ASSERT_EQ(data.type, CMPI_uint32A);
    EXPECT_EQ(data.value.array->ft->getElementAt(data.value.array, 0, nullptr).value.uint32, 1U);
}

TEST_F(ArrayHandle, ClonesAreIndependent) {
    const CMPIArray* const array = newArray(1, CMPI_uint32);
    CMPIArray* const copy = array->ft->clone(array, &status);
    const CMPIValue value = uint32Value(1);
    copy->ft->setElementAt(copy, 0, &value, CMPI_uint32);
    EXPECT_EQ(array->ft->getElementAt(array, 0, &status).state, CMPI_nullValue);
    EXPECT_EQ(copy->ft->release(copy), CMPI_RC_OK);
}

TEST_F(ArrayHandle, AnswersInvalidHandleForNullAndForeignHandles) {
    const CMPIArray* const array = newArray(1, CMPI_uint32);
    CMPIArray foreign = foreignHandle(array);
    const CMPIValue value = uint32Value(1);
    for (CMPIArray* const bad : {static_cast<CMPIArray*>(nullptr), &foreign}) {
        status = {CMPI_RC_OK, nullptr};
        EXPECT_EQ(array->ft->getSize(bad, &status), 0U);
        EXPECT_EQ(status, CMPI_RC_ERR_INVALID_HANDLE);
        EXPECT_EQ(array->ft->getSimpleType(bad, &status), CMPI_null);
        array->ft->getElementAt(bad, 0, &status);
        EXPECT_EQ(status, CMPI_RC_ERR_INVALID_HANDLE);
        EXPECT_EQ(array->ft->setElementAt(bad, 0, &value, CMPI_uint32), CMPI_RC_ERR_INVALID_HANDLE);
        EXPECT_EQ(array->ft->clone(bad, &status), nullptr);
        EXPECT_EQ(array->ft->release(bad), CMPI_RC_ERR_INVALID_HANDLE);
    }
}

class ArrayOfHost : public BrokerTest {
protected:
    const CMPIArray* arrayOf(const char* manner, CMPIType type) {
        const Broker& host = brokers.emplace_back(repository, log, fillUpCalls, Manner(manner));
        return host.handle()->eft->newArray(host.handle(), 1, type, &status);
    }

    std::list<Broker> brokers;
};

TEST_F(ArrayOfHost, RefusesNullPointersOrMakesZerosOfThem) {
    const CMPIArray* const refusing = arrayOf("strict", CMPI_uint8);
    EXPECT_EQ(refusing->ft->setElementAt(refusing, 0, nullptr, CMPI_uint8),
              CMPI_RC_ERR_INVALID_PARAMETER);
    const CMPIArray* const zeroing = arrayOf("sfcb", CMPI_uint8);
    EXPECT_EQ(zeroing->ft->setElementAt(zeroing, 0, nullptr, CMPI_uint8), CMPI_RC_OK);
    EXPECT_EQ(zeroing->ft->getElementAt(zeroing, 0, &status).state, CMPI_goodValue);
    const CMPIValue none{};
    for (const CMPIArray* const array : {refusing, zeroing}) {
        EXPECT_EQ(array->ft->setElementAt(array, 0, &none, CMPI_null), CMPI_RC_OK);
        EXPECT_EQ(array->ft->getElementAt(array, 0, &status).state, CMPI_nullValue);
    }
}

TEST_F(ArrayOfHost, AnswersFailedToWrongElementsAndQuietlyPastItsEnd) {
    const CMPIArray* const array = arrayOf("sfcb", CMPI_uint8);
    const CMPIValue number = uint32Value(1);
    EXPECT_EQ(array->ft->setElementAt(array, 0, &number, CMPI_uint32), CMPI_RC_ERR_FAILED);
    EXPECT_EQ(array->ft->setElementAt(array, 1, &number, CMPI_uint8), CMPI_RC_ERR_FAILED);
    EXPECT_EQ(array->ft->getElementAt(array, 1, &status).state, CMPI_badValue);
    EXPECT_EQ(status, CMPI_RC_OK);
}

TEST_F(ArrayOfHost, KeepsTheArrayBit) {
    const CMPIArray* const array = arrayOf("openpegasus", CMPI_uint8A);
    EXPECT_EQ(array->ft->getSimpleType(array, &status), CMPI_uint8A);
    const CMPIArray* const plain = arrayOf("openpegasus", CMPI_uint8);
    EXPECT_EQ(plain->ft->getSimpleType(plain, &status), CMPI_uint8);
}

TEST_F(ArrayOfHost, EndsTheProcessWhenWhatItHoldsHasGone) {
    const CMPIArray* const array = arrayOf("mean", CMPI_ref);
    const CMPIBroker* const host = brokers.back().handle();
    const CMPIObjectPath* const path = host->eft->newObjectPath(host, "n", "C", &status);
    CMPIValue value{};
    value.ref = path->ft->clone(path, &status);
    EXPECT_EQ(array->ft->setElementAt(array, 0, &value, CMPI_ref), CMPI_RC_OK);
    EXPECT_EQ(array->ft->getElementAt(array, 0, &status).state, CMPI_goodValue);
    value.ref->ft->release(value.ref);
    EXPECT_DEATH(array->ft->getElementAt(array, 0, &status), "");
}

TEST_F(ArrayOfHost, EndsTheProcessAsAnArgumentWithNullTexts) {
    CMPIValue value{};
    value.array = const_cast<CMPIArray*>(arrayOf("openpegasus", CMPI_string));
    const CMPIBroker* const host = brokers.back().handle();
    const CMPIArgs* const args = host->eft->newArgs(host, &status);
    EXPECT_DEATH(args->ft->addArg(args, "A", &value, CMPI_stringA), "");
    value.array = const_cast<CMPIArray*>(arrayOf("openpegasus", CMPI_uint8));
    EXPECT_EQ(args->ft->addArg(args, "A", &value, CMPI_uint8A), CMPI_RC_OK);
}

}  // namespace
}  // namespace cimhost
