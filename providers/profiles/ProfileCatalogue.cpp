#include "providers/profiles/ProfileCatalogue.h"

#include "providers/profiles/LinkClasses.h"
#include "providers/profiles/RegisteredProfile.h"
#include "toolkit/CollectionProvider.h"

#include <map>

namespace profiles {

using PYL::AssociationClass;
using PYL::CmpiManagedInstanceCollection;
using PYL::ProfileDB;
using PYL::PRPDBRec;
using PYL::TwoEndedAssociation;

namespace {

using Profiles = std::shared_ptr<const ProfileDB>;

TwoEndedAssociation::End endAt(const Profiles& profiles, const PRPDBRec& record) {
    return [profiles, record] { return pathOf(*profiles, record); };
}

class Relations {
public:
    Relations(const Profiles& profiles, CmpiManagedInstanceCollection& collection)
        : _profiles(profiles), _collection(collection) {
        forEachRecord(*profiles,
                      [&](const PRPDBRec& record) { _byId.emplace(record.getId(), record); });
    }

    /// Links a record to the profile that it relates to; to none when there is no such record.
    void add(const AssociationClass& linkClass, int antecedent, const PRPDBRec& dependent) {
        const auto found = _byId.find(antecedent);
        if (found == _byId.end()) return;
        PYL::add(_collection, std::make_unique<TwoEndedAssociation>(
                                  linkClass, endAt(_profiles, found->second),
                                  endAt(_profiles, dependent), profileNameSpace()));
    }

private:
    const Profiles& _profiles;
    CmpiManagedInstanceCollection& _collection;
    std::map<int, PRPDBRec> _byId;
};

}  // namespace

void forEachRecord(const ProfileDB& profiles, const std::function<void(const PRPDBRec&)>& visit) {
    PRPDBRec record;
    for (unsigned int i = 0; profiles.getRecord(i, record) == 0; ++i) visit(record);
}

void addCatalogue(const Profiles& profiles, CmpiManagedInstanceCollection& collection) {
    Relations relations(profiles, collection);
    forEachRecord(*profiles, [&](const PRPDBRec& record) {
        add(collection, std::make_unique<RegisteredProfile>(profiles, record));
        for (unsigned int i = 0; i < record.getSizeofRefedProfiles(); ++i) {
            relations.add(referencedProfile, record.getRefedProfile(i), record);
        }
        for (unsigned int i = 0; i < record.getSizeofExtendsProfiles(); ++i) {
            relations.add(extendsProfile, record.getExtendsProfile(i), record);
        }
    });
}

}  // namespace profiles
