#include "cmpicpp/detail/ResultSinks.h"

#include "cmpicpp/CmpiArgs.h"
#include "cmpicpp/CmpiArray.h"
#include "tests/cmpicpp/BrokerFixture.h"
#include "tests/cmpicpp/RecordingSink.h"

#include <cstdint>
#include <string>
#include <vector>

namespace CmpiCpp {
namespace {

using cimhost::CimType;
using cimhost::Value;
using test::codeOf;

class ResultSinksTest : public test::BrokerTest {
protected:
    CmpiData dataOf(CmpiValue value) const {
        CMPIData data{value.type(), CMPI_goodValue, {}};
        data.value = *value.toCMPI(handle());
        return {handle(), data};
    }

    /// Delivers one value both ways; what came is in `_sink` and in the argument "Out".
    template <typename T>
    void deliver(const T& value) {
        MethodSink sink(handle(), _result, _out);
        sink.deliver(value);
        sink.deliver(CmpiName("Out"), value);
    }

    template <typename T>
    void expectBothWays(const T& value, const Value& expected) {
        deliver(value);
        ASSERT_FALSE(_sink.values.empty());
        EXPECT_EQ(_sink.values.back(), expected);
        EXPECT_EQ(cimhost::modelOf(_out).at(0).value, expected);
        EXPECT_EQ(_sink.values.back().type(), expected.type());
    }

    test::RecordingSink _sink;
    CMPIResult* const _result = cimhost::makeResult(realBroker, _sink);
    CMPIArgs* const _out = handle()->eft->newArgs(handle(), nullptr);
};

TEST_F(ResultSinksTest, MethodsDeliverEveryType) {
    const auto whole = [](CimType type, std::uint64_t value) {
        return Value::unsignedInteger(type, value);
    };
    const auto integer = [](CimType type, std::int64_t value) {
        return Value::signedInteger(type, value);
    };
    expectBothWays(static_cast<unsigned char>(200), whole(CimType::uint8, 200));
    expectBothWays(static_cast<signed char>(-5), integer(CimType::sint8, -5));
    expectBothWays(static_cast<unsigned short>(60'000), whole(CimType::uint16, 60'000));
    expectBothWays(static_cast<short>(-6), integer(CimType::sint16, -6));
    expectBothWays(4'000'000'000U, whole(CimType::uint32, 4'000'000'000U));
    expectBothWays(-7, integer(CimType::sint32, -7));
    expectBothWays(1ULL << 63, whole(CimType::uint64, 1ULL << 63));
    expectBothWays(-8LL, integer(CimType::sint64, -8));
    expectBothWays(1.5F, Value(CimType::real32, 1.5));
    expectBothWays(0.1, Value(CimType::real64, 0.1));
    expectBothWays(true, Value::boolean(true));
    expectBothWays("chars", Value::string("chars"));
    expectBothWays(std::string("text"), Value::string("text"));
    expectBothWays(dataOf(static_cast<unsigned short>(9)), whole(CimType::uint16, 9));
}

TEST_F(ResultSinksTest, ANullCStringIsANullString) {
    const char* const none = nullptr;
    expectBothWays(none, Value::null(CimType::string));
}

TEST_F(ResultSinksTest, MethodsReturnReferencesAsPaths) {
    deliver(path());
    ASSERT_EQ(_sink.paths.size(), 1U);
    EXPECT_EQ(_sink.paths[0].className, "PYL_Fan");
    EXPECT_EQ(cimhost::modelOf(_out).at(0).value.type(), CimType::reference);
    deliver(dataOf(path()));
    EXPECT_EQ(_sink.paths.size(), 2U);
    EXPECT_TRUE(_sink.values.empty());
}

TEST_F(ResultSinksTest, MethodsReturnNullReferencesAsData) {
    deliver(CmpiObjectPath());
    EXPECT_TRUE(_sink.paths.empty());
    ASSERT_EQ(_sink.values.size(), 1U);
    EXPECT_TRUE(_sink.values[0].isNull());
}

TEST_F(ResultSinksTest, MethodsReturnInstancesAsInstances) {
    deliver(dataOf(makeCmpiInstance(broker(), path())));
    ASSERT_EQ(_sink.instances.size(), 1U);
    EXPECT_EQ(_sink.instances[0].className(), "PYL_Fan");
    EXPECT_EQ(cimhost::modelOf(_out).at(0).value.type(), CimType::instance);
}

TEST_F(ResultSinksTest, MethodsReturnArrays) {
    CmpiArray array = makeCmpiArray(broker(), 2, CMPI_uint8);
    array.setElementAt(1, static_cast<unsigned char>(1));
    deliver(dataOf(array));
    ASSERT_EQ(_sink.values.size(), 1U);
    EXPECT_TRUE(_sink.values[0].isArray());
}

TEST_F(ResultSinksTest, NothingIsDeliveredForEmptyObjects) {
    PathSink paths(_result);
    EXPECT_EQ(codeOf([&] { paths.deliver(CmpiObjectPath()); }), CMPI_RC_ERR_INVALID_HANDLE);
    InstanceSink instances(_result);
    EXPECT_EQ(codeOf([&] { instances.deliver(CmpiInstance()); }), CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_TRUE(_sink.paths.empty());
    EXPECT_TRUE(_sink.instances.empty());
}

TEST_F(ResultSinksTest, APathMayBeChangedAndDeliveredAgain) {
    PathSink sink(_result);
    CmpiObjectPath changing = path();
    sink.deliver(changing);
    changing.addKey("DeviceID", "2");
    sink.deliver(changing);
    ASSERT_EQ(_sink.paths.size(), 2U);
    EXPECT_EQ(*_sink.paths[0].findKey("DeviceID"), Value::string("1"));
    EXPECT_EQ(*_sink.paths[1].findKey("DeviceID"), Value::string("2"));
}

TEST_F(ResultSinksTest, ListsKeepWhatWasDelivered) {
    PathList list;
    CmpiObjectPath changing = path();
    list.deliver(changing);
    changing.setHost("h");
    list.deliver(changing);
    ASSERT_EQ(list.paths().size(), 2U);
    EXPECT_EQ(list.paths()[0], path());
    EXPECT_EQ(list.paths()[1], changing);
}

/// The sink of a method, in hosts of every manner.
class MethodResults : public ResultSinksTest, public testing::WithParamInterface<const char*> {
protected:
    struct Sink final : cimhost::ResultSink {
        void instance(const cimhost::Instance& instance) override {
            values.push_back(Value::instance(instance));
        }
        void path(const cimhost::ObjectPath& path) override {
            values.push_back(Value::reference(path));
        }
        void data(const Value& value) override { values.push_back(value); }
        bool isForMethod() const override { return true; }

        std::vector<Value> values;
    };

    template <typename T>
    CMPIrc returned(const T& value) {
        MethodSink sink(_host.handle(), cimhost::makeResult(_host, _returned), nullptr);
        return codeOf([&] { sink.deliver(value); });
    }

    Sink _returned;
    const cimhost::Broker& _host = brokerOf(GetParam());
};

INSTANTIATE_TEST_SUITE_P(Manners, MethodResults,
                         testing::Values("standard", "openpegasus", "sfcb", "strict", "mean"));

TEST_P(MethodResults, MayBeReferences) {
    EXPECT_EQ(returned(makeCmpiObjectPath(CmpiBroker(_host.handle()), "n", "PYL_Fan")), CMPI_RC_OK);
    ASSERT_EQ(_returned.values.size(), 1U);
    EXPECT_EQ(_returned.values[0].type(), CimType::reference);
}

TEST_P(MethodResults, MayBeInstances) {
    const CmpiBroker host(_host.handle());
    EXPECT_EQ(returned(dataOf(makeCmpiInstance(host, makeCmpiObjectPath(host, "n", "PYL_Fan")))),
              CMPI_RC_OK);
    ASSERT_EQ(_returned.values.size(), 1U);
    EXPECT_EQ(_returned.values[0].type(), CimType::instance);
}

TEST_P(MethodResults, MayBeNull) {
    const char* const none = nullptr;
    EXPECT_EQ(returned(none), CMPI_RC_OK);
    for (const Value& value : _returned.values) EXPECT_TRUE(value.isNull());
}

TEST_P(MethodResults, MayNotBeArraysWithNullsThatAHostMayNotSurvive) {
    const CmpiBroker host(_host.handle());
    EXPECT_EQ(returned(dataOf(makeCmpiArray(host, 1, CMPI_string))), CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(returned(dataOf(makeCmpiArray(host, 1, CMPI_uint8))), CMPI_RC_OK);
}

}  // namespace
}  // namespace CmpiCpp
