#include "cmpi/cmpimacs.h"

#include <gtest/gtest.h>

#include <string>

// What the macros in Provider.c made.
extern "C" {
CMPIInstanceMI* Sample_Create_InstanceMI(const CMPIBroker*, const CMPIContext*, CMPIStatus*);
CMPIMethodMI* Sample_Create_MethodMI(const CMPIBroker*, const CMPIContext*, CMPIStatus*);
}

namespace {

/// Stands for a function of an MI, whatever its signature: it answers with a number of its own.
template <int code>
struct Answer {
    template <typename... Arguments>
    using Function = CMPIStatus (*)(Arguments...);

    template <typename... Arguments>
    constexpr operator Function<Arguments...>() const {
        return [](Arguments...) { return CMPIStatus{static_cast<CMPIrc>(code), nullptr}; };
    }
};

constexpr Answer<1001> CppAssociationCleanup;
constexpr Answer<1002> CppAssociators;
constexpr Answer<1003> CppAssociatorNames;
constexpr Answer<1004> CppReferences;
constexpr Answer<1005> CppReferenceNames;

constexpr Answer<2001> CppPropertyCleanup;
constexpr Answer<2002> CppSetProperty;
constexpr Answer<2003> CppGetProperty;
constexpr Answer<2004> CppSetPropertyWithOrigin;

constexpr Answer<3001> CppIndicationCleanup;
constexpr Answer<3002> CppAuthorizeFilter;
// The stub casts it, so that it has to be a function.
CMPIStatus CppMustPoll(CMPIIndicationMI*, const CMPIContext*, const CMPIResult*,
                       const CMPISelectExp*, const char*, const CMPIObjectPath*) {
    return {static_cast<CMPIrc>(3003), nullptr};
}
constexpr Answer<3004> CppActivateFilter;
constexpr Answer<3005> CppDeActivateFilter;
constexpr Answer<3006> CppEnableIndications;
constexpr Answer<3007> CppDisableIndications;

const CMPIBroker* cppBroker = nullptr;

}  // namespace

// The macros that Provider.c does not use, in C++.
CMAssociationMIStub(Cpp, CppSample, cppBroker, CMNoHook)
    CMPropertyMIStub(Cpp, CppSample, cppBroker, CMNoHook)
        CMIndicationMIStub(Cpp, CppSample, cppBroker, CMNoHook)

            namespace {
    /// A broker with the few slots that the provider uses. Its functions write down what they were
    /// asked for.
    class StubProvider : public testing::Test {
    protected:
        StubProvider() {
            _log.clear();
            _encTable.newString = [](const CMPIBroker*, const char* text, CMPIStatus*) {
                _log += std::string("newString ") + text + ';';
                return &_string;
            };
            _encTable.newInstance = [](const CMPIBroker*, const CMPIObjectPath*,
                                       CMPIStatus* status) {
                CMSetStatus(status, _newInstanceCode);
                return _newInstanceCode == CMPI_RC_OK ? &_instance : nullptr;
            };
            _resultTable.returnObjectPath = [](const CMPIResult*, const CMPIObjectPath* path) {
                _log += path == &_path ? "path;" : "another path;";
                return CMPIStatus();
            };
            _resultTable.returnInstance = [](const CMPIResult*, const CMPIInstance* instance) {
                _log += instance == &_instance ? "instance;" : "another instance;";
                return CMPIStatus();
            };
            _resultTable.returnData = [](const CMPIResult*, const CMPIValue* value, CMPIType type) {
                _log += std::to_string(type) + '=' + std::to_string(value->uint32) + ';';
                return CMPIStatus();
            };
            _resultTable.returnDone = [](const CMPIResult*) {
                _log += "done;";
                return CMPIStatus();
            };
            _argsTable.getArg = [](const CMPIArgs*, const char*, CMPIStatus*) { return _argument; };
            _argsTable.addArg = [](const CMPIArgs*, const char* name, const CMPIValue* value,
                                   CMPIType) {
                _log += name + ('=' + std::to_string(value->uint32)) + ';';
                return CMPIStatus();
            };
            _newInstanceCode = CMPI_RC_OK;
            _argument = CMPIData{CMPI_uint32, CMPI_goodValue, {}};
        }

        static inline std::string _log;
        static inline CMPIrc _newInstanceCode;
        static inline CMPIData _argument;
        static inline CMPIString _string{};
        static inline CMPIInstance _instance{&_string, nullptr};
        static inline CMPIObjectPath _path{};

        CMPIBrokerEncFT _encTable{};
        CMPIResultFT _resultTable{};
        CMPIArgsFT _argsTable{};
        CMPIBroker _broker{nullptr, nullptr, &_encTable, nullptr, nullptr};
        CMPIContext _context{};
        CMPIResult _result{nullptr, &_resultTable};
        CMPIArgs _args{nullptr, &_argsTable};
    };

    TEST_F(StubProvider, FactoryFillsTheTableToLevel200) {
        CMPIStatus status{CMPI_RC_ERROR, &_string};
        const CMPIInstanceMI* mi = Sample_Create_InstanceMI(&_broker, &_context, &status);
        ASSERT_NE(mi, nullptr);
        EXPECT_EQ(status.rc, CMPI_RC_OK);
        EXPECT_EQ(status.msg, nullptr);
        EXPECT_EQ(mi->ft->ftVersion, CMPIVersion200);
        EXPECT_STREQ(mi->ft->miName, "instanceSample");
        EXPECT_EQ(mi->ft->enumerateInstancesFiltered, nullptr);
    }

    TEST_F(StubProvider, FactoryToleratesANullStatus) {
        EXPECT_NE(Sample_Create_InstanceMI(&_broker, &_context, nullptr), nullptr);
    }

    TEST_F(StubProvider, HookMayFailTheFactory) {
        CMPIStatus status{};
        EXPECT_EQ(Sample_Create_MethodMI(&_broker, nullptr, &status), nullptr);
        EXPECT_EQ(status.rc, CMPI_RC_ERR_FAILED);
        EXPECT_NE(Sample_Create_MethodMI(&_broker, &_context, &status), nullptr);
    }

    TEST_F(StubProvider, CleanupHeedsWhetherTheBrokerEnds) {
        CMPIInstanceMI* mi = Sample_Create_InstanceMI(&_broker, &_context, nullptr);
        EXPECT_EQ(mi->ft->cleanup(mi, &_context, 0).rc, CMPI_RC_DO_NOT_UNLOAD);
        EXPECT_EQ(mi->ft->cleanup(mi, &_context, 2).rc, CMPI_RC_OK);
    }

    TEST_F(StubProvider, ProducesPathsAndInstances) {
        CMPIInstanceMI* mi = Sample_Create_InstanceMI(&_broker, &_context, nullptr);
        EXPECT_EQ(mi->ft->enumerateInstanceNames(mi, &_context, &_result, &_path).rc, CMPI_RC_OK);
        EXPECT_EQ(mi->ft->getInstance(mi, &_context, &_result, &_path, nullptr).rc, CMPI_RC_OK);
        EXPECT_EQ(_log, "path;done;instance;done;");
    }

    TEST_F(StubProvider, PassesOnWhatTheBrokerRefused) {
        _newInstanceCode = CMPI_RC_ERR_INVALID_CLASS;
        CMPIInstanceMI* mi = Sample_Create_InstanceMI(&_broker, &_context, nullptr);
        EXPECT_EQ(mi->ft->getInstance(mi, &_context, &_result, &_path, nullptr).rc,
                  CMPI_RC_ERR_INVALID_CLASS);
        EXPECT_EQ(_log, "");
    }

    TEST_F(StubProvider, ReturnsAMessageWithItsStatus) {
        CMPIInstanceMI* mi = Sample_Create_InstanceMI(&_broker, &_context, nullptr);
        const CMPIStatus status =
            mi->ft->enumerateInstances(mi, &_context, &_result, &_path, nullptr);
        EXPECT_EQ(status.rc, CMPI_RC_ERR_ACCESS_DENIED);
        EXPECT_EQ(status.msg, &_string);
        EXPECT_EQ(_log, "newString not for you;");
    }

    TEST_F(StubProvider, InvokesMethods) {
        CMPIMethodMI* mi = Sample_Create_MethodMI(&_broker, &_context, nullptr);
        _argument.value.uint32 = 41;
        EXPECT_EQ(mi->ft->invokeMethod(mi, &_context, &_result, &_path, "Add", &_args, &_args).rc,
                  CMPI_RC_OK);
        EXPECT_EQ(_log, "Sum=42;160=42;done;");

        _argument.state = CMPI_nullValue;
        EXPECT_EQ(mi->ft->invokeMethod(mi, &_context, &_result, &_path, "Add", &_args, &_args).rc,
                  CMPI_RC_ERR_INVALID_PARAMETER);
    }

    TEST_F(StubProvider, AssociationFactoryFillsEachSlotWithItsFunction) {
        CMPIAssociationMI* mi = CppSample_Create_AssociationMI(&_broker, &_context, nullptr);
        const CMPIAssociationMIFT& table = *mi->ft;
        const char* text = "";
        EXPECT_EQ(cppBroker, &_broker);
        EXPECT_STREQ(table.miName, "associationCppSample");
        EXPECT_EQ(table.cleanup(mi, &_context, 1).rc, 1001);
        EXPECT_EQ(
            table.associators(mi, &_context, &_result, &_path, text, text, text, text, nullptr).rc,
            1002);
        EXPECT_EQ(table.associatorNames(mi, &_context, &_result, &_path, text, text, text, text).rc,
                  1003);
        EXPECT_EQ(table.references(mi, &_context, &_result, &_path, text, text, nullptr).rc, 1004);
        EXPECT_EQ(table.referenceNames(mi, &_context, &_result, &_path, text, text).rc, 1005);
        EXPECT_EQ(table.associatorsFiltered, nullptr);
        EXPECT_EQ(table.referencesFiltered, nullptr);
    }

    TEST_F(StubProvider, PropertyFactoryFillsEachSlotWithItsFunction) {
        CMPIPropertyMI* mi = CppSample_Create_PropertyMI(&_broker, &_context, nullptr);
        const CMPIPropertyMIFT& table = *mi->ft;
        EXPECT_STREQ(table.miName, "propertyCppSample");
        EXPECT_EQ(table.cleanup(mi, &_context, 1).rc, 2001);
        EXPECT_EQ(table.setProperty(mi, &_context, &_result, &_path, "A", _argument).rc, 2002);
        EXPECT_EQ(table.getProperty(mi, &_context, &_result, &_path, "A").rc, 2003);
        EXPECT_EQ(
            table.setPropertyWithOrigin(mi, &_context, &_result, &_path, "A", _argument, "C").rc,
            2004);
    }

    TEST_F(StubProvider, IndicationFactoryFillsEachSlotWithItsFunction) {
        CMPIIndicationMI* mi = CppSample_Create_IndicationMI(&_broker, &_context, nullptr);
        const CMPIIndicationMIFT& table = *mi->ft;
        const CMPISelectExp filter{};
        EXPECT_STREQ(table.miName, "indicationCppSample");
        EXPECT_EQ(table.cleanup(mi, &_context, 1).rc, 3001);
        EXPECT_EQ(table.authorizeFilter(mi, &_context, &filter, "C", &_path, "").rc, 3002);
        EXPECT_EQ(table.mustPoll(mi, &_context, &_result, &filter, "C", &_path).rc, 3003);
        EXPECT_EQ(table.activateFilter(mi, &_context, &filter, "C", &_path, 1).rc, 3004);
        EXPECT_EQ(table.deActivateFilter(mi, &_context, &filter, "C", &_path, 1).rc, 3005);
        EXPECT_EQ(table.enableIndications(mi, &_context).rc, 3006);
        EXPECT_EQ(table.disableIndications(mi, &_context).rc, 3007);
        EXPECT_EQ(table.authorizeFilterCollection, nullptr);
    }

}  // namespace
