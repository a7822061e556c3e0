#pragma once

#include "cmpicpp/CmpiInstanceProvider.h"
#include "cmpicpp/CmpiMethodProvider.h"
#include "tests/common/ProviderOperations.h"

/// Only an instance provider, and only a method provider.
struct InstancesOnly : CmpiCpp::CmpiInstanceProvider {
    CMPIBroker* getBroker() override { return nullptr; }
    void enumInstanceNames(const CmpiCpp::CmpiContext&, const CmpiCpp::CmpiObjectPath&,
                           CmpiCpp::CmpiObjectPathResult&) override {}
    void enumInstances(const CmpiCpp::CmpiContext&, const CmpiCpp::CmpiObjectPath&, const char**,
                       CmpiCpp::CmpiInstanceResult&) override {}
    void getInstance(const CmpiCpp::CmpiContext&, const CmpiCpp::CmpiObjectPath&, const char**,
                     CmpiCpp::CmpiInstanceResult&) override {}
};
struct MethodsOnly : CmpiCpp::CmpiMethodProvider {
    CMPIBroker* getBroker() override { return nullptr; }
    void invokeMethod(const CmpiCpp::CmpiContext&, const CmpiCpp::CmpiObjectPath&,
                      const CmpiCpp::CmpiName&, const CmpiCpp::CmpiArgs&,
                      CmpiCpp::CmpiMethodResult&) override {}
};

/// What a request of this kind says to a provider that is not of it.
inline const char* missingInterface(ProviderOperation::Kind kind) {
    switch (kind) {
        case ProviderOperation::Kind::instance: return "Not an instance provider";
        case ProviderOperation::Kind::association: return "Not an association provider";
        case ProviderOperation::Kind::method: return "Not a method provider";
        case ProviderOperation::Kind::indication: return "Not an indication provider";
        case ProviderOperation::Kind::any: break;
    }
    return "";
}

/// A provider that has not the interface for requests of this kind. The caller owns it.
inline CmpiCpp::CmpiProvider* providerOfAnotherKind(ProviderOperation::Kind kind) {
    if (kind == ProviderOperation::Kind::instance) return new MethodsOnly;
    return new InstancesOnly;
}
