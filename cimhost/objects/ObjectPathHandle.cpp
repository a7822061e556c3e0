#include "cimhost/objects/ObjectPathHandle.h"

#include "cimhost/objects/Description.h"
#include "cimhost/objects/Entry.h"
#include "cimhost/objects/StringHandle.h"
#include "cimhost/objects/Values.h"
#include "cimhost/repository/CimError.h"

#include <unistd.h>

#include <array>

namespace cimhost {

namespace {

using TextMember = std::string ObjectPath::*;

template <TextMember member>
CMPIStatus setText(const CMPIObjectPath* path, const char* text) noexcept {
    return enter<ObjectPathObject>(
        path, [&](ObjectPathObject& object) { object.model.write().*member = required(text); });
}

template <TextMember member>
CMPIString* getText(const CMPIObjectPath* path, CMPIStatus* status) noexcept {
    return enter<ObjectPathObject>(path, status, [](ObjectPathObject& object) {
        return &makeText(partOf(object), object.model.read().*member);
    });
}

CMPIStatus addKey(const CMPIObjectPath* path, const char* name, const CMPIValue* value,
                  CMPIType type) noexcept {
    return enter<ObjectPathObject>(path, [&](ObjectPathObject& object, CMPIrc& code) {
        const std::string_view key = required(name);
        Value keyValue = valueOf(value, type);
        if (keyValue.isNull()) {
            code = CMPI_RC_ERR_INVALID_PARAMETER;
        } else if (keyValue.isArray()) {
            code = CMPI_RC_ERR_INVALID_DATA_TYPE;
        } else {
            object.model.write().setKey(key, std::move(keyValue));
        }
    });
}

CMPIData getKey(const CMPIObjectPath* path, const char* name, CMPIStatus* status) noexcept {
    return enter<ObjectPathObject>(path, status, [&](ObjectPathObject& object, CMPIrc& code) {
        const Value* const key = object.model.read().findKey(required(name));
        if (key) return asKey(toCmpi(partOf(object), *key));
        code = CMPI_RC_ERR_NO_SUCH_PROPERTY;
        return CMPIData{};
    });
}

CMPIData getKeyAt(const CMPIObjectPath* path, CMPICount index, CMPIString** name,
                  CMPIStatus* status) noexcept {
    return enter<ObjectPathObject>(path, status, [&](ObjectPathObject& object, CMPIrc& code) {
        const std::vector<KeyBinding>& keys = object.model.read().keys;
        if (index >= keys.size()) {
            code = CMPI_RC_ERR_NO_SUCH_PROPERTY;
            return CMPIData{};
        }
        const Home home = partOf(object);
        if (name) *name = &makeText(home, keys[index].name);
        return asKey(toCmpi(home, keys[index].value));
    });
}

CMPICount getKeyCount(const CMPIObjectPath* path, CMPIStatus* status) noexcept {
    return enter<ObjectPathObject>(path, status, [](ObjectPathObject& object) {
        return static_cast<CMPICount>(object.model.read().keys.size());
    });
}

CMPIStatus setNameSpaceFromObjectPath(const CMPIObjectPath* path,
                                      const CMPIObjectPath* source) noexcept {
    return enter<ObjectPathObject>(path, [&](ObjectPathObject& object) {
        // Source and target may be one object: look at the source when the target is its own.
        ObjectPath& to = object.model.write();
        const ObjectPath& from = requiredObject<ObjectPathObject>(source).model.read();
        to.nameSpace = from.nameSpace;
        to.className = from.className;
    });
}

CMPIStatus setHostAndNameSpaceFromObjectPath(const CMPIObjectPath* path,
                                             const CMPIObjectPath* source) noexcept {
    return enter<ObjectPathObject>(path, [&](ObjectPathObject& object) {
        // Source and target may be one object: look at the source when the target is its own.
        ObjectPath& to = object.model.write();
        const ObjectPath& from = requiredObject<ObjectPathObject>(source).model.read();
        to.host = from.host;
        to.nameSpace = from.nameSpace;
        to.className = from.className;
    });
}

CMPIString* toString(const CMPIObjectPath* path, CMPIStatus* status) noexcept {
    return enter<ObjectPathObject>(path, status, [](ObjectPathObject& object) {
        return &makeText(partOf(object), describe(object.model.read()));
    });
}

}  // namespace

const CMPIObjectPathFT ObjectPathObject::table = {
    CMPICurrentVersion,
    releaseObject<ObjectPathObject>,
    cloneObject<ObjectPathObject>,
    setText<&ObjectPath::nameSpace>,
    getText<&ObjectPath::nameSpace>,
    setText<&ObjectPath::host>,
    getText<&ObjectPath::host>,
    setText<&ObjectPath::className>,
    getText<&ObjectPath::className>,
    addKey,
    getKey,
    getKeyAt,
    getKeyCount,
    setNameSpaceFromObjectPath,
    setHostAndNameSpaceFromObjectPath,
    classQualifier,
    propertyQualifier,
    methodQualifier,
    parameterQualifier,
    toString,
};

CMPIObjectPath* makeObjectPath(const Broker& broker, ObjectPath path) {
    return &make<ObjectPathObject>(Home{broker}, std::move(path));
}

CMPIObjectPath* makeRequestPath(const Broker& broker, ObjectPath path) {
    if (path.host.empty() && broker.manner().has(Habit::putsHostIntoRequests)) {
        std::array<char, 256> name{};
        if (gethostname(name.data(), name.size() - 1) == 0) path.host = name.data();
    }
    return makeObjectPath(broker, std::move(path));
}

const ObjectPath& modelOf(const CMPIObjectPath* path) {
    if (const auto* const object = findObject<ObjectPathObject>(path)) return object->model.read();
    throw CimError(CimCode::failed, "an object path of this broker was expected");
}

}  // namespace cimhost
