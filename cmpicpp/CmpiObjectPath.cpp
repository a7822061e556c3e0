#include "cmpicpp/CmpiObjectPath.h"

#include "cmpicpp/detail/Calls.h"
#include "cmpicpp/detail/Equality.h"
#include "cmpicpp/detail/TextForm.h"

#include <ostream>

namespace CmpiCpp {

namespace {

template <typename Getter>
CmpiName nameFrom(const CMPIObjectPath* path, Getter getter) {
    return !path ? CmpiName() : CmpiName(textOf(ask(path->ft->*getter, path)));
}

}  // namespace

CmpiName CmpiObjectPath::getHost() const {
    return nameFrom(_handle.get(), &CMPIObjectPathFT::getHostname);
}

CmpiName CmpiObjectPath::getNameSpace() const {
    return nameFrom(_handle.get(), &CMPIObjectPathFT::getNameSpace);
}

CmpiName CmpiObjectPath::getClassName() const {
    return nameFrom(_handle.get(), &CMPIObjectPathFT::getClassName);
}

void CmpiObjectPath::setHost(const CmpiName& host) {
    CMPIObjectPath* const path = _handle.writable();
    tell(path->ft->setHostname, path, host.c_str());
}

void CmpiObjectPath::setNameSpace(const CmpiName& nameSpace) {
    CMPIObjectPath* const path = _handle.writable();
    tell(path->ft->setNameSpace, path, nameSpace.c_str());
}

void CmpiObjectPath::setClassName(const CmpiName& className) {
    CMPIObjectPath* const path = _handle.writable();
    tell(path->ft->setClassName, path, className.c_str());
}

unsigned int CmpiObjectPath::getKeyCount() const {
    const CMPIObjectPath* const path = _handle.get();
    return !path ? 0 : keyCount(path);
}

CmpiData CmpiObjectPath::getKey(const char* name) const {
    const CMPIObjectPath* const path = _handle.get();
    CMPIData key;
    if (!path || !find(key, path->ft->getKey, path, name)) throwAbsent(name);
    return {broker(), key};
}

std::pair<CmpiName, CmpiData> CmpiObjectPath::getKeyAt(unsigned int index) const {
    const CMPIObjectPath* const path = _handle.get();
    std::pair<CmpiName, CmpiData> item;
    unsigned int before = index;
    const auto take = [&](const CMPIString* name, const CMPIData& key) {
        if (before-- != 0) return true;
        item = {CmpiName(textOf(name)), CmpiData(broker(), key)};
        return false;
    };
    if (!path || forEachKey(path, take)) throwAbsent(index);
    return item;
}

void CmpiObjectPath::addKey(const char* name, CmpiValue value) {
    CMPIObjectPath* const path = _handle.writable();
    const CMPIValue* const key = value.toCMPI(broker());
    if (!key) throw CmpiStatus(CMPI_RC_ERR_INVALID_PARAMETER, "A key cannot be NULL");
    // Not more is asked of the name, a sixth of what building a path costs: hosts take any, or
    // throw what call() turns into a status.
    if (!name || *name == '\0') {
        throw CmpiStatus(CMPI_RC_ERR_INVALID_PARAMETER, "A key needs a name");
    }
    tell(path->ft->addKey, path, name, key, value.type());
}

bool CmpiObjectPath::classPathIsA(const CmpiBroker& broker, const std::string& className) const {
    const CMPIBroker* const asked = required(broker.toCMPI());
    const CMPIObjectPath* const path = _handle.required();
    if (getClassName() == className) return true;
    // Object managers answer no, an error, or for the name space of the request.
    if (getNameSpace().empty()) {
        throw CmpiStatus(CMPI_RC_ERR_INVALID_NAMESPACE, "The path has no namespace");
    }
    return ask(asked->eft->classPathIsA, asked, path, className.c_str()) != 0;
}

std::string CmpiObjectPath::str() const {
    std::string text;
    if (empty()) return text;
    text.reserve(usualPathText);
    appendPath(text, _handle.get());
    return text;
}

bool operator==(const CmpiObjectPath& left, const CmpiObjectPath& right) {
    if (left.empty() || right.empty()) return left.empty() == right.empty();
    return equalPaths(left._handle.get(), right._handle.get());
}

CmpiObjectPath makeCmpiObjectPath(const CmpiBroker& broker, const char* nameSpace,
                                  const char* className) {
    const CMPIBroker* const asked = required(broker.toCMPI());
    return CmpiObjectPath(CmpiHandle<CMPIObjectPath>::fresh(
        asked, made(ask(asked->eft->newObjectPath, asked, nameSpace, className), "object path")));
}

CmpiObjectPath makeCmpiObjectPath(const CmpiBroker& broker, const CmpiName& nameSpace,
                                  const CmpiName& className) {
    return makeCmpiObjectPath(broker, nameSpace.c_str(), className.c_str());
}

std::ostream& operator<<(std::ostream& out, const CmpiObjectPath& path) {
    return out << path.str();
}

}  // namespace CmpiCpp
