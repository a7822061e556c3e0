#include "cimhost/objects/ArgsHandle.h"

#include "cimhost/objects/Entry.h"
#include "cimhost/objects/StringHandle.h"
#include "cimhost/objects/Values.h"
#include "cimhost/repository/CimError.h"
#include "cimhost/repository/Names.h"
#include "cimhost/repository/NearestName.h"

namespace cimhost {

namespace {

CMPIStatus addArg(const CMPIArgs* args, const char* name, const CMPIValue* value,
                  CMPIType type) noexcept {
    return enter<ArgsObject>(args, [&](ArgsObject& object) {
        const std::string_view wanted = required(name);
        Value content = valueOf(value, type);
        if (Argument* const argument = findNamed(object.model, wanted)) {
            argument->value = std::move(content);
        } else {
            object.model.push_back({std::string(wanted), std::move(content)});
        }
    });
}

CMPIData getArg(const CMPIArgs* args, const char* name, CMPIStatus* status) noexcept {
    return enter<ArgsObject>(args, status, [&](ArgsObject& object) {
        const Argument* const argument = findNamed(object.model, required(name));
        if (argument) return toCmpi(partOf(object), argument->value);
        throw CimError(CimCode::noSuchProperty,
                       "there is no argument '" + std::string(name) + "'" +
                           didYouMean(name, object.model, &Argument::name));
    });
}

CMPIData getArgAt(const CMPIArgs* args, CMPICount index, CMPIString** name,
                  CMPIStatus* status) noexcept {
    return enter<ArgsObject>(args, status, [&](ArgsObject& object, CMPIrc& code) {
        if (index >= object.model.size()) {
            code = CMPI_RC_ERR_NO_SUCH_PROPERTY;
            return CMPIData{};
        }
        const Argument& argument = object.model[index];
        if (name) *name = &makeText(partOf(object), argument.name);
        return toCmpi(partOf(object), argument.value);
    });
}

CMPICount getArgCount(const CMPIArgs* args, CMPIStatus* status) noexcept {
    return enter<ArgsObject>(args, status, [](ArgsObject& object) {
        return static_cast<CMPICount>(object.model.size());
    });
}

}  // namespace

const CMPIArgsFT ArgsObject::table = {
    CMPICurrentVersion,
    releaseObject<ArgsObject>,
    cloneObject<ArgsObject>,
    addArg,
    getArg,
    getArgAt,
    getArgCount,
};

CMPIArgs* makeArgs(const Broker& broker, Arguments arguments) {
    return &make<ArgsObject>(Home{broker}, std::move(arguments));
}

const Arguments& modelOf(const CMPIArgs* arguments) {
    if (const auto* const object = findObject<ArgsObject>(arguments)) return object->model;
    throw CimError(CimCode::failed, "an argument container of this broker was expected");
}

}  // namespace cimhost
