#pragma once

#include "cimhost/repository/Text.h"

#include <cstdint>
#include <memory>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace cimhost {

struct Instance;
struct ObjectPath;

/// The intrinsic types of CIM (DSP0004, 5.2), with references and embedded instances.
/// A value of type `instance` is a string with the EmbeddedInstance or EmbeddedObject qualifier in
/// MOF.
enum class CimType : std::uint8_t {
    none,
    boolean,
    char16,
    uint8,
    uint16,
    uint32,
    uint64,
    sint8,
    sint16,
    sint32,
    sint64,
    real32,
    real64,
    string,
    dateTime,
    reference,
    instance,
};

/// The type's name as MOF and CIM-XML write it ("uint8", "datetime", ...); "string" for instances.
std::string_view typeName(CimType type) noexcept;

/// The type with this name in any case, or `none`.
CimType typeFromName(std::string_view name) noexcept;

bool isUnsigned(CimType type) noexcept;
bool isSigned(CimType type) noexcept;
bool isReal(CimType type) noexcept;
inline bool isInteger(CimType type) noexcept { return isUnsigned(type) || isSigned(type); }

/// A typed CIM value: NULL, a scalar or an array whose elements may be NULL.
///
/// The alternative held follows the type: bool; std::uint64_t for char16 and unsigned integers;
/// std::int64_t for signed ones; double for reals; Text for string and dateTime (25 characters);
/// shared constant objects for references, embedded instances and the elements of arrays.
/// std::monostate is NULL. A value type: copies are independent, safe to read from several threads.
class Value {
public:
    using Array = std::vector<Value>;
    using Data = std::variant<std::monostate, bool, std::uint64_t, std::int64_t, double, Text,
                              std::shared_ptr<const ObjectPath>, std::shared_ptr<const Instance>,
                              std::shared_ptr<const Array>>;

    Value() = default;
    // Assigned, not constructed: the variant of libstdc++ 12 destroys what was never there when the
    // copy of an alternative throws out of its copy constructor.
    Value(const Value& other) : _type(other._type), _array(other._array) { _data = other._data; }
    Value(Value&&) noexcept = default;
    Value& operator=(const Value&) = default;
    Value& operator=(Value&&) noexcept = default;
    ~Value() = default;
    /// An array when the data is one.
    Value(CimType type, Data data) noexcept
        : _data(std::move(data)),
          _type(type),
          _array(std::holds_alternative<std::shared_ptr<const Array>>(_data)) {}
    Value(CimType type, Array elements)
        : Value(type, Data(std::make_shared<const Array>(std::move(elements)))) {}

    static Value null(CimType type) { return Value(type, std::monostate{}); }
    static Value nullArray(CimType type);
    /// One or the other of the above.
    static Value nullOf(CimType type, bool isArray);
    static Value array(CimType type, Array elements);
    static Value string(Text text) { return Value(CimType::string, std::move(text)); }
    static Value boolean(bool value) { return Value(CimType::boolean, value); }
    static Value unsignedInteger(CimType type, std::uint64_t value) { return Value(type, value); }
    static Value signedInteger(CimType type, std::int64_t value) { return Value(type, value); }
    static Value reference(ObjectPath path);
    static Value instance(Instance instance);

    CimType type() const noexcept { return _type; }
    bool isArray() const noexcept { return _array; }
    bool isNull() const noexcept { return std::holds_alternative<std::monostate>(_data); }
    const Data& data() const noexcept { return _data; }

    /// The alternative held, for an array its elements, or nullptr when the value is NULL or of
    /// another kind.
    template <typename T>
    const T* get() const noexcept {
        if constexpr (std::is_same_v<T, Array>) {
            const auto* const elements = std::get_if<std::shared_ptr<const Array>>(&_data);
            return elements ? elements->get() : nullptr;
        } else {
            return std::get_if<T>(&_data);
        }
    }

    /// Equal type, shape and content. References are equal when class and keys are and the
    /// namespaces do not differ: one without a namespace means that of its reader. Embedded
    /// instances compare by class and properties.
    friend bool operator==(const Value& left, const Value& right);

private:
    // The type lies in what the alignment of the data leaves over.
    [[no_unique_address]] Data _data;
    CimType _type = CimType::none;
    bool _array = false;
};

}  // namespace cimhost
