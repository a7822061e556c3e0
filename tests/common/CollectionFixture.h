#pragma once

#include "common/CmpiManagedInstanceCollection.h"
#include "testing/cimhost/testing/HostName.h"
#include "tests/common/CapturedResults.h"
#include "tests/support/Journal.h"
#include "tests/support/TestBroker.h"
#include "tests/support/Things.h"

#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

/// A collection whose lock can be looked at.
class OpenCollection : public PYL::CmpiManagedInstanceCollection {
public:
    using CmpiManagedInstanceCollection::_findIndex;
    using CmpiManagedInstanceCollection::CmpiManagedInstanceCollection;

    /// Of its own copy of the logger.
    void setLevel(LogLevel level) { _log.setLevel(level); }

    bool isLocked() {
        if (pthread_mutex_trylock(&_mutex) != 0) return true;
        pthread_mutex_unlock(&_mutex);
        return false;
    }
};

/// A collection in a broker's call, with a journal of its lines and deliveries.
struct CollectionFixture : testing::Test {
    using CmpiName = CmpiCpp::CmpiName;
    using CmpiObjectPath = CmpiCpp::CmpiObjectPath;

    TestBroker host;
    JournalLog log;
    Journal& journal = *log.journal;
    Calls calls;
    OpenCollection collection{log.logger};
    CapturedPaths paths{journal};
    CapturedInstances instances{journal};

    CollectionFixture() {
        journal.isLocked = [this] { return collection.isLocked(); };
        journal.take();
    }
    ~CollectionFixture() override {
        // The collection writes its last line when its lock is gone.
        journal.isLocked = [] { return false; };
    }

    CmpiObjectPath thing(const std::string& key) { return host.path("PYL_Thing", key); }
    CmpiObjectPath linkPath(const std::string& key) { return host.path("PYL_Link", key); }

    Thing* add(const CmpiObjectPath& path) {
        auto* const made = new Thing(host, calls, path);
        collection.createInstance(made);
        return made;
    }
    Thing* add(const std::string& key) { return add(thing(key)); }
    Link* link(const CmpiObjectPath& path, const CmpiObjectPath& left,
               const CmpiObjectPath& right) {
        auto* const made = new Link(host, calls, path, left, right);
        collection.createInstance(made);
        return made;
    }
    Link* link(const std::string& key, const std::string& left, const std::string& right) {
        return link(linkPath(key), thing(left), thing(right));
    }
    MultiLink* multiLink(const CmpiObjectPath& path, const CmpiObjectPath& source,
                         std::vector<CmpiObjectPath> farEnds) {
        auto* const made = new MultiLink(host, calls, path, source, std::move(farEnds));
        collection.createInstance(made);
        return made;
    }

    int enumNames(const CmpiObjectPath& path) {
        return collection.enumInstanceNames(paths, host.context(), path);
    }
    int enumInstances(const CmpiObjectPath& path, const char** properties = nullptr) {
        return collection.enumInstances(instances, host.context(), path, properties);
    }
    bool get(const CmpiObjectPath& path, const char** properties = nullptr) {
        return collection.getInstance(instances, host.context(), path, properties);
    }
    int associators(const CmpiObjectPath& path, const CmpiName& assocClass = {},
                    const CmpiName& resultClass = {}, const CmpiName& role = {},
                    const CmpiName& resultRole = {}, const char** properties = nullptr) {
        return collection.associators(instances, host.context(), path, assocClass, resultClass,
                                      role, resultRole, properties);
    }
    int associatorNames(const CmpiObjectPath& path, const CmpiName& assocClass = {},
                        const CmpiName& resultClass = {}, const CmpiName& role = {},
                        const CmpiName& resultRole = {}) {
        return collection.associatorNames(paths, host.context(), path, assocClass, resultClass,
                                          role, resultRole);
    }
    int references(const CmpiObjectPath& path, const CmpiName& resultClass = {},
                   const CmpiName& role = {}, const char** properties = nullptr) {
        return collection.references(instances, host.context(), path, resultClass, role,
                                     properties);
    }
    int referenceNames(const CmpiObjectPath& path, const CmpiName& resultClass = {},
                       const CmpiName& role = {}) {
        return collection.referenceNames(paths, host.context(), path, resultClass, role);
    }

    /// The texts of the paths and instances that the helpers above make.
    static std::string text(const std::string& key, const std::string& className = "PYL_Thing") {
        return "//server-1/root/ktq:" + className + ".Id=\"" + key + "\"";
    }
    static std::string instanceText(const std::string& key,
                                    const std::string& className = "PYL_Thing") {
        return "instance of " + className + " {Id = \"" + key + "\";} at " + text(key, className);
    }
};
