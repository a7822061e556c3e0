#include "cimhost/objects/Values.h"

#include "cimhost/objects/ArrayHandle.h"
#include "cimhost/objects/DateTimeHandle.h"
#include "cimhost/objects/Entry.h"
#include "cimhost/objects/InstanceHandle.h"
#include "cimhost/objects/MannerTables.h"
#include "cimhost/objects/ObjectPathHandle.h"
#include "cimhost/objects/StringHandle.h"
#include "cimhost/repository/CimError.h"

#include <array>
#include <cstdint>

namespace cimhost {

namespace {

struct TypeRow {
    CimType model;
    CMPIType code;
};

constexpr auto typeRows = std::to_array<TypeRow>({
    {CimType::none, CMPI_null},
    {CimType::boolean, CMPI_boolean},
    {CimType::char16, CMPI_char16},
    {CimType::uint8, CMPI_uint8},
    {CimType::uint16, CMPI_uint16},
    {CimType::uint32, CMPI_uint32},
    {CimType::uint64, CMPI_uint64},
    {CimType::sint8, CMPI_sint8},
    {CimType::sint16, CMPI_sint16},
    {CimType::sint32, CMPI_sint32},
    {CimType::sint64, CMPI_sint64},
    {CimType::real32, CMPI_real32},
    {CimType::real64, CMPI_real64},
    {CimType::string, CMPI_string},
    {CimType::dateTime, CMPI_dateTime},
    {CimType::reference, CMPI_ref},
    {CimType::instance, CMPI_instance},
});

// The way back from a code that is no array's. Not a search of the rows: it is asked for every
// value that a provider sets.
constexpr CimType modelTypeOf(int code) noexcept {
    switch (code) {
        case CMPI_boolean: return CimType::boolean;
        case CMPI_char16: return CimType::char16;
        case CMPI_uint8: return CimType::uint8;
        case CMPI_uint16: return CimType::uint16;
        case CMPI_uint32: return CimType::uint32;
        case CMPI_uint64: return CimType::uint64;
        case CMPI_sint8: return CimType::sint8;
        case CMPI_sint16: return CimType::sint16;
        case CMPI_sint32: return CimType::sint32;
        case CMPI_sint64: return CimType::sint64;
        case CMPI_real32: return CimType::real32;
        case CMPI_real64: return CimType::real64;
        case CMPI_string:
        case CMPI_chars: return CimType::string;
        case CMPI_dateTime: return CimType::dateTime;
        case CMPI_ref: return CimType::reference;
        case CMPI_instance: return CimType::instance;
        default: return CimType::none;
    }
}

// The row of a type is found by its place.
static_assert([] {
    for (std::size_t i = 0; i < typeRows.size(); ++i) {
        if (static_cast<std::size_t>(typeRows[i].model) != i) return false;
        if (modelTypeOf(typeRows[i].code) != typeRows[i].model) return false;
    }
    return true;
}());

constexpr bool isArrayCode(CMPIType type) noexcept { return (type & CMPI_ARRAY) != 0; }

template <typename Number, typename Held>
Number numberIn(const Value& value) noexcept {
    const Held* const held = value.get<Held>();
    return held ? static_cast<Number>(*held) : Number{};
}

CMPIValue scalarToCmpi(const Home& home, const Value& value) {
    CMPIValue result{};
    switch (value.type()) {
        case CimType::none: break;
        case CimType::boolean: result.boolean = numberIn<CMPIBoolean, bool>(value); break;
        case CimType::char16: result.char16 = numberIn<CMPIChar16, std::uint64_t>(value); break;
        case CimType::uint8: result.uint8 = numberIn<CMPIUint8, std::uint64_t>(value); break;
        case CimType::uint16: result.uint16 = numberIn<CMPIUint16, std::uint64_t>(value); break;
        case CimType::uint32: result.uint32 = numberIn<CMPIUint32, std::uint64_t>(value); break;
        case CimType::uint64: result.uint64 = numberIn<CMPIUint64, std::uint64_t>(value); break;
        case CimType::sint8: result.sint8 = numberIn<CMPISint8, std::int64_t>(value); break;
        case CimType::sint16: result.sint16 = numberIn<CMPISint16, std::int64_t>(value); break;
        case CimType::sint32: result.sint32 = numberIn<CMPISint32, std::int64_t>(value); break;
        case CimType::sint64: result.sint64 = numberIn<CMPISint64, std::int64_t>(value); break;
        case CimType::real32: result.real32 = numberIn<CMPIReal32, double>(value); break;
        case CimType::real64: result.real64 = numberIn<CMPIReal64, double>(value); break;
        case CimType::string: result.string = &makeText(home, *value.get<Text>()); break;
        case CimType::dateTime:
            result.dateTime = &makeDateTimeObject(home, *value.get<Text>());
            break;
        case CimType::reference:
            result.ref =
                &make<ObjectPathObject>(home, *value.get<std::shared_ptr<const ObjectPath>>());
            break;
        case CimType::instance:
            result.inst =
                &make<InstanceObject>(home, *value.get<std::shared_ptr<const Instance>>());
            break;
    }
    return result;
}

Value arrayValue(CimType type, const CMPIArray* handle) {
    if (!handle) return Value::nullArray(type);
    const ArrayObject& array = requiredObject<ArrayObject>(handle);
    endOnDanglingArray(array);
    if (array.elementType != type) throw Failure{CMPI_RC_ERR_TYPE_MISMATCH};
    return Value::array(type, array.elements);
}

template <typename Object, typename Content>
Value objectValue(CimType type, const CMPIValue* value, Content&& content) {
    const auto* const handle = readMember<const typename Object::Handle*>(value);
    return handle ? Value(type, content(requiredObject<Object>(handle))) : Value::null(type);
}

template <typename Object>
Value textOf(CimType type, const CMPIValue* value) {
    return objectValue<Object>(type, value,
                               [](const Object& object) { return Text(object.view()); });
}

template <typename Number>
Value unsignedValue(CimType type, const CMPIValue* value) noexcept {
    return Value::unsignedInteger(type, readMember<Number>(value));
}

template <typename Number>
Value signedValue(CimType type, const CMPIValue* value) noexcept {
    return Value::signedInteger(type, readMember<Number>(value));
}

Value scalarValue(CMPIType code, const CMPIValue* value) {
    const CimType type = modelTypeOf(code);
    switch (code) {
        case CMPI_boolean: return Value::boolean(readMember<CMPIBoolean>(value) != 0);
        case CMPI_char16: return unsignedValue<CMPIChar16>(type, value);
        case CMPI_uint8: return unsignedValue<CMPIUint8>(type, value);
        case CMPI_uint16: return unsignedValue<CMPIUint16>(type, value);
        case CMPI_uint32: return unsignedValue<CMPIUint32>(type, value);
        case CMPI_uint64: return unsignedValue<CMPIUint64>(type, value);
        case CMPI_sint8: return signedValue<CMPISint8>(type, value);
        case CMPI_sint16: return signedValue<CMPISint16>(type, value);
        case CMPI_sint32: return signedValue<CMPISint32>(type, value);
        case CMPI_sint64: return signedValue<CMPISint64>(type, value);
        case CMPI_real32: return Value(type, static_cast<double>(readMember<CMPIReal32>(value)));
        case CMPI_real64: return Value(type, readMember<CMPIReal64>(value));
        case CMPI_string: return textOf<StringObject>(type, value);
        case CMPI_dateTime: return textOf<DateTimeObject>(type, value);
        case CMPI_ref:
            return objectValue<ObjectPathObject>(
                type, value, [](ObjectPathObject& path) { return path.model.share(); });
        case CMPI_instance:
            return objectValue<InstanceObject>(
                type, value, [](InstanceObject& instance) { return instance.share(); });
        default: throw Failure{CMPI_RC_ERR_INVALID_DATA_TYPE};
    }
}

}  // namespace

CMPIType cmpiType(CimType type, bool isArray) noexcept {
    const CMPIType code = typeRows[static_cast<std::size_t>(type)].code;
    return isArray ? static_cast<CMPIType>(code | CMPI_ARRAY) : code;
}

CimType cimType(CMPIType type) noexcept { return modelTypeOf(type & ~CMPI_ARRAY); }

CMPIData toCmpi(const Home& home, const Value& value) {
    CMPIData data{cmpiType(value.type(), value.isArray()), CMPI_goodValue, {}};
    if (value.isNull()) {
        data.state = CMPI_nullValue;
    } else if (value.isArray()) {
        data.value.array = &make<ArrayObject>(home, value.type(), *value.get<Value::Array>());
    } else {
        data.value = scalarToCmpi(home, value);
    }
    return data;
}

CMPIData toCmpi(const Broker& broker, const Value& value) { return toCmpi(Home{broker}, value); }

Value valueOf(const CMPIValue* value, CMPIType type) {
    // Not a CMPIValue at all, so it is not looked at as one.
    if (value && type == CMPI_chars) return Value::string(reinterpret_cast<const char*>(value));
    if (value && !isArrayCode(type)) return scalarValue(type, value);
    const CimType model = cimType(type);
    if (model == CimType::none) throw Failure{CMPI_RC_ERR_INVALID_DATA_TYPE};
    return value ? arrayValue(model, readMember<const CMPIArray*>(value))
                 : Value::nullOf(model, isArrayCode(type));
}

Value fromCmpi(const CMPIValue* value, CMPIType type) {
    try {
        return valueOf(value, type);
    } catch (const Failure& failure) {
        if (failure.code == CMPI_RC_ERR_INVALID_HANDLE) {
            throw CimError(CimCode::failed, "a value holds an object that is not of this broker");
        }
        throw CimError(CimCode::typeMismatch,
                       "type code " + std::to_string(type) + " does not fit the value");
    }
}

std::optional<std::vector<std::string>> namesOf(const char** names) {
    if (!names) return std::nullopt;
    std::vector<std::string> result;
    for (; *names; ++names) result.emplace_back(*names);
    return result;
}

}  // namespace cimhost
