#pragma once

#include "cimhost/objects/Object.h"
#include "cimhost/query/WqlNormalForm.h"

#include <memory>
#include <vector>

/// A query's condition in a normal form, its terms, and the comparisons in them.
namespace cimhost {

struct SelectCondModel {
    NormalForm form;
    std::vector<WqlTerm> terms;
};
using SharedSelectCond = std::shared_ptr<const SelectCondModel>;

struct SelectCondObject : ObjectBase<CMPISelectCond, ObjectKind::selectCondition> {
    static const CMPISelectCondFT table;

    explicit SelectCondObject(SharedSelectCond content) noexcept : model(std::move(content)) {}

    SharedSelectCond model;
};

/// The term at this place.
struct SubCondObject : ObjectBase<CMPISubCond, ObjectKind::subCondition> {
    static const CMPISubCondFT table;

    SubCondObject(SharedSelectCond content, std::size_t place) noexcept
        : model(std::move(content)), term(place) {}

    const WqlTerm& predicates() const noexcept { return model->terms[term]; }

    SharedSelectCond model;
    std::size_t term;
};

/// The comparison at this place of a term. Its type is one of the ...String aliases: what kind of
/// constant the right side is, or CMPI_nameString for a property; CMPI_null for IS NULL, which has
/// no right side.
struct PredicateObject : ObjectBase<CMPIPredicate, ObjectKind::predicate> {
    static const CMPIPredicateFT table;

    PredicateObject(SharedSelectCond content, std::size_t termPlace, std::size_t place) noexcept
        : model(std::move(content)), term(termPlace), index(place) {}

    const WqlPredicate& predicate() const noexcept { return model->terms[term][index]; }

    SharedSelectCond model;
    std::size_t term;
    std::size_t index;
};

SelectCondObject& makeSelectCond(const Home& home, NormalForm form, std::vector<WqlTerm> terms);

}  // namespace cimhost
