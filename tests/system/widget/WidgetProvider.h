#pragma once

#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "cmpicpp/CmpiAssociationProvider.h"
#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiInstanceProvider.h"
#include "cmpicpp/CmpiMethodProvider.h"

/// Keeps what clients create, by the text of its path without the host. Links of TST_Uses and its
/// subclass are instances like any other; association requests are answered from their references.
class WidgetProvider : public CmpiCpp::CmpiInstanceProvider,
                       public CmpiCpp::CmpiMethodProvider,
                       public CmpiCpp::CmpiAssociationProvider {
public:
    explicit WidgetProvider(CmpiCpp::CmpiBroker const& broker) : _broker(broker) {}

    CMPIBroker* getBroker() override { return _broker.toRawCMPI(); }

    void enumInstanceNames(CmpiCpp::CmpiContext const&, CmpiCpp::CmpiObjectPath const&,
                           CmpiCpp::CmpiObjectPathResult&) override;
    void enumInstances(CmpiCpp::CmpiContext const&, CmpiCpp::CmpiObjectPath const&, char const**,
                       CmpiCpp::CmpiInstanceResult&) override;
    void getInstance(CmpiCpp::CmpiContext const&, CmpiCpp::CmpiObjectPath const&, char const**,
                     CmpiCpp::CmpiInstanceResult&) override;
    void createInstance(CmpiCpp::CmpiContext const&, CmpiCpp::CmpiObjectPath const&,
                        CmpiCpp::CmpiInstance const&, CmpiCpp::CmpiObjectPathResult&) override;
    void modifyInstance(CmpiCpp::CmpiContext const&, CmpiCpp::CmpiObjectPath const&,
                        CmpiCpp::CmpiInstance const&, char const**) override;
    void deleteInstance(CmpiCpp::CmpiContext const&, CmpiCpp::CmpiObjectPath const&) override;
    void execQuery(CmpiCpp::CmpiContext const&, CmpiCpp::CmpiObjectPath const&, std::string const&,
                   std::string const&, CmpiCpp::CmpiObjectPathResult&) override;

    void invokeMethod(CmpiCpp::CmpiContext const&, CmpiCpp::CmpiObjectPath const&,
                      CmpiCpp::CmpiName const&, CmpiCpp::CmpiArgs const&,
                      CmpiCpp::CmpiMethodResult&) override;

    void associators(CmpiCpp::CmpiContext const&, CmpiCpp::CmpiObjectPath const&,
                     CmpiCpp::CmpiName const&, CmpiCpp::CmpiName const&, CmpiCpp::CmpiName const&,
                     CmpiCpp::CmpiName const&, char const**, CmpiCpp::CmpiInstanceResult&) override;
    void associatorNames(CmpiCpp::CmpiContext const&, CmpiCpp::CmpiObjectPath const&,
                         CmpiCpp::CmpiName const&, CmpiCpp::CmpiName const&, CmpiCpp::CmpiName const&,
                         CmpiCpp::CmpiName const&, CmpiCpp::CmpiObjectPathResult&) override;
    void references(CmpiCpp::CmpiContext const&, CmpiCpp::CmpiObjectPath const&,
                    CmpiCpp::CmpiName const&, CmpiCpp::CmpiName const&, char const**,
                    CmpiCpp::CmpiInstanceResult&) override;
    void referenceNames(CmpiCpp::CmpiContext const&, CmpiCpp::CmpiObjectPath const&,
                        CmpiCpp::CmpiName const&, CmpiCpp::CmpiName const&,
                        CmpiCpp::CmpiObjectPathResult&) override;

private:
    struct FarEnd {
        CmpiCpp::CmpiInstance link;
        CmpiCpp::CmpiObjectPath path;
    };

    std::vector<CmpiCpp::CmpiInstance> ofClass(CmpiCpp::CmpiObjectPath const& classPath);
    CmpiCpp::CmpiInstance find(CmpiCpp::CmpiObjectPath const& path);
    std::vector<FarEnd> farEnds(CmpiCpp::CmpiObjectPath const& source,
                                CmpiCpp::CmpiName const& linkClass, CmpiCpp::CmpiName const& role);

    CmpiCpp::CmpiBroker _broker;
    std::mutex _mutex;
    std::map<std::string, CmpiCpp::CmpiInstance> _instances;  // clones
};
