#include "tests/common/ProviderOperations.h"

const std::vector<ProviderOperation>& providerOperations() {
    using Kind = ProviderOperation::Kind;
    using Delivers = ProviderOperation::Delivers;
    const std::string path = requestPath;
    const std::string instance = "instance of PYL_Thing {Id = \"a\";}";
    static const std::vector<ProviderOperation> operations = {
        {"enumInstanceNames", Kind::instance, Delivers::paths, "enumInstanceNames(" + path + ")",
         "enumInstanceNames " + path, "enumInstanceNames() exception: ", "",
         [](AnyProvider p, Request& r) {
             p.instances.enumInstanceNames(r.context, r.path, r.paths);
         }},
        {"enumInstances", Kind::instance, Delivers::instances, "enumInstances(" + path + ")",
         "enumInstances " + path + " list Id", "enumInstance() exception: ", "",
         [](AnyProvider p, Request& r) {
             p.instances.enumInstances(r.context, r.path, requestProperties(), r.instances);
         }},
        {"getInstance", Kind::instance, Delivers::instances, "getInstance(" + path + ")",
         "getInstance " + path + " no list", "getInstance() exception: ", "",
         [](AnyProvider p, Request& r) {
             p.instances.getInstance(r.context, r.path, nullptr, r.instances);
         }},
        {"createInstance", Kind::instance, Delivers::paths, "createInstance(" + path + ")",
         "createInstance " + path + " " + instance, "createInstance() exception: ", "",
         [](AnyProvider p, Request& r) {
             p.instances.createInstance(r.context, r.path, r.instance, r.paths);
         }},
        {"modifyInstance", Kind::instance, Delivers::nothing, "modifyInstance(" + path + ")",
         "modifyInstance " + path + " " + instance + " list Id",
         "modifyInstance() exception: ", "returned from modifyInstance()",
         [](AnyProvider p, Request& r) {
             p.instances.modifyInstance(r.context, r.path, r.instance, requestProperties());
         }},
        {"deleteInstance", Kind::instance, Delivers::nothing, "deleteInstance(" + path + ")",
         "deleteInstance " + path, "deleteInstance() exception: ", "returned from deleteInstance()",
         [](AnyProvider p, Request& r) { p.instances.deleteInstance(r.context, r.path); }},
        {"execQuery", Kind::instance, Delivers::paths, "execQuery(" + path + ")",
         "execQuery " + path + " SELECT % CQL", "execQuery() exception: ", "",
         [](AnyProvider p, Request& r) {
             p.instances.execQuery(r.context, r.path, "SELECT %", "CQL", r.paths);
         }},
        {"invokeMethod", Kind::method, Delivers::nothing,
         "invokeMethod(path=" + path + ", methodName=\"Reset\")",
         "invokeMethod " + path + " Reset 0",
         "invokeMethod() exception: ", "returned from invokeMethod()",
         [](AnyProvider p, Request& r) {
             p.methods.invokeMethod(r.context, r.path, "Reset", r.arguments, r.method);
         }},
        {"associators", Kind::association, Delivers::instances,
         "associators(path=" + path + ", assocClass=A, resultClass=B, role=C, resultRole=D)",
         "associators " + path + " A B C D list Id", "associators() exception: ", "",
         [](AnyProvider p, Request& r) {
             p.associations.associators(r.context, r.path, "A", "B", "C", "D", requestProperties(),
                                        r.instances);
         }},
        {"associatorNames", Kind::association, Delivers::paths,
         "associatorNames(path=" + path + ", assocClass=A, resultClass=, role=C, resultRole=D)",
         "associatorNames " + path + " A  C D", "associatorNames() exception: ", "",
         [](AnyProvider p, Request& r) {
             p.associations.associatorNames(r.context, r.path, "A", "", "C", "D", r.paths);
         }},
        {"references", Kind::association, Delivers::instances,
         "references(path=" + path + ", resultClass=A, role=B)",
         "references " + path + " A B no list", "references() exception: ", "",
         [](AnyProvider p, Request& r) {
             p.associations.references(r.context, r.path, "A", "B", nullptr, r.instances);
         }},
        {"referenceNames", Kind::association, Delivers::paths,
         "referenceNames(path=" + path + ", resultClass=A, role=B)",
         "referenceNames " + path + " A B", "referenceNames() exception: ", "",
         [](AnyProvider p, Request& r) {
             p.associations.referenceNames(r.context, r.path, "A", "B", r.paths);
         }},
        {"authorizeFilter", Kind::indication, Delivers::nothing,
         "authorizeFilter(classname=\"PYL_Alert\", path=" + path + ", user=me)",
         "authorizeFilter PYL_Alert me",
         "authorizeFilter() exception: ", "returned from authorizeFilter()",
         [](AnyProvider p, Request& r) {
             p.indications.authorizeFilter(r.context, InnerProvider::filter(), "PYL_Alert", r.path,
                                           "me");
         }},
        {"mustPoll", Kind::indication, Delivers::nothing,
         "mustPoll(classname=\"PYL_Alert\", path=" + path + ")", "mustPoll PYL_Alert",
         "mustPoll() exception: ", "returned from mustPoll()",
         [](AnyProvider p, Request& r) {
             p.indications.mustPoll(r.context, InnerProvider::filter(), "PYL_Alert", r.path);
         }},
        {"activateFilter", Kind::indication, Delivers::nothing,
         "activateFilter(classname=\"PYL_Alert\", path=" + path + ", last=1)",
         "activateFilter PYL_Alert last",
         "activateFilter() exception: ", "returned from activateFilter()",
         [](AnyProvider p, Request& r) {
             p.indications.activateFilter(r.context, InnerProvider::filter(), "PYL_Alert", r.path,
                                          true);
         }},
        {"deactivateFilter", Kind::indication, Delivers::nothing,
         "deactivateFilter(classname=\"PYL_Alert\", path=" + path + ", last=0)",
         "deactivateFilter PYL_Alert",
         "deactivateFilter() exception: ", "returned from deactivateFilter()",
         [](AnyProvider p, Request& r) {
             p.indications.deactivateFilter(r.context, InnerProvider::filter(), "PYL_Alert", r.path,
                                            false);
         }},
        {"enableIndications", Kind::indication, Delivers::nothing, "enableIndications()",
         "enableIndications",
         "enableIndications() exception: ", "returned from enableIndications()",
         [](AnyProvider p, Request& r) { p.indications.enableIndications(r.context); }},
        {"disableIndications", Kind::indication, Delivers::nothing, "disableIndications()",
         "disableIndications",
         "disableIndications() exception: ", "returned from disableIndications()",
         [](AnyProvider p, Request& r) { p.indications.disableIndications(r.context); }},
        {"cleanup", Kind::any, Delivers::nothing, "cleanup(terminating=1)", "cleanup at the end",
         "cleanup() exception: ", "returned from cleanup()",
         [](AnyProvider p, Request& r) { p.instances.cleanup(r.context, true); }},
        {"unloadOK", Kind::any, Delivers::nothing, "unloadOK()", "unloadOK",
         "unloadOK() exception: ", "returned from unloadOK, okToUnload",
         [](AnyProvider p, Request& r) { p.instances.unloadOK(r.context); }},
    };
    return operations;
}
