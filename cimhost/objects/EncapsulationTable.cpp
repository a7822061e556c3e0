#include "cimhost/objects/ArgsHandle.h"
#include "cimhost/objects/ArrayHandle.h"
#include "cimhost/objects/BrokerTables.h"
#include "cimhost/objects/Codepage.h"
#include "cimhost/objects/DateTimeHandle.h"
#include "cimhost/objects/Description.h"
#include "cimhost/objects/Entry.h"
#include "cimhost/objects/EnumerationFilterHandle.h"
#include "cimhost/objects/ErrorHandle.h"
#include "cimhost/objects/InstanceHandle.h"
#include "cimhost/objects/MessageText.h"
#include "cimhost/objects/ObjectPathHandle.h"
#include "cimhost/objects/PropertyListHandle.h"
#include "cimhost/objects/SelectExpHandle.h"
#include "cimhost/objects/StringHandle.h"
#include "cimhost/objects/Values.h"
#include "cimhost/query/WqlParser.h"
#include "cimhost/repository/CimError.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace cimhost {

namespace {

// More elements than any property has; a length out of a provider's mistake must not eat the memory
// of the host.
constexpr CMPICount mostElements = 1U << 22U;

Home factory(const Broker& broker) noexcept { return {broker, Origin::factory}; }

CMPIInstance* newInstance(const CMPIBroker* handle, const CMPIObjectPath* path,
                          CMPIStatus* status) noexcept {
    return enter(handle, status, [&](const Broker& broker) {
        const ObjectPath& model = requiredObject<ObjectPathObject>(path).model.read();
        return &make<InstanceObject>(factory(broker), instanceFor(model));
    });
}

CMPIObjectPath* newObjectPath(const CMPIBroker* handle, const char* nameSpace,
                              const char* className, CMPIStatus* status) noexcept {
    return enter(handle, status, [&](const Broker& broker) {
        // Providers fill the namespace in later, and rely on having got a path.
        return &make<ObjectPathObject>(
            factory(broker),
            ObjectPath{{}, nameSpace ? nameSpace : "", std::string(required(className)), {}});
    });
}

CMPIArgs* newArgs(const CMPIBroker* handle, CMPIStatus* status) noexcept {
    return enter(handle, status, [](const Broker& broker) {
        return &make<ArgsObject>(factory(broker), Arguments{});
    });
}

CMPIString* newString(const CMPIBroker* handle, const char* text, CMPIStatus* status) noexcept {
    return enter(handle, status,
                 [&](const Broker& broker) { return &makeText(factory(broker), required(text)); });
}

CMPIArray* newArray(const CMPIBroker* handle, CMPICount count, CMPIType elementType,
                    CMPIStatus* status) noexcept {
    return enter(handle, status, [&](const Broker& broker) {
        const CimType type = cimType(elementType);
        const bool hasHandles = elementType == CMPI_args || elementType == CMPI_enumeration ||
                                elementType == CMPI_filter;
        if ((elementType & CMPI_ARRAY) != 0 || (type == CimType::none && !hasHandles)) {
            throw Failure{CMPI_RC_ERR_INVALID_DATA_TYPE};
        }
        if (count > mostElements) throw Failure{CMPI_RC_ERR_SERVER_LIMITS_EXCEEDED};
        auto& array = make<ArrayObject>(factory(broker), type,
                                        Value::Array(count, Value::nullOf(type, false)));
        if (hasHandles) array.handleType = elementType;
        return &array;
    });
}

CMPIDateTime* newDateTimeFromBinary(const CMPIBroker* handle, CMPIUint64 microseconds,
                                    CMPIBoolean interval, CMPIStatus* status) noexcept {
    return enter(handle, status, [&](const Broker& broker) {
        const auto text = dateTimeOf(microseconds, interval != 0);
        if (!text) throw Failure{CMPI_RC_ERR_INVALID_PARAMETER};
        return &make<DateTimeObject>(factory(broker), *text);
    });
}

CMPIDateTime* newDateTime(const CMPIBroker* handle, CMPIStatus* status) noexcept {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const auto elapsed = std::chrono::duration_cast<std::chrono::microseconds>(now).count();
    return newDateTimeFromBinary(handle, static_cast<CMPIUint64>(elapsed), false, status);
}

CMPIDateTime* newDateTimeFromChars(const CMPIBroker* handle, const char* text,
                                   CMPIStatus* status) noexcept {
    return enter(handle, status, [&](const Broker& broker) {
        return &makeDateTimeObject(factory(broker), required(text));
    });
}

CMPISelectExp* newSelectExp(const CMPIBroker* handle, const char* text, const char* language,
                            CMPIArray** projection, CMPIStatus* status) noexcept {
    if (projection) *projection = nullptr;
    return enter(handle, status, [&](const Broker& broker) {
        auto query =
            std::make_shared<const WqlQuery>(parseQuery(required(language), required(text)));
        if (projection && query->selection) {
            Value::Array names;
            for (const WqlProperty& property : *query->selection) {
                names.push_back(Value::string(property.text()));
            }
            *projection = &make<ArrayObject>(factory(broker), CimType::string, std::move(names));
        }
        return &make<SelectExpObject>(factory(broker), std::move(query));
    });
}

// A class is of its own kind whether the repository knows it or not.
bool descends(const Broker& broker, const ObjectPath& path, std::string_view ancestor) {
    if (equalNames(path.className, ancestor)) return true;
    const NameSpace& nameSpace = broker.repository().get(path.nameSpace);
    if (nameSpace.findClass(path.className)) return nameSpace.isA(path.className, ancestor);
    throw CimError(CimCode::invalidClass,
                   "class " + path.className + " is not in namespace " + nameSpace.name());
}

CMPIBoolean classPathIsA(const CMPIBroker* handle, const CMPIObjectPath* path,
                         const char* className, CMPIStatus* status) noexcept {
    return enter(handle, status, [&](const Broker& broker) {
        const ObjectPath& model = requiredObject<ObjectPathObject>(path).model.read();
        return descends(broker, model, required(className));
    });
}

const ObjectHeader& requiredHeader(const void* object) {
    if (const ObjectHeader* const header = findHeader(object)) return *header;
    throw Failure{CMPI_RC_ERR_INVALID_HANDLE};
}

CMPIString* toString(const CMPIBroker* handle, const void* object, CMPIStatus* status) noexcept {
    return enter(handle, status, [&](const Broker& broker) {
        return &makeText({broker}, describe(requiredHeader(object)));
    });
}

CMPIBoolean isOfType(const CMPIBroker* handle, const void* object, const char* typeName,
                     CMPIStatus* status) noexcept {
    return enter(handle, status, [&](const Broker&) {
        return typeNameOf(requiredHeader(object).kind()) == required(typeName);
    });
}

CMPIString* getType(const CMPIBroker* handle, const void* object, CMPIStatus* status) noexcept {
    return enter(handle, status, [&](const Broker& broker) {
        return &makeText({broker}, typeNameOf(requiredHeader(object).kind()));
    });
}

// No catalogues are translated: the message is its default text. It is returned even when its
// inserts cannot be read.
CMPIString* message(const CMPIBroker* handle, const char* text, CMPIStatus* status, CMPICount count,
                    va_list arguments) noexcept {
    return enter(handle, status, [&](const Broker& broker, CMPIrc& code) {
        std::string result(required(text));
        try {
            result = expandMessage(result, messageInserts(count, arguments));
        } catch (const Failure& failure) {
            code = failure.code;
        }
        return &makeText({broker}, result);
    });
}

CMPIString* getMessage(const CMPIBroker* handle, const char*, const char* text, CMPIStatus* status,
                       CMPICount count, ...) noexcept {
    va_list arguments;
    va_start(arguments, count);
    CMPIString* const result = message(handle, text, status, count, arguments);
    va_end(arguments);
    return result;
}

// Writes a line of a provider; the string object counts where there is no C text.
CMPIStatus writeLine(const CMPIBroker* handle, std::optional<BrokerLog::Level> level,
                     const char* source, const char* text, const CMPIString* string) noexcept {
    return enter(handle, [&](const Broker& broker, CMPIrc& code) {
        if (!level || (!text && !string)) {
            code = CMPI_RC_ERR_INVALID_PARAMETER;
            return;
        }
        const std::string_view line = text ? text : requiredObject<StringObject>(string).view();
        broker.log().write(*level, source ? source : "provider", line);
    });
}

std::optional<BrokerLog::Level> levelOf(CMPISeverity severity) noexcept {
    switch (severity) {
        case CMPI_SEV_ERROR: return BrokerLog::Level::error;
        case CMPI_SEV_INFO: return BrokerLog::Level::information;
        case CMPI_SEV_WARNING: return BrokerLog::Level::warning;
        case CMPI_DEV_DEBUG: return BrokerLog::Level::debug;
    }
    return std::nullopt;
}

std::optional<BrokerLog::Level> levelOf(CMPILevel level) noexcept {
    switch (level) {
        case CMPI_LEV_INFO: return BrokerLog::Level::information;
        case CMPI_LEV_WARNING: return BrokerLog::Level::warning;
        case CMPI_LEV_VERBOSE: return BrokerLog::Level::debug;
    }
    return std::nullopt;
}

CMPIStatus logMessage(const CMPIBroker* handle, CMPISeverity severity, const char* id,
                      const char* text, const CMPIString* string) noexcept {
    return writeLine(handle, levelOf(severity), id, text, string);
}

CMPIStatus trace(const CMPIBroker* handle, CMPILevel level, const char* component, const char* text,
                 const CMPIString* string) noexcept {
    return writeLine(handle, levelOf(level), component, text, string);
}

CMPIError* newCMPIError(const CMPIBroker* handle, const char* owningEntity, const char* messageId,
                        const char* text, CMPIErrorSeverity severity,
                        CMPIErrorProbableCause probableCause, CMPIrc cimStatus,
                        CMPIStatus* status) noexcept {
    return enter(handle, status, [&](const Broker& broker) {
        return &makeError(factory(broker),
                          {owningEntity, messageId, text, severity, probableCause, cimStatus});
    });
}

CMPIStatus openMessageFile(const CMPIBroker* handle, const char* fileName,
                           CMPIMsgFileHandle* file) noexcept {
    return enter(handle, [&](const Broker&, CMPIrc& code) {
        if (fileName && file) {
            *file = nullptr;  // the sign of a catalogue without a translation
        } else {
            code = CMPI_RC_ERR_INVALID_PARAMETER;
        }
    });
}

CMPIStatus closeMessageFile(const CMPIBroker* handle, CMPIMsgFileHandle file) noexcept {
    return enter(handle, [&](const Broker&, CMPIrc& code) {
        if (file) code = CMPI_RC_ERR_INVALID_HANDLE;
    });
}

CMPIString* getMessage2(const CMPIBroker* handle, const char*, CMPIMsgFileHandle, const char* text,
                        CMPIStatus* status, CMPICount count, ...) noexcept {
    va_list arguments;
    va_start(arguments, count);
    CMPIString* const result = message(handle, text, status, count, arguments);
    va_end(arguments);
    return result;
}

CMPIPropertyList* newPropertyList(const CMPIBroker* handle, const char** properties,
                                  CMPIStatus* status) noexcept {
    return enter(handle, status, [&](const Broker& broker) {
        return &make<PropertyListObject>(factory(broker), namesOf(properties));
    });
}

CMPIString* newStringCP(const CMPIBroker* handle, const char* text, CMPICodepageID codepage,
                        CMPIStatus* status) noexcept {
    return enter(handle, status, [&](const Broker& broker) {
        return &makeText(factory(broker), toUtf8(text, codepage));
    });
}

CMPIEnumerationFilter* newEnumerationFilter(const CMPIBroker* handle, const char* filterLanguage,
                                            const char* filter, CMPIStatus* status) noexcept {
    return enter(handle, status, [&](const Broker& broker, CMPIrc& code) -> CMPIEnumerationFilter* {
        if (!filterLanguage || !filter) return &make<EnumerationFilterObject>(factory(broker));
        code = CMPI_RC_ERR_NOT_SUPPORTED;
        return nullptr;
    });
}

}  // namespace

const CMPIBrokerEncFT encapsulationTable = {
    CMPICurrentVersion,
    newInstance,
    newObjectPath,
    newArgs,
    newString,
    newArray,
    newDateTime,
    newDateTimeFromBinary,
    newDateTimeFromChars,
    newSelectExp,
    classPathIsA,
    toString,
    isOfType,
    getType,
    getMessage,
    logMessage,
    trace,
    newCMPIError,
    openMessageFile,
    closeMessageFile,
    getMessage2,
    newPropertyList,
    newStringCP,
    newEnumerationFilter,
};

}  // namespace cimhost
