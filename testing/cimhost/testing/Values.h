#pragma once

#include <iosfwd>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace cimhost {
class Value;
struct ObjectPath;
struct Instance;
}  // namespace cimhost

/// @file
/// What tests of providers say and see: values, paths and instances of CIM, as plain values that
/// compare and print. What a test gets of one that is not there is a Failure, whose words name what
/// is.
namespace cimtest {

class Value;
class Path;
class Instance;

/// Names with their values: keys, properties, arguments.
using Named = std::vector<std::pair<std::string, Value>>;

/// Why an operation failed. what() is the number of the CIM status code and the words, such as
/// "6 no such instance: ...". Of what is wrong with a test or a provider beyond that the number is
/// 0 and what() the words alone.
class Failure : public std::runtime_error {
public:
    /// @{
    /// `code` is a status code of CIM, the number before the words.
    explicit Failure(const std::string& words) : runtime_error(words) {}
    Failure(int code, const std::string& words)
        : runtime_error(std::to_string(code) + " " + words), _code(code) {}
    /// @}

    /// The number of the CIM status code, or 0.
    int code() const noexcept { return _code; }

private:
    int _code = 0;
};

/// What the call fails with, such as "6 no such instance: ..."; empty when it does not.
template <typename Call>
std::string failureOf(Call call) {
    try {
        call();
    } catch (const Failure& failure) {
        return failure.what();
    }
    return {};
}

/// A CIM value: NULL, a number, a text, a truth, a path, an instance, or an array of these.
///
/// Numbers compare by what they are, whatever their width; texts exactly; arrays element by
/// element. That a property has the type that its class declares is held by the host.
class Value {
public:
    Value() noexcept = default;  ///< NULL
    /// @{
    /// The CIM value of what was given: an array of a vector, a reference of a path, an embedded
    /// instance of an instance.
    template <typename Number>
    requires(std::is_integral_v<Number> || std::is_enum_v<Number>) Value(Number number)
        : Value(_ofNumber(number)) {}
    Value(double number);
    Value(const char* text);
    Value(std::string_view text);
    Value(const std::string& text) : Value(std::string_view(text)) {}
    Value(const Path& path);
    Value(const Instance& instance);
    Value(const std::vector<Value>& elements);
    explicit Value(cimhost::Value model);
    /// @}

    /// Whether it is NULL.
    bool isNull() const noexcept;
    /// As MOF calls it: "uint16", "string[]".
    std::string type() const;
    /// The text alone of a text; anything else as it prints.
    std::string text() const;
    /// The elements of an array. Throws Failure for anything else.
    std::vector<Value> elements() const;
    /// What it refers to; a text is read as a path. Throws Failure for anything else.
    Path path() const;
    /// The embedded instance. Throws Failure for anything else.
    Instance instance() const;

    /// For code of the host itself.
    const cimhost::Value& model() const noexcept;

    /// @{
    /// Compares as said above. Prints as MOF would have it, for messages.
    friend bool operator==(const Value& left, const Value& right);
    friend std::ostream& operator<<(std::ostream& out, const Value& value);
    /// @}

private:
    static Value _ofBoolean(bool truth);
    static Value _ofSigned(long long number);
    static Value _ofUnsigned(unsigned long long number);
    template <typename Number>
    static Value _ofNumber(Number number) {
        if constexpr (std::is_same_v<Number, bool>) {
            return _ofBoolean(number);
        } else if constexpr (std::is_unsigned_v<Number>) {
            return _ofUnsigned(number);
        } else {
            return _ofSigned(static_cast<long long>(number));
        }
    }

    std::shared_ptr<const cimhost::Value> _model;  ///< null for NULL
};

/// An array: arrayOf(2, 3).
template <typename... Elements>
Value arrayOf(const Elements&... elements) {
    return std::vector<Value>{Value(elements)...};
}

/// The path of a class or of an instance. Names compare without regard to case, keys in any order;
/// host and namespace count where both paths have them.
class Path {
public:
    /// @{
    /// As in `//host/root/x:ACME_Port.Name="a"`, of which the class is enough. Throws Failure that
    /// says where the text ceases to be a path.
    Path(std::string_view text);
    Path(const char* text) : Path(std::string_view(text)) {}
    Path(const std::string& text) : Path(std::string_view(text)) {}
    /// @}
    /// Of its parts. Without a namespace it is in that of the host that it is given to.
    Path(const std::string& className, const Named& keys, const std::string& nameSpace = {});
    /// For code of the host itself.
    explicit Path(cimhost::ObjectPath model);

    /// @{
    /// A part of the path; empty where it has none.
    std::string host() const;
    std::string nameSpace() const;
    std::string className() const;
    /// @}
    /// Whether there is a key of that name, in whatever case.
    bool has(std::string_view key) const noexcept;
    /// Throws Failure for a key that it has not.
    Value operator[](std::string_view key) const;

    /// In the form that the constructor reads.
    std::string str() const;
    /// For code of the host itself.
    const cimhost::ObjectPath& model() const noexcept { return *_model; }

    /// @{
    /// Compares as said above. Prints str().
    friend bool operator==(const Path& left, const Path& right);
    friend std::ostream& operator<<(std::ostream& out, const Path& path);
    /// @}

private:
    std::shared_ptr<const cimhost::ObjectPath> _model;
};

/// An instance with its path. A property that is NULL counts as one that is not there: some hosts
/// show all that the class declares. Equal by path, names and values, in any order.
class Instance {
public:
    /// With a class alone for path, the keys are among the properties.
    Instance(const Path& path, const Named& properties);
    /// For code of the host itself.
    explicit Instance(cimhost::Instance model);

    /// Where the instance is.
    Path path() const;
    /// The class that its path names.
    std::string className() const;
    /// Whether there is a property of that name, in whatever case, that is not NULL.
    bool has(std::string_view property) const noexcept;
    /// Throws Failure for a property that it has not.
    Value operator[](std::string_view property) const;

    /// Class, properties and path, for messages.
    std::string str() const;
    /// For code of the host itself.
    const cimhost::Instance& model() const noexcept { return *_model; }

    /// @{
    /// Compares as said above. Prints str().
    friend bool operator==(const Instance& left, const Instance& right);
    friend std::ostream& operator<<(std::ostream& out, const Instance& instance);
    /// @}

private:
    std::shared_ptr<const cimhost::Instance> _model;
};

/// What a method answered.
struct Answer {
    Value returned;  ///< the return value
    Named outputs;   ///< the output arguments

    /// The output argument. Throws Failure for one that was not given.
    Value operator[](std::string_view output) const;

    /// @{
    /// Return value and all arguments count, in order; so they print.
    friend bool operator==(const Answer&, const Answer&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Answer& answer);
    /// @}
};

}  // namespace cimtest
