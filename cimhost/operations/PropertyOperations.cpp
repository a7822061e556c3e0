#include "cimhost/operations/PropertyOperations.h"

#include "cimhost/objects/Broker.h"
#include "cimhost/operations/Operations.h"
#include "cimhost/operations/Target.h"

#include <utility>

// Single properties are read and written as parts of their instances: MIs for single properties are
// deprecated by CMPI 2.1 and not asked.

namespace cimhost {

namespace {

class OneProperty final : public InstanceSink {
public:
    explicit OneProperty(const PropertyDefinition& property)
        : _name(property.name),
          _value(property.isArray ? Value::nullArray(property.type) : Value::null(property.type)) {}

    void deliver(const Instance& instance, const Class*, const PropertySelection&) override {
        if (const PropertyValue* const found = instance.find(_name)) _value = found->value;
    }

    Value take() { return std::move(_value); }

private:
    const std::string& _name;
    Value _value;
};

}  // namespace

Value readProperty(CimOperations& operations, const Repository& repository,
                   const RequestContext& request, const ObjectPath& path,
                   std::string_view property) {
    const Target target = requireTarget(repository, request, path);
    const PropertyDefinition& declared = target.definition.requireProperty(property);
    InstanceOptions options;
    options.propertyList = {declared.name};
    OneProperty sink(declared);
    operations.getInstance(request, path, options, sink);
    return sink.take();
}

void writeProperty(CimOperations& operations, const Repository& repository,
                   const RequestContext& request, const ObjectPath& path, std::string_view property,
                   Value value) {
    const Target target = requireTarget(repository, request, path);
    const PropertyDefinition& declared = target.definition.requireProperty(property);
    Instance instance;
    instance.path = path;
    instance.set(declared.name, std::move(value));
    operations.modifyInstance(request, instance, std::vector<std::string>{declared.name});
}

Value Operations::getProperty(const RequestContext& request, const ObjectPath& path,
                              std::string_view property) {
    return readProperty(*this, _broker.repository(), request, path, property);
}

void Operations::setProperty(const RequestContext& request, const ObjectPath& path,
                             std::string_view property, Value value) {
    writeProperty(*this, _broker.repository(), request, path, property, std::move(value));
}

}  // namespace cimhost
