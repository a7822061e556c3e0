#pragma once

#include "platform/logger/Logger.h"
#include "pylcommon_export.h"

#include <cstdint>
#include <string>
#include <vector>

namespace PYL {

enum class RecordSet : std::uint8_t;
struct IndicationRow;

/// The definition of one alert indication: what does not depend on the device that raises it.
/// A plain value.
struct PYL_EXPORT IndDBRec {
    /// All texts empty, all numbers 0.
    IndDBRec() = default;

    /// All values, in the order of the fields.
    IndDBRec(std::string providerName, int eventID, std::string WBEMProviderName,
             std::string WBEMEventID, int severity, std::string description, std::string summary,
             unsigned int eventCategory, unsigned int eventSubCategory,
             std::string otherEventSubCategory, unsigned short alertType,
             std::string otherAlertType, std::string otherSeverity, unsigned short probableCause,
             std::string probableCauseDescription, std::string recommendedActions);

    /// The indication provider that the record belongs to, or "NONE".
    std::string _providerName;
    /// The number by which the provider knows the event.
    int _eventID = 0;
    /// The provider's name for display, such as "KT Cooling".
    std::string _WBEMProviderName;  // NOLINT(bugprone-reserved-identifier): as its users know it
    /// The number by which management consoles know the event, as text. Not always _eventID.
    std::string _WBEMEventID;  // NOLINT(bugprone-reserved-identifier)
    /// An indicationSeverity.
    int _severity = 0;
    /// What happened, for the reader of the alert.
    std::string _description;
    /// One line. A heart beat's ends in "Id:", and the provider appends an identifier.
    std::string _summary;
    /// @{
    /// The maker's own classification.
    unsigned int _eventCategory = 0;
    unsigned int _eventSubCategory = 0;
    std::string _otherEventSubCategory;
    /// @}
    /// The value map of CIM_AlertIndication.AlertType.
    unsigned short _alertType = 0;
    /// @{
    /// In words, what the number beside it says by "other".
    std::string _otherAlertType;
    std::string _otherSeverity;
    /// @}
    /// The value map of CIM_AlertIndication.ProbableCause.
    unsigned short _probableCause = 0;
    /// The event's title.
    std::string _probableCauseDescription;
    /// What the reader may do about it.
    std::string _recommendedActions;
};

/// The definitions of one provider's alert indications on this kind of machine.
///
/// Never changes after construction: getRecord() may be called from several threads at once.
class PYL_EXPORT IndicationDB {
public:
    /// Loads the records of the provider with exactly this name, such as "PYL_FanIndication". A
    /// name that the machine's record set does not know, and a machine that does not tell what it
    /// is, give a single placeholder record with event number 0 and "NONE" for a name, and a line
    /// in the log. Keeps a copy of the logger, with ":IndicationDB" added to its source.
    IndicationDB(Logger& log, const std::string& providerName);
    IndicationDB(const IndicationDB&) = delete;
    IndicationDB& operator=(const IndicationDB&) = delete;
    ~IndicationDB();

    /// Copies the first record with this event number and answers 0. Without one the answer is 4
    /// and `out` stays as it is.
    int getRecord(int eventID, IndDBRec& out) const;

    /// Appends a copy of the record. For construction only.
    void make(const IndDBRec& rec);

private:
    void _makeGroup(const std::string& providerName, RecordSet set);
    void _makeRow(const std::string& providerName, const IndicationRow& row);

    std::vector<IndDBRec> _records;
    Logger _log;
};

}  // namespace PYL
