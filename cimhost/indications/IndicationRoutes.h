#pragma once

#include "cimhost/indications/IndicationOutlet.h"
#include "cimhost/objects/Broker.h"
#include "cimhost/query/WqlQuery.h"

#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace cimhost {

/// Where the indications of one subscription come from and go to.
struct IndicationRoute {
    std::vector<std::string> nameSpaces;  ///< of origin
    std::shared_ptr<const WqlQuery> query;
    std::string filterName;
    PropertySelection selection;  ///< what the query selects
    std::shared_ptr<IndicationQueue> queue;
};

/// The selection of a query: the properties it names, and those that tell the listener what it got
/// and whether something is missing.
PropertySelection selectionOf(const WqlQuery& query);

/// Brings indications to those who asked for them. Safe from several threads: indications are
/// delivered on the threads that raise them, by the routes as they were when they came.
class IndicationRoutes final : public IndicationSink {
public:
    /// The repository and the log outlive the routes.
    IndicationRoutes(const Repository& repository, BrokerLog& log)
        : _repository(repository), _log(log) {}

    /// From now on these are the routes.
    void set(std::vector<std::shared_ptr<const IndicationRoute>> routes);

    /// Hands the indication to the queue of every route that selects it. A route that fails is
    /// logged and does not keep the others from theirs.
    void deliver(const RequestContext& context, std::string_view nameSpace,
                 const Instance& indication) override;

private:
    using Routes = std::vector<std::shared_ptr<const IndicationRoute>>;

    std::shared_ptr<const Routes> _current() const;
    void _deliver(const IndicationRoute& route, std::string_view origin,
                  const Instance& indication) const noexcept;

    const Repository& _repository;
    BrokerLog& _log;
    mutable std::mutex _mutex;
    std::shared_ptr<const Routes> _routes = std::make_shared<const Routes>();
};

}  // namespace cimhost
