#include "cimhost/indications/SubscriptionModule.h"

#include "cimhost/indications/SubscriptionRules.h"
#include "cimhost/indications/Subscriptions.h"
#include "cimhost/objects/Entry.h"
#include "cimhost/repository/CimError.h"

#include <optional>
#include <string>
#include <vector>

namespace cimhost {

namespace {

/// Runs the work of an MI function.
template <typename Work>
CMPIStatus answer(const CMPIInstanceMI* mi, Work&& work) noexcept {
    const auto& module = *static_cast<const SubscriptionModule*>(mi->hdl);
    CMPIStatus status{CMPI_RC_OK, nullptr};
    run(module.broker(), &status, [&](CMPIrc&) {
        work(module);
        return 0;
    });
    return status;
}

std::vector<Instance> instancesOf(const SubscriptionModule& module, const CMPIObjectPath* path) {
    const ObjectPath& wanted = modelOf(path);
    return module.subscriptions().all(module.broker().repository().get(wanted.nameSpace),
                                      wanted.className);
}

// The instances are the program's own: there is nothing to clean up, also once what they are
// served from is gone.
CMPIStatus cleanup(CMPIInstanceMI*, const CMPIContext*, CMPIBoolean) noexcept {
    return {CMPI_RC_OK, nullptr};
}

CMPIStatus enumerateInstanceNames(CMPIInstanceMI* mi, const CMPIContext*, const CMPIResult* result,
                                  const CMPIObjectPath* path) noexcept {
    return answer(mi, [&](const SubscriptionModule& module) {
        for (Instance& instance : instancesOf(module, path)) {
            requireTaken(result->ft->returnObjectPath(
                result, makeObjectPath(module.broker(), std::move(instance.path))));
        }
        result->ft->returnDone(result);
    });
}

CMPIStatus enumerateInstances(CMPIInstanceMI* mi, const CMPIContext*, const CMPIResult* result,
                              const CMPIObjectPath* path, const char**) noexcept {
    return answer(mi, [&](const SubscriptionModule& module) {
        for (Instance& instance : instancesOf(module, path)) {
            requireTaken(result->ft->returnInstance(
                result, makeInstance(module.broker(), std::move(instance))));
        }
        result->ft->returnDone(result);
    });
}

CMPIStatus getInstance(CMPIInstanceMI* mi, const CMPIContext*, const CMPIResult* result,
                       const CMPIObjectPath* path, const char**) noexcept {
    return answer(mi, [&](const SubscriptionModule& module) {
        std::optional<Instance> found = module.subscriptions().find(modelOf(path));
        if (!found) throw Failure{CMPI_RC_ERR_NOT_FOUND};
        requireTaken(
            result->ft->returnInstance(result, makeInstance(module.broker(), std::move(*found))));
        result->ft->returnDone(result);
    });
}

CMPIStatus createInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                          const CMPIObjectPath*, const CMPIInstance* instance) noexcept {
    return answer(mi, [&](const SubscriptionModule& module) {
        ObjectPath made = module.subscriptions().create(modelOf(context), modelOf(instance));
        requireTaken(
            result->ft->returnObjectPath(result, makeObjectPath(module.broker(), std::move(made))));
        result->ft->returnDone(result);
    });
}

CMPIStatus modifyInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                          const CMPIObjectPath* path, const CMPIInstance* instance,
                          const char** properties) noexcept {
    return answer(mi, [&](const SubscriptionModule& module) {
        Instance changes = modelOf(instance);
        changes.path = modelOf(path);
        if (properties) {
            PropertySelection selection;
            selection.names.emplace();
            for (const char** name = properties; *name; ++name) {
                selection.names->emplace_back(*name);
            }
            std::erase_if(changes.properties, [&](const PropertyValue& property) {
                return !selection.selects(property.name);
            });
        }
        module.subscriptions().modify(modelOf(context), changes);
        result->ft->returnDone(result);
    });
}

CMPIStatus deleteInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                          const CMPIObjectPath* path) noexcept {
    return answer(mi, [&](const SubscriptionModule& module) {
        module.subscriptions().remove(modelOf(context), modelOf(path));
        result->ft->returnDone(result);
    });
}

CMPIStatus execQuery(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*, const CMPIObjectPath*,
                     const char*, const char*) noexcept {
    return {CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
}

const CMPIInstanceMIFT instanceTable = {
    CMPIVersion200,
    CMPIVersion200,
    "subscriptions of cimhost",
    cleanup,
    enumerateInstanceNames,
    enumerateInstances,
    getInstance,
    createInstance,
    modifyInstance,
    deleteInstance,
    execQuery,
    nullptr,  // 2.1
};

}  // namespace

SubscriptionModule::SubscriptionModule()
    : _instanceMi{this, &instanceTable}, _associationMi{this, &subscriptionAssociations} {}

void SubscriptionModule::serve(const Broker& broker, Subscriptions& subscriptions) noexcept {
    _broker = &broker;
    _subscriptions = &subscriptions;
}

bool SubscriptionModule::registerIn(Registrations& registrations, const Repository& repository) {
    bool isServed = false;
    for (const NameSpace* const nameSpace : interopNameSpaces(repository)) {
        for (const SubscriptionClass& each : subscriptionClasses()) {
            if (!nameSpace->findClass(each.name) ||
                registrations.find(ProviderType::instance, nameSpace->name(), each.name)) {
                continue;
            }
            Registration registration;
            registration.className = each.name;
            registration.nameSpace = nameSpace->name();
            registration.provider = providerName;
            registration.module = moduleName;
            registration.types.set(static_cast<std::size_t>(ProviderType::instance));
            if (each.part == SubscriptionPart::subscription) {
                registration.types.set(static_cast<std::size_t>(ProviderType::association));
            }
            registrations.add(std::move(registration));
            isServed = true;
        }
    }
    return isServed;
}

StaticModule SubscriptionModule::factories() {
    StaticModule factories;
    std::get<MiFactory<CMPIInstanceMI>>(factories) = [this](const CMPIBroker*, const CMPIContext*,
                                                            const char*,
                                                            CMPIStatus*) { return &_instanceMi; };
    std::get<MiFactory<CMPIAssociationMI>>(factories) =
        [this](const CMPIBroker*, const CMPIContext*, const char*, CMPIStatus*) {
            return &_associationMi;
        };
    return factories;
}

}  // namespace cimhost
