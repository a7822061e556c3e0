#pragma once

#include <functional>
#include <memory>

#include "common/CmpiManagedInstanceCollection.h"
#include "common/ProfileDB.h"
#include "platform/logger/Logger.h"

namespace profiles {

/// Visits every record of the database, in order.
void forEachRecord(PYL::ProfileDB const& profiles,
                   std::function<void(PYL::PRPDBRec const&)> const& visit);

/// Adds the registered profiles and the links between them to a collection.
void addCatalogue(std::shared_ptr<PYL::ProfileDB const> const& profiles,
                  PYL::CmpiManagedInstanceCollection& collection);

/// Adds an instance to a collection, which owns it from then on.
void addTo(PYL::CmpiManagedInstanceCollection& collection,
           std::unique_ptr<PYL::CmpiManagedInstance> instance);

}  // namespace profiles
