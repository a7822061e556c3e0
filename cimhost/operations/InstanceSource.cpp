#include "cimhost/operations/InstanceSource.h"

#include "cimhost/repository/CimError.h"

namespace cimhost {

namespace {

[[noreturn]] void refuseChange(const ObjectPath& path) {
    throw CimError(CimCode::notSupported,
                   "the instances of class " + path.className + " can only be read");
}

}  // namespace

ObjectPath InstanceSource::create(const RequestContext&, const Instance& instance) {
    refuseChange(instance.path);
}

void InstanceSource::modify(const RequestContext&, const Instance& instance) {
    refuseChange(instance.path);
}

void InstanceSource::remove(const RequestContext&, const ObjectPath& path) { refuseChange(path); }

}  // namespace cimhost
