#include "cimhost/mof/MofQualifierParser.h"

#include "cimhost/mof/MofValueParser.h"
#include "cimhost/repository/QualifierRules.h"
#include "cimhost/repository/ValueConversion.h"

#include <array>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace cimhost {
namespace {

struct FlavorRow {
    std::string_view keyword;
    bool Flavor::*member;  ///< null for a flavor that changes nothing
    bool value;
};

constexpr auto flavorRows = std::to_array<FlavorRow>({
    {"EnableOverride", &Flavor::overridable, true},
    {"DisableOverride", &Flavor::overridable, false},
    {"ToSubclass", &Flavor::toSubclass, true},
    {"Restricted", &Flavor::toSubclass, false},
    {"Translatable", &Flavor::translatable, true},
    // Schemas from before DSP0004 2.3 still say it; qualifiers of instances are gone since.
    {"ToInstance", nullptr, true},
});

struct ScopeRow {
    std::string_view keyword;
    Scope scope;
};

constexpr auto scopeRows = std::to_array<ScopeRow>({
    {"schema", Scope::schema},
    {"class", Scope::classes},
    {"association", Scope::association},
    {"indication", Scope::indication},
    {"property", Scope::property},
    {"reference", Scope::reference},
    {"method", Scope::method},
    {"parameter", Scope::parameter},
    {"any", Scope::any},
});

/// Takes flavors one at a time and refuses one that contradicts an earlier one.
class FlavorReader {
public:
    explicit FlavorReader(Flavor flavor) : _flavor(flavor) {}

    const Flavor& flavor() const noexcept { return _flavor; }

    /// False when the cursor is at no flavor.
    bool accept(MofCursor& cursor) {
        for (const FlavorRow& row : flavorRows) {
            if (cursor.peek().isName(row.keyword)) {
                _apply(row, cursor.take());
                return true;
            }
        }
        return false;
    }

private:
    void _apply(const FlavorRow& row, const MofToken& token) {
        if (!row.member) return;
        for (const FlavorRow* const earlier : _given) {
            if (earlier->member == row.member && earlier->value != row.value) {
                failAt(token.position,
                       describe(token) + " contradicts '" + std::string(earlier->keyword) + "'");
            }
        }
        if (_given.size() < flavorRows.size()) _given.push_back(&row);
        _flavor.*row.member = row.value;
    }

    Flavor _flavor;
    std::vector<const FlavorRow*> _given;
};

Value qualifierValue(MofCursor& cursor, const NameSpace& nameSpace,
                     const QualifierDeclaration& declaration) {
    if (cursor.peek().isSymbol('{')) {
        return convertInitializer(parseArray(cursor, nameSpace.budget()), declaration);
    }
    if (cursor.acceptSymbol('(')) {
        const MofInitializer initializer = parseInitializer(cursor, nameSpace.budget());
        cursor.expectSymbol(')', "after the qualifier's value");
        return convertInitializer(initializer, declaration);
    }
    if (declaration.type == CimType::boolean && !declaration.isArray) return Value::boolean(true);
    atPosition(cursor.position(),
               [&] { nameSpace.budget().charge(valueBytes(declaration.defaultValue)); });
    return declaration.defaultValue;
}

Flavor parseFlavors(MofCursor& cursor, Flavor flavor) {
    FlavorReader reader(flavor);
    if (!cursor.acceptSymbol(':')) return flavor;
    if (!reader.accept(cursor)) cursor.unexpected("a flavor");
    while (reader.accept(cursor)) {
    }
    return reader.flavor();
}

MofQualifier parseQualifier(MofCursor& cursor, const NameSpace& nameSpace) {
    const MofToken name = cursor.expectName("a qualifier");
    const QualifierDeclaration* const declaration = nameSpace.findQualifier(name.text);
    if (!declaration) {
        failAt(name.position, "qualifier " + describe(name) + " is not declared" +
                                  nameSpace.meantQualifier(name.text));
    }
    atPosition(name.position, [&] { nameSpace.budget().charge(sizeof(Qualifier)); });
    MofQualifier parsed;
    parsed.position = name.position;
    parsed.qualifier.name = declaration->name;
    parsed.qualifier.value = qualifierValue(cursor, nameSpace, *declaration);
    parsed.qualifier.flavor = parseFlavors(cursor, declaration->flavor);
    return parsed;
}

std::uint16_t parseScope(MofCursor& cursor) {
    for (const ScopeRow& row : scopeRows) {
        if (cursor.acceptKeyword(row.keyword)) return static_cast<std::uint16_t>(row.scope);
    }
    cursor.unexpected("a scope");
}

std::uint16_t parseScopes(MofCursor& cursor) {
    cursor.expectSymbol('(', "after 'scope'");
    unsigned scopes = 0;
    do {
        scopes |= parseScope(cursor);
    } while (cursor.acceptSymbol(','));
    cursor.expectSymbol(')', "or ',' after the scope");
    return static_cast<std::uint16_t>(scopes);
}

Flavor parseDefaultFlavor(MofCursor& cursor) {
    cursor.expectSymbol('(', "after 'flavor'");
    FlavorReader reader{Flavor{}};
    do {
        if (!reader.accept(cursor)) cursor.unexpected("a flavor");
    } while (cursor.acceptSymbol(','));
    cursor.expectSymbol(')', "or ',' after the flavor");
    return reader.flavor();
}

CimType parseQualifierType(MofCursor& cursor) {
    const CimType type = typeFromName(cursor.peek().text);
    if (type == CimType::none || type == CimType::reference) cursor.unexpected("a type");
    cursor.take();
    return type;
}

}  // namespace

MofQualifiers parseQualifiers(MofCursor& cursor, const NameSpace& nameSpace) {
    MofQualifiers qualifiers;
    if (!cursor.acceptSymbol('[')) return qualifiers;
    std::unordered_set<std::string, NameHash, NameEqual> seen;
    do {
        qualifiers.push_back(parseQualifier(cursor, nameSpace));
        const MofQualifier& parsed = qualifiers.back();
        if (!seen.insert(parsed.qualifier.name).second) {
            failAt(parsed.position, "qualifier '" + parsed.qualifier.name + "' is given twice");
        }
    } while (cursor.acceptSymbol(','));
    cursor.expectSymbol(']', "or ',' after the qualifier");
    return qualifiers;
}

Qualifiers placedQualifiers(MofQualifiers qualifiers, std::uint16_t scopes,
                            const std::string& element, const NameSpace& nameSpace) {
    Qualifiers placed;
    placed.reserve(qualifiers.size());
    for (MofQualifier& each : qualifiers) {
        atPosition(each.position, [&] {
            checkScope(*nameSpace.findQualifier(each.qualifier.name), scopes, element);
        });
        placed.push_back(std::move(each.qualifier));
    }
    return placed;
}

QualifierDeclaration parseQualifierDeclaration(MofCursor& cursor, const NameSpace& nameSpace) {
    QualifierDeclaration declaration;
    const MofToken name = cursor.expectName("the qualifier's name");
    declaration.name = name.text;
    atPosition(name.position, [&] { nameSpace.budget().charge(sizeof(declaration)); });
    cursor.expectSymbol(':', "after the qualifier's name");
    declaration.type = parseQualifierType(cursor);
    parseArrayMark(cursor, declaration);
    declaration.defaultValue = Value::nullOf(declaration.type, declaration.isArray);
    if (cursor.acceptSymbol('=')) {
        declaration.defaultValue =
            convertInitializer(parseInitializer(cursor, nameSpace.budget()), declaration);
    }
    cursor.expectSymbol(',', "before the scope");
    cursor.expectKeyword("scope", "of the qualifier");
    declaration.scopes = parseScopes(cursor);
    if (cursor.acceptSymbol(',')) {
        cursor.expectKeyword("flavor", "of the qualifier");
        declaration.flavor = parseDefaultFlavor(cursor);
    }
    cursor.expectSymbol(';', "after the qualifier declaration");
    return declaration;
}

}  // namespace cimhost
