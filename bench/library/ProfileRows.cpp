// f1 and f2: a catalogue of profiles is made, and its last profile is looked for.
#include "bench/library/Rows.h"
#include "common/ProfileDB.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

using PYL::ProfileDB;
using PYL::PRPDBRec;

/// A record as one writes it down first: every text and every list its own.
struct PlainRecord {
    int id;
    int organization;
    std::string otherOrganization;
    std::string name;
    std::string version;
    std::vector<int> references;
    std::vector<int> extends;
    std::vector<std::string> classNames;
    std::vector<std::string> nameSpaces;
    std::vector<std::string> profiles;
};

PlainRecord plain(const PRPDBRec& record) {
    PlainRecord made{record.getId(),
                     record.getRegOrgId(),
                     record.getOtherRegOrg(),
                     record.getRegName(),
                     record.getRegVersion(),
                     {},
                     {},
                     {},
                     {},
                     {}};
    for (unsigned int i = 0; i < record.getSizeofRefedProfiles(); ++i) {
        made.references.push_back(record.getRefedProfile(i));
    }
    for (unsigned int i = 0; i < record.getSizeofExtendsProfiles(); ++i) {
        made.extends.push_back(record.getExtendsProfile(i));
    }
    for (unsigned int i = 0; i < record.getSizeofImpClassNames(); ++i) {
        made.classNames.push_back(record.getImpClassName(i));
    }
    for (unsigned int i = 0; i < record.getSizeofImpNameSpaces(); ++i) {
        made.nameSpaces.push_back(record.getImpNameSpace(i));
    }
    for (unsigned int i = 0; i < record.getSizeofImpProfiles(); ++i) {
        made.profiles.push_back(record.getImpProfile(i));
    }
    return made;
}

Logger& quiet() {
    static Logger log = [] {
        Logger made("bench");
        made.setLevel(LogLevel::error);
        return made;
    }();
    return log;
}

std::vector<PlainRecord> plainCatalogue() {
    ProfileDB profiles(quiet());
    profiles.initialize();
    std::vector<PlainRecord> records;
    PRPDBRec record;
    for (unsigned int i = 0; profiles.getRecord(i, record) == 0; ++i) {
        records.push_back(plain(record));
    }
    return records;
}

/// What the plain loop looks at.
struct PlainKey {
    int organization;
    const char* otherOrganization;
    const char* name;
    const char* version;
};

int find(const std::vector<PlainKey>& keys, const PlainKey& wanted) {
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (keys[i].organization == wanted.organization &&
            std::strcmp(keys[i].otherOrganization, wanted.otherOrganization) == 0 &&
            std::strcmp(keys[i].name, wanted.name) == 0 &&
            (*wanted.version == '\0' || std::strcmp(keys[i].version, wanted.version) == 0)) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

void addConstruction(const std::shared_ptr<const std::vector<PlainRecord>>& records) {
    addRow("f1/catalogue of 49/library", [] {
        ProfileDB profiles(quiet());
        profiles.initialize();
        benchmark::DoNotOptimize(profiles);
    });
    addRow("f1/catalogue of 49/anchor", [records] {
        std::vector<PlainRecord> made;
        for (const auto& record : *records) made.push_back(record);
        benchmark::DoNotOptimize(made);
    });
}

/// Of the last profile in a version that it has not, so that the whole catalogue is looked at and
/// no path is made.
void addLookUp(const std::shared_ptr<const std::vector<PlainRecord>>& records) {
    const auto profiles = std::make_shared<ProfileDB>(quiet());
    profiles->initialize();
    const auto& last = records->back();
    addRow("f2/last of 49/library", [profiles, last, version = std::string("0")] {
        const bool found =
            !profiles->getECTPpath(last.organization, last.otherOrganization, last.name, version)
                 .empty();
        if (found) std::abort();
    });
    std::vector<PlainKey> keys;
    for (const auto& record : *records) {
        keys.push_back({record.organization, record.otherOrganization.c_str(), record.name.c_str(),
                        record.version.c_str()});
    }
    addRow("f2/last of 49/anchor", [records, keys, last] {
        const PlainKey wanted{last.organization, last.otherOrganization.c_str(), last.name.c_str(),
                              "0"};
        if (find(keys, wanted) >= 0) std::abort();
    });
}

}  // namespace

void addProfileRows() {
    const auto records = std::make_shared<const std::vector<PlainRecord>>(plainCatalogue());
    addConstruction(records);
    addLookUp(records);
}
