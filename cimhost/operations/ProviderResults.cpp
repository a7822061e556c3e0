#include "cimhost/operations/ProviderResults.h"

#include "cimhost/repository/CimError.h"
#include "cimhost/repository/Names.h"

#include <utility>

namespace cimhost {

namespace {

// Other namespaces than those here are no business of this host: they have none.
const NameSpace* nameSpaceOf(const Repository& repository, const Target& asked,
                             const ObjectPath& path) {
    if (equalNames(path.nameSpace, asked.nameSpace.name())) return &asked.nameSpace;
    return repository.find(path.nameSpace);
}

}  // namespace

void ProviderSink::instance(const Instance&) { refuse("an instance, which is no result of this"); }

void ProviderSink::path(const ObjectPath&) { refuse("an object path, which is no result of this"); }

void ProviderSink::data(const Value&) { refuse("a plain value, which is no result of this"); }

void ProviderSink::refuse(const std::string& what) const {
    throw CimError(CimCode::failed, "provider " + std::string(_provider) + " delivered " + what);
}

Fit EnumerationFilter::judge(const NameSpace* nameSpace, const Class* definition) const {
    if (!definition || definition == &_asked.definition) return Fit::belongs;
    if (!nameSpace->isA(definition->name, _asked.definition.name)) return Fit::misdirected;
    if (nameSpace != &_asked.nameSpace) return Fit::belongs;
    const bool isOthers =
        static_cast<bool>(_servers.of(ProviderType::instance, {*nameSpace, *definition}));
    return isOthers ? Fit::leftOut : Fit::belongs;
}

Fit ClassFilter::judge(const NameSpace* nameSpace, const Class* definition) const {
    if (_className.empty() || !definition) return Fit::belongs;
    return nameSpace->isA(definition->name, _className) ? Fit::belongs : Fit::leftOut;
}

bool WalkSink::isComplete(const ObjectPath& path) const noexcept {
    return !path.nameSpace.empty() && !path.className.empty();
}

void WalkSink::complete(ObjectPath& path) const {
    if (path.nameSpace.empty()) path.nameSpace = _asked.nameSpace.name();
    if (path.className.empty()) path.className = _asked.definition.name;
}

// Nearly all results of a walk are of the same class as the one before.
WalkSink::Verdict& WalkSink::verdictOn(const ObjectPath& path) {
    if (!_last || _last->className != path.className || _last->nameSpace != path.nameSpace) {
        _last = _judgeAnew(path);
    }
    return *_last;
}

WalkSink::Verdict WalkSink::_judgeAnew(const ObjectPath& path) const {
    const NameSpace* const nameSpace = nameSpaceOf(_repository, _asked, path);
    const Class* const definition = nameSpace ? nameSpace->findClass(path.className) : nullptr;
    const Fit fit = _filter.judge(nameSpace, definition);
    Verdict verdict{path.nameSpace, path.className, definition, fit == Fit::belongs, nullptr, {}};
    if (!_judge) return verdict;
    if (nameSpace && !definition) {
        _judge->tellUnknownClass(provider(), path, nameSpace);
        verdict.isAccepted = false;
    } else if (definition && fit == Fit::misdirected) {
        _judge->tellOtherClass(provider(), *definition, _asked.definition);
    } else if (definition) {
        verdict.rules = &_judge->rulesOf(*definition);
    }
    return verdict;
}

void InstanceWalk::instance(const Instance& instance) {
    if (!isComplete(instance.path)) {
        Instance completed = instance;
        complete(completed.path);
        return this->instance(completed);
    }
    Verdict& verdict = verdictOn(instance.path);
    if (!verdict.isAccepted) return;
    if (!verdict.rules || (verdict.rules->areClean(instance.properties, &verdict.memory) &&
                           verdict.rules->isClean(instance.path, &verdict.memory))) {
        return _sink.deliver(instance, verdict.definition, _selection);
    }
    const auto mended = judge()->mend(provider(), *verdict.rules, instance);
    if (mended) _sink.deliver(*mended, verdict.definition, _selection);
}

void PathWalk::path(const ObjectPath& path) {
    if (!isComplete(path)) {
        ObjectPath completed = path;
        complete(completed);
        return this->path(completed);
    }
    Verdict& verdict = verdictOn(path);
    if (!verdict.isAccepted) return;
    const bool isClean = !verdict.rules || verdict.rules->isClean(path, &verdict.memory) ||
                         !judge()->tellKeys(provider(), *verdict.rules, path);
    if (isClean) _sink.deliver(path);
}

void SingleInstance::instance(const Instance& instance) {
    if (_isDelivered) refuse("more than one instance");
    const std::string& name = instance.className();
    const Class* definition = name.empty() ? &_asked.definition : _asked.nameSpace.findClass(name);
    if (definition && !_asked.nameSpace.isA(definition->name, _asked.definition.name)) {
        refuse("an instance of " + definition->name + " for one of " + _asked.definition.name);
    }
    _isDelivered = true;
    if (!name.empty() && !instance.path.nameSpace.empty() && !instance.path.keys.empty()) {
        return _deliver(instance, definition);
    }
    Instance completed = instance;
    ObjectPath& path = completed.path;
    if (path.nameSpace.empty()) path.nameSpace = _path.nameSpace;
    if (path.className.empty()) path.className = _path.className;
    if (path.keys.empty()) path.keys = _path.keys;
    _deliver(completed, definition);
}

void SingleInstance::_deliver(const Instance& instance, const Class* definition) {
    if (!_judge) return _sink.deliver(instance, definition, _selection);
    if (!definition) {
        _judge->tellUnknownClass(provider(), instance.path);
        refuse("an instance of unknown class " + instance.className());
    }
    const ClassRules& rules = _judge->rulesOf(*definition);
    if (rules.areClean(instance.properties, nullptr) && rules.isClean(instance.path, nullptr)) {
        return _sink.deliver(instance, definition, _selection);
    }
    const auto mended = _judge->mend(provider(), rules, instance);
    if (!mended) refuse("an instance of " + definition->name + " with other keys than the class");
    _sink.deliver(*mended, definition, _selection);
}

void SinglePath::path(const ObjectPath& path) {
    if (_path) refuse("more than one object path");
    _path = path;
}

ObjectPath SinglePath::take() {
    if (!_path) refuse("no object path for what it created");
    return std::move(*_path);
}

ObjectPath SinglePath::takeFor(const Repository& repository, const Target& asked,
                               const ResultJudge* judge) {
    ObjectPath path = take();
    if (path.nameSpace.empty()) path.nameSpace = asked.nameSpace.name();
    if (path.className.empty()) path.className = asked.definition.name;
    if (judge) _hold(repository, asked, path, *judge);
    return path;
}

void SinglePath::_hold(const Repository& repository, const Target& asked, const ObjectPath& path,
                       const ResultJudge& judge) const {
    const NameSpace* const nameSpace = nameSpaceOf(repository, asked, path);
    if (!nameSpace) return;
    const Class* const definition = nameSpace->findClass(path.className);
    if (!definition) {
        judge.tellUnknownClass(provider(), path, nameSpace);
        refuse("a path of unknown class " + path.className);
    }
    if (!nameSpace->isA(definition->name, asked.definition.name)) {
        judge.tellOtherClass(provider(), *definition, asked.definition);
        refuse("a path of " + definition->name + " for one of " + asked.definition.name);
    }
    const ClassRules& rules = judge.rulesOf(*definition);
    if (!rules.isClean(path, nullptr) && judge.tellKeys(provider(), rules, path)) {
        refuse("a path of " + definition->name + " with other keys than the class");
    }
}

void SingleValue::instance(const Instance& instance) { _set(Value::instance(instance)); }

void SingleValue::path(const ObjectPath& path) { _set(Value::reference(path)); }

void SingleValue::data(const Value& value) { _set(value); }

void SingleValue::_set(Value value) {
    if (_value) refuse("more than one return value");
    _value = std::move(value);
}

}  // namespace cimhost
