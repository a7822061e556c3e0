#include "testing/cimhost/testing/Host.h"

#include "cimhost/indications/FilterActivation.h"
#include "cimhost/mof/MofReader.h"
#include "cimhost/objects/CloneCount.h"
#include "cimhost/objects/MemoryBlocks.h"
#include "cimhost/operations/Operations.h"
#include "cimhost/operations/UpCalls.h"
#include "cimhost/query/WqlParser.h"
#include "cimhost/repository/CimError.h"
#include "testing/FaultPlan.h"
#include "testing/HostEnds.h"
#include "testing/cimhost/testing/HostName.h"
#include "testing_qualifiers.h"

#include <cstdlib>
#include <utility>

namespace cimtest {
namespace {

using cimhost::CimError;

/// The words of what refuses files as a Failure.
template <typename Read>
void reading(Read read) {
    try {
        read();
    } catch (const std::runtime_error& error) {  // MofError, RegistrationError, CimError
        throw Failure(error.what());
    }
}

class FoundInstances final : public cimhost::InstanceSink {
public:
    void deliver(const cimhost::Instance& instance, const cimhost::Class*,
                 const cimhost::PropertySelection& selection) override {
        cimhost::Instance shown{instance.path, {}};
        for (const auto& property : instance.properties) {
            if (selection.selects(property.name)) shown.properties.push_back(property);
        }
        all.emplace_back(std::move(shown));
    }

    std::vector<Instance> all;
};

class FoundPaths final : public cimhost::PathSink {
public:
    void deliver(const cimhost::ObjectPath& path) override { all.emplace_back(path); }

    std::vector<Path> all;
};

cimhost::AssociationFilter filterOf(const Walk& walk) {
    return {walk.associationClass, walk.resultClass, walk.role, walk.resultRole};
}

cimhost::InstanceOptions optionsOf(const Host::Properties& properties) {
    cimhost::InstanceOptions options;
    options.propertyList = properties;
    return options;
}

cimhost::Arguments argumentsOf(const Named& named) {
    cimhost::Arguments arguments;
    for (const auto& [name, value] : named) arguments.push_back({name, value.model()});
    return arguments;
}

template <typename MI>
cimhost::MiFactory<MI> factoryOf(const EntryPoints::Create<MI>& create) {
    if (!create) return {};
    return [create](const CMPIBroker* broker, const CMPIContext* context, const char*,
                    CMPIStatus* status) { return create(broker, context, status); };
}

/// The words of a registration for what a class of this kind can be served in.
std::string typesFor(const cimhost::Class& definition, const EntryPoints& provider) {
    if (definition.isIndication) return provider.indication ? " indication" : "";
    std::string types;
    if (provider.instance) types += " instance";
    if (definition.isAssociation && provider.association) types += " association";
    if (provider.method) types += " method";
    return types;
}

cimhost::Manner mannerOf(const std::string& name) {
    if (!name.empty()) return cimhost::Manner(name);
    const char* const wanted = std::getenv("PYL_MANNER");
    return wanted ? cimhost::Manner(wanted) : cimhost::Manner();
}

}  // namespace

/// In the order in which they are needed: what is made last ends first.
struct Host::Parts {
    Parts(std::string itsNameSpace, const std::string& manner, std::filesystem::path itsSchema)
        : nameSpace(std::move(itsNameSpace)),
          schema(std::move(itsSchema)),
          broker(repository, log, cimhost::fillUpCalls, mannerOf(manner)) {
        broker.setIndicationSink(&alerts);
        request.nameSpace = nameSpace;
        context = cimhost::makeContext(broker, request);
    }

    /// Registers a provider as `unique` for a class, which is named as for Host::serve().
    void enter(const std::string& wanted, const EntryPoints& provider, const std::string& name,
               const std::string& unique) {
        const std::size_t colon = wanted.find(':');
        const std::string place = colon == std::string::npos ? nameSpace : wanted.substr(0, colon);
        const std::string className = wanted.substr(colon + 1);  // npos and 1 are 0
        reading([&] {
            const auto* const found = repository.get(place).findClass(className);
            if (!found) throw Failure("namespace " + place + " has no class " + className);
            const std::string types = typesFor(*found, provider);
            if (types.empty()) throw Failure(name + " can serve nothing of class " + className);
            registrations.readText(className + " " + place + " " + unique + " " + unique + types,
                                   name);
        });
    }

    const std::string nameSpace;
    const std::filesystem::path schema;
    cimhost::Repository repository;
    HostLog log;
    HostAlerts alerts{repository, log};
    cimhost::Broker broker;
    cimhost::CallScope scope;
    cimhost::RequestContext request;
    CMPIContext* context = nullptr;
    const std::ptrdiff_t clonesBefore = cimhost::CloneCount::alive();
    std::optional<FaultyBroker> faults;

    cimhost::Registrations registrations;
    std::vector<std::filesystem::path> folders;
    std::vector<std::pair<std::string, cimhost::StaticModule>> parts;

    std::optional<cimhost::ModuleHost> modules;
    std::optional<cimhost::Operations> operations;
    std::optional<cimhost::FilterActivation> activation;
    std::vector<std::shared_ptr<cimhost::FilterActivation::Active>> filters;
};

/// What an operation is made with.
struct Host::Request {
    cimhost::Operations& operations;
    cimhost::RequestContext context;
    cimhost::ObjectPath path;
};

Host::Host(std::string nameSpace, const std::vector<std::filesystem::path>& mof,
           const std::string& manner, const std::filesystem::path& schema) {
    cimhost::CloneCount::countAll();
    setTestHostName(testHostName);
    _parts = std::make_unique<Parts>(std::move(nameSpace), manner, schema);
    readMofText("");
    for (const std::filesystem::path& file : mof) readMof(file);
}

Host::~Host() { end(); }

const std::string& Host::nameSpace() const noexcept { return _parts->nameSpace; }

void Host::readMof(const std::filesystem::path& file, const std::string& nameSpace) {
    std::filesystem::path found = file;
    if (!std::filesystem::exists(found)) found = _parts->schema / file;
    readMofText("#pragma include (\"" + std::filesystem::absolute(found).string() + "\")",
                nameSpace);
}

void Host::readMofText(const std::string& text, const std::string& nameSpace) {
    _requireUnstarted();
    const std::string& place = nameSpace.empty() ? _parts->nameSpace : nameSpace;
    reading([&] {
        cimhost::MofReader reader(_parts->repository, place);
        if (!_parts->repository.find(place)) reader.readText(standardQualifiers, "qualifiers");
        reader.addSearchPath(_parts->schema);
        reader.readText(text, "text");
    });
}

void Host::load(const std::filesystem::path& registration, const std::filesystem::path& folder) {
    _requireUnstarted();
    reading([&] { _parts->registrations.readFile(registration); });
    _parts->folders.push_back(folder);
}

void Host::loadText(const std::string& registrations, const std::filesystem::path& folder) {
    _requireUnstarted();
    reading([&] { _parts->registrations.readText(registrations, "registrations"); });
    _parts->folders.push_back(folder);
}

void Host::serve(const EntryPoints& provider, const std::vector<std::string>& classes,
                 const std::string& name) {
    _requireUnstarted();
    const std::string unique = name + std::to_string(_parts->parts.size() + 1);
    for (const std::string& each : classes) _parts->enter(each, provider, name, unique);
    _parts->parts.emplace_back(
        unique, cimhost::StaticModule(factoryOf(provider.instance), factoryOf(provider.association),
                                      factoryOf(provider.method), factoryOf(provider.indication)));
}

bool Host::unload(const std::string& module) {
    _start();
    const cimhost::UnloadOutcome outcome = _parts->modules->unload(module);
    return outcome == cimhost::UnloadOutcome::unloaded ||
           outcome == cimhost::UnloadOutcome::notLoaded;
}

void Host::end() noexcept {
    if (!_parts->modules) return;
    unsubscribe();
    if (!_parts->modules->shutDown(patience)) failLate("a call into a provider does not end");
    _parts->broker.setOperations(nullptr);
    _parts->activation.reset();
    _parts->operations.reset();
    _parts->modules.reset();
    if (clones() > 0) {
        failLate(std::to_string(clones()) +
                 " objects that providers cloned were not released when they had ended");
    }
    if (const std::size_t blocks = _parts->broker.memoryBlocks().count(); blocks != 0) {
        failLate(std::to_string(blocks) +
                 " blocks of memory that providers got of the broker were not given back");
    }
}

void Host::_requireUnstarted() const {
    if (_parts->modules) throw Failure("classes and providers come before the first call");
}

void Host::_start() {
    if (_parts->modules) return;
    beforeStart();
    Parts& parts = *_parts;
    parts.modules.emplace(parts.broker, std::move(parts.registrations), parts.folders);
    for (auto& [name, factories] : parts.parts) parts.modules->addStatic(name, factories);
    parts.operations.emplace(parts.broker, *parts.modules, cimhost::ResultPolicy::refuse);
    parts.activation.emplace(parts.broker, *parts.modules);
    parts.broker.setOperations(&*parts.operations);
}

bool Host::hasClass(const std::string& nameSpace, const std::string& name) const {
    const auto* const found = _parts->repository.find(nameSpace);
    return found && found->findClass(name);
}

bool Host::isServed(const std::string& nameSpace, const std::string& name) const {
    return _parts->registrations.find(cimhost::ProviderType::method, nameSpace, name) != nullptr;
}

template <typename Call>
auto Host::_run(const Path& path, Call call) {
    _start();
    Request request{*_parts->operations, _parts->request, path.model()};
    if (request.path.nameSpace.empty()) request.path.nameSpace = _parts->nameSpace;
    request.context.nameSpace = request.path.nameSpace;
    try {
        return call(request);
    } catch (const CimError& error) {
        throw Failure(static_cast<int>(error.code()), error.what());
    }
}

std::vector<Instance> Host::enumerate(const Path& ofClass, const Properties& properties) {
    return _run(ofClass, [&](const Request& request) {
        FoundInstances found;
        request.operations.enumerateInstances(request.context, request.path, optionsOf(properties),
                                              found);
        return found.all;
    });
}

std::vector<Path> Host::names(const Path& ofClass) {
    return _run(ofClass, [&](const Request& request) {
        FoundPaths found;
        request.operations.enumerateInstanceNames(request.context, request.path, found);
        return found.all;
    });
}

Instance Host::get(const Path& path, const Properties& properties) {
    return _run(path, [&](const Request& request) {
        FoundInstances found;
        request.operations.getInstance(request.context, request.path, optionsOf(properties), found);
        return found.all.at(0);
    });
}

Path Host::create(const Path& ofClass, const Named& properties) {
    return _run(ofClass, [&](const Request& request) {
        const Instance made(Path(request.path), properties);
        return Path(request.operations.createInstance(request.context, made.model()));
    });
}

void Host::modify(const Path& path, const Named& properties) {
    _run(path, [&](const Request& request) {
        std::vector<std::string> names;
        for (const auto& [name, value] : properties) names.push_back(name);
        const Instance changed(Path(request.path), properties);
        request.operations.modifyInstance(request.context, changed.model(), names);
    });
}

void Host::remove(const Path& path) {
    _run(path, [](const Request& request) {
        request.operations.deleteInstance(request.context, request.path);
    });
}

std::vector<Instance> Host::associators(const Path& path, const Walk& walk) {
    return _run(path, [&](const Request& request) {
        FoundInstances found;
        request.operations.associators(request.context, request.path, filterOf(walk), {}, found);
        return found.all;
    });
}

std::vector<Path> Host::associatorNames(const Path& path, const Walk& walk) {
    return _run(path, [&](const Request& request) {
        FoundPaths found;
        request.operations.associatorNames(request.context, request.path, filterOf(walk), found);
        return found.all;
    });
}

std::vector<Instance> Host::references(const Path& path, const Walk& walk) {
    return _run(path, [&](const Request& request) {
        FoundInstances found;
        request.operations.references(request.context, request.path, filterOf(walk), {}, found);
        return found.all;
    });
}

std::vector<Path> Host::referenceNames(const Path& path, const Walk& walk) {
    return _run(path, [&](const Request& request) {
        FoundPaths found;
        request.operations.referenceNames(request.context, request.path, filterOf(walk), found);
        return found.all;
    });
}

Answer Host::invoke(const Path& path, const std::string& method, const Named& arguments) {
    return _run(path, [&](const Request& request) {
        const cimhost::MethodResult result = request.operations.invokeMethod(
            request.context, request.path, method, argumentsOf(arguments));
        Answer answer{Value(result.returnValue), {}};
        for (const auto& each : result.out) answer.outputs.emplace_back(each.name, each.value);
        return answer;
    });
}

std::vector<Instance> Host::query(const std::string& text, const std::string& language) {
    return _run(Path("", {}), [&](const Request& request) {
        FoundInstances found;
        request.operations.execQuery(request.context, language, text, found);
        return found.all;
    });
}

void Host::subscribe(const std::string& indicationClass) {
    _run(Path(indicationClass, {}), [&](const Request& request) {
        const auto query = std::make_shared<const cimhost::WqlQuery>(
            cimhost::parseQuery("WQL", "SELECT * FROM " + indicationClass));
        auto filter = _parts->activation->activate(request.context, {query, {_parts->nameSpace}});
        _parts->filters.push_back(filter);
        _parts->activation->enable(request.context, *filter);
    });
}

void Host::unsubscribe() {
    for (const auto& filter : std::exchange(_parts->filters, {})) {
        _parts->activation->deactivate(_parts->request, *filter);
    }
}

Captured<LogLine>& Host::log() noexcept { return _parts->log.lines; }
Captured<Instance>& Host::alerts() noexcept { return _parts->alerts.captured; }

std::ptrdiff_t Host::clones() const noexcept {
    return cimhost::CloneCount::alive() - _parts->clonesBefore;
}

FaultyBroker& Host::faults() {
    if (!_parts->faults) {
        cimhost::Broker& broker = _parts->broker;
        _parts->faults.emplace(broker.handle());
        broker.interpose(*_parts->faults->handle(), interposed(broker.objectTables()));
    }
    return *_parts->faults;
}

const CMPIBroker* Host::handle() const noexcept { return _parts->broker.handle(); }

Instance Host::show(const CMPIInstance* instance) const {
    const cimhost::Instance& shown = cimhost::modelOf(instance);
    reading([&] { _parts->alerts.judge(_parts->nameSpace, shown); });
    return Instance(shown);
}

Path Host::show(const CMPIObjectPath* path) { return Path(cimhost::modelOf(path)); }

const CMPIContext* Host::callContext() {
    _start();
    return _parts->context;
}

}  // namespace cimtest
