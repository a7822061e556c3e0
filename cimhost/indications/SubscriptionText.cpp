#include "cimhost/indications/SubscriptionText.h"

#include "cimhost/objects/Description.h"
#include "cimhost/repository/Names.h"
#include "cimhost/repository/Utf8.h"

#include <charconv>
#include <utility>

namespace cimhost {

namespace {

constexpr std::string_view header = "cimhost subscriptions 1";
constexpr std::string_view indent = "    ";

std::string escaped(std::string_view text) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string result = "\"";
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x20 || byte == 0x7F) {
            result.append({'\\', 'x', digits[byte >> 4U], digits[byte & 15U]});
        } else {
            if (character == '"' || character == '\\') result += '\\';
            result += character;
        }
    }
    return result += '"';
}

std::string formatValue(const Value& value) {
    if (const auto* const elements = value.get<Value::Array>()) {
        std::string result = "{";
        for (const Value& element : *elements) {
            if (result.size() > 1) result += ", ";
            result += formatValue(element);
        }
        return result + "}";
    }
    if (const auto* const text = value.get<Text>()) return escaped(*text);
    if (const auto* const path = value.get<std::shared_ptr<const ObjectPath>>()) {
        return escaped(describe(**path));
    }
    return describe(value);
}

/// The value that a line ends with.
class ValueReader {
public:
    ValueReader(std::string_view text, std::size_t line) : _rest(text), _line(line) {}

    Value read() {
        Value value = _rest.starts_with('{') ? _array() : _scalar();
        if (!_rest.empty()) _refuse("something follows the value");
        return value;
    }

private:
    [[noreturn]] void _refuse(const std::string& message) const {
        throw SubscriptionTextError(_line, message);
    }

    bool _accept(std::string_view text) {
        if (!_rest.starts_with(text)) return false;
        _rest.remove_prefix(text.size());
        return true;
    }

    Value _array() {
        Value::Array elements;
        _accept("{");
        while (!_accept("}")) {
            if (!elements.empty() && !_accept(", ")) _refuse("an array is not closed");
            elements.push_back(_scalar());
        }
        const CimType type = elements.empty() ? CimType::string : elements.front().type();
        return Value::array(type, std::move(elements));
    }

    Value _scalar() {
        if (_accept("NULL")) return Value::null(CimType::string);
        if (_accept("TRUE")) return Value::boolean(true);
        if (_accept("FALSE")) return Value::boolean(false);
        return _accept("\"") ? _string() : _number();
    }

    Value _string() {
        std::string text;
        while (!_accept("\"")) {
            if (_rest.empty()) _refuse("a string is not closed");
            if (_accept("\\x")) {
                text += _hexadecimal();
            } else {
                _accept("\\");
                if (_rest.empty()) _refuse("a string is not closed");
                text += _rest.front();
                _rest.remove_prefix(1);
            }
        }
        return Value::string(std::move(text));
    }

    char _hexadecimal() {
        unsigned int code = 0;
        const std::string_view digits = _rest.substr(0, 2);
        const auto [end, error] =
            std::from_chars(digits.data(), digits.data() + digits.size(), code, 16);
        if (error != std::errc() || end != digits.data() + 2) _refuse("'\\x' without two digits");
        _rest.remove_prefix(2);
        return static_cast<char>(code);
    }

    template <typename Number>
    bool _take(std::string_view text, Number& number) {
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        if (text.empty() || error != std::errc() || end != text.data() + text.size()) return false;
        _rest.remove_prefix(text.size());
        return true;
    }

    Value _number() {
        const std::string_view text = _rest.substr(0, _rest.find_first_of(",}"));
        std::uint64_t natural = 0;
        if (_take(text, natural)) return Value::unsignedInteger(CimType::uint64, natural);
        std::int64_t integer = 0;
        if (_take(text, integer)) return Value::signedInteger(CimType::sint64, integer);
        double real = 0;
        if (_take(text, real)) return Value(CimType::real64, real);
        _refuse("'" + std::string(text) + "' is no value");
    }

    std::string_view _rest;
    std::size_t _line;
};

class TextReader {
public:
    explicit TextReader(std::string_view text) : _rest(text) {}

    std::vector<ReadInstance> read() {
        if (findInvalidUtf8(_rest) != std::string_view::npos) {
            throw SubscriptionTextError(1, "the file is not in UTF-8");
        }
        if (_next() != header) _refuse("the line '" + std::string(header) + "' is expected");
        std::vector<ReadInstance> instances;
        for (std::string_view line = _next(); !line.starts_with("end of "); line = _next()) {
            if (line.starts_with(indent) && !instances.empty()) {
                _readProperty(line.substr(indent.size()), instances.back().instance);
            } else {
                instances.push_back({_line, _readHead(line)});
            }
            _last = instances.size();
        }
        _checkEnd();
        return instances;
    }

private:
    [[noreturn]] void _refuse(const std::string& message) const {
        throw SubscriptionTextError(_line, message);
    }

    std::string_view _next() {
        ++_line;
        const std::size_t end = _rest.find('\n');
        if (end == std::string_view::npos) _refuse("the file ends too soon");
        _current = _rest.substr(0, end);
        _rest.remove_prefix(end + 1);
        return _current;
    }

    void _checkEnd() const {
        if (_current != "end of " + std::to_string(_last) + " instances") {
            _refuse("there are " + std::to_string(_last) + " instances before the line '" +
                    std::string(_current) + "'");
        }
        if (!_rest.empty()) throw SubscriptionTextError(_line + 1, "something follows the end");
    }

    Instance _readHead(std::string_view line) const {
        constexpr std::string_view between = " in ";
        const std::size_t end = findNameEnd(line);
        if (end == 0 || !line.substr(end).starts_with(between) ||
            line.size() == end + between.size()) {
            _refuse("the line '" + std::string(line) + "' makes no sense here");
        }
        Instance instance;
        instance.path.className = line.substr(0, end);
        instance.path.nameSpace = line.substr(end + between.size());
        return instance;
    }

    void _readProperty(std::string_view line, Instance& instance) const {
        constexpr std::string_view between = " = ";
        const std::size_t end = findNameEnd(line);
        if (end == 0 || !line.substr(end).starts_with(between)) {
            _refuse("the line '" + std::string(line) + "' is no property");
        }
        const std::string_view name = line.substr(0, end);
        if (instance.find(name)) _refuse("property " + std::string(name) + " is there twice");
        instance.set(name, ValueReader(line.substr(end + between.size()), _line).read());
    }

    std::string_view _rest;
    std::string_view _current;
    std::size_t _line = 0;
    std::size_t _last = 0;
};

}  // namespace

std::string formatSubscriptions(const std::vector<Instance>& instances) {
    std::string text = std::string(header) + "\n";
    for (const Instance& instance : instances) {
        text += instance.className() + " in " + instance.path.nameSpace + "\n";
        for (const PropertyValue& property : instance.properties) {
            if (property.value.isNull()) continue;
            text.append(indent).append(property.name).append(" = ");
            text += formatValue(property.value) + "\n";
        }
    }
    return text + "end of " + std::to_string(instances.size()) + " instances\n";
}

std::vector<ReadInstance> parseSubscriptions(std::string_view text) {
    return TextReader(text).read();
}

}  // namespace cimhost
