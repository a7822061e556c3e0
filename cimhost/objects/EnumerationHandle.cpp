#include "cimhost/objects/EnumerationHandle.h"

#include "cimhost/objects/ArrayHandle.h"
#include "cimhost/objects/Entry.h"
#include "cimhost/objects/Values.h"

namespace cimhost {

namespace {

CMPIData getNext(const CMPIEnumeration* enumeration, CMPIStatus* status) noexcept {
    return enter<EnumerationObject>(
        enumeration, status, [](EnumerationObject& object, CMPIrc& code) {
            if (object.position == object.elements.size()) {
                code = CMPI_RC_NO_MORE_ELEMENTS;
                return CMPIData{};
            }
            const CMPIData data = toCmpi(partOf(object), object.elements[object.position]);
            ++object.position;
            return data;
        });
}

CMPIBoolean hasNext(const CMPIEnumeration* enumeration, CMPIStatus* status) noexcept {
    return enter<EnumerationObject>(enumeration, status, [](EnumerationObject& object) {
        return object.position < object.elements.size();
    });
}

CMPIArray* toArray(const CMPIEnumeration* enumeration, CMPIStatus* status) noexcept {
    return enter<EnumerationObject>(enumeration, status, [](EnumerationObject& object) {
        return &make<ArrayObject>(partOf(object), object.elementType, object.elements);
    });
}

template <typename Model, typename Wrap>
CMPIEnumeration* makeOf(const Broker& broker, CimType type, std::vector<Model> models, Wrap wrap) {
    Value::Array elements;
    elements.reserve(models.size());
    for (Model& model : models) elements.push_back(wrap(std::move(model)));
    return &make<EnumerationObject>(Home{broker}, type, std::move(elements));
}

}  // namespace

const CMPIEnumerationFT EnumerationObject::table = {
    CMPICurrentVersion,
    releaseObject<EnumerationObject>,
    cloneObject<EnumerationObject>,
    getNext,
    hasNext,
    toArray,
};

CMPIEnumeration* makeEnumeration(const Broker& broker, std::vector<Instance> instances) {
    return makeOf(broker, CimType::instance, std::move(instances), Value::instance);
}

CMPIEnumeration* makeEnumeration(const Broker& broker, std::vector<ObjectPath> paths) {
    return makeOf(broker, CimType::reference, std::move(paths), Value::reference);
}

}  // namespace cimhost
