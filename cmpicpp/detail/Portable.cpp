#include "cmpicpp/detail/Portable.h"

#include "cmpicpp/CmpiData.h"
#include "cmpicpp/detail/Calls.h"
#include "cmpicpp/detail/DataKind.h"

#include <array>

namespace CmpiCpp {

namespace {

/// What a character may be in a name, by its byte.
enum NamePlace : unsigned char { nowhere = 0, behind = 1, anywhere = 3 };

constexpr std::array<NamePlace, 256> namePlaces = [] {
    std::array<NamePlace, 256> places{};
    for (unsigned byte = 0; byte < places.size(); ++byte) {
        const bool letter = (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
        if (letter || byte == '_' || byte >= 0x80) places[byte] = anywhere;
        if (byte >= '0' && byte <= '9') places[byte] = behind;
    }
    return places;
}();

NamePlace placeOf(char character) noexcept {
    return namePlaces[static_cast<unsigned char>(character)];
}

bool isName(const char* text) noexcept {
    if (placeOf(*text) != anywhere) return false;
    while (placeOf(*text) != nowhere) ++text;
    return *text == '\0';
}

bool isObject(CMPIType type) noexcept {
    return type == CMPI_string || type == CMPI_dateTime || type == CMPI_ref ||
           type == CMPI_instance;
}

bool isNull(const CMPIData& data) noexcept { return kindOf(data) == DataKind::null; }

void copyKeys(const CMPIObjectPath* from, CMPIObjectPath* to) {
    forEachKey(from, [to](const CMPIString* name, const CMPIData& key) {
        tell(to->ft->addKey, to, charsOf(name), &key.value, key.type);
        return true;
    });
}

CMPIObjectPath* copyOf(const CMPIBroker* broker, const CMPIObjectPath* path) {
    const CMPIString* const nameSpace = ask(path->ft->getNameSpace, path);
    const CMPIString* const className = ask(path->ft->getClassName, path);
    CMPIObjectPath* const copy = made(
        ask(broker->eft->newObjectPath, broker, charsOf(nameSpace), charsOf(className)), "path");
    const char* const host = charsOf(ask(path->ft->getHostname, path));
    if (*host != '\0') tell(copy->ft->setHostname, copy, host);
    copyKeys(path, copy);
    return copy;
}

CMPIInstance* copyOf(const CMPIBroker* broker, const CMPIInstance* instance) {
    const CMPIObjectPath* const path = made(ask(instance->ft->getObjectPath, instance), "path");
    CMPIInstance* const copy =
        made(ask(broker->eft->newInstance, broker, copyOf(broker, path)), "instance");
    const CMPICount count = ask(instance->ft->getPropertyCount, instance);
    for (CMPICount index = 0; index < count; ++index) {
        CMPIString* name = nullptr;
        const CMPIData data = ask(instance->ft->getPropertyAt, instance, index, &name);
        tell(copy->ft->setProperty, copy, charsOf(name), isNull(data) ? nullptr : &data.value,
             data.type);
    }
    return copy;
}

CMPIDateTime* copyOf(const CMPIBroker* broker, const CMPIDateTime* dateTime) {
    const CMPIString* const text = ask(dateTime->ft->getStringFormat, dateTime);
    return made(ask(broker->eft->newDateTimeFromChars, broker, charsOf(text)), "datetime");
}

CMPIString* copyOf(const CMPIBroker* broker, const CMPIString* text) {
    return made(ask(broker->eft->newString, broker, charsOf(text)), "string");
}

}  // namespace

const char* legalName(const char* name) {
    if (name && isName(name)) return name;
    throw CmpiStatus(CMPI_RC_ERR_INVALID_PARAMETER, "No name: '" + toString(name) + "'");
}

const char** legalNames(const char** names) {
    for (const char** name = names; name && *name; ++name) legalName(*name);
    return names;
}

void requireNoNullObjects(const CMPIValue* value, CMPIType type) {
    if (!value || (type & CMPI_ARRAY) == 0 || !isObject(type & ~CMPI_ARRAY)) return;
    const CMPIArray* const array = value->array;
    const CMPICount size = ask(array->ft->getSize, array);
    for (CMPICount index = 0; index < size; ++index) {
        if (!isNull(ask(array->ft->getElementAt, array, index))) continue;
        throw CmpiStatus(CMPI_RC_ERR_INVALID_PARAMETER, std::string("An array with a NULL ") +
                                                            CmpiData::typeToString(type) +
                                                            " cannot be passed on");
    }
}

CMPIValue untilTheCallEnds(const CMPIBroker* broker, const CMPIValue& value, CMPIType type) {
    CMPIValue copy = value;
    if (type == CMPI_ref) copy.ref = copyOf(required(broker), value.ref);
    if (type == CMPI_instance) copy.inst = copyOf(required(broker), value.inst);
    if (type == CMPI_string) copy.string = copyOf(required(broker), value.string);
    if (type == CMPI_dateTime) copy.dateTime = copyOf(required(broker), value.dateTime);
    return copy;
}

}  // namespace CmpiCpp
