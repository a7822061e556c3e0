#include "cimhost/objects/ResultHandle.h"

#include "cimhost/repository/CimError.h"
#include "tests/support/BrokerFixture.h"

#include <optional>
#include <thread>

namespace cimhost {
namespace {

class CollectingSink : public ResultSink {
public:
    void instance(const Instance& instance) override { events.push_back(instance.className()); }
    void path(const ObjectPath& path) override { events.push_back("path " + path.className); }
    void data(const Value& value) override {
        events.push_back(std::string(typeName(value.type())));
    }
    void done() override { events.push_back("done"); }
    void error(const Instance& error) override { lastError = error; }

    std::vector<std::string> events;
    std::optional<Instance> lastError;
};

class FailingSink : public ResultSink {
public:
    void path(const ObjectPath&) override {
        ++calls;
        throw CimError(CimCode::accessDenied, "the client is gone");
    }
    void data(const Value&) override { throw 5; }

    int calls = 0;
};

class ResultHandle : public BrokerTest {};

TEST_F(ResultHandle, PassesResultsOnInOrder) {
    CollectingSink sink;
    const CMPIResult* const result = makeResult(realBroker, sink);
    const CMPIValue number = uint32Value(1);
    EXPECT_EQ(result->ft->returnInstance(result, newInstance()), CMPI_RC_OK);
    EXPECT_EQ(result->ft->returnObjectPath(result, newPath("Test_Other")), CMPI_RC_OK);
    EXPECT_EQ(result->ft->returnData(result, &number, CMPI_uint32), CMPI_RC_OK);
    EXPECT_EQ(result->ft->returnData(result, charsValue("text"), CMPI_chars), CMPI_RC_OK);
    EXPECT_EQ(result->ft->returnDone(result), CMPI_RC_OK);
    EXPECT_EQ(sink.events, (std::vector<std::string>{"Test_Base", "path Test_Other", "uint32",
                                                     "string", "done"}));
    EXPECT_EQ(failureOf(result), nullptr);
}

TEST_F(ResultHandle, CompletesThePathOfInstances) {
    struct PathSink : ResultSink {
        void instance(const Instance& instance) override { keys = instance.path.keys.size(); }
        std::size_t keys = 0;
    } sink;
    const CMPIResult* const result = makeResult(realBroker, sink);
    const CMPIInstance* const instance = newInstance();
    instance->ft->setProperty(instance, "Name", charsValue("a"), CMPI_chars);
    result->ft->returnInstance(result, instance);
    EXPECT_EQ(sink.keys, 1U);
}

TEST_F(ResultHandle, RefusesWhatTheOperationDoesNotTake) {
    ResultSink sink;
    const CMPIResult* result = makeResult(realBroker, sink);
    const CMPIStatus refused = result->ft->returnInstance(result, newInstance());
    EXPECT_EQ(refused, CMPI_RC_ERR_FAILED);
    EXPECT_EQ(textOf(refused.msg), "this operation takes no instances");
    result = makeResult(realBroker, sink);
    EXPECT_EQ(result->ft->returnObjectPath(result, newPath()), CMPI_RC_ERR_FAILED);
    result = makeResult(realBroker, sink);
    EXPECT_EQ(result->ft->returnData(result, nullptr, CMPI_string), CMPI_RC_ERR_FAILED);
    result = makeResult(realBroker, sink);
    EXPECT_EQ(result->ft->returnDone(result), CMPI_RC_OK);
}

TEST_F(ResultHandle, TellsWhatTheSinkThrewAndStopsThere) {
    FailingSink sink;
    const CMPIResult* const result = makeResult(realBroker, sink);
    for (int i = 0; i < 2; ++i) {
        const CMPIStatus failed = result->ft->returnObjectPath(result, newPath());
        EXPECT_EQ(failed, CMPI_RC_ERR_ACCESS_DENIED);
        EXPECT_EQ(textOf(failed.msg), "the client is gone");
    }
    EXPECT_EQ(result->ft->returnDone(result), CMPI_RC_ERR_ACCESS_DENIED);
    EXPECT_EQ(sink.calls, 1);
    EXPECT_THROW(std::rethrow_exception(failureOf(result)), CimError);
}

TEST_F(ResultHandle, LetsNothingEscapeThatIsThrown) {
    FailingSink sink;
    const CMPIResult* const result = makeResult(realBroker, sink);
    EXPECT_EQ(result->ft->returnData(result, nullptr, CMPI_string), CMPI_RC_ERR_FAILED);
}

TEST_F(ResultHandle, TakesExtendedErrors) {
    CollectingSink sink;
    const CMPIResult* const result = makeResult(realBroker, sink);
    const CMPIError* const error = eft().newCMPIError(
        broker(), "Us", "M1", "it broke", ErrorSevHigh, Disk_Failure, CMPI_RC_ERR_FAILED, &status);
    EXPECT_EQ(result->ft->returnError(result, error), CMPI_RC_OK);
    ASSERT_TRUE(sink.lastError);
    EXPECT_EQ(sink.lastError->className(), "CIM_Error");
    EXPECT_EQ(sink.lastError->find("Message")->value, Value::string("it broke"));
    EXPECT_EQ(sink.lastError->find("CIMStatusCode")->value,
              Value::unsignedInteger(CimType::uint32, 1));
    EXPECT_EQ(sink.lastError->find("OtherErrorType"), nullptr);
    EXPECT_EQ(result->ft->returnError(result, nullptr), CMPI_RC_ERR_INVALID_HANDLE);
}

TEST_F(ResultHandle, RefusesBadArgumentsWithoutFailingTheOperation) {
    CollectingSink sink;
    const CMPIResult* const result = makeResult(realBroker, sink);
    EXPECT_EQ(result->ft->returnInstance(result, nullptr), CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(result->ft->returnObjectPath(result, nullptr), CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(result->ft->returnData(result, nullptr, CMPI_null), CMPI_RC_ERR_INVALID_DATA_TYPE);
    EXPECT_TRUE(sink.events.empty());
    EXPECT_EQ(failureOf(result), nullptr);
    EXPECT_EQ(result->ft->returnDone(nullptr), CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(failureOf(nullptr), nullptr);
}

TEST_F(ResultHandle, ClonesShareTheSinkUntilTheCallEnds) {
    CMPIResult* copy = nullptr;
    {
        const CallScope call;
        CollectingSink sink;
        const CMPIResult* const result = makeResult(realBroker, sink);
        copy = result->ft->clone(result, &status);
        EXPECT_EQ(copy->ft->returnObjectPath(copy, newPath()), CMPI_RC_OK);
        EXPECT_EQ(sink.events.size(), 1U);
    }
    EXPECT_EQ(copy->ft->returnObjectPath(copy, newPath()), CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(copy->ft->release(copy), CMPI_RC_OK);
}

TEST_F(ResultHandle, ClonesMayReturnFromOtherThreads) {
    CollectingSink sink;
    const CMPIResult* const result = makeResult(realBroker, sink);
    constexpr int rounds = 200;
    const auto deliver = [this](CMPIResult* target) {
        const CallScope call;
        const CMPIObjectPath* const path = eft().newObjectPath(broker(), "n", "C", nullptr);
        for (int i = 0; i < rounds; ++i) target->ft->returnObjectPath(target, path);
    };
    CMPIResult* const copy = result->ft->clone(result, &status);
    std::thread other(deliver, copy);
    deliver(const_cast<CMPIResult*>(result));
    other.join();
    EXPECT_EQ(sink.events.size(), 2U * rounds);
    EXPECT_EQ(copy->ft->release(copy), CMPI_RC_OK);
}

class MethodSink final : public CollectingSink {
public:
    bool isForMethod() const override { return true; }
};

TEST_F(ResultHandle, OfSomeHostsTakesObjectsAsDataAloneAndNoNull) {
    const Broker host(repository, log, fillUpCalls, Manner("openpegasus"));
    MethodSink sink;
    const CMPIResult* const result = makeResult(host, sink);
    CMPIValue value{};
    value.ref = newPath();
    EXPECT_EQ(result->ft->returnObjectPath(result, value.ref), CMPI_RC_ERR_NOT_SUPPORTED);
    EXPECT_EQ(result->ft->returnInstance(result, newInstance()), CMPI_RC_ERR_NOT_SUPPORTED);
    EXPECT_EQ(result->ft->returnData(result, nullptr, CMPI_string), CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(result->ft->returnData(result, &value, CMPI_ref), CMPI_RC_OK);
    CollectingSink paths;
    const CMPIResult* const other = makeResult(host, paths);
    EXPECT_EQ(other->ft->returnObjectPath(other, value.ref), CMPI_RC_OK);
}

TEST_F(ResultHandle, OfSomeHostsEndsTheProcessForAReferenceAsData) {
    const Broker host(repository, log, fillUpCalls, Manner("sfcb"));
    CollectingSink sink;
    const CMPIResult* const result = makeResult(host, sink);
    CMPIValue value{};
    value.ref = newPath();
    EXPECT_DEATH(result->ft->returnData(result, &value, CMPI_ref), "");
}

}  // namespace
}  // namespace cimhost
