#include "cmpicpp/CmpiProvider.h"

#include "cmpicpp/CmpiAssociationProvider.h"
#include "cmpicpp/CmpiIndicationProvider.h"
#include "cmpicpp/CmpiInstanceProvider.h"
#include "cmpicpp/CmpiMethodProvider.h"
#include "cmpicpp/CmpiStatus.h"

#include <string>

namespace CmpiCpp {

namespace {

[[noreturn]] void refuse(const char* operation) {
    throw CmpiStatus(CMPI_RC_ERR_NOT_SUPPORTED,
                     std::string(operation) + " is not supported by this provider");
}

}  // namespace

CmpiProvider::~CmpiProvider() = default;
CmpiInstanceProvider::~CmpiInstanceProvider() = default;
CmpiAssociationProvider::~CmpiAssociationProvider() = default;
CmpiMethodProvider::~CmpiMethodProvider() = default;
CmpiIndicationProvider::~CmpiIndicationProvider() = default;

int CmpiProvider::unloadOK(const CmpiContext&) { return 0; }

void CmpiProvider::cleanup(const CmpiContext&, bool) {}

void CmpiInstanceProvider::createInstance(const CmpiContext&, const CmpiObjectPath&,
                                          const CmpiInstance&, CmpiObjectPathResult&) {
    refuse("createInstance");
}

void CmpiInstanceProvider::modifyInstance(const CmpiContext&, const CmpiObjectPath&,
                                          const CmpiInstance&, const char**) {
    refuse("modifyInstance");
}

void CmpiInstanceProvider::deleteInstance(const CmpiContext&, const CmpiObjectPath&) {
    refuse("deleteInstance");
}

void CmpiInstanceProvider::execQuery(const CmpiContext&, const CmpiObjectPath&, const std::string&,
                                     const std::string&, CmpiObjectPathResult&) {
    refuse("execQuery");
}

}  // namespace CmpiCpp
