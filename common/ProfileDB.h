#pragma once

#include "cmpicpp/CmpiObjectPath.h"
#include "platform/logger/Logger.h"
#include "pylcommon_export.h"

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace PYL {

struct ProfileRow;

/// One registered profile (DSP1033): what it is, who owns it, what it builds on and where it is
/// implemented. A value; copying one of the catalogue's allocates nothing.
///
/// The getters with an index do not check it: it must be below the matching size.
class PYL_EXPORT PRPDBRec {
public:
    /// An empty record.
    PRPDBRec() noexcept = default;

    /// A record of its own copies of all of this. No table may be null; those of names end with a
    /// null pointer, those of ids with 0, which therefore is no profile's id.
    PRPDBRec(int id, int regOrgId, const std::string& otherRegOrg, const std::string& regName,
             const std::string& regVersion, const char* const* impClassNames,
             const char* const* impNameSpaces, const char* const* impProfiles, const int* refs,
             const int* extends);

    /// @{
    /// Moving copies: a record that was moved from still is what it was.
    PRPDBRec(const PRPDBRec&) noexcept = default;
    PRPDBRec& operator=(const PRPDBRec&) noexcept = default;
    /// @}
    ~PRPDBRec() = default;

    /// Unique within a database and never 0; also the end of the registered profile's InstanceID.
    int getId() const { return _Id; }
    /// CIM_RegisteredProfile.RegisteredOrganization: 1 other, 2 DMTF, 11 SNIA.
    int getRegOrgId() const { return _registeredOrganization; }
    /// The owner's name when the organisation is "other"; empty otherwise.
    std::string getOtherRegOrg() const { return std::string(_otherRegisteredOrganization); }
    /// @{
    /// CIM_RegisteredProfile.RegisteredName and RegisteredVersion.
    std::string getRegName() const { return std::string(_registeredName); }
    std::string getRegVersion() const { return std::string(_registeredVersion); }
    /// @}

    /// @{
    /// The ids of the profiles that this one references.
    unsigned int getSizeofRefedProfiles() const { return _sizeOf(_referencedProfiles); }
    int getRefedProfile(unsigned int i) const { return _referencedProfiles[i]; }
    /// @}

    /// @{
    /// The ids of the profiles that this one extends.
    unsigned int getSizeofExtendsProfiles() const { return _sizeOf(_extendsProfiles); }
    int getExtendsProfile(unsigned int i) const { return _extendsProfiles[i]; }
    /// @}

    /// @{
    /// The central or scoping classes through which the profile is implemented, and their
    /// namespaces, index by index.
    unsigned int getSizeofImpClassNames() const {
        return _sizeOf(_implementationCentralClassNames);
    }
    std::string getImpClassName(unsigned int i) const {
        return _implementationCentralClassNames[i];
    }
    unsigned int getSizeofImpNameSpaces() const { return _sizeOf(_implementationNameSpaces); }
    std::string getImpNameSpace(unsigned int i) const { return _implementationNameSpaces[i]; }
    /// @}

    /// @{
    /// The names of the profiles under which these classes are implemented too.
    unsigned int getSizeofImpProfiles() const { return _sizeOf(_implementationProfiles); }
    std::string getImpProfile(unsigned int i) const { return _implementationProfiles[i]; }
    /// @}

private:
    friend class ProfileDB;

    explicit PRPDBRec(const ProfileRow& row) noexcept;

    /// Whether it is the profile of that name, in that version if one is given.
    bool _is(int regOrgId, std::string_view otherRegOrg, std::string_view regName,
             std::string_view regVersion) const noexcept;

    template <typename Entry>
    static unsigned int _sizeOf(std::span<const Entry> list) {
        return static_cast<unsigned int>(list.size());
    }

    // All of these are views: on the catalogue's constants, or on the record's own copies.
    int _Id = 0;  // NOLINT(bugprone-reserved-identifier): as those who know the records know it
    int _registeredOrganization = 0;
    std::string_view _otherRegisteredOrganization;
    std::string_view _registeredName;
    std::string_view _registeredVersion;
    std::span<const int> _referencedProfiles;
    std::span<const int> _extendsProfiles;
    std::span<const char* const> _implementationCentralClassNames;
    std::span<const char* const> _implementationNameSpaces;
    std::span<const char* const> _implementationProfiles;
    std::shared_ptr<const void> _copies;  // none for a record of the catalogue
};

/// The registered profiles, in the order in which they were added, and the object paths that links
/// to them need. A provider makes its own and fills it once with initialize().
///
/// Threads: no locks. Any number may read while none adds.
class PYL_EXPORT ProfileDB {
public:
    /// An empty database. Keeps a copy of the logger, with ":ProfileDB" added to its source.
    explicit ProfileDB(Logger& log);
    ProfileDB(const ProfileDB&) = delete;
    ProfileDB& operator=(const ProfileDB&) = delete;
    ~ProfileDB();

    /// Adds the profiles of the catalogue; all of them once more when called again.
    void initialize();

    /// Adds a copy of the record.
    void make(const PRPDBRec& record);

    /// How many getRecord() can copy.
    unsigned int getNumRecords() const { return static_cast<unsigned int>(_records.size()); }

    /// Copies the record at this position, counted from 0. The result is 0, or 4 (as
    /// CMPI_RC_ERR_INVALID_PARAMETER) when there is none, and `record` stays as it is.
    int getRecord(unsigned int recordNumber, PRPDBRec& record) const;

    /// The path of the registered profile, or an empty path of the broker when there is none. Names
    /// compare exactly. An empty version matches all: the first that was added counts. Throws what
    /// the broker answers when it cannot make the path.
    CmpiCpp::CmpiObjectPath getECTPpath(int regOrgId, const std::string& otherRegOrg,
                                        const std::string& regName,
                                        const std::string& regVersion) const;

    /// @{
    /// The scoping systems: the host, and its Fibre Channel HBA system, whose name is the system
    /// UUID and empty when that cannot be read.
    CmpiCpp::CmpiObjectPath getScopedPathToComputerSystem() const;
    CmpiCpp::CmpiObjectPath getScopedPathToFCHBAComputerSystem();
    /// @}

private:
    std::vector<PRPDBRec> _records;
    Logger _log;
};

}  // namespace PYL
