#include "providers/profiles/DataCollection.h"

#include "cmpicpp/CmpiStatus.h"
#include "common/PYLUtil.h"
#include "toolkit/LocalPaths.h"
#include "toolkit/Methods.h"
#include "toolkit/Properties.h"

#include <string>
#include <vector>

namespace profiles {

using CmpiCpp::CmpiMethodResult;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiStatus;
using PYL::PRPDCRec;
using PYL::PYLUtil;

namespace {

constexpr const char* methodName = "GetCollectedClasses";

/// `at(i)` for each index.
template <typename At>
auto valuesOf(unsigned int size, At at) {
    std::vector<decltype(at(0U))> values;
    for (unsigned int i = 0; i < size; ++i) values.push_back(at(i));
    return values;
}

PRPDCRec rowNamed(const PYL::ProfileDC& table, const std::string& name) {
    PRPDCRec row;
    for (unsigned int i = 0; table.getRecord(i, row) == 0; ++i) {
        if (row.getRegName() == name) return row;
    }
    throw CmpiStatus(CMPI_RC_ERR_NOT_FOUND, "nothing is collected of a profile \"" + name + "\"");
}

void deliverClasses(const PRPDCRec& row, CmpiMethodResult& out) {
    const auto deliver = [&](const char* name, auto at) {
        const auto values = valuesOf(row.getSizeofCollectionClassName(), at);
        PYL::deliverArray(out, name, PYL::makeArray(values));
    };
    out.deliver(CmpiName("NameSpace"), row.getCollectionNameSpace());
    deliver("ClassNames", [&](unsigned int i) { return row.getCollectionClassName(i); });
    deliver("ClassTypes", [&](unsigned int i) { return row.getCollectionNameType(i); });
    deliver("ClassLevels", [&](unsigned int i) {
        return static_cast<unsigned short>(row.getCollectionClassLevel(i));
    });
}

}  // namespace

CmpiCpp::CmpiObjectPath DataCollection::getPath() { return PYL::makeInstanceIdPath(className); }

CmpiCpp::CmpiInstance DataCollection::getInstance() {
    auto instance = PYL::makeInstanceAt(getPath());
    instance.setProperty("ElementName", "Configuration data collection");
    const auto names = valuesOf(_table->getNumRecords(), [&](unsigned int i) {
        PRPDCRec row;
        _table->getRecord(i, row);
        return row.getRegName();
    });
    instance.setProperty("RegisteredNames", PYL::makeArray(names));
    return instance;
}

void DataCollection::invokeMethod(const CmpiName& method, const CmpiCpp::CmpiArgs& in,
                                  CmpiMethodResult& out) {
    if (!(method == CmpiName(methodName))) {
        return CmpiManagedInstance::invokeMethod(method, in, out);
    }
    const auto name = PYLUtil::getArg(in, "RegisteredName", CMPI_string).asString();
    deliverClasses(rowNamed(*_table, name), out);
    out.deliver(0U);
}

}  // namespace profiles
