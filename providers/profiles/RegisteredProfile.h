#pragma once

#include "common/CmpiManagedInstance.h"
#include "common/ProfileDB.h"

#include <memory>

namespace profiles {

/// The namespace of the registered profiles, "interop" as the library names it, under the name that
/// this host has for it: the first of "interop", "root/interop" and "root/PG_InterOp" that has
/// their class, "interop" when none has. Looked up once.
const char* profileNameSpace();

/// The path of a record's registered profile on this host.
CmpiCpp::CmpiObjectPath pathOf(const PYL::ProfileDB& profiles, const PYL::PRPDBRec& record);

/// PYL_RegisteredProfile: one profile that is implemented here.
class RegisteredProfile : public PYL::CmpiManagedInstance {
public:
    /// The record is one of the database.
    RegisteredProfile(std::shared_ptr<const PYL::ProfileDB> profiles, const PYL::PRPDBRec& record)
        : _profiles(std::move(profiles)), _record(record) {}

    CmpiCpp::CmpiObjectPath getPath() override { return pathOf(*_profiles, _record); }
    CmpiCpp::CmpiInstance getInstance() override;
    CmpiCpp::CmpiName getClassName() override;

private:
    std::shared_ptr<const PYL::ProfileDB> _profiles;
    PYL::PRPDBRec _record;
};

}  // namespace profiles
