#include "tests/cimhost/cimxml/TestProvider.h"

#include "cimhost/repository/Names.h"

namespace cimhost {

/// The C side of the provider.
struct TestProviderTables {
    static TestProvider& of(const auto* mi) {
        return *static_cast<TestProvider*>(const_cast<void*>(mi->hdl));
    }

    static constexpr CMPIStatus ok{CMPI_RC_OK, nullptr};

    static CMPIStatus failure(TestProvider& self) {
        if (self.beforeFailure) self.beforeFailure();
        return {self.failureCode,
                self.failureText.empty() ? nullptr : makeString(self._broker, self.failureText)};
    }

    static void remember(TestProvider& self, const CMPIContext* context) {
        self.principal = modelOf(context).principal;
        self.flags = modelOf(context).flags;
    }

    /// Every instance of the class through `deliver`, up to the failure that the test asked for.
    static CMPIStatus walk(TestProvider& self, const CMPIContext* context,
                           const CMPIObjectPath* path, const auto& deliver) {
        remember(self, context);
        std::size_t count = 0;
        for (const Instance& instance : self.instances) {
            if (!equalNames(instance.className(), modelOf(path).className)) continue;
            if (self.failAfter == count++) return failure(self);
            const CMPIStatus status = deliver(instance);
            if (status.rc != CMPI_RC_OK) return status;
        }
        return self.failAfter == count ? failure(self) : ok;
    }

    static CMPIStatus enumerateInstanceNames(CMPIInstanceMI* mi, const CMPIContext* context,
                                             const CMPIResult* result, const CMPIObjectPath* path) {
        return walk(of(mi), context, path, [&](const Instance& instance) {
            return result->ft->returnObjectPath(result,
                                                makeObjectPath(of(mi)._broker, instance.path));
        });
    }

    static CMPIStatus enumerateInstances(CMPIInstanceMI* mi, const CMPIContext* context,
                                         const CMPIResult* result, const CMPIObjectPath* path,
                                         const char**) {
        return walk(of(mi), context, path, [&](const Instance& instance) {
            return result->ft->returnInstance(result, makeInstance(of(mi)._broker, instance));
        });
    }

    static CMPIStatus getInstance(CMPIInstanceMI* mi, const CMPIContext* context,
                                  const CMPIResult* result, const CMPIObjectPath* path,
                                  const char**) {
        return walk(of(mi), context, path, [&](const Instance& instance) {
            if (!sameModelPath(instance.path, modelOf(path))) return ok;
            return result->ft->returnInstance(result, makeInstance(of(mi)._broker, instance));
        });
    }

    static CMPIStatus createInstance(CMPIInstanceMI* mi, const CMPIContext*,
                                     const CMPIResult* result, const CMPIObjectPath*,
                                     const CMPIInstance* instance) {
        of(mi).created = modelOf(instance);
        return result->ft->returnObjectPath(result,
                                            makeObjectPath(of(mi)._broker, modelOf(instance).path));
    }

    static CMPIStatus modifyInstance(CMPIInstanceMI* mi, const CMPIContext*, const CMPIResult*,
                                     const CMPIObjectPath*, const CMPIInstance* instance,
                                     const char** properties) {
        of(mi).modified = modelOf(instance);
        of(mi).modifiedProperties.reset();
        if (!properties) return ok;
        of(mi).modifiedProperties.emplace();
        for (; *properties != nullptr; ++properties) {
            of(mi).modifiedProperties->push_back(*properties);
        }
        return ok;
    }

    static CMPIStatus deleteInstance(CMPIInstanceMI* mi, const CMPIContext*, const CMPIResult*,
                                     const CMPIObjectPath* path) {
        of(mi).deleted = modelOf(path);
        return ok;
    }

    static CMPIStatus invokeMethod(CMPIMethodMI* mi, const CMPIContext* context,
                                   const CMPIResult* result, const CMPIObjectPath* path,
                                   const char* method, const CMPIArgs* inputs, CMPIArgs* outputs) {
        TestProvider& self = of(mi);
        remember(self, context);
        self.methodTarget = modelOf(path);
        self.method = method;
        self.methodArguments = modelOf(inputs);
        if (self.failAfter) return failure(self);
        for (const Argument& argument : self.methodResult.out) {
            const CMPIData data = toCmpi(self._broker, argument.value);
            const bool isNull = argument.value.isNull();
            outputs->ft->addArg(outputs, argument.name.c_str(), isNull ? nullptr : &data.value,
                                data.type);
        }
        if (self.methodResult.returnValue.isNull()) return ok;
        const CMPIData data = toCmpi(self._broker, self.methodResult.returnValue);
        return result->ft->returnData(result, &data.value, data.type);
    }

    static CMPIStatus cleanUpInstances(CMPIInstanceMI*, const CMPIContext*, CMPIBoolean) {
        return ok;
    }
    static CMPIStatus cleanUpMethods(CMPIMethodMI*, const CMPIContext*, CMPIBoolean) { return ok; }

    static constexpr CMPIInstanceMIFT instances{200,
                                                200,
                                                "TestProvider",
                                                cleanUpInstances,
                                                enumerateInstanceNames,
                                                enumerateInstances,
                                                getInstance,
                                                createInstance,
                                                modifyInstance,
                                                deleteInstance,
                                                nullptr,
                                                nullptr};
    static constexpr CMPIMethodMIFT methods{200, 200, "TestProvider", cleanUpMethods, invokeMethod};
};

StaticModule TestProvider::module() {
    _instanceMi = {this, &TestProviderTables::instances};
    _methodMi = {this, &TestProviderTables::methods};
    return {[this](const CMPIBroker*, const CMPIContext*, const char*, CMPIStatus*) {
                return &_instanceMi;
            },
            {},
            [this](const CMPIBroker*, const CMPIContext*, const char*, CMPIStatus*) {
                return &_methodMi;
            },
            {}};
}

}  // namespace cimhost
