#include "cimhost/mof/MofClassParser.h"

#include "cimhost/mof/MofValueParser.h"
#include "cimhost/repository/NearestName.h"
#include "cimhost/repository/QualifierRules.h"

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace cimhost {
namespace {

// The pointer's own block and the look-up tables of resolution.
constexpr std::size_t bytesBesideMember = 128;

struct TypedName {
    CimType type = CimType::none;
    std::string referenceClass;
    std::string name;
    MofPosition position;
};

std::string meantType(std::string_view name) {
    constexpr auto types = std::to_array(
        {CimType::boolean, CimType::char16, CimType::uint8, CimType::uint16, CimType::uint32,
         CimType::uint64, CimType::sint8, CimType::sint16, CimType::sint32, CimType::sint64,
         CimType::real32, CimType::real64, CimType::string, CimType::dateTime});
    return didYouMean(name, types, typeName);
}

/// `uint32 Name` or `Class REF Name`.
TypedName parseTypedName(MofCursor& cursor, std::string_view what) {
    TypedName parsed;
    const MofToken type = cursor.expectName("a type");
    parsed.type = typeFromName(type.text);
    if (parsed.type == CimType::reference || parsed.type == CimType::none) {
        parsed.type = CimType::reference;
        parsed.referenceClass = type.text;
        if (!cursor.acceptKeyword("ref")) {
            const std::string meant = meantType(type.text);
            if (!meant.empty()) failAt(type.position, describe(type) + " is not a type" + meant);
            cursor.unexpected("'ref' after " + describe(type) + ", which is not a type");
        }
    }
    parsed.position = cursor.position();
    parsed.name = cursor.expectName(what).text;
    return parsed;
}

/// Reads the body of one class.
class ClassBody {
public:
    ClassBody(MofCursor& cursor, NameSpace& nameSpace, Class& definition)
        : _cursor(cursor), _nameSpace(nameSpace), _definition(definition) {}

    void parse() {
        _cursor.expectSymbol('{', "before the body of the class");
        while (!_cursor.acceptSymbol('}')) {
            if (_cursor.peek().kind == MofToken::Kind::end) {
                _cursor.unexpected("'}' after the class");
            }
            _parseMember();
        }
        _cursor.expectSymbol(';', "after the class");
    }

private:
    using Names = std::unordered_set<std::string, NameHash, NameEqual>;

    void _parseMember() {
        MofQualifiers qualifiers = parseQualifiers(_cursor, _nameSpace);
        TypedName typed = parseTypedName(_cursor, "the name of a property or method");
        if (_cursor.peek().isSymbol('(')) {
            _parseMethod(typed, std::move(qualifiers));
        } else {
            _parseProperty(std::move(typed), std::move(qualifiers));
        }
    }

    std::string _elementText(std::string_view kind, const TypedName& typed) const {
        return std::string(kind) + " '" + typed.name + "' of '" + _definition.name + "'";
    }

    void _checkNew(Names& names, const TypedName& typed, const std::string& element) {
        if (!names.insert(typed.name).second) {
            failAt(typed.position, element + " is declared twice");
        }
    }

    void _charge(const MofPosition& position, std::size_t bytes) {
        atPosition(position, [&] { _nameSpace.budget().charge(bytes); });
    }

    void _parseProperty(TypedName typed, MofQualifiers qualifiers) {
        const bool isReference = typed.type == CimType::reference;
        const std::string element = _elementText(isReference ? "reference" : "property", typed);
        _charge(typed.position, sizeof(PropertyDefinition) + bytesBesideMember);
        _checkNew(_propertyNames, typed, element);
        PropertyDefinition property;
        property.name = typed.name;
        property.type = typed.type;
        property.referenceClass = std::move(typed.referenceClass);
        property.qualifiers = placedQualifiers(
            std::move(qualifiers), scopeMask(isReference ? Scope::reference : Scope::property),
            element, _nameSpace);
        if (!isReference) parseArrayMark(_cursor, property);
        property.defaultValue = Value::nullOf(property.type, property.isArray);
        if (_cursor.acceptSymbol('=')) {
            property.defaultValue =
                convertInitializer(parseInitializer(_cursor, _nameSpace.budget()), property);
        }
        _cursor.expectSymbol(';', isReference ? "after the reference" : "after the property");
        _definition.properties.push_back(std::make_shared<PropertyDefinition>(std::move(property)));
    }

    void _parseMethod(const TypedName& typed, MofQualifiers qualifiers) {
        const std::string element = _elementText("method", typed);
        if (typed.type == CimType::reference) {
            failAt(typed.position, element + " cannot return a reference");
        }
        _charge(typed.position, sizeof(MethodDefinition) + bytesBesideMember);
        _checkNew(_methodNames, typed, element);
        MethodDefinition method;
        method.name = typed.name;
        method.returnType = typed.type;
        method.qualifiers =
            placedQualifiers(std::move(qualifiers), scopeMask(Scope::method), element, _nameSpace);
        _parseParameters(method, element);
        _cursor.expectSymbol(';', "after the method");
        _definition.methods.push_back(std::make_shared<MethodDefinition>(std::move(method)));
    }

    void _parseParameters(MethodDefinition& method, const std::string& element) {
        _cursor.expectSymbol('(', "before the parameters");
        if (_cursor.acceptSymbol(')')) return;
        Names names;
        do {
            method.parameters.push_back(_parseParameter(names, element));
        } while (_cursor.acceptSymbol(','));
        _cursor.expectSymbol(')', "or ',' after the parameter");
    }

    ParameterDefinition _parseParameter(Names& names, const std::string& method) {
        MofQualifiers qualifiers = parseQualifiers(_cursor, _nameSpace);
        TypedName typed = parseTypedName(_cursor, "the name of a parameter");
        const std::string element = "parameter '" + typed.name + "' of " + method;
        _charge(typed.position, sizeof(ParameterDefinition) + bytesBesideMember);
        _checkNew(names, typed, element);
        ParameterDefinition parameter;
        parameter.name = typed.name;
        parameter.type = typed.type;
        parseArrayMark(_cursor, parameter);
        parameter.referenceClass = std::move(typed.referenceClass);
        parameter.qualifiers = placedQualifiers(std::move(qualifiers), scopeMask(Scope::parameter),
                                                element, _nameSpace);
        return parameter;
    }

    MofCursor& _cursor;
    NameSpace& _nameSpace;
    Class& _definition;
    Names _propertyNames;
    Names _methodNames;
};

}  // namespace

void parseClass(MofCursor& cursor, NameSpace& nameSpace, MofQualifiers qualifiers) {
    Class definition;
    const MofToken name = cursor.expectName("the name of the class");
    definition.name = name.text;
    if (nameSpace.findClass(name.text)) {
        failAt(name.position, "class " + describe(name) + " is defined already");
    }
    // An alias of a class names nothing that can be referred to; it is read for old schemas' sake.
    if (cursor.acceptKeyword("as")) cursor.expectKind(MofToken::Kind::alias, "an alias after 'as'");
    if (cursor.acceptSymbol(':')) {
        const MofToken superClass = cursor.expectName("the name of the superclass");
        definition.superClass = superClass.text;
        if (!nameSpace.findClass(superClass.text)) {
            failAt(superClass.position, "superclass " + describe(superClass) + " is not known" +
                                            nameSpace.meantClass(superClass.text));
        }
    }
    unsigned scopes = scopeMask(Scope::classes);
    for (const MofQualifier& each : qualifiers) scopes |= grantedScope(each.qualifier);
    definition.qualifiers =
        placedQualifiers(std::move(qualifiers), static_cast<std::uint16_t>(scopes),
                         "class '" + definition.name + "'", nameSpace);
    ClassBody(cursor, nameSpace, definition).parse();
    atPosition(name.position, [&] { nameSpace.addClass(std::move(definition)); });
}

}  // namespace cimhost
