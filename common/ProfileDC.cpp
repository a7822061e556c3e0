#include "common/ProfileDC.h"

#include "cmpi/cmpidt.h"
#include "common/detail/TableViews.h"

#include <utility>

namespace PYL {

PRPDCRec::PRPDCRec(int id, const std::string& regName, const std::string& NameSpaces,
                   const char* const* ClassNames, const char* const* ClassTypes,
                   const int* ClassLevels)
    : _Id(id) {
    const auto copies = std::make_shared<TableCopies>();
    _registeredName = copies->text(regName);
    _CollectionNameSpaces = copies->text(NameSpaces);
    _CollectionClassNames = copies->names(namesOf(ClassNames));
    _CollectionClassTypes = copies->names(namesOf(ClassTypes));
    _CollectionClassLevels = copies->numbers(entriesOf(ClassLevels, -1));
    _copies = copies;
}

void PRPDCRec::setImplementClassNames(std::string name) {
    _ImplementClassNames.push_back(std::move(name));
}

void PRPDCRec::setImplementClassTypes(std::string type) {
    _ImplementClassTypes.push_back(std::move(type));
}

void PRPDCRec::setImplementClassLevels(int level) { _ImplementClassLevels.push_back(level); }

ProfileDC::ProfileDC(Logger& log) : _log(log) {
    _log.appendLogSource(":");
    _log.appendLogSource("ProfileDC");
    _log.info("cxtor()");
}

ProfileDC::~ProfileDC() { _log.info("dxtor()"); }

void ProfileDC::make(const PRPDCRec& record) { _records.push_back(record); }

int ProfileDC::getRecord(unsigned int recordNumber, PRPDCRec& record) const {
    if (recordNumber >= _records.size()) return CMPI_RC_ERR_INVALID_PARAMETER;
    record = _records[recordNumber];
    return CMPI_RC_OK;
}

}  // namespace PYL
