#include "cimhost/objects/ErrorHandle.h"

#include "tests/support/BrokerFixture.h"

namespace cimhost {
namespace {

class ErrorHandle : public BrokerTest {
protected:
    CMPIError* newError(const char* owner = "Us", int severity = ErrorSevHigh,
                        int cause = Disk_Failure) {
        return eft().newCMPIError(
            broker(), owner, "M1", "it broke", static_cast<CMPIErrorSeverity>(severity),
            static_cast<CMPIErrorProbableCause>(cause), CMPI_RC_ERR_NOT_FOUND, &status);
    }

    const CMPIArray* newTexts(const char* text) {
        const CMPIArray* const texts = eft().newArray(broker(), 1, CMPI_string, nullptr);
        texts->ft->setElementAt(texts, 0, reinterpret_cast<const CMPIValue*>(text), CMPI_chars);
        return texts;
    }

    CMPIError* error = newError();
};

using TextGetter = CMPIString* (*)(const CMPIError*, CMPIStatus*);
using TextSetter = CMPIStatus (*)(const CMPIError*, const char*);

TEST_F(ErrorHandle, HasItsCoreAttributes) {
    EXPECT_EQ(textOf(error->ft->getOwningEntity(error, &status)), "Us");
    EXPECT_EQ(textOf(error->ft->getMessageID(error, &status)), "M1");
    EXPECT_EQ(textOf(error->ft->getMessage(error, &status)), "it broke");
    EXPECT_EQ(error->ft->getPerceivedSeverity(error, &status), ErrorSevHigh);
    EXPECT_EQ(error->ft->getProbableCause(error, &status), Disk_Failure);
    EXPECT_EQ(error->ft->getCIMStatusCode(error, &status), CMPI_RC_ERR_NOT_FOUND);
    EXPECT_EQ(error->ft->getErrorType(error, &status), UnknownErrorType);
    EXPECT_EQ(error->ft->getErrorSourceFormat(error, &status), CMPIErrSrcUnknown);
}

TEST_F(ErrorHandle, TextsBeginAsNullAndCanBeSetAndCleared) {
    const CMPIErrorFT& table = *error->ft;
    const std::pair<TextGetter, TextSetter> attributes[] = {
        {table.getOtherErrorType, table.setOtherErrorType},
        {table.getProbableCauseDescription, table.setProbableCauseDescription},
        {table.getErrorSource, table.setErrorSource},
        {table.getOtherErrorSourceFormat, table.setOtherErrorSourceFormat},
        {table.getCIMStatusCodeDescription, table.setCIMStatusCodeDescription},
    };
    int number = 0;
    for (const auto& [get, set] : attributes) {
        EXPECT_EQ(get(error, &status), nullptr);
        EXPECT_EQ(status, CMPI_RC_OK);
        EXPECT_EQ(set(error, std::to_string(++number).c_str()), CMPI_RC_OK);
    }
    number = 0;
    for (const auto& [get, set] : attributes) {
        EXPECT_EQ(textOf(get(error, &status)), std::to_string(++number));
        EXPECT_EQ(set(error, nullptr), CMPI_RC_OK);
        EXPECT_EQ(get(error, &status), nullptr);
    }
}

TEST_F(ErrorHandle, ArraysBeginAsNullAndTakeStringsOnly) {
    const CMPIErrorFT& table = *error->ft;
    EXPECT_EQ(table.getRecommendedActions(error, &status), nullptr);
    EXPECT_EQ(table.getMessageArguments(error, &status), nullptr);
    const CMPIArray* const texts = newTexts("a");
    const CMPIArray* const numbers = eft().newArray(broker(), 1, CMPI_uint8, nullptr);
    EXPECT_EQ(table.setRecommendedActions(error, texts), CMPI_RC_OK);
    EXPECT_EQ(table.setMessageArguments(error, numbers), CMPI_RC_ERR_TYPE_MISMATCH);
    const CMPIArray* const actions = table.getRecommendedActions(error, &status);
    EXPECT_EQ(textOf(actions->ft->getElementAt(actions, 0, nullptr).value.string), "a");
    EXPECT_EQ(table.getMessageArguments(error, &status), nullptr);
    EXPECT_EQ(table.setRecommendedActions(error, nullptr), CMPI_RC_OK);
    EXPECT_EQ(table.getRecommendedActions(error, &status), nullptr);
}

TEST_F(ErrorHandle, NumbersAreThoseOfTheClass) {
    EXPECT_EQ(error->ft->setErrorType(error, SoftwareError), CMPI_RC_OK);
    EXPECT_EQ(error->ft->setErrorType(error, static_cast<CMPIErrorType>(11)),
              CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(error->ft->getErrorType(error, &status), SoftwareError);
    EXPECT_EQ(error->ft->setErrorSourceFormat(error, CIMObjectHandle), CMPI_RC_OK);
    EXPECT_EQ(error->ft->setErrorSourceFormat(error, static_cast<CMPIErrorSrcFormat>(-1)),
              CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(error->ft->getErrorSourceFormat(error, &status), CIMObjectHandle);
}

TEST_F(ErrorHandle, IsNotMadeOfBadAttributes) {
    EXPECT_EQ(newError(nullptr), nullptr);
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_PARAMETER);
    for (const int severity : {-1, 1, 6}) EXPECT_EQ(newError("Us", severity), nullptr);
    for (const int cause : {-1, 131}) EXPECT_EQ(newError("Us", ErrorSevLow, cause), nullptr);
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(ErrorHandle, AsAnInstanceHasWhatWasSet) {
    const CMPIArray* const texts = newTexts("a");
    error->ft->setMessageArguments(error, texts);
    error->ft->setErrorSource(error, "disk 1");
    const Instance instance = findObject<ErrorObject>(error)->asInstance();
    EXPECT_EQ(instance.find("ErrorSource")->value, Value::string("disk 1"));
    EXPECT_EQ(instance.find("MessageArguments")->value,
              Value::array(CimType::string, {Value::string("a")}));
    EXPECT_EQ(instance.find("RecommendedActions"), nullptr);
    EXPECT_EQ(instance.find("ProbableCause")->value,
              Value::unsignedInteger(CimType::uint16, Disk_Failure));
}

TEST_F(ErrorHandle, ClonesAreIndependent) {
    CMPIError* const copy = error->ft->clone(error, &status);
    copy->ft->setErrorSource(copy, "copy");
    EXPECT_EQ(error->ft->getErrorSource(error, &status), nullptr);
    EXPECT_EQ(textOf(copy->ft->getMessage(copy, &status)), "it broke");
    EXPECT_EQ(copy->ft->release(copy), CMPI_RC_OK);
}

TEST_F(ErrorHandle, AnswersInvalidHandleForNullAndForeignHandles) {
    const CMPIErrorFT& table = *error->ft;
    CMPIError foreign = foreignHandle(error);
    for (CMPIError* const bad : {static_cast<CMPIError*>(nullptr), &foreign}) {
        for (const TextGetter get : {table.getOtherErrorType, table.getOwningEntity,
                                     table.getMessageID, table.getMessage}) {
            status = {CMPI_RC_OK, nullptr};
            EXPECT_EQ(get(bad, &status), nullptr);
            EXPECT_EQ(status, CMPI_RC_ERR_INVALID_HANDLE);
        }
        EXPECT_EQ(table.getErrorType(bad, &status), UnknownErrorType);
        EXPECT_EQ(table.setErrorType(bad, SoftwareError), CMPI_RC_ERR_INVALID_HANDLE);
        EXPECT_EQ(table.setErrorSource(bad, "x"), CMPI_RC_ERR_INVALID_HANDLE);
        EXPECT_EQ(table.getMessageArguments(bad, &status), nullptr);
        EXPECT_EQ(table.clone(bad, &status), nullptr);
        EXPECT_EQ(table.release(bad), CMPI_RC_ERR_INVALID_HANDLE);
    }
}

}  // namespace
}  // namespace cimhost
