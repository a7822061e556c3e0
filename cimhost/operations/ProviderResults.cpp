#include "cimhost/operations/ProviderResults.h"

#include "cimhost/repository/CimError.h"
#include "cimhost/repository/Names.h"

#include <utility>

namespace cimhost {

void ProviderSink::instance(const Instance&) { refuse("an instance, which is no result of this"); }

void ProviderSink::path(const ObjectPath&) { refuse("an object path, which is no result of this"); }

void ProviderSink::data(const Value&) { refuse("a plain value, which is no result of this"); }

void ProviderSink::refuse(const std::string& what) const {
    throw CimError(CimCode::failed, "provider " + std::string(_provider) + " delivered " + what);
}

bool EnumerationFilter::accepts(const NameSpace* nameSpace, const Class* definition) const {
    if (!definition || nameSpace != &_asked.nameSpace) return true;
    if (definition == &_asked.definition) return true;
    if (!nameSpace->isA(definition->name, _asked.definition.name)) return false;
    return !_servers.of(ProviderType::instance, {*nameSpace, *definition});
}

bool ClassFilter::accepts(const NameSpace* nameSpace, const Class* definition) const {
    if (_className.empty() || !definition) return true;
    return nameSpace->isA(definition->name, _className);
}

bool WalkSink::isComplete(const ObjectPath& path) const noexcept {
    return !path.nameSpace.empty() && !path.className.empty();
}

void WalkSink::complete(ObjectPath& path) const {
    if (path.nameSpace.empty()) path.nameSpace = _asked.nameSpace.name();
    if (path.className.empty()) path.className = _asked.definition.name;
}

// Nearly all results of a walk are of the same class as the one before.
const WalkSink::Verdict& WalkSink::judge(const ObjectPath& path) {
    if (!_last || _last->className != path.className || _last->nameSpace != path.nameSpace) {
        _last = _judgeAnew(path);
    }
    return *_last;
}

WalkSink::Verdict WalkSink::_judgeAnew(const ObjectPath& path) const {
    const NameSpace* const nameSpace = equalNames(path.nameSpace, _asked.nameSpace.name())
                                           ? &_asked.nameSpace
                                           : _repository.find(path.nameSpace);
    const Class* const definition = nameSpace ? nameSpace->findClass(path.className) : nullptr;
    return {path.nameSpace, path.className, definition, _filter.accepts(nameSpace, definition)};
}

void InstanceWalk::instance(const Instance& instance) {
    if (!isComplete(instance.path)) {
        Instance completed = instance;
        complete(completed.path);
        return this->instance(completed);
    }
    const Verdict& verdict = judge(instance.path);
    if (verdict.isAccepted) _sink.deliver(instance, verdict.definition, _selection);
}

void PathWalk::path(const ObjectPath& path) {
    if (!isComplete(path)) {
        ObjectPath completed = path;
        complete(completed);
        return this->path(completed);
    }
    if (judge(path).isAccepted) _sink.deliver(path);
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
        _sink.deliver(instance, definition, _selection);
        return;
    }
    Instance completed = instance;
    ObjectPath& path = completed.path;
    if (path.nameSpace.empty()) path.nameSpace = _path.nameSpace;
    if (path.className.empty()) path.className = _path.className;
    if (path.keys.empty()) path.keys = _path.keys;
    _sink.deliver(completed, definition, _selection);
}

void SinglePath::path(const ObjectPath& path) {
    if (_path) refuse("more than one object path");
    _path = path;
}

ObjectPath SinglePath::take() {
    if (!_path) refuse("no object path for what it created");
    return std::move(*_path);
}

void SingleValue::instance(const Instance& instance) { _set(Value::instance(instance)); }

void SingleValue::path(const ObjectPath& path) { _set(Value::reference(path)); }

void SingleValue::data(const Value& value) { _set(value); }

void SingleValue::_set(Value value) {
    if (_value) refuse("more than one return value");
    _value = std::move(value);
}

}  // namespace cimhost
