#include "cimhost/server/isolation/IsolatedModules.h"

#include "cimhost/cimxml/ExportHandler.h"
#include "cimhost/repository/CimError.h"
#include "cimhost/repository/Names.h"
#include "cimhost/server/isolation/AwaitedCall.h"

#include <utility>

namespace cimhost {
namespace {

constexpr std::string_view processClass = "CIMHOST_ModuleProcess";

Instance describe(const ModuleProcess& process, const std::string& nameSpace,
                  const Class& definition) {
    Instance instance;
    instance.path = {{}, nameSpace, definition.name, {}};
    instance.path.setKey("Module", Value::string(process.module()));
    instance.set("Module", Value::string(process.module()));
    describeProcess(process.state(), instance);
    return instance;
}

}  // namespace

void describeProcess(const ModuleProcess::State& state, Instance& instance) {
    const bool isRunning = state.id != 0;
    const auto number = [](std::uint64_t value) {
        return Value::unsignedInteger(CimType::uint32, value);
    };
    instance.set("State", Value::string(isRunning        ? "running"
                                        : state.isPaused ? "paused"
                                                         : "not running"));
    instance.set("ProcessID", isRunning ? number(static_cast<std::uint64_t>(state.id))
                                        : Value::null(CimType::uint32));
    instance.set("Starts", number(state.starts));
    instance.set("Crashes", number(state.crashes));
    instance.set("LastWords", state.lastWords.empty() ? Value::null(CimType::string)
                                                      : Value::string(state.lastWords));
}

IsolatedModules::Hosted::Hosted(IsolatedModules& all, const std::string& module)
    : upCalls([&all](const LinkNotes& notes, const CimXmlRequest& request,
                     CimXmlReply& reply) { all._answer(notes, request, reply); },
              [&all](const LinkNotes& notes, const CimXmlRequest& request, CimXmlReply& reply) {
                  all._export(notes, request, reply);
              }),
      process(module, all._settings, upCalls, all._broker.log()) {}

IsolatedModules::IsolatedModules(const Broker& broker, IsolationSettings settings)
    : _broker(broker), _settings(std::move(settings)) {}

IsolatedModules::~IsolatedModules() = default;

void IsolatedModules::standInFor(ModuleHost& modules) {
    for (const Registration& each : modules.registrations().all()) {
        modules.addStatic(each.module, standInFor(each.module));
    }
}

StaticModule IsolatedModules::standInFor(const std::string& name) {
    const std::lock_guard lock(_mutex);
    auto& hosted = _modules[name];
    if (!hosted) hosted = std::make_unique<Hosted>(*this, name);
    const auto make = [this, &module = *hosted](auto mi) {
        return [this, &module, mi](const CMPIBroker*, const CMPIContext*, const char* provider,
                                   CMPIStatus*) { return (_standIn(module, provider).*mi)(); };
    };
    return {make(&StandIn::instanceMi), make(&StandIn::associationMi), make(&StandIn::methodMi),
            make(&StandIn::indicationMi)};
}

std::vector<IsolatedModules::Hosted*> IsolatedModules::_all() const {
    const std::lock_guard lock(_mutex);
    std::vector<Hosted*> all;
    for (const auto& [name, hosted] : _modules) all.push_back(hosted.get());
    return all;
}

void IsolatedModules::replace(const std::set<std::string>& modules) {
    for (Hosted* const each : _all()) {
        if (modules.contains(each->process.module())) each->process.replace();
    }
}

void IsolatedModules::replaceAll() {
    for (Hosted* const each : _all()) each->process.replace();
}

bool IsolatedModules::releaseReplaced() {
    bool isLeft = false;
    for (Hosted* const each : _all()) isLeft = each->process.releaseReplaced() || isLeft;
    return isLeft;
}

StandIn& IsolatedModules::_standIn(Hosted& hosted, const char* provider) {
    const std::lock_guard lock(_mutex);
    for (StandIn& each : _standIns) {
        // A reload may have moved the provider to another module.
        if (&each.process() == &hosted.process && each.provider() == provider) return each;
    }
    return _standIns.emplace_back(_broker, hosted.process, provider);
}

void IsolatedModules::_answer(const LinkNotes& notes, const CimXmlRequest& request,
                              CimXmlReply& reply) {
    const AwaitedCall::UpCall upCall(notes.call);
    CimXmlHandler(*_broker.operations(), _broker.repository()).handle(request, reply);
}

void IsolatedModules::_export(const LinkNotes& notes, const CimXmlRequest& request,
                              CimXmlReply& reply) {
    RequestContext context;
    context.nameSpace = notes.nameSpace;
    context.principal = notes.principal;
    ExportHandler([&](const Instance& indication) {
        _broker.indicationSink()->deliver(context, notes.nameSpace, indication);
    }).handle(request, reply);
}

ModuleProcess::State IsolatedModules::stateOf(const std::string& module) const {
    const std::lock_guard lock(_mutex);
    const auto found = _modules.find(module);
    return found == _modules.end() ? ModuleProcess::State{} : found->second->process.state();
}

bool IsolatedModules::killBusy() {
    bool wasBusy = false;
    for (Hosted* const each : _all()) wasBusy = each->process.killIfBusy() || wasBusy;
    return wasBusy;
}

bool IsolatedModules::stop(std::chrono::milliseconds patience) {
    const std::vector<Hosted*> all = _all();
    for (Hosted* const each : all) each->process.beginEnd();
    const Clock::time_point deadline = Clock::now() + patience;
    bool isOrderly = true;
    for (Hosted* const each : all) isOrderly = each->process.awaitEnd(deadline) && isOrderly;
    return isOrderly;
}

bool IsolatedModules::serves(const Target& target) const noexcept {
    return equalNames(target.definition.name, processClass);
}

void IsolatedModules::visit(const Target& target, const VisitInstance& visit) const {
    const NameSpace& nameSpace = target.nameSpace;
    const Class* const definition = nameSpace.findClass(processClass);
    if (!definition || !nameSpace.isA(definition->name, target.definition.name)) return;
    for (const Hosted* const each : _all()) {
        visit(describe(each->process, nameSpace.name(), *definition), *definition);
    }
}

void IsolatedModules::visitAssociations(const Target&, const VisitInstance&) const {}

std::optional<Instance> IsolatedModules::find(const ObjectPath& path) const {
    const Class* const definition =
        _broker.repository().get(path.nameSpace).findClass(path.className);
    const Value* const key = path.findKey("Module");
    const auto* const name = key ? key->get<Text>() : nullptr;
    const std::lock_guard lock(_mutex);
    const auto found = name ? _modules.find(name->str()) : _modules.end();
    if (!definition || found == _modules.end()) return std::nullopt;
    return describe(found->second->process, path.nameSpace, *definition);
}

}  // namespace cimhost
