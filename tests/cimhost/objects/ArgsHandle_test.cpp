#include "cimhost/objects/ArgsHandle.h"

#include "cimhost/objects/MannerTables.h"
#include "cimhost/repository/CimError.h"
#include "tests/support/BrokerFixture.h"

namespace cimhost {
namespace {

class ArgsHandle : public BrokerTest {
protected:
    CMPIArgs* args = eft().newArgs(broker(), &status);
};

TEST_F(ArgsHandle, BeginsEmpty) {
    EXPECT_EQ(args->ft->getArgCount(args, &status), 0U);
    args->ft->getArg(args, "A", &status);
    EXPECT_EQ(status, CMPI_RC_ERR_NO_SUCH_PROPERTY);
    args->ft->getArgAt(args, 0, nullptr, &status);
    EXPECT_EQ(status, CMPI_RC_ERR_NO_SUCH_PROPERTY);
}

TEST_F(ArgsHandle, SaysWhichArgumentIsMissing) {
    const CMPIValue one = uint32Value(1);
    args->ft->addArg(args, "Force", &one, CMPI_uint32);
    args->ft->getArg(args, "Forse", &status);
    EXPECT_EQ(status, CMPI_RC_ERR_NO_SUCH_PROPERTY);
    EXPECT_EQ(textOf(status.msg), "there is no argument 'Forse'; did you mean 'Force'?");
}

TEST_F(ArgsHandle, AddsReplacesAndFindsInAnyCase) {
    const CMPIValue one = uint32Value(1);
    EXPECT_EQ(args->ft->addArg(args, "A", &one, CMPI_uint32), CMPI_RC_OK);
    EXPECT_EQ(args->ft->addArg(args, "B", charsValue("text"), CMPI_chars), CMPI_RC_OK);
    EXPECT_EQ(args->ft->addArg(args, "a", nullptr, CMPI_sint8), CMPI_RC_OK);
    EXPECT_EQ(args->ft->getArgCount(args, &status), 2U);
    const CMPIData first = args->ft->getArg(args, "A", &status);
    EXPECT_EQ(first.type, CMPI_sint8);
    EXPECT_EQ(first.state, CMPI_nullValue);
    CMPIString* name = nullptr;
    EXPECT_EQ(textOf(args->ft->getArgAt(args, 1, &name, &status).value.string), "text");
    EXPECT_EQ(textOf(name), "B");
}

TEST_F(ArgsHandle, RefusesBadNamesAndTypes) {
    const CMPIValue one = uint32Value(1);
    EXPECT_EQ(args->ft->addArg(args, nullptr, &one, CMPI_uint32), CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(args->ft->addArg(args, "A", &one, CMPI_args), CMPI_RC_ERR_INVALID_DATA_TYPE);
    args->ft->getArg(args, nullptr, &status);
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(args->ft->getArgCount(args, &status), 0U);
}

TEST_F(ArgsHandle, AnswersInvalidHandleForNullAndForeignHandles) {
    CMPIArgs foreign = foreignHandle(args);
    const CMPIValue one = uint32Value(1);
    for (CMPIArgs* const bad : {static_cast<CMPIArgs*>(nullptr), &foreign}) {
        EXPECT_EQ(args->ft->addArg(bad, "A", &one, CMPI_uint32), CMPI_RC_ERR_INVALID_HANDLE);
        status = {CMPI_RC_OK, nullptr};
        args->ft->getArg(bad, "A", &status);
        EXPECT_EQ(status, CMPI_RC_ERR_INVALID_HANDLE);
        EXPECT_EQ(args->ft->getArgCount(bad, &status), 0U);
        EXPECT_EQ(args->ft->clone(bad, &status), nullptr);
        EXPECT_EQ(args->ft->release(bad), CMPI_RC_ERR_INVALID_HANDLE);
        EXPECT_THROW(modelOf(bad), CimError);
    }
}

TEST_F(ArgsHandle, ClonesAreIndependentAndTheModelIsTheirs) {
    const CMPIValue one = uint32Value(1);
    args->ft->addArg(args, "A", &one, CMPI_uint32);
    CMPIArgs* const copy = args->ft->clone(args, &status);
    copy->ft->addArg(copy, "B", &one, CMPI_uint32);
    EXPECT_EQ(modelOf(args).size(), 1U);
    EXPECT_EQ(modelOf(copy).size(), 2U);
    EXPECT_EQ(copy->ft->release(copy), CMPI_RC_OK);
}

TEST_F(ArgsHandle, OfSomeHostsThrowsWhatIsNoException) {
    const Broker host(repository, log, fillUpCalls, Manner("openpegasus"));
    const CMPIArgs* const other = makeArgs(host, {});
    const CMPIValue number = uint32Value(1);
    EXPECT_THROW(other->ft->getArgAt(other, 0, nullptr, &status), HostException);
    EXPECT_THROW(other->ft->addArg(other, "a b", &number, CMPI_uint32), HostException);
    EXPECT_EQ(other->ft->addArg(other, "ab", &number, CMPI_uint32), CMPI_RC_OK);
}

TEST_F(ArgsHandle, OfSomeHostsReadsQuietlyPastTheEnd) {
    const Broker host(repository, log, fillUpCalls, Manner("sfcb"));
    const CMPIArgs* const other = makeArgs(host, {});
    EXPECT_EQ(other->ft->getArgAt(other, 0, nullptr, &status).state, CMPI_goodValue);
    EXPECT_EQ(status, CMPI_RC_OK);
    EXPECT_EQ(other->ft->getArg(other, "a", &status).state, CMPI_notFound);
    EXPECT_EQ(status, CMPI_RC_ERR_NOT_FOUND);
}

}  // namespace
}  // namespace cimhost
