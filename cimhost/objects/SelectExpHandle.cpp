#include "cimhost/objects/SelectExpHandle.h"

#include "cimhost/objects/Entry.h"
#include "cimhost/objects/InstanceHandle.h"
#include "cimhost/objects/SelectCondHandle.h"
#include "cimhost/objects/StringHandle.h"
#include "cimhost/objects/Values.h"
#include "cimhost/repository/Names.h"

#include <utility>

namespace cimhost {

namespace {

CMPIBoolean evaluate(const CMPISelectExp* handle, const CMPIInstance* instance,
                     CMPIStatus* status) noexcept {
    return enter<SelectExpObject>(handle, status, [&](SelectExpObject& object) {
        const Instance& model = requiredObject<InstanceObject>(instance).read();
        return selects(*object.query, model,
                       object.broker->repository().find(model.path.nameSpace));
    });
}

CMPIBoolean evaluateUsingAccessor(const CMPISelectExp* handle, CMPIAccessor* accessor,
                                  void* parameter, CMPIStatus* status) noexcept {
    return enter<SelectExpObject>(handle, status, [&](SelectExpObject& object) -> CMPIBoolean {
        AccessorValues values(accessor, parameter);
        return meetsCondition(*object.query, values, nullptr);
    });
}

CMPIString* getString(const CMPISelectExp* handle, CMPIStatus* status) noexcept {
    return enter<SelectExpObject>(handle, status, [](SelectExpObject& object) {
        return &makeText(partOf(object), object.query->text);
    });
}

CMPISelectCond* condition(const CMPISelectExp* handle, NormalForm form,
                          CMPIStatus* status) noexcept {
    return enter<SelectExpObject>(
        handle, status, [&](SelectExpObject& object, CMPIrc& code) -> CMPISelectCond* {
            auto terms = normalForm(object.query->condition, form);
            if (terms) return &makeSelectCond(partOf(object), form, std::move(*terms));
            code = CMPI_RC_ERR_NOT_SUPPORTED;
            return nullptr;
        });
}

CMPISelectCond* getDOC(const CMPISelectExp* handle, CMPIStatus* status) noexcept {
    return condition(handle, NormalForm::disjunctive, status);
}

CMPISelectCond* getCOD(const CMPISelectExp* handle, CMPIStatus* status) noexcept {
    return condition(handle, NormalForm::conjunctive, status);
}

}  // namespace

const CMPISelectExpFT SelectExpObject::table = {
    CMPICurrentVersion,
    releaseObject<SelectExpObject>,
    cloneObject<SelectExpObject>,
    evaluate,
    getString,
    getDOC,
    getCOD,
    evaluateUsingAccessor,
};

CMPISelectExp* makeSelectExp(const Broker& broker, std::shared_ptr<const WqlQuery> query) {
    return &make<SelectExpObject>({broker}, std::move(query));
}

AccessorValues::AccessorValues(CMPIAccessor* accessor, void* parameter)
    : _accessor(accessor), _parameter(parameter) {
    if (!accessor) throw Failure{CMPI_RC_ERR_INVALID_PARAMETER};
}

const Value* AccessorValues::find(const std::string& property) {
    for (const auto& known : _known) {
        if (equalNames(known->name, property)) return &known->value;
    }
    const CMPIData data = _accessor(property.c_str(), _parameter);
    constexpr unsigned int without = CMPI_nullValue | CMPI_notFound | CMPI_badValue;
    Value value;
    if ((data.state & without) == 0) value = valueOf(&data.value, data.type);
    _known.push_back(std::make_unique<Known>(Known{property, std::move(value)}));
    return &_known.back()->value;
}

}  // namespace cimhost
