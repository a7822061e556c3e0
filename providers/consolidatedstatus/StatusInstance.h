#pragma once

#include "common/CmpiManagedInstance.h"
#include "providers/consolidatedstatus/StatusBoard.h"

#include <memory>
#include <string>

namespace consolidatedstatus {

/// PYL_ConsolidatedStatus: what one class posted or, without a class, the worst of everything.
class StatusInstance : public PYL::CmpiManagedInstance {
public:
    static constexpr const char* className = "PYL_ConsolidatedStatus";

    explicit StatusInstance(std::shared_ptr<const StatusBoard> board,
                            std::string reportingClass = {})
        : _board(std::move(board)), _reportingClass(std::move(reportingClass)) {}

    CmpiCpp::CmpiObjectPath getPath() override;
    CmpiCpp::CmpiInstance getInstance() override;
    CmpiCpp::CmpiName getClassName() override { return className; }

private:
    std::shared_ptr<const StatusBoard> _board;
    std::string _reportingClass;
};

}  // namespace consolidatedstatus
