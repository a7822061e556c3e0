#include "tests/common/ProviderOperations.h"

std::vector<ProviderOperation> const& providerOperations() {
    using PYL::LoggedProvider;
    using Kind = ProviderOperation::Kind;
    using Delivers = ProviderOperation::Delivers;
    std::string const path = requestPath;
    std::string const instance = "instance of PYL_Thing {Id = \"a\";}";
    static std::vector<ProviderOperation> const operations = {
        {"enumInstanceNames", Kind::instance, Delivers::paths, "enumInstanceNames(" + path + ")",
         "enumInstanceNames " + path, "enumInstanceNames() exception: ", "",
         [](LoggedProvider& p, Request& r) { p.enumInstanceNames(r.context, r.path, r.paths); }},
        {"enumInstances", Kind::instance, Delivers::instances, "enumInstances(" + path + ")",
         "enumInstances " + path + " list Id", "enumInstance() exception: ", "",
         [](LoggedProvider& p, Request& r) {
             p.enumInstances(r.context, r.path, requestProperties(), r.instances);
         }},
        {"getInstance", Kind::instance, Delivers::instances, "getInstance(" + path + ")",
         "getInstance " + path + " no list", "getInstance() exception: ", "",
         [](LoggedProvider& p, Request& r) {
             p.getInstance(r.context, r.path, nullptr, r.instances);
         }},
        {"createInstance", Kind::instance, Delivers::paths, "createInstance(" + path + ")",
         "createInstance " + path + " " + instance, "createInstance() exception: ", "",
         [](LoggedProvider& p, Request& r) {
             p.createInstance(r.context, r.path, r.instance, r.paths);
         }},
        {"modifyInstance", Kind::instance, Delivers::nothing, "modifyInstance(" + path + ")",
         "modifyInstance " + path + " " + instance + " list Id",
         "modifyInstance() exception: ", "returned from modifyInstance()",
         [](LoggedProvider& p, Request& r) {
             p.modifyInstance(r.context, r.path, r.instance, requestProperties());
         }},
        {"deleteInstance", Kind::instance, Delivers::nothing, "deleteInstance(" + path + ")",
         "deleteInstance " + path, "deleteInstance() exception: ", "returned from deleteInstance()",
         [](LoggedProvider& p, Request& r) { p.deleteInstance(r.context, r.path); }},
        {"execQuery", Kind::instance, Delivers::paths, "execQuery(" + path + ")",
         "execQuery " + path + " SELECT % CQL", "execQuery() exception: ", "",
         [](LoggedProvider& p, Request& r) {
             p.execQuery(r.context, r.path, "SELECT %", "CQL", r.paths);
         }},
        {"invokeMethod", Kind::method, Delivers::nothing,
         "invokeMethod(path=" + path + ", methodName=\"Reset\")",
         "invokeMethod " + path + " Reset 0",
         "invokeMethod() exception: ", "returned from invokeMethod()",
         [](LoggedProvider& p, Request& r) {
             p.invokeMethod(r.context, r.path, "Reset", r.arguments, r.method);
         }},
        {"associators", Kind::association, Delivers::instances,
         "associators(path=" + path + ", assocClass=A, resultClass=B, role=C, resultRole=D)",
         "associators " + path + " A B C D list Id", "associators() exception: ", "",
         [](LoggedProvider& p, Request& r) {
             p.associators(r.context, r.path, "A", "B", "C", "D", requestProperties(), r.instances);
         }},
        {"associatorNames", Kind::association, Delivers::paths,
         "associatorNames(path=" + path + ", assocClass=A, resultClass=, role=C, resultRole=D)",
         "associatorNames " + path + " A  C D", "associatorNames() exception: ", "",
         [](LoggedProvider& p, Request& r) {
             p.associatorNames(r.context, r.path, "A", "", "C", "D", r.paths);
         }},
        {"references", Kind::association, Delivers::instances,
         "references(path=" + path + ", resultClass=A, role=B)",
         "references " + path + " A B no list", "references() exception: ", "",
         [](LoggedProvider& p, Request& r) {
             p.references(r.context, r.path, "A", "B", nullptr, r.instances);
         }},
        {"referenceNames", Kind::association, Delivers::paths,
         "referenceNames(path=" + path + ", resultClass=A, role=B)",
         "referenceNames " + path + " A B", "referenceNames() exception: ", "",
         [](LoggedProvider& p, Request& r) {
             p.referenceNames(r.context, r.path, "A", "B", r.paths);
         }},
        {"authorizeFilter", Kind::indication, Delivers::nothing,
         "authorizeFilter(classname=\"PYL_Alert\", path=" + path + ", user=me)",
         "authorizeFilter PYL_Alert me",
         "authorizeFilter() exception: ", "returned from authorizeFilter()",
         [](LoggedProvider& p, Request& r) {
             p.authorizeFilter(r.context, InnerProvider::filter(), "PYL_Alert", r.path, "me");
         }},
        {"mustPoll", Kind::indication, Delivers::nothing,
         "mustPoll(classname=\"PYL_Alert\", path=" + path + ")", "mustPoll PYL_Alert",
         "mustPoll() exception: ", "returned from mustPoll()",
         [](LoggedProvider& p, Request& r) {
             p.mustPoll(r.context, InnerProvider::filter(), "PYL_Alert", r.path);
         }},
        {"activateFilter", Kind::indication, Delivers::nothing,
         "activateFilter(classname=\"PYL_Alert\", path=" + path + ", last=1)",
         "activateFilter PYL_Alert last",
         "activateFilter() exception: ", "returned from activateFilter()",
         [](LoggedProvider& p, Request& r) {
             p.activateFilter(r.context, InnerProvider::filter(), "PYL_Alert", r.path, true);
         }},
        {"deactivateFilter", Kind::indication, Delivers::nothing,
         "deactivateFilter(classname=\"PYL_Alert\", path=" + path + ", last=0)",
         "deactivateFilter PYL_Alert",
         "deactivateFilter() exception: ", "returned from deactivateFilter()",
         [](LoggedProvider& p, Request& r) {
             p.deactivateFilter(r.context, InnerProvider::filter(), "PYL_Alert", r.path, false);
         }},
        {"enableIndications", Kind::indication, Delivers::nothing, "enableIndications()",
         "enableIndications",
         "enableIndications() exception: ", "returned from enableIndications()",
         [](LoggedProvider& p, Request& r) { p.enableIndications(r.context); }},
        {"disableIndications", Kind::indication, Delivers::nothing, "disableIndications()",
         "disableIndications",
         "disableIndications() exception: ", "returned from disableIndications()",
         [](LoggedProvider& p, Request& r) { p.disableIndications(r.context); }},
        {"cleanup", Kind::any, Delivers::nothing, "cleanup(terminating=1)", "cleanup at the end",
         "cleanup() exception: ", "returned from cleanup()",
         [](LoggedProvider& p, Request& r) { p.cleanup(r.context, true); }},
        {"unloadOK", Kind::any, Delivers::nothing, "unloadOK()", "unloadOK",
         "unloadOK() exception: ", "returned from unloadOK, okToUnload",
         [](LoggedProvider& p, Request& r) { p.unloadOK(r.context); }},
    };
    return operations;
}
