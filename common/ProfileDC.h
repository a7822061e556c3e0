#pragma once

#include "platform/logger/Logger.h"
#include "pylcommon_export.h"

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace PYL {

struct CollectionRow;

/// What the data collection gathers of one profile: its classes, the kind of each and the level at
/// which it is gathered. A value; copying one of the table's allocates nothing.
///
/// The getters with an index do not check it: it must be below the matching size.
class PYL_EXPORT PRPDCRec {
public:
    /// An empty row.
    PRPDCRec() noexcept = default;

    /// A row of its own copies of all of this. No table may be null; those of texts end with a null
    /// pointer, that of levels with -1. Each is read to its own end: they may differ in length.
    PRPDCRec(int id, const std::string& regName, const std::string& NameSpaces,
             const char* const* ClassNames, const char* const* ClassTypes, const int* ClassLevels);

    /// @{
    /// Moving copies: a row that was moved from still is what it was.
    PRPDCRec(const PRPDCRec&) = default;
    PRPDCRec& operator=(const PRPDCRec&) = default;
    /// @}
    ~PRPDCRec() = default;

    /// The number of the row; not the id of a registered profile.
    int getId() const { return _Id; }
    /// The registered name of the profile.
    std::string getRegName() const { return std::string(_registeredName); }
    /// The namespace of all classes of the row.
    std::string getCollectionNameSpace() const { return std::string(_CollectionNameSpaces); }

    /// @{
    /// The classes, whether each is an "Instance" or an "Association" class, and its level, index
    /// by index. A level may be 0.
    unsigned int getSizeofCollectionClassName() const {
        return static_cast<unsigned int>(_CollectionClassNames.size());
    }
    unsigned int getSizeofCollectionNameType() const {
        return static_cast<unsigned int>(_CollectionClassTypes.size());
    }
    std::string getCollectionClassName(unsigned int i) const { return _CollectionClassNames[i]; }
    std::string getCollectionNameType(unsigned int i) const { return _CollectionClassTypes[i]; }
    int getCollectionClassLevel(unsigned int i) const { return _CollectionClassLevels[i]; }
    /// @}

    /// @{
    /// The classes that turned out to be implemented, with their types and levels. The table has
    /// none; whoever finds them adds them to a copy, one value at a time.
    unsigned int getSizeofImplementClassName() const {
        return static_cast<unsigned int>(_ImplementClassNames.size());
    }
    std::string getImplementClassName(unsigned int i) const { return _ImplementClassNames[i]; }
    std::string getImplementClassType(unsigned int i) const { return _ImplementClassTypes[i]; }
    int getImplementClassLevel(unsigned int i) const { return _ImplementClassLevels[i]; }
    void setImplementClassNames(std::string name);
    void setImplementClassTypes(std::string type);
    void setImplementClassLevels(int level);
    /// @}

private:
    friend class ProfileDC;

    explicit PRPDCRec(const CollectionRow& row) noexcept;

    // NOLINTBEGIN(bugprone-reserved-identifier): as those who know the table know them
    // The first six are views: on the table's constants, or on the row's own copies.
    int _Id = 0;
    std::string_view _registeredName;
    std::string_view _CollectionNameSpaces;
    std::span<const char* const> _CollectionClassNames;
    std::span<const char* const> _CollectionClassTypes;
    std::span<const int> _CollectionClassLevels;
    std::vector<std::string> _ImplementClassNames;
    std::vector<std::string> _ImplementClassTypes;
    std::vector<int> _ImplementClassLevels;
    // NOLINTEND(bugprone-reserved-identifier)
    std::shared_ptr<const void> _copies;  // none for a row of the table
};

/// What the data collection gathers, a row a profile, in the order in which they were added. A
/// provider makes its own and fills it once with initialize().
///
/// Threads: no locks. Any number may read while none adds.
class PYL_EXPORT ProfileDC {
public:
    /// An empty table. Keeps a copy of the logger, with ":ProfileDC" added to its source.
    explicit ProfileDC(Logger& log);
    ProfileDC(const ProfileDC&) = delete;
    ProfileDC& operator=(const ProfileDC&) = delete;
    ~ProfileDC();

    /// Adds the rows of the table; all of them once more when called again.
    void initialize();

    /// Adds a copy of the row.
    void make(const PRPDCRec& record);

    /// How many getRecord() can copy.
    unsigned int getNumRecords() const { return static_cast<unsigned int>(_records.size()); }

    /// Copies the row at this position, counted from 0. The result is 0, or 4 (as
    /// CMPI_RC_ERR_INVALID_PARAMETER) when there is none, and `record` stays as it is.
    int getRecord(unsigned int recordNumber, PRPDCRec& record) const;

private:
    std::vector<PRPDCRec> _records;
    Logger _log;
};

}  // namespace PYL
