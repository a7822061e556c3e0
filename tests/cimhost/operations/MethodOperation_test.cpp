#include "tests/cimhost/operations/OperationsFixture.h"

#include <gmock/gmock.h>

namespace cimhost::test {
namespace {

using testing::HasSubstr;

class MethodOperation : public OperationsTest {
protected:
    ScriptedProvider& serveMethods() {
        ScriptedProvider& provider = serve("P", "TST_Fan root/test method");
        provider.invokeMethod = [&](const ProviderCalled& called) {
            ++calls;
            last = called;
            for (const Argument& output : outputs) {
                const CMPIData data = toCmpi(broker, output.value);
                called.outputs->ft->addArg(called.outputs, output.name.c_str(), &data.value,
                                           data.type);
            }
            for (const Value& value : returned) provider.deliver(called.result, value);
            return provider.succeed();
        };
        return provider;
    }

    MethodResult invoke(const Arguments& in, const std::string& method = "SetSpeed",
                        const ObjectPath& path = named("TST_Fan", "a")) {
        return operations().invokeMethod(request(), path, method, in);
    }

    std::string failure(const Arguments& in, const std::string& method = "SetSpeed",
                        const ObjectPath& path = named("TST_Fan", "a")) {
        return errorOf([&] { invoke(in, method, path); });
    }

    int calls = 0;
    ProviderCalled last;
    Arguments outputs;
    std::vector<Value> returned{uint32Value(0)};
    const Arguments good{{"Speed", uint16Value(5)}};
};

TEST_F(MethodOperation, GivesTheProviderDeclaredInputs) {
    serveMethods();
    start();
    const MethodResult result = invoke(
        {{"SPEED", Value::signedInteger(CimType::sint64, 5)}, {"reason", Value::string("why")}},
        "setspeed");
    EXPECT_EQ(last.texts.at(0), "SetSpeed");
    EXPECT_EQ(textOf(last.path), "TST_Fan.a");
    ASSERT_EQ(last.inputs->size(), 2U);
    EXPECT_EQ(last.inputs->at(0).name, "Speed");
    EXPECT_EQ(last.inputs->at(0).value, uint16Value(5));
    EXPECT_EQ(last.inputs->at(1).name, "Reason");
    EXPECT_EQ(result.returnValue, uint32Value(0));
    EXPECT_TRUE(result.out.empty());
}

TEST_F(MethodOperation, OutputsAndReturnValueGetTheirDeclaredTypes) {
    serveMethods();
    outputs = {{"previous", uint32Value(3)}, {"Note", Value::string("n")}};
    returned = {Value::signedInteger(CimType::sint32, 4)};
    start();
    const MethodResult result = invoke(good);
    EXPECT_EQ(result.returnValue, uint32Value(4));
    ASSERT_EQ(result.out.size(), 2U);
    EXPECT_EQ(result.out[0].name, "Previous");
    EXPECT_EQ(result.out[0].value, uint16Value(3));
    EXPECT_EQ(result.out[1].value, Value::string("n"));
}

TEST_F(MethodOperation, RefusesBadParametersBeforeTheProviderIsAsked) {
    serveMethods();
    start();
    EXPECT_EQ(failure({{"Reason", Value::string("x")}}),
              "4: parameter 'Speed' of method SetSpeed is missing");
    EXPECT_EQ(failure({{"Speed", Value::null(CimType::uint16)}}),
              "4: parameter 'Speed' of method SetSpeed is missing");
    EXPECT_EQ(failure({{"Speed", uint16Value(1)}, {"SPEED", uint16Value(1)}}),
              "4: parameter 'SPEED' of method SetSpeed is given twice");
    EXPECT_EQ(failure({{"Speed", uint16Value(1)}, {"Colour", uint16Value(1)}}),
              "4: parameter 'Colour' of method SetSpeed is not declared");
    EXPECT_EQ(failure({{"Sped", uint16Value(1)}}),
              "4: parameter 'Sped' of method SetSpeed is not declared; did you mean 'Speed'?");
    EXPECT_EQ(failure({{"Speed", uint16Value(1)}, {"Previous", uint16Value(1)}}),
              "4: parameter 'Previous' of method SetSpeed is for output only");
    EXPECT_THAT(failure({{"Speed", uint32Value(65536)}}), HasSubstr("4: "));
    EXPECT_THAT(failure({{"Speed", Value::string("fast")}}), HasSubstr("4: "));
    EXPECT_EQ(calls, 0);
}

TEST_F(MethodOperation, UnknownMethodsAreNotFoundAndUnservedOnesNotAvailable) {
    serve("Q", "TST_System root/test method");
    start();
    EXPECT_EQ(failure(good, "Explode"), "17: class TST_Fan has no method 'Explode'");
    EXPECT_EQ(failure(good, "SetSped"),
              "17: class TST_Fan has no method 'SetSped'; did you mean 'SetSpeed'?");
    EXPECT_EQ(failure(good), "16: no provider serves method SetSpeed of class TST_Fan");
}

TEST_F(MethodOperation, TheTargetIsChecked) {
    serveMethods();
    start();
    EXPECT_THAT(failure(good, "SetSpeed", named("TST_None", "a")), HasSubstr("5: "));
    EXPECT_THAT(failure(good, "SetSpeed", pathOf("TST_Fan", "Nome", Value::string("a"))),
                HasSubstr("4: "));
    EXPECT_EQ(calls, 0);
}

TEST_F(MethodOperation, APathWithoutKeysIsTheClass) {
    serveMethods();
    start();
    EXPECT_EQ(invoke({}, "Count", classPath("TST_Fan")).returnValue, uint32Value(0));
    EXPECT_TRUE(last.path.keys.empty());
    EXPECT_EQ(last.path.className, "TST_Fan");
}

TEST_F(MethodOperation, SubclassesWithoutAProviderUseTheirAncestors) {
    serveMethods();
    start();
    invoke(good, "SetSpeed", named("TST_TurboFan", "t"));
    EXPECT_EQ(textOf(last.path), "TST_TurboFan.t");
}

TEST_F(MethodOperation, AProviderThatReturnsNothingReturnsNull) {
    serveMethods();
    returned.clear();
    start();
    EXPECT_EQ(invoke(good).returnValue, Value::null(CimType::uint32));
}

TEST_F(MethodOperation, AnswersThatTheClassDoesNotDeclareAreTheProvidersFailure) {
    serveMethods();
    start();
    returned = {Value::string("fine")};
    EXPECT_THAT(failure(good), HasSubstr("1: provider P, method SetSpeed: return value: "));
    returned = {uint32Value(0), uint32Value(0)};
    EXPECT_EQ(failure(good), "1: provider P delivered more than one return value");
    returned = {uint32Value(0)};
    outputs = {{"Colour", uint32Value(1)}};
    EXPECT_EQ(failure(good),
              "1: provider P, method SetSpeed: 'Colour' is not declared as an output parameter");
    outputs = {{"Previous", Value::string("x")}};
    EXPECT_THAT(failure(good), HasSubstr("1: provider P, method SetSpeed: Previous: "));
}

TEST_F(MethodOperation, TheProvidersFailureReachesTheClient) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test method");
    provider.invokeMethod = [&](const ProviderCalled&) { return provider.fail(4, "too fast"); };
    start();
    EXPECT_EQ(failure(good), "4: too fast");
}

TEST_F(MethodOperation, AnEmbeddedInstanceIsAReturnValue) {
    readMof(
        "class TST_Maker { [Key] string Name; "
        "[EmbeddedInstance(\"TST_Fan\")] string Show(); };");
    ScriptedProvider& provider = serve("M", "TST_Maker root/test method");
    provider.invokeMethod = [&](const ProviderCalled& called) {
        Instance instance;
        instance.path = named("TST_Fan", "shown");
        provider.deliver(called.result, instance);
        return provider.succeed();
    };
    start();
    const Value shown = invoke({}, "Show", named("TST_Maker", "m")).returnValue;
    ASSERT_EQ(shown.type(), CimType::instance);
    EXPECT_EQ((*shown.get<std::shared_ptr<const Instance>>())->className(), "TST_Fan");
}

TEST_F(MethodOperation, AReferenceIsNoReturnValueOfANumericMethod) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test method");
    provider.invokeMethod = [&](const ProviderCalled& called) {
        provider.deliver(called.result, named("TST_Fan", "made"));
        return provider.succeed();
    };
    start();
    EXPECT_THAT(failure(good), HasSubstr("1: provider P, method SetSpeed: return value: "));
}

}  // namespace
}  // namespace cimhost::test
