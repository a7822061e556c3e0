#include "cimhost/query/WqlNormalForm.h"

#include <utility>

namespace cimhost {

namespace {

/// Predicates of the query itself, with a mark for those to be negated: copied once at the end.
struct Literal {
    const WqlPredicate* predicate;
    bool isNegated;
};
using Terms = std::vector<std::vector<Literal>>;

class Normalizer {
public:
    explicit Normalizer(NormalForm form)
        : _outer(form == NormalForm::disjunctive ? WqlCondition::Kind::any
                                                 : WqlCondition::Kind::all) {}

    std::optional<Terms> terms(const WqlCondition& condition, bool isNegated) const {
        if (condition.kind == WqlCondition::Kind::predicate) {
            return Terms{{{&condition.predicate, isNegated}}};
        }
        if (condition.kind == WqlCondition::Kind::negation) {
            return terms(condition.parts.front(), !isNegated);
        }
        // A NOT turns AND into OR (De Morgan).
        const bool isOuter = (condition.kind == _outer) != isNegated;
        return isOuter ? _united(condition, isNegated) : _multiplied(condition, isNegated);
    }

private:
    std::optional<Terms> _united(const WqlCondition& condition, bool isNegated) const {
        Terms result;
        std::size_t size = 0;
        for (const WqlCondition& part : condition.parts) {
            std::optional<Terms> each = terms(part, isNegated);
            if (!each) return std::nullopt;
            for (auto& term : *each) {
                size += term.size();
                result.push_back(std::move(term));
            }
            if (size > longestNormalForm) return std::nullopt;
        }
        return result;
    }

    std::optional<Terms> _multiplied(const WqlCondition& condition, bool isNegated) const {
        Terms result{{}};
        for (const WqlCondition& part : condition.parts) {
            const std::optional<Terms> each = terms(part, isNegated);
            if (!each) return std::nullopt;
            std::optional<Terms> product = _product(result, *each);
            if (!product) return std::nullopt;
            result = std::move(*product);
        }
        return result;
    }

    static std::optional<Terms> _product(const Terms& left, const Terms& right) {
        Terms result;
        std::size_t size = 0;
        for (const auto& first : left) {
            for (const auto& second : right) {
                size += first.size() + second.size();
                if (size > longestNormalForm) return std::nullopt;
                auto& term = result.emplace_back(first);
                term.insert(term.end(), second.begin(), second.end());
            }
        }
        return result;
    }

    WqlCondition::Kind _outer;
};

WqlTerm copied(const std::vector<Literal>& literals) {
    WqlTerm term;
    term.reserve(literals.size());
    for (const Literal& literal : literals) {
        term.push_back(*literal.predicate);
        if (literal.isNegated) term.back().operation = negated(term.back().operation);
    }
    return term;
}

}  // namespace

std::optional<std::vector<WqlTerm>> normalForm(const std::optional<WqlCondition>& condition,
                                               NormalForm form) {
    std::vector<WqlTerm> result;
    if (!condition) {
        if (form == NormalForm::disjunctive) result.emplace_back();
        return result;
    }
    const std::optional<Terms> terms = Normalizer(form).terms(*condition, false);
    if (!terms) return std::nullopt;
    for (const auto& literals : *terms) result.push_back(copied(literals));
    return result;
}

}  // namespace cimhost
