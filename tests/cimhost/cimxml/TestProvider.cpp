#include "tests/cimhost/cimxml/TestProvider.h"

#include "cimhost/repository/Names.h"

namespace cimhost {

using test::ProviderCalled;

TestProvider::TestProvider(const Broker& broker) : _provider(broker) {
    _provider.enumerateInstanceNames = [this](const ProviderCalled& called) {
        return _walk(called, [&](const Instance& instance) {
            return _provider.deliver(called.result, instance.path);
        });
    };
    _provider.enumerateInstances = [this](const ProviderCalled& called) {
        return _walk(called, [&](const Instance& instance) {
            return _provider.deliver(called.result, instance);
        });
    };
    _provider.getInstance = [this](const ProviderCalled& called) {
        return _walk(called, [&](const Instance& instance) {
            if (!sameModelPath(instance.path, called.path)) return _provider.succeed();
            return _provider.deliver(called.result, instance);
        });
    };
    _provider.createInstance = [this](const ProviderCalled& called) {
        created = called.instance;
        return _provider.deliver(called.result, created->path);
    };
    _provider.modifyInstance = [this](const ProviderCalled& called) {
        modified = called.instance;
        modifiedProperties = called.propertyList;
        return _provider.succeed();
    };
    _provider.deleteInstance = [this](const ProviderCalled& called) {
        deleted = called.path;
        return _provider.succeed();
    };
    _provider.invokeMethod = [this](const ProviderCalled& called) { return _invoke(called); };
}

CMPIStatus TestProvider::_fail() const {
    if (beforeFailure) beforeFailure();
    return _provider.fail(failureCode, failureText.empty() ? nullptr : failureText.c_str());
}

void TestProvider::_remember(const ProviderCalled& called) {
    principal = called.request().principal;
    flags = called.request().flags;
}

CMPIStatus TestProvider::_walk(const ProviderCalled& called,
                               const std::function<CMPIStatus(const Instance&)>& deliver) {
    _remember(called);
    std::size_t count = 0;
    for (const Instance& instance : instances) {
        if (!equalNames(instance.className(), called.path.className)) continue;
        if (failAfter == count++) return _fail();
        const CMPIStatus status = deliver(instance);
        if (status.rc != CMPI_RC_OK) return status;
    }
    return failAfter == count ? _fail() : _provider.succeed();
}

CMPIStatus TestProvider::_invoke(const ProviderCalled& called) {
    _remember(called);
    methodTarget = called.path;
    method = called.texts.at(0).value();
    methodArguments = called.inputs.value();
    if (failAfter) return _fail();
    for (const Argument& argument : methodResult.out) {
        const CMPIData data = toCmpi(_provider.broker(), argument.value);
        const bool isNull = argument.value.isNull();
        called.outputs->ft->addArg(called.outputs, argument.name.c_str(),
                                   isNull ? nullptr : &data.value, data.type);
    }
    if (methodResult.returnValue.isNull()) return _provider.succeed();
    return _provider.deliver(called.result, methodResult.returnValue);
}

}  // namespace cimhost
