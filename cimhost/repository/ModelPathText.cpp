#include "cimhost/repository/ModelPathText.h"

#include "cimhost/repository/CimError.h"
#include "cimhost/repository/Literals.h"
#include "cimhost/repository/Names.h"

#include <optional>
#include <string>
#include <utility>

namespace cimhost {
namespace {

// No class has nearly as many; the limit keeps the look for repeated keys cheap.
constexpr std::size_t mostKeys = 256;

class PathReader {
public:
    explicit PathReader(std::string_view text) : _text(text) {}

    ObjectPath read() {
        ObjectPath path;
        path.host = _host();
        path.nameSpace = _nameSpace();
        path.className = _name("a class name");
        if (_rest() == "=@") return path;  // the one instance of a class without keys
        if (_accept('.')) {
            do {
                _addKey(path);
            } while (_accept(','));
        }
        if (_place != _text.size()) _fail("the end of the path");
        return path;
    }

private:
    [[noreturn]] void _fail(const std::string& expected) const {
        throw CimError(CimCode::typeMismatch, "not an object path: expected " + expected +
                                                  " at character " + std::to_string(_place + 1));
    }

    std::string_view _rest() const noexcept { return _text.substr(_place); }

    bool _accept(char wanted) noexcept {
        if (!_rest().starts_with(wanted)) return false;
        ++_place;
        return true;
    }

    std::string _host() {
        if (!_rest().starts_with("//")) return {};
        const std::size_t end = _text.find('/', 2);
        _place = 2;
        if (end == std::string_view::npos || end == 2) _fail("a host and '/'");
        _place = end + 1;
        return std::string(_text.substr(2, end - 2));
    }

    std::string _nameSpace() {
        const std::string_view rest = _rest();
        const std::size_t colon = rest.substr(0, rest.find_first_of("=\"'")).find(':');
        if (colon == std::string_view::npos) return {};
        _place += colon + 1;
        return std::string(trimmedSlashes(rest.substr(0, colon)));
    }

    std::string _name(const std::string& what) {
        const std::string_view rest = _rest();
        const std::size_t end = findNameEnd(rest);
        if (end == 0) _fail(what);
        _place += end;
        return std::string(rest.substr(0, end));
    }

    void _addKey(ObjectPath& path) {
        const std::string name = _name("a key name");
        if (!_accept('=')) _fail("'='");
        if (path.findKey(name)) _fail("another key than '" + name + "' again");
        if (path.keys.size() == mostKeys) _fail("no more keys");
        Value value = _value();
        path.keys.push_back({name, std::move(value)});
    }

    Value _value() {
        if (_rest().starts_with('"')) return Value::string(_quoted());
        if (_rest().starts_with('\'')) return _character();
        const std::string_view word = _rest().substr(0, _rest().find(','));
        std::optional<Value> value = readBoolean(word);
        if (!value) value = readNumber(word);
        if (!value) _fail("a value");
        _place += word.size();
        return *std::move(value);
    }

    std::string _quoted() {
        std::string text;
        const std::size_t end = readQuoted(_rest(), Escapes::backslash, text);
        if (end == std::string_view::npos) {
            _place = _text.size();
            _fail("a closing quote");
        }
        _place += end;
        return text;
    }

    Value _character() {
        std::optional<Value> character = readCharacter(_quoted());
        if (!character) _fail("one character in apostrophes");
        return *std::move(character);
    }

    std::string_view _text;
    std::size_t _place = 0;
};

}  // namespace

ObjectPath parseModelPath(std::string_view text) { return PathReader(text).read(); }

}  // namespace cimhost
