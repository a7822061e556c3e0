#include "cimhost/query/WqlParser.h"

#include "cimhost/query/WqlLexer.h"
#include "cimhost/repository/CimError.h"
#include "cimhost/repository/Literals.h"
#include "cimhost/repository/Names.h"
#include "cimhost/repository/Utf8.h"

#include <algorithm>
#include <array>
#include <utility>

namespace cimhost {

namespace {

constexpr auto languages = std::to_array<std::string_view>({"WQL", "CQL", "DMTF:CQL"});

struct SymbolRow {
    std::string_view text;
    WqlOperator operation;
    WqlOperator mirrored;  ///< with the sides exchanged
};

constexpr auto symbolRows = std::to_array<SymbolRow>({
    {"=", WqlOperator::equal, WqlOperator::equal},
    {"<>", WqlOperator::notEqual, WqlOperator::notEqual},
    {"!=", WqlOperator::notEqual, WqlOperator::notEqual},
    {"<=", WqlOperator::lessOrEqual, WqlOperator::greaterOrEqual},
    {">=", WqlOperator::greaterOrEqual, WqlOperator::lessOrEqual},
    {"<", WqlOperator::less, WqlOperator::greater},
    {">", WqlOperator::greater, WqlOperator::less},
});

constexpr auto keywords = std::to_array<std::string_view>(
    {"SELECT", "FROM", "WHERE", "AND", "OR", "NOT", "IS", "NULL", "LIKE", "ISA"});

[[noreturn]] void refuseSize(std::string_view what, std::size_t limit) {
    throw CimError(CimCode::invalidQuery,
                   "the query has more than " + std::to_string(limit) + " " + std::string(what));
}

void requireQueryLanguage(std::string_view language) {
    if (containsName(languages, language)) return;
    throw CimError(CimCode::queryLanguageNotSupported,
                   "query language '" + std::string(language) + "' is not supported");
}

class Parser {
public:
    Parser(std::string_view language, std::string_view text)
        : _lexer(text), _isWql(equalNames(language, "WQL")) {
        _token = _lexer.next();
    }

    void read(WqlQuery& query) {
        _require("SELECT");
        _readSelection(query);
        _require("FROM");
        query.className = _name("a class name");
        if (_accept("WHERE")) query.condition = _any();
        if (_token.isSymbol(";")) _advance();
        if (_token.kind != WqlToken::Kind::end) {
            refuseQuery(_token, query.condition ? "AND, OR or the end" : "WHERE or the end");
        }
        _dropClassNames(query);
    }

    // Selections of all kinds: the provider that is asked may know more of them.
    std::string readClassName() {
        _require("SELECT");
        while (_token.kind != WqlToken::Kind::end && !_token.isKeyword("FROM")) _advance();
        _require("FROM");
        return _name("a class name");
    }

private:
    void _advance() { _token = _lexer.next(); }

    bool _accept(std::string_view keyword) {
        if (!_token.isKeyword(keyword)) return false;
        _advance();
        return true;
    }

    void _require(std::string_view keyword) {
        if (!_accept(keyword)) refuseQuery(_token, keyword);
    }

    bool _acceptSymbol(std::string_view symbol) {
        if (!_token.isSymbol(symbol)) return false;
        _advance();
        return true;
    }

    std::string _name(std::string_view expected) {
        const bool isKeyword =
            std::ranges::any_of(keywords, [&](auto keyword) { return _token.isKeyword(keyword); });
        if (_token.kind != WqlToken::Kind::name || isKeyword) refuseQuery(_token, expected);
        std::string name(_token.text);
        _advance();
        return name;
    }

    WqlProperty _property() {
        WqlProperty property;
        do {
            if (property.parts.size() == WqlLimits::nameParts) {
                refuseSize("parts in a name", WqlLimits::nameParts);
            }
            property.parts.push_back(_name("a property"));
        } while (_acceptSymbol("."));
        return property;
    }

    void _readSelection(WqlQuery& query) {
        if (_acceptSymbol("*")) return;
        query.selection.emplace();
        do {
            if (query.selection->size() == WqlLimits::properties) {
                refuseSize("properties", WqlLimits::properties);
            }
            query.selection->push_back(_property());
        } while (_acceptSymbol(","));
    }

    template <typename Part>
    WqlCondition _joined(std::string_view keyword, WqlCondition::Kind kind, Part&& part) {
        WqlCondition first = part();
        if (!_token.isKeyword(keyword)) return first;
        WqlCondition whole{kind, {}, {}};
        whole.parts.push_back(std::move(first));
        while (_accept(keyword)) whole.parts.push_back(part());
        return whole;
    }

    WqlCondition _any() {
        return _joined("OR", WqlCondition::Kind::any, [this] { return _all(); });
    }

    WqlCondition _all() {
        return _joined("AND", WqlCondition::Kind::all, [this] { return _factor(); });
    }

    WqlCondition _factor() {
        if (_depth == WqlLimits::depth) refuseSize("levels of parentheses", WqlLimits::depth);
        ++_depth;
        WqlCondition result;
        if (_accept("NOT")) {
            result.kind = WqlCondition::Kind::negation;
            result.parts.push_back(_factor());
        } else if (_acceptSymbol("(")) {
            result = _any();
            if (!_acceptSymbol(")")) refuseQuery(_token, "AND, OR or ')'");
        } else {
            result.predicate = _predicate();
        }
        --_depth;
        return result;
    }

    WqlPredicate _predicate() {
        if (++_predicates > WqlLimits::predicates) refuseSize("comparisons", WqlLimits::predicates);
        WqlPredicate predicate;
        predicate.left = _operand();
        if (_readWordOperator(predicate)) return predicate;
        for (const SymbolRow& row : symbolRows) {
            if (!_acceptSymbol(row.text)) continue;
            predicate.operation = row.operation;
            predicate.right = _operand();
            // What compares a constant with a property is read the other way round.
            if (std::holds_alternative<Value>(predicate.left)) {
                if (std::holds_alternative<Value>(predicate.right)) {
                    refuseQuery(_token, "a comparison that has a property in it; something else");
                }
                std::swap(predicate.left, predicate.right);
                predicate.operation = row.mirrored;
            }
            return predicate;
        }
        refuseQuery(_token, "a comparison");
    }

    // IS [NOT] NULL, [NOT] LIKE, [NOT] ISA.
    bool _readWordOperator(WqlPredicate& predicate) {
        const WqlToken start = _token;
        const bool isIs = _accept("IS");
        const bool isNot = _accept("NOT");
        if (isIs) {
            _require("NULL");
            predicate.operation = isNot ? WqlOperator::isNotNull : WqlOperator::isNull;
        } else if (_accept("LIKE")) {
            if (!_isWql) {
                throw CimError(CimCode::queryFeatureNotSupported,
                               "LIKE is supported in WQL only; it is at character " +
                                   std::to_string(start.place + 1));
            }
            predicate.operation = isNot ? WqlOperator::notLike : WqlOperator::like;
            predicate.right = _string("a pattern in quotes");
        } else if (_accept("ISA")) {
            predicate.operation = isNot ? WqlOperator::notIsA : WqlOperator::isA;
            predicate.right = _token.kind == WqlToken::Kind::string
                                  ? _string("")
                                  : Value::string(_name("a class name"));
        } else if (isNot) {
            refuseQuery(_token, "LIKE or ISA");
        } else {
            return false;
        }
        if (!std::holds_alternative<WqlProperty>(predicate.left)) {
            refuseQuery(start, "a comparison with a constant");
        }
        return true;
    }

    Value _string(std::string_view expected) {
        if (_token.kind != WqlToken::Kind::string) refuseQuery(_token, expected);
        Value value = Value::string(unquoted(_token.text));
        _advance();
        return value;
    }

    WqlOperand _operand() {
        if (_token.kind == WqlToken::Kind::string) return _string("");
        if (_token.kind == WqlToken::Kind::number) {
            std::optional<Value> number = readNumber(_token.text);
            if (!number) refuseQuery(_token, "a number");
            _advance();
            return *std::move(number);
        }
        if (_accept("TRUE")) return Value::boolean(true);
        if (_accept("FALSE")) return Value::boolean(false);
        if (_token.kind != WqlToken::Kind::name) refuseQuery(_token, "a property or a constant");
        return _property();
    }

    static void _dropClassName(const WqlQuery& query, WqlProperty& property) {
        if (property.parts.size() > 1 && equalNames(property.parts.front(), query.className)) {
            property.parts.erase(property.parts.begin());
        }
    }

    static void _dropClassNames(const WqlQuery& query, WqlCondition& condition) {
        for (WqlOperand* const side : {&condition.predicate.left, &condition.predicate.right}) {
            if (auto* const property = std::get_if<WqlProperty>(side)) {
                _dropClassName(query, *property);
            }
        }
        for (WqlCondition& part : condition.parts) _dropClassNames(query, part);
    }

    // `Class.Property` is a property of the class behind FROM.
    static void _dropClassNames(WqlQuery& query) {
        if (query.selection) {
            for (WqlProperty& property : *query.selection) _dropClassName(query, property);
        }
        if (query.condition) _dropClassNames(query, *query.condition);
    }

    WqlLexer _lexer;
    WqlToken _token;
    bool _isWql;
    std::size_t _depth = 0;
    std::size_t _predicates = 0;
};

}  // namespace

std::string queriedClass(std::string_view language, std::string_view query) {
    requireQueryLanguage(language);
    return Parser(language, query).readClassName();
}

WqlQuery parseQuery(std::string_view language, std::string_view text) {
    requireQueryLanguage(language);
    if (text.size() > WqlLimits::textBytes) refuseSize("bytes", WqlLimits::textBytes);
    if (findInvalidUtf8(text) != std::string_view::npos) {
        throw CimError(CimCode::invalidQuery, "the query is not in UTF-8");
    }
    WqlQuery query;
    query.text = text;
    query.language = language;
    Parser(language, text).read(query);
    return query;
}

}  // namespace cimhost
