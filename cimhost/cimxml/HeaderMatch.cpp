#include "cimhost/cimxml/HeaderMatch.h"

#include "cimhost/cimxml/ModelReader.h"
#include "cimhost/cimxml/ValueText.h"
#include "cimhost/repository/Names.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <vector>

namespace cimhost {
namespace {

std::optional<char> readByte(std::string_view text) noexcept {
    unsigned value = 0;
    if (text.size() < 2) return std::nullopt;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + 2, value, 16);
    if (error != std::errc{} || stop != text.data() + 2) return std::nullopt;
    return static_cast<char>(static_cast<unsigned char>(value));
}

std::string_view trimSlashes(std::string_view text) noexcept {
    while (text.starts_with('/')) text.remove_prefix(1);
    while (text.ends_with('/')) text.remove_suffix(1);
    return text;
}

/// Alike as text, as truth values or as numbers.
bool sameScalar(std::string_view left, std::string_view right) {
    if (left == right) return true;
    for (const CimType type :
         {CimType::boolean, CimType::uint64, CimType::sint64, CimType::real64}) {
        const std::optional<Value> value = readScalar(type, left);
        if (value && value == readScalar(type, right)) return true;
    }
    return false;
}

/// The INSTANCENAME or CLASSNAME in a VALUE.REFERENCE, behind whatever path leads there.
Element targetOf(const Element& valueReference) noexcept {
    Element target = *valueReference.firstChild();
    while (target.tag() != Tag::instanceName && target.tag() != Tag::className) {
        target = *target.firstChild()->next();
    }
    return target;
}

/// Reads a header's path from front to back beside a path of the body. Each function is false where
/// they differ.
class PathMatcher {
public:
    explicit PathMatcher(std::string_view text) : _rest(text) {}

    bool atEnd() const noexcept { return _rest.empty(); }

    bool matchTarget(const Element& localPath) {
        const Element nameSpace = *localPath.firstChild();
        const std::size_t colon = _rest.find(':');
        if (colon == std::string_view::npos) return false;
        if (!sameNameSpace(_rest.substr(0, colon), joinNameSpace(nameSpace))) return false;
        _rest.remove_prefix(colon + 1);
        return matchName(*nameSpace.next()) && atEnd();
    }

    /// The text's class and keys against an INSTANCENAME or CLASSNAME.
    bool matchName(const Element& name) {
        const bool isClass = name.tag() == Tag::className;
        const std::size_t end = std::min(_rest.find_first_of(".,=\""), _rest.size());
        if (!equalNames(_rest.substr(0, end),
                        name.attributeText(isClass ? Attribute::name : Attribute::className))) {
            return false;
        }
        _rest.remove_prefix(end);
        // Some write an instance without keys as "Class.", "Class.@" or "Class=@".
        if (!name.firstChild()) return _skip(".@") || _skip("=@") || _skip(".") || true;
        return _skip(".") && _matchKeys(name);
    }

    /// A path inside a value: `[//host/][namespace:]Class.key=...`. Its namespace may be left out.
    bool matchReference(const Element& valueReference) {
        if (_rest.starts_with("//")) {
            const std::size_t slash = _rest.find('/', 2);
            _rest.remove_prefix(slash == std::string_view::npos ? _rest.size() : slash + 1);
        }
        const std::size_t separator = _rest.find_first_of(":.,\"");
        if (separator != std::string_view::npos && _rest[separator] == ':') {
            _rest.remove_prefix(separator + 1);
        }
        return matchName(targetOf(valueReference));
    }

private:
    bool _skip(std::string_view prefix) noexcept {
        if (!_rest.starts_with(prefix)) return false;
        _rest.remove_prefix(prefix.size());
        return true;
    }

    bool _matchKeys(const Element& instanceName) {
        std::vector<Element> open;
        for (const Element key : instanceName.children()) {
            if (key.tag() != Tag::keyBinding) return false;
            open.push_back(key);
        }
        // Each key takes a few characters of the header.
        if (open.size() > _rest.size()) return false;
        while (true) {
            const std::size_t equals = _rest.find('=');
            if (equals == std::string_view::npos) return false;
            const std::string_view name = _rest.substr(0, equals);
            const auto found = std::ranges::find_if(open, [name](const Element& key) {
                return equalNames(key.attributeText(Attribute::name), name);
            });
            if (found == open.end()) return false;
            _rest.remove_prefix(equals + 1);
            if (!_matchValue(*found->firstChild())) return false;
            open.erase(found);
            // What follows the last key belongs to the path that this one is a key of.
            if (open.empty()) return true;
            if (!_skip(",")) return false;
        }
    }

    bool _matchValue(const Element& value) {
        const bool isReference = value.tag() == Tag::valueReference;
        if (_rest.starts_with('"') || _rest.starts_with('\'')) {
            const std::optional<std::string> text = _readQuoted();
            if (!text) return false;
            if (!isReference) return *text == value.text();
            return _matchQuotedReference(*text, value);
        }
        if (isReference) return matchReference(value);
        const std::string_view text = _rest.substr(0, std::min(_rest.find(','), _rest.size()));
        _rest.remove_prefix(text.size());
        return sameScalar(text, value.text());
    }

    /// Mostly the whole path is in the quotes. One client has only the class there and lets the
    /// keys follow as if they were its own: `R="Class",key=...`.
    bool _matchQuotedReference(std::string_view text, const Element& valueReference) {
        PathMatcher inner(text);
        if (inner.matchReference(valueReference) && inner.atEnd()) return true;
        const Element target = targetOf(valueReference);
        return target.firstChild() &&
               equalNames(text, target.attributeText(Attribute::className)) && _skip(",") &&
               _matchKeys(target);
    }

    std::optional<std::string> _readQuoted() {
        const char quote = _rest.front();
        std::string text;
        for (std::size_t i = 1; i < _rest.size(); ++i) {
            if (_rest[i] == quote) {
                _rest.remove_prefix(i + 1);
                return text;
            }
            if (_rest[i] == '\\' && i + 1 < _rest.size()) ++i;
            text += _rest[i];
        }
        return std::nullopt;
    }

    std::string_view _rest;
};

bool travelsPlain(char character) noexcept {
    return character >= ' ' && character < 0x7F && character != '%';
}

}  // namespace

std::string escapeForHeader(std::string_view text) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string escaped;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (travelsPlain(character)) {
            escaped += character;
        } else {
            escaped.append({'%', digits[byte >> 4U], digits[byte & 15U]});
        }
    }
    return escaped;
}

std::string percentDecode(std::string_view text) {
    std::string decoded;
    decoded.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::optional<char> byte =
            text[i] == '%' ? readByte(text.substr(i + 1)) : std::nullopt;
        decoded += byte.value_or(text[i]);
        if (byte) i += 2;
    }
    return decoded;
}

bool sameNameSpace(std::string_view left, std::string_view right) noexcept {
    return equalNames(trimSlashes(left), trimSlashes(right));
}

bool namesTarget(std::string_view header, const Element& localPath) {
    return PathMatcher(header).matchTarget(localPath);
}

}  // namespace cimhost
