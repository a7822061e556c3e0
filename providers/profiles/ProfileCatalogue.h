#pragma once

#include "common/CmpiManagedInstanceCollection.h"
#include "common/ProfileDB.h"

#include <functional>
#include <memory>

namespace profiles {

/// Visits every record of the database, in order.
void forEachRecord(const PYL::ProfileDB& profiles,
                   const std::function<void(const PYL::PRPDBRec&)>& visit);

/// Adds the registered profiles and the links between them to a collection.
void addCatalogue(const std::shared_ptr<const PYL::ProfileDB>& profiles,
                  PYL::CmpiManagedInstanceCollection& collection);

}  // namespace profiles
