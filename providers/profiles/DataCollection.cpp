#include "providers/profiles/DataCollection.h"

#include "cmpicpp/CmpiArray.h"
#include "cmpicpp/CmpiStatus.h"
#include "common/PYLUtil.h"

#include <string>

namespace profiles {

using CmpiCpp::CmpiArray;
using CmpiCpp::CmpiBroker;
using CmpiCpp::CmpiData;
using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiMethodResult;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;
using CmpiCpp::CmpiStatus;
using PYL::PRPDCRec;
using PYL::PYLUtil;

namespace {

constexpr const char* methodName = "GetCollectedClasses";

/// An array of `at(i)` for each index.
template <typename At>
CmpiArray arrayOf(unsigned int size, CMPIType type, At at) {
    auto array = CmpiCpp::makeCmpiArray(CmpiBroker(PYLUtil::getBroker()), size, type);
    for (unsigned int i = 0; i < size; ++i) array.setElementAt(i, at(i));
    return array;
}

void deliverArray(CmpiMethodResult& out, const char* name, const CmpiArray& array) {
    CMPIData data{};
    data.type = static_cast<CMPIType>(array.getType() | CMPI_ARRAY);
    data.state = CMPI_goodValue;
    data.value.array = const_cast<CMPIArray*>(array.toCMPI());  // C has no const here; only read
    out.deliver(CmpiName(name), CmpiData(array.broker(), data));
}

PRPDCRec rowNamed(const PYL::ProfileDC& table, const std::string& name) {
    PRPDCRec row;
    for (unsigned int i = 0; table.getRecord(i, row) == 0; ++i) {
        if (row.getRegName() == name) return row;
    }
    throw CmpiStatus(CMPI_RC_ERR_NOT_FOUND, "nothing is collected of a profile \"" + name + "\"");
}

void deliverClasses(const PRPDCRec& row, CmpiMethodResult& out) {
    const auto size = row.getSizeofCollectionClassName();
    out.deliver(CmpiName("NameSpace"), row.getCollectionNameSpace());
    deliverArray(out, "ClassNames", arrayOf(size, CMPI_string, [&](unsigned int i) {
                     return row.getCollectionClassName(i);
                 }));
    deliverArray(out, "ClassTypes", arrayOf(size, CMPI_string, [&](unsigned int i) {
                     return row.getCollectionNameType(i);
                 }));
    deliverArray(out, "ClassLevels", arrayOf(size, CMPI_uint16, [&](unsigned int i) {
                     return static_cast<unsigned short>(row.getCollectionClassLevel(i));
                 }));
}

}  // namespace

CmpiObjectPath DataCollection::getPath() {
    auto path = CmpiCpp::makeCmpiObjectPath(CmpiBroker(PYLUtil::getBroker()),
                                            PYL::BaseServerNameSpace, className);
    path.setHost(CmpiName(PYLUtil::getHostName()));
    path.addKey("InstanceID", std::string("KTQ:") + className + ":1");
    return path;
}

CmpiInstance DataCollection::getInstance() {
    const auto path = getPath();
    auto instance = CmpiCpp::makeCmpiInstance(CmpiBroker(PYLUtil::getBroker()), path);
    instance.setProperty("InstanceID", path.getKey("InstanceID"));
    instance.setProperty("ElementName", "Configuration data collection");
    instance.setProperty("RegisteredNames",
                         arrayOf(_table->getNumRecords(), CMPI_string, [&](unsigned int i) {
                             PRPDCRec row;
                             _table->getRecord(i, row);
                             return row.getRegName();
                         }));
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
