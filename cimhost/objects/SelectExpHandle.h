#pragma once

#include "cimhost/objects/Object.h"
#include "cimhost/query/WqlEvaluation.h"
#include "cimhost/query/WqlQuery.h"

#include <memory>

namespace cimhost {

/// A query. It selects an instance of its class or a subclass, as the repository knows them, whose
/// properties meet the condition. getDOC and getCOD answer NOT_SUPPORTED when the normal form would
/// be too long (WqlNormalForm.h).
struct SelectExpObject : ObjectBase<CMPISelectExp, ObjectKind::selectExpression> {
    static const CMPISelectExpFT table;

    explicit SelectExpObject(std::shared_ptr<const WqlQuery> content) noexcept
        : query(std::move(content)) {}

    std::shared_ptr<const WqlQuery> query;
};

CMPISelectExp* makeSelectExp(const Broker& broker, std::shared_ptr<const WqlQuery> query);

/// Values that a provider's callback gives. What it has under a name is asked for once.
class AccessorValues final : public WqlValues {
public:
    /// Failure CMPI_RC_ERR_INVALID_PARAMETER without a callback.
    AccessorValues(CMPIAccessor* accessor, void* parameter);

    const Value* find(const std::string& property) override;

private:
    struct Known {
        std::string name;
        Value value;
    };

    CMPIAccessor* _accessor;
    void* _parameter;
    std::vector<std::unique_ptr<Known>> _known;
};

}  // namespace cimhost
