#pragma once

#include "common/CmpiManagedInstanceCollection.h"
#include "tests/common/QuietResults.h"
#include "tests/support/TestBroker.h"
#include "tests/support/Things.h"

#include <string>
#include <vector>

/// The objects that the requests below are about: things "a", "b" and "c", links among them, and a
/// link from "a" to "far", which is for an up-call.
inline void fillCollection(PYL::CmpiManagedInstanceCollection& collection, TestBroker& host,
                           Calls& calls) {
    const auto thing = [&](const char* key) { return host.path("PYL_Thing", key); };
    const auto link = [&](const char* key) { return host.path("PYL_Link", key); };
    for (const auto* key : {"a", "b", "c"}) {
        collection.createInstance(new Thing(host, calls, thing(key)));
    }
    collection.createInstance(new Link(host, calls, link("ab"), thing("a"), thing("b")));
    collection.createInstance(
        new MultiLink(host, calls, link("acb"), thing("a"), {thing("c"), thing("b")}));
    collection.createInstance(new Link(host, calls, link("far"), thing("a"), thing("far")));
    host.onGetInstance = [&host](const CmpiCpp::CmpiObjectPath& path) {
        return host.instance(path);
    };
}

/// A request to such a collection; the result is how many objects were delivered.
struct CollectionRequest {
    const char* name;
    int delivered;  ///< when nothing fails
    int (*run)(PYL::CmpiManagedInstanceCollection&, TestBroker&);
};

inline const std::vector<CollectionRequest>& collectionRequests() {
    using Collection = PYL::CmpiManagedInstanceCollection;
    static const std::vector<CollectionRequest> requests = {
        {"enumInstanceNames", 3,
         [](Collection& collection, TestBroker& host) {
             CountedPaths sink;
             collection.enumInstanceNames(sink, host.context(), host.path("PYL_Thing", ""));
             return sink.count;
         }},
        {"enumInstances", 3,
         [](Collection& collection, TestBroker& host) {
             CountedInstances sink;
             collection.enumInstances(sink, host.context(), host.path("PYL_Thing", ""), nullptr);
             return sink.count;
         }},
        {"getInstance", 1,
         [](Collection& collection, TestBroker& host) {
             CountedInstances sink;
             collection.getInstance(sink, host.context(), host.path("PYL_Thing", "c"), nullptr);
             return sink.count;
         }},
        {"getManagedInstance", 1,
         [](Collection& collection, TestBroker& host) {
             return collection.getManagedInstance(host.path("PYL_Thing", "c")) ? 1 : 0;
         }},
        {"associators", 4,
         [](Collection& collection, TestBroker& host) {
             CountedInstances sink;
             collection.associators(sink, host.context(), host.path("PYL_Thing", "a"), "PYL_Link",
                                    "PYL_Thing", "", "", nullptr);
             return sink.count;
         }},
        {"associatorNames", 4,
         [](Collection& collection, TestBroker& host) {
             CountedPaths sink;
             collection.associatorNames(sink, host.context(), host.path("PYL_Thing", "a"),
                                        "PYL_Link", "PYL_Thing", "", "");
             return sink.count;
         }},
        {"references", 3,
         [](Collection& collection, TestBroker& host) {
             CountedInstances sink;
             collection.references(sink, host.context(), host.path("PYL_Thing", "a"), "PYL_Link",
                                   "", nullptr);
             return sink.count;
         }},
        {"referenceNames", 3,
         [](Collection& collection, TestBroker& host) {
             CountedPaths sink;
             collection.referenceNames(sink, host.context(), host.path("PYL_Thing", "a"),
                                       "PYL_Link", "");
             return sink.count;
         }},
    };
    return requests;
}

inline void PrintTo(const CollectionRequest& request, std::ostream* out) { *out << request.name; }
