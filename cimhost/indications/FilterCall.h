#pragma once

#include "cimhost/modules/ProviderCall.h"
#include "cimhost/query/WqlQuery.h"

#include <memory>
#include <string>

namespace cimhost {

/// Notes whether mustPoll answered TRUE.
class PollAnswer final : public ResultSink {
public:
    void data(const Value& value) override;

    bool insists = false;
};

/// One call of an indication MI about a filter, in one of its namespaces. Each function throws what
/// the provider answers. As a local variable.
class FilterCall {
public:
    FilterCall(const Broker& broker, RequestContext request,
               const std::shared_ptr<const WqlQuery>& query, const std::string& nameSpace);

    void authorize(const MiUse<CMPIIndicationMI>& use);
    /// True when the provider wants to be polled.
    bool mustPoll(const MiUse<CMPIIndicationMI>& use);
    void activate(const MiUse<CMPIIndicationMI>& use, bool isFirst);
    void deactivate(const MiUse<CMPIIndicationMI>& use, bool isLast);

private:
    std::string _className;
    bool _namesNoClass;  ///< where filters come and go
    std::string _owner;
    PollAnswer _answer;
    ProviderCall _call;
    CMPISelectExp* _filter;
    CMPIObjectPath* _path = nullptr;
};

/// Tells the MI that indications are accepted in the namespace, or no longer; nothing where it does
/// not care. Throws what it answers.
void enableIndications(const Broker& broker, RequestContext request, const std::string& nameSpace,
                       const MiUse<CMPIIndicationMI>& use);
void disableIndications(const Broker& broker, RequestContext request, const std::string& nameSpace,
                        const MiUse<CMPIIndicationMI>& use);

}  // namespace cimhost
