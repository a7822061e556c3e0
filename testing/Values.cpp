#include "testing/cimhost/testing/Values.h"

#include "cimhost/repository/CimError.h"
#include "cimhost/repository/Instance.h"
#include "cimhost/repository/ModelPathText.h"
#include "cimhost/repository/ModelText.h"
#include "cimhost/repository/Names.h"
#include "cimhost/repository/ValueConversion.h"

#include <algorithm>
#include <ostream>

namespace cimtest {
namespace {

using cimhost::CimType;
using cimhost::equalNames;
using Array = cimhost::Value::Array;

const cimhost::Value nullValue;

std::shared_ptr<const cimhost::Value> shared(cimhost::Value model) {
    return std::make_shared<const cimhost::Value>(std::move(model));
}

cimhost::ObjectPath parsed(std::string_view text) {
    try {
        return cimhost::parseModelPath(text);
    } catch (const cimhost::CimError& error) {
        throw Failure(error.what());
    }
}

/// Names or texts that differ do so nowhere that both say something.
bool agree(const std::string& left, const std::string& right) {
    return left.empty() || right.empty() || equalNames(left, right);
}

bool same(const cimhost::Value& left, const cimhost::Value& right);

/// Both hold the same alternative and agree in it.
struct SameAlternative {
    template <typename T>
    bool operator()(const T& left, const T& right) const {
        if constexpr (std::is_same_v<T, std::shared_ptr<const Array>>) {
            return std::equal(left->begin(), left->end(), right->begin(), right->end(), same);
        } else if constexpr (std::is_same_v<T, std::shared_ptr<const cimhost::ObjectPath>>) {
            return Path(*left) == Path(*right);
        } else if constexpr (std::is_same_v<T, std::shared_ptr<const cimhost::Instance>>) {
            return Instance(*left) == Instance(*right);
        } else {
            return left == right;
        }
    }
    bool operator()(std::uint64_t left, std::int64_t right) const {
        return std::cmp_equal(left, right);
    }
    bool operator()(std::int64_t left, std::uint64_t right) const {
        return std::cmp_equal(left, right);
    }
    bool operator()(const std::shared_ptr<const cimhost::ObjectPath>& left,
                    const cimhost::Text& right) const {
        return Path(*left) == Path(right.str());
    }
    bool operator()(const cimhost::Text& left,
                    const std::shared_ptr<const cimhost::ObjectPath>& right) const {
        return (*this)(right, left);
    }
    template <typename Left, typename Right>
    bool operator()(const Left& left, const Right& right) const {
        constexpr bool areNumbers = std::is_arithmetic_v<Left> && std::is_arithmetic_v<Right> &&
                                    !std::is_same_v<Left, bool> && !std::is_same_v<Right, bool>;
        if constexpr (areNumbers) return static_cast<double>(left) == static_cast<double>(right);
        return false;
    }
};

bool same(const cimhost::Value& left, const cimhost::Value& right) {
    return left.isArray() == right.isArray() &&
           std::visit(SameAlternative(), left.data(), right.data());
}

[[noreturn]] void refuse(const std::string& what, std::string_view name,
                         const std::vector<std::string>& names) {
    std::string words = what + " has no " + std::string(name);
    const char* before = "; it has ";
    for (const std::string& each : names) words += std::exchange(before, ", ") + each;
    throw Failure(words);
}

template <typename Held>
const Held& held(const cimhost::Value& value, const char* wanted) {
    const auto* const found = value.get<std::shared_ptr<const Held>>();
    if (!found) throw Failure(cimhost::describe(value) + " is no " + wanted);
    return **found;
}

}  // namespace

Value::Value(double number)
    : _model(shared(cimhost::Value(CimType::real64, cimhost::Value::Data(number)))) {}
Value::Value(const char* text) : Value(std::string_view(text)) {}
Value::Value(std::string_view text) : _model(shared(cimhost::Value::string(std::string(text)))) {}
Value::Value(const Path& path) : _model(shared(cimhost::Value::reference(path.model()))) {}
Value::Value(const Instance& instance)
    : _model(shared(cimhost::Value::instance(instance.model()))) {}
Value::Value(const std::vector<Value>& elements) {
    Array models;
    for (const Value& element : elements) models.push_back(element.model());
    const CimType type = models.empty() ? CimType::string : models.front().type();
    _model = shared(cimhost::Value::array(type, std::move(models)));
}
Value::Value(cimhost::Value model) : _model(shared(std::move(model))) {}

Value Value::_ofBoolean(bool truth) { return Value(cimhost::Value::boolean(truth)); }
Value Value::_ofSigned(long long number) {
    return Value(cimhost::Value::signedInteger(CimType::sint64, number));
}
Value Value::_ofUnsigned(unsigned long long number) {
    return Value(cimhost::Value::unsignedInteger(CimType::uint64, number));
}

bool Value::isNull() const noexcept { return model().isNull(); }

std::string Value::type() const { return cimhost::typeText(model().type(), model().isArray()); }

std::string Value::text() const {
    const auto* const found = model().get<cimhost::Text>();
    return found ? found->str() : cimhost::describe(model());
}

std::vector<Value> Value::elements() const {
    std::vector<Value> all;
    for (const cimhost::Value& element : held<Array>(model(), "array")) all.emplace_back(element);
    return all;
}

Path Value::path() const {
    if (const auto* const found = model().get<cimhost::Text>()) return {found->str()};
    return Path(held<cimhost::ObjectPath>(model(), "reference"));
}

Instance Value::instance() const {
    return Instance(held<cimhost::Instance>(model(), "embedded instance"));
}

const cimhost::Value& Value::model() const noexcept { return _model ? *_model : nullValue; }

bool operator==(const Value& left, const Value& right) {
    if (left.isNull() || right.isNull()) return left.isNull() == right.isNull();
    return same(left.model(), right.model());
}

std::ostream& operator<<(std::ostream& out, const Value& value) {
    return out << cimhost::describe(value.model());
}

Path::Path(std::string_view text) : Path(parsed(text)) {}

Path::Path(const std::string& className, const Named& keys, const std::string& nameSpace) {
    cimhost::ObjectPath made{{}, nameSpace, className, {}};
    for (const auto& [name, value] : keys) made.keys.push_back({name, value.model()});
    _model = std::make_shared<const cimhost::ObjectPath>(std::move(made));
}

Path::Path(cimhost::ObjectPath model)
    : _model(std::make_shared<const cimhost::ObjectPath>(std::move(model))) {}

std::string Path::host() const { return _model->host; }
std::string Path::nameSpace() const { return _model->nameSpace; }
std::string Path::className() const { return _model->className; }

bool Path::has(std::string_view key) const noexcept { return _model->findKey(key) != nullptr; }

Value Path::operator[](std::string_view key) const {
    if (const auto* const found = _model->findKey(key)) return Value(*found);
    std::vector<std::string> names;
    for (const auto& each : _model->keys) names.push_back(each.name.str());
    refuse(str(), key, names);
}

std::string Path::str() const { return cimhost::describe(*_model); }

bool operator==(const Path& left, const Path& right) {
    const auto& mine = left.model();
    const auto& theirs = right.model();
    if (!equalNames(mine.className, theirs.className) || mine.keys.size() != theirs.keys.size() ||
        !agree(mine.nameSpace, theirs.nameSpace) || !agree(mine.host, theirs.host)) {
        return false;
    }
    return std::ranges::all_of(mine.keys, [&](const auto& key) {
        const auto* const other = theirs.findKey(key.name);
        return other && same(key.value, *other);
    });
}

std::ostream& operator<<(std::ostream& out, const Path& path) { return out << path.str(); }

Instance::Instance(const Path& path, const Named& properties) {
    cimhost::Instance made{path.model(), {}};
    for (const auto& [name, value] : properties) made.set(name, value.model());
    _model = std::make_shared<const cimhost::Instance>(std::move(made));
}

Instance::Instance(cimhost::Instance model)
    : _model(std::make_shared<const cimhost::Instance>(std::move(model))) {}

Path Instance::path() const { return Path(_model->path); }
std::string Instance::className() const { return _model->className(); }

bool Instance::has(std::string_view property) const noexcept {
    const auto* const found = _model->find(property);
    return found && !found->value.isNull();
}

Value Instance::operator[](std::string_view property) const {
    if (const auto* const found = _model->find(property)) return Value(found->value);
    std::vector<std::string> names;
    for (const auto& each : _model->properties) names.push_back(each.name.str());
    refuse("an instance of " + className(), property, names);
}

std::string Instance::str() const {
    return cimhost::describe(*_model) + " at " + cimhost::describe(_model->path);
}

bool operator==(const Instance& left, const Instance& right) {
    const auto isIn = [](const Instance& other) {
        return [&other](const auto& each) {
            return each.value.isNull() ||
                   (other.has(each.name) && other[each.name] == Value(each.value));
        };
    };
    const auto& mine = left.model().properties;
    const auto& theirs = right.model().properties;
    return left.path() == right.path() && std::ranges::all_of(mine, isIn(right)) &&
           std::ranges::all_of(theirs, isIn(left));
}

std::ostream& operator<<(std::ostream& out, const Instance& instance) {
    return out << instance.str();
}

Value Answer::operator[](std::string_view output) const {
    std::vector<std::string> names;
    for (const auto& [name, value] : outputs) {
        if (equalNames(name, output)) return value;
        names.push_back(name);
    }
    refuse("the answer", output, names);
}

std::ostream& operator<<(std::ostream& out, const Answer& answer) {
    out << answer.returned;
    for (const auto& [name, value] : answer.outputs) out << ", " << name << " = " << value;
    return out;
}

}  // namespace cimtest
