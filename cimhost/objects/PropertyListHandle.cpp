#include "cimhost/objects/PropertyListHandle.h"

#include "cimhost/objects/Entry.h"
#include "cimhost/repository/Names.h"

#include <algorithm>

namespace cimhost {

namespace {

CMPIBoolean isPropertyInList(const CMPIPropertyList* list, const char* name,
                             CMPIStatus* status) noexcept {
    return enter<PropertyListObject>(list, status, [&](PropertyListObject& object) {
        const std::string_view wanted = required(name);
        return !object.names || containsName(*object.names, wanted);
    });
}

const char** getProperties(const CMPIPropertyList* list, CMPIStatus* status) noexcept {
    return enter<PropertyListObject>(list, status, [](PropertyListObject& object) -> const char** {
        return object.names ? object.pointers.data() : nullptr;
    });
}

}  // namespace

const CMPIPropertyListFT PropertyListObject::table = {
    CMPICurrentVersion,
    releaseObject<PropertyListObject>,
    cloneObject<PropertyListObject>,
    isPropertyInList,
    getProperties,
};

PropertyListObject::PropertyListObject(std::optional<std::vector<std::string>> list)
    : names(std::move(list)) {
    if (!names) return;
    for (const std::string& name : *names) pointers.push_back(name.c_str());
    pointers.push_back(nullptr);
}

}  // namespace cimhost
