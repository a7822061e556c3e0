#include "cimhost/indications/IndicationRoutes.h"

#include "cimhost/query/WqlEvaluation.h"
#include "cimhost/repository/Names.h"

#include <algorithm>
#include <array>
#include <utility>

namespace cimhost {

namespace {

constexpr auto alwaysSelected =
    std::to_array<const char*>({"SequenceContext", "SequenceNumber", "IndicationFilterName"});

}  // namespace

PropertySelection selectionOf(const WqlQuery& query) {
    PropertySelection selection;
    if (!query.selection) return selection;
    selection.names.emplace(alwaysSelected.begin(), alwaysSelected.end());
    for (const WqlProperty& property : *query.selection) {
        selection.names->push_back(property.parts.front());
    }
    return selection;
}

void IndicationRoutes::set(Routes routes) {
    // Declared before the lock: the old routes, and queues that end with them, go once it is free.
    auto next = std::make_shared<const Routes>(std::move(routes));
    const std::lock_guard lock(_mutex);
    _routes.swap(next);
}

std::shared_ptr<const IndicationRoutes::Routes> IndicationRoutes::_current() const {
    const std::lock_guard lock(_mutex);
    return _routes;
}

void IndicationRoutes::deliver(const RequestContext&, std::string_view nameSpace,
                               const Instance& indication) {
    const std::shared_ptr<const Routes> routes = _current();
    if (routes->empty()) return;
    const std::string_view origin = trimmedSlashes(nameSpace);
    for (const auto& route : *routes) {
        if (containsName(route->nameSpaces, origin)) _deliver(*route, origin, indication);
    }
}

void IndicationRoutes::_deliver(const IndicationRoute& route, std::string_view origin,
                                const Instance& indication) const noexcept {
    try {
        const NameSpace* const nameSpace = _repository.find(origin);
        if (!selects(*route.query, indication, nameSpace)) return;
        const Class* const definition =
            nameSpace ? nameSpace->findClass(indication.className()) : nullptr;
        route.queue->put({indication, definition, route.selection, route.filterName, origin});
    } catch (const std::exception& error) {
        _log.write(BrokerLog::Level::error, "indications", error.what());
    }
}

}  // namespace cimhost
