#pragma once

#include "cmpicpp/CmpiAssociationProvider.h"
#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiInstanceProvider.h"
#include "cmpicpp/CmpiMethodProvider.h"

#include <map>
#include <mutex>
#include <string>
#include <vector>

/// Keeps what clients create, by the text of its path without the host. Links of TST_Uses and its
/// subclass are instances like any other; association requests are answered from their references.
class WidgetProvider : public CmpiCpp::CmpiInstanceProvider,
                       public CmpiCpp::CmpiMethodProvider,
                       public CmpiCpp::CmpiAssociationProvider {
public:
    explicit WidgetProvider(const CmpiCpp::CmpiBroker& broker) : _broker(broker) {}

    CMPIBroker* getBroker() override { return _broker.toRawCMPI(); }

    void enumInstanceNames(const CmpiCpp::CmpiContext&, const CmpiCpp::CmpiObjectPath&,
                           CmpiCpp::CmpiObjectPathResult&) override;
    void enumInstances(const CmpiCpp::CmpiContext&, const CmpiCpp::CmpiObjectPath&, const char**,
                       CmpiCpp::CmpiInstanceResult&) override;
    void getInstance(const CmpiCpp::CmpiContext&, const CmpiCpp::CmpiObjectPath&, const char**,
                     CmpiCpp::CmpiInstanceResult&) override;
    void createInstance(const CmpiCpp::CmpiContext&, const CmpiCpp::CmpiObjectPath&,
                        const CmpiCpp::CmpiInstance&, CmpiCpp::CmpiObjectPathResult&) override;
    void modifyInstance(const CmpiCpp::CmpiContext&, const CmpiCpp::CmpiObjectPath&,
                        const CmpiCpp::CmpiInstance&, const char**) override;
    void deleteInstance(const CmpiCpp::CmpiContext&, const CmpiCpp::CmpiObjectPath&) override;
    void execQuery(const CmpiCpp::CmpiContext&, const CmpiCpp::CmpiObjectPath&, const std::string&,
                   const std::string&, CmpiCpp::CmpiObjectPathResult&) override;

    void invokeMethod(const CmpiCpp::CmpiContext&, const CmpiCpp::CmpiObjectPath&,
                      const CmpiCpp::CmpiName&, const CmpiCpp::CmpiArgs&,
                      CmpiCpp::CmpiMethodResult&) override;

    void associators(const CmpiCpp::CmpiContext&, const CmpiCpp::CmpiObjectPath&,
                     const CmpiCpp::CmpiName&, const CmpiCpp::CmpiName&, const CmpiCpp::CmpiName&,
                     const CmpiCpp::CmpiName&, const char**, CmpiCpp::CmpiInstanceResult&) override;
    void associatorNames(const CmpiCpp::CmpiContext&, const CmpiCpp::CmpiObjectPath&,
                         const CmpiCpp::CmpiName&, const CmpiCpp::CmpiName&,
                         const CmpiCpp::CmpiName&, const CmpiCpp::CmpiName&,
                         CmpiCpp::CmpiObjectPathResult&) override;
    void references(const CmpiCpp::CmpiContext&, const CmpiCpp::CmpiObjectPath&,
                    const CmpiCpp::CmpiName&, const CmpiCpp::CmpiName&, const char**,
                    CmpiCpp::CmpiInstanceResult&) override;
    void referenceNames(const CmpiCpp::CmpiContext&, const CmpiCpp::CmpiObjectPath&,
                        const CmpiCpp::CmpiName&, const CmpiCpp::CmpiName&,
                        CmpiCpp::CmpiObjectPathResult&) override;

private:
    struct FarEnd {
        CmpiCpp::CmpiInstance link;
        CmpiCpp::CmpiObjectPath path;
    };

    std::vector<CmpiCpp::CmpiInstance> ofClass(const CmpiCpp::CmpiObjectPath& classPath);
    CmpiCpp::CmpiInstance find(const CmpiCpp::CmpiObjectPath& path);
    std::vector<FarEnd> farEnds(const CmpiCpp::CmpiObjectPath& source,
                                const CmpiCpp::CmpiName& linkClass, const CmpiCpp::CmpiName& role);

    CmpiCpp::CmpiBroker _broker;
    std::mutex _mutex;
    std::map<std::string, CmpiCpp::CmpiInstance> _instances;  // clones
};
