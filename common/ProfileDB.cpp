#include "common/ProfileDB.h"

#include "cmpicpp/CmpiBroker.h"
#include "common/PYLUtil.h"
#include "common/detail/TableViews.h"

#include <algorithm>

namespace PYL {

using CmpiCpp::CmpiBroker;
using CmpiCpp::CmpiObjectPath;

PRPDBRec::PRPDBRec(int id, int regOrgId, const std::string& otherRegOrg, const std::string& regName,
                   const std::string& regVersion, const char* const* impClassNames,
                   const char* const* impNameSpaces, const char* const* impProfiles,
                   const int* refs, const int* extends)
    : _Id(id), _registeredOrganization(regOrgId) {
    const auto copies = std::make_shared<TableCopies>();
    _otherRegisteredOrganization = copies->text(otherRegOrg);
    _registeredName = copies->text(regName);
    _registeredVersion = copies->text(regVersion);
    _referencedProfiles = copies->numbers(entriesOf(refs, 0));
    _extendsProfiles = copies->numbers(entriesOf(extends, 0));
    _implementationCentralClassNames = copies->names(namesOf(impClassNames));
    _implementationNameSpaces = copies->names(namesOf(impNameSpaces));
    _implementationProfiles = copies->names(namesOf(impProfiles));
    _copies = copies;
}

bool PRPDBRec::_is(int regOrgId, std::string_view otherRegOrg, std::string_view regName,
                   std::string_view regVersion) const noexcept {
    return _registeredOrganization == regOrgId && _registeredName == regName &&
           _otherRegisteredOrganization == otherRegOrg &&
           (regVersion.empty() || _registeredVersion == regVersion);
}

ProfileDB::ProfileDB(Logger& log) : _log(log) {
    _log.appendLogSource(":");
    _log.appendLogSource("ProfileDB");
    _log.info("cxtor()");
}

ProfileDB::~ProfileDB() { _log.info("dxtor()"); }

void ProfileDB::make(const PRPDBRec& record) { _records.push_back(record); }

int ProfileDB::getRecord(unsigned int recordNumber, PRPDBRec& record) const {
    if (recordNumber >= _records.size()) return CMPI_RC_ERR_INVALID_PARAMETER;
    record = _records[recordNumber];
    return CMPI_RC_OK;
}

CmpiObjectPath ProfileDB::getECTPpath(int regOrgId, const std::string& otherRegOrg,
                                      const std::string& regName,
                                      const std::string& regVersion) const {
    const auto found = std::ranges::find_if(_records, [&](const PRPDBRec& record) {
        return record._is(regOrgId, otherRegOrg, regName, regVersion);
    });
    const CmpiBroker broker(PYLUtil::getBroker());
    if (found == _records.end()) return CmpiObjectPath(broker);
    auto path = CmpiCpp::makeCmpiObjectPath(broker, PRPNameSpace, PRPRegisteredClassName);
    path.setHost(CmpiCpp::CmpiName(PYLUtil::getHostName()));
    path.addKey("InstanceID", "KTQ:" + std::to_string(found->_Id));
    return path;
}

CmpiObjectPath ProfileDB::getScopedPathToComputerSystem() const {
    return PYLUtil::getComputerSystemPath();
}

CmpiObjectPath ProfileDB::getScopedPathToFCHBAComputerSystem() {
    auto path = CmpiCpp::makeCmpiObjectPath(CmpiBroker(PYLUtil::getBroker()), BaseServerNameSpace,
                                            ScopedFCHBACentralClassName);
    path.setHost(CmpiCpp::CmpiName(PYLUtil::getHostName()));
    path.addKey("CreationClassName", ScopedFCHBACentralClassName);
    path.addKey("Name", PYLUtil::getSystemUUID(_log));
    return path;
}

}  // namespace PYL
