#include "common/IndicationDB.h"

#include "common/detail/IndicationCatalogue.h"

#include <sys/utsname.h>

#include <algorithm>
#include <string_view>
#include <utility>

namespace PYL {

namespace {

constexpr int recordFound = 0;
constexpr int recordNotFound = 4;

/// What a database holds that knows of no events.
IndDBRec placeholder() {
    IndDBRec record;
    record._providerName = "NONE";
    record._WBEMProviderName = "NONE";
    record._WBEMEventID = "NONE";
    record._severity = severityInformational;
    record._alertType = alertTypeDevice;
    return record;
}

}  // namespace

IndDBRec::IndDBRec(std::string providerName, int eventID, std::string WBEMProviderName,
                   std::string WBEMEventID, int severity, std::string description,
                   std::string summary, unsigned int eventCategory, unsigned int eventSubCategory,
                   std::string otherEventSubCategory, unsigned short alertType,
                   std::string otherAlertType, std::string otherSeverity,
                   unsigned short probableCause, std::string probableCauseDescription,
                   std::string recommendedActions)
    : _providerName(std::move(providerName)),
      _eventID(eventID),
      _WBEMProviderName(std::move(WBEMProviderName)),
      _WBEMEventID(std::move(WBEMEventID)),
      _severity(severity),
      _description(std::move(description)),
      _summary(std::move(summary)),
      _eventCategory(eventCategory),
      _eventSubCategory(eventSubCategory),
      _otherEventSubCategory(std::move(otherEventSubCategory)),
      _alertType(alertType),
      _otherAlertType(std::move(otherAlertType)),
      _otherSeverity(std::move(otherSeverity)),
      _probableCause(probableCause),
      _probableCauseDescription(std::move(probableCauseDescription)),
      _recommendedActions(std::move(recommendedActions)) {}

IndicationDB::IndicationDB(Logger& log, const std::string& providerName) : _log(log) {
    _log.appendLogSource(":");
    _log.appendLogSource("IndicationDB");
    _log.info("cxtor()");
    utsname system{};
    if (::uname(&system) != 0) {
        _log.info("making empty DB for failed uname");
        make(placeholder());
        return;
    }
    const bool isValmor = std::string_view(system.machine) == "ia64";
    _log.info(isValmor ? "making DB for valmor" : "making DB for non-valmor");
    _makeGroup(providerName, isValmor ? RecordSet::valmor : RecordSet::nonValmor);
}

IndicationDB::~IndicationDB() { _log.info("dxtor()"); }

void IndicationDB::_makeGroup(const std::string& providerName, RecordSet set) {
    const auto rows = findIndicationRows(providerName);
    const auto isInSet = [set](const IndicationRow& row) { return row.isIn(set); };
    const auto count = std::ranges::count_if(rows, isInSet);
    if (count == 0) {
        _log.info("making empty DB for unrecognized provider name %s", providerName);
        make(placeholder());
        return;
    }
    _records.reserve(static_cast<std::size_t>(count));
    for (const IndicationRow& row : rows) {
        if (isInSet(row)) _makeRow(providerName, row);
    }
}

void IndicationDB::_makeRow(const std::string& providerName, const IndicationRow& row) {
    // Made in place: a record has many texts to copy.
    IndDBRec& record = _records.emplace_back();
    record._providerName = providerName;
    record._eventID = row.eventID;
    record._WBEMProviderName = row.family.WBEMProviderName;
    record._WBEMEventID = std::to_string(row.WBEMEventID);
    record._severity = row.severity;
    record._description = row.description;
    record._summary = row.summary;
    record._eventCategory = row.family.eventCategory;
    record._eventSubCategory = row.family.eventSubCategory;
    record._otherEventSubCategory = row.family.otherEventSubCategory;
    record._alertType = row.family.alertType;
    record._probableCause = row.probableCause;
    record._probableCauseDescription = row.probableCauseDescription;
    record._recommendedActions = row.recommendedActions;
}

int IndicationDB::getRecord(int eventID, IndDBRec& out) const {
    _log.info("getRecord for event %d", eventID);
    const auto record = std::ranges::find(_records, eventID, &IndDBRec::_eventID);
    if (record == _records.end()) {
        _log.info("No record found.");
        return recordNotFound;
    }
    _log.info("Found record");
    out = *record;
    return recordFound;
}

void IndicationDB::make(const IndDBRec& rec) { _records.push_back(rec); }

}  // namespace PYL
