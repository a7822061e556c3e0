#include "cimhost/objects/SelectCondHandle.h"

#include "cimhost/objects/Description.h"
#include "cimhost/objects/Entry.h"
#include "cimhost/objects/SelectExpHandle.h"
#include "cimhost/objects/StringHandle.h"
#include "cimhost/query/WqlEvaluation.h"
#include "cimhost/repository/Names.h"

#include <array>
#include <string>
#include <utility>

namespace cimhost {

namespace {

struct OperatorRow {
    WqlOperator operation;
    CMPIPredOp code;
};

constexpr auto operatorRows = std::to_array<OperatorRow>({
    {WqlOperator::equal, CMPI_PredOp_Equals},
    {WqlOperator::notEqual, CMPI_PredOp_NotEquals},
    {WqlOperator::less, CMPI_PredOp_LessThan},
    {WqlOperator::lessOrEqual, CMPI_PredOp_LessThanOrEquals},
    {WqlOperator::greater, CMPI_PredOp_GreaterThan},
    {WqlOperator::greaterOrEqual, CMPI_PredOp_GreaterThanOrEquals},
    {WqlOperator::like, CMPI_PredOp_Like},
    {WqlOperator::notLike, CMPI_PredOp_NotLike},
    {WqlOperator::isA, CMPI_PredOp_Isa},
    {WqlOperator::notIsA, CMPI_PredOp_NotIsa},
    {WqlOperator::isNull, CMPI_PredOp_Null},
    {WqlOperator::isNotNull, CMPI_PredOp_Not_Null},
});

CMPIPredOp codeOf(WqlOperator operation) noexcept {
    for (const OperatorRow& row : operatorRows) {
        if (row.operation == operation) return row.code;
    }
    return CMPI_PredOp_Equals;
}

bool hasRightSide(WqlOperator operation) noexcept {
    return operation != WqlOperator::isNull && operation != WqlOperator::isNotNull;
}

CMPIType typeOf(const WqlPredicate& predicate) noexcept {
    if (!hasRightSide(predicate.operation)) return CMPI_null;
    const auto* const constant = std::get_if<Value>(&predicate.right);
    if (!constant) return CMPI_nameString;
    if (predicate.operation == WqlOperator::isA || predicate.operation == WqlOperator::notIsA) {
        return CMPI_classNameString;
    }
    if (constant->type() == CimType::boolean) return CMPI_booleanString;
    if (isInteger(constant->type())) return CMPI_integerString;
    if (isReal(constant->type())) return CMPI_realString;
    return CMPI_charString;
}

std::string textOf(const WqlOperand& operand) {
    if (const auto* const property = std::get_if<WqlProperty>(&operand)) return property->text();
    const Value& constant = std::get<Value>(operand);
    const auto* const text = constant.get<Text>();
    return text ? text->str() : describe(constant);
}

template <typename Elements>
void requirePlace(const Elements& elements, CMPICount index) {
    if (index >= elements.size()) throw Failure{CMPI_RC_ERR_NO_SUCH_PROPERTY};
}

CMPICount getCountAndType(const CMPISelectCond* handle, int* form, CMPIStatus* status) noexcept {
    return enter<SelectCondObject>(handle, status, [&](SelectCondObject& object) {
        if (form) *form = object.model->form == NormalForm::disjunctive ? 0 : 1;
        return static_cast<CMPICount>(object.model->terms.size());
    });
}

CMPISubCond* getSubCondAt(const CMPISelectCond* handle, CMPICount index,
                          CMPIStatus* status) noexcept {
    return enter<SelectCondObject>(handle, status, [&](SelectCondObject& object) {
        requirePlace(object.model->terms, index);
        return &make<SubCondObject>(partOf(object), object.model, index);
    });
}

CMPICount getCount(const CMPISubCond* handle, CMPIStatus* status) noexcept {
    return enter<SubCondObject>(handle, status, [](SubCondObject& object) {
        return static_cast<CMPICount>(object.predicates().size());
    });
}

CMPIPredicate* getPredicateAt(const CMPISubCond* handle, CMPICount index,
                              CMPIStatus* status) noexcept {
    return enter<SubCondObject>(handle, status, [&](SubCondObject& object) {
        requirePlace(object.predicates(), index);
        return &make<PredicateObject>(partOf(object), object.model, object.term, index);
    });
}

CMPIPredicate* getPredicate(const CMPISubCond* handle, const char* left,
                            CMPIStatus* status) noexcept {
    return enter<SubCondObject>(handle, status, [&](SubCondObject& object) {
        const std::string_view wanted = required(left);
        const WqlTerm& predicates = object.predicates();
        for (std::size_t i = 0; i < predicates.size(); ++i) {
            if (!equalNames(textOf(predicates[i].left), wanted)) continue;
            return &make<PredicateObject>(partOf(object), object.model, object.term, i);
        }
        throw Failure{CMPI_RC_ERR_NO_SUCH_PROPERTY};
    });
}

CMPIStatus getData(const CMPIPredicate* handle, CMPIType* type, CMPIPredOp* operation,
                   CMPIString** left, CMPIString** right) noexcept {
    return enter<PredicateObject>(handle, [&](PredicateObject& object) {
        const WqlPredicate& predicate = object.predicate();
        if (type) *type = typeOf(predicate);
        if (operation) *operation = codeOf(predicate.operation);
        if (left) *left = &makeText(partOf(object), textOf(predicate.left));
        if (!right) return;
        *right = hasRightSide(predicate.operation)
                     ? &makeText(partOf(object), textOf(predicate.right))
                     : nullptr;
    });
}

CMPIBoolean evaluateUsingAccessor(const CMPIPredicate* handle, CMPIAccessor* accessor,
                                  void* parameter, CMPIStatus* status) noexcept {
    return enter<PredicateObject>(handle, status, [&](PredicateObject& object) -> CMPIBoolean {
        AccessorValues values(accessor, parameter);
        return evaluate(object.predicate(), values, nullptr) == Truth::yes;
    });
}

}  // namespace

const CMPISelectCondFT SelectCondObject::table = {
    CMPICurrentVersion,
    releaseObject<SelectCondObject>,
    cloneObject<SelectCondObject>,
    getCountAndType,
    getSubCondAt,
};

const CMPISubCondFT SubCondObject::table = {
    CMPICurrentVersion,
    releaseObject<SubCondObject>,
    cloneObject<SubCondObject>,
    getCount,
    getPredicateAt,
    getPredicate,
};

const CMPIPredicateFT PredicateObject::table = {
    CMPICurrentVersion,    releaseObject<PredicateObject>, cloneObject<PredicateObject>, getData,
    evaluateUsingAccessor,
};

SelectCondObject& makeSelectCond(const Home& home, NormalForm form, std::vector<WqlTerm> terms) {
    return make<SelectCondObject>(
        home, std::make_shared<const SelectCondModel>(SelectCondModel{form, std::move(terms)}));
}

}  // namespace cimhost
