#include "cimhost/repository/Value.h"

#include "cimhost/repository/Instance.h"
#include "cimhost/repository/Names.h"

#include <algorithm>
#include <array>
#include <type_traits>

namespace cimhost {
namespace {

struct TypeRow {
    CimType type;
    std::string_view name;
};

constexpr auto typeRows = std::to_array<TypeRow>({
    {CimType::boolean, "boolean"},
    {CimType::char16, "char16"},
    {CimType::uint8, "uint8"},
    {CimType::uint16, "uint16"},
    {CimType::uint32, "uint32"},
    {CimType::uint64, "uint64"},
    {CimType::sint8, "sint8"},
    {CimType::sint16, "sint16"},
    {CimType::sint32, "sint32"},
    {CimType::sint64, "sint64"},
    {CimType::real32, "real32"},
    {CimType::real64, "real64"},
    {CimType::string, "string"},
    {CimType::dateTime, "datetime"},
    {CimType::reference, "reference"},
});

bool compatibleNameSpaces(std::string_view left, std::string_view right) noexcept {
    left = trimmedSlashes(left);
    right = trimmedSlashes(right);
    return left.empty() || right.empty() || equalNames(left, right);
}

bool equalPaths(const ObjectPath& left, const ObjectPath& right) {
    return compatibleNameSpaces(left.nameSpace, right.nameSpace) && sameModelPath(left, right);
}

bool equalInstances(const Instance& left, const Instance& right) {
    if (!equalNames(left.className(), right.className())) return false;
    if (left.properties.size() != right.properties.size()) return false;
    return std::ranges::all_of(left.properties, [&right](const auto& each) {
        const PropertyValue* const other = right.find(each.name);
        return other && other->value == each.value;
    });
}

}  // namespace

std::string_view typeName(CimType type) noexcept {
    if (type == CimType::instance) return "string";
    const auto* const row = std::ranges::find(typeRows, type, &TypeRow::type);
    return row == typeRows.end() ? std::string_view("none") : row->name;
}

CimType typeFromName(std::string_view name) noexcept {
    const TypeRow* const row = findNamed(typeRows, name);
    return row ? row->type : CimType::none;
}

bool isUnsigned(CimType type) noexcept { return type >= CimType::uint8 && type <= CimType::uint64; }

bool isSigned(CimType type) noexcept { return type >= CimType::sint8 && type <= CimType::sint64; }

bool isReal(CimType type) noexcept { return type == CimType::real32 || type == CimType::real64; }

Value Value::nullArray(CimType type) { return nullOf(type, true); }

Value Value::nullOf(CimType type, bool isArray) {
    Value value;
    value._type = type;
    value._array = isArray;
    return value;
}

Value Value::array(CimType type, Array elements) { return Value(type, std::move(elements)); }

Value Value::reference(ObjectPath path) {
    return Value(CimType::reference, std::make_shared<const ObjectPath>(std::move(path)));
}

Value Value::instance(Instance instance) {
    return Value(CimType::instance, std::make_shared<const Instance>(std::move(instance)));
}

bool operator==(const Value& left, const Value& right) {
    if (left._type != right._type || left._array != right._array) return false;
    if (left._data.index() != right._data.index()) return false;
    return std::visit(
        [&right](const auto& held) {
            using Held = std::decay_t<decltype(held)>;
            const Held& other = *std::get_if<Held>(&right._data);
            if constexpr (std::is_same_v<Held, std::shared_ptr<const ObjectPath>>) {
                return held == other || (held && other && equalPaths(*held, *other));
            } else if constexpr (std::is_same_v<Held, std::shared_ptr<const Instance>>) {
                return held == other || (held && other && equalInstances(*held, *other));
            } else if constexpr (std::is_same_v<Held, std::shared_ptr<const Value::Array>>) {
                return held == other || *held == *other;
            } else {
                return held == other;
            }
        },
        left._data);
}

}  // namespace cimhost
