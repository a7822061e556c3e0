#pragma once

#include "cmpicpp/CmpiArgs.h"
#include "cmpicpp/CmpiAssociationProvider.h"
#include "cmpicpp/CmpiIndicationProvider.h"
#include "cmpicpp/CmpiInstanceProvider.h"
#include "cmpicpp/CmpiMethodProvider.h"

#include <initializer_list>
#include <string>

/// A provider of all four kinds in C++: turns every operation with all its arguments into a text,
/// and leaves what happens then to the classes below it. Providers behind the C interface, for
/// tests that know nothing of the library, are ScriptedProvider.
class EverythingProvider : public CmpiCpp::CmpiInstanceProvider,
                           public CmpiCpp::CmpiMethodProvider,
                           public CmpiCpp::CmpiAssociationProvider,
                           public CmpiCpp::CmpiIndicationProvider {
public:
    using Context = CmpiCpp::CmpiContext;
    using Instance = CmpiCpp::CmpiInstance;
    using Instances = CmpiCpp::CmpiInstanceResult;
    using Name = CmpiCpp::CmpiName;
    using Path = CmpiCpp::CmpiObjectPath;
    using Paths = CmpiCpp::CmpiObjectPathResult;

    void enumInstanceNames(const Context& context, const Path& path, Paths& result) override {
        called(context, &path, "enumInstanceNames " + path.str());
        deliverPaths(result);
    }
    void enumInstances(const Context& context, const Path& path, const char** properties,
                       Instances& result) override {
        called(context, &path, "enumInstances " + path.str() + _list(properties));
        deliverInstances(result);
    }
    void getInstance(const Context& context, const Path& path, const char** properties,
                     Instances& result) override {
        called(context, &path, "getInstance " + path.str() + _list(properties));
        deliverInstances(result);
    }
    void createInstance(const Context& context, const Path& path, const Instance& instance,
                        Paths& result) override {
        called(context, &path, "createInstance " + path.str() + " " + instance.str());
        deliverPaths(result);
    }
    void modifyInstance(const Context& context, const Path& path, const Instance& instance,
                        const char** properties) override {
        called(context, &path,
               "modifyInstance " + path.str() + " " + instance.str() + _list(properties));
        deliverNothing();
    }
    void deleteInstance(const Context& context, const Path& path) override {
        called(context, &path, "deleteInstance " + path.str());
        deliverNothing();
    }
    void execQuery(const Context& context, const Path& path, const std::string& query,
                   const std::string& language, Paths& result) override {
        called(context, &path, "execQuery " + path.str() + " " + query + " " + language);
        deliverPaths(result);
    }

    void invokeMethod(const Context& context, const Path& path, const Name& method,
                      const CmpiCpp::CmpiArgs& in, CmpiCpp::CmpiMethodResult& result) override {
        called(context, &path,
               "invokeMethod " + path.str() + _names({method}) + " " +
                   std::to_string(in.getArgCount()));
        deliverResult(result);
    }

    void associators(const Context& context, const Path& path, const Name& assocClass,
                     const Name& resultClass, const Name& role, const Name& resultRole,
                     const char** properties, Instances& result) override {
        called(context, &path,
               "associators " + path.str() + _names({assocClass, resultClass, role, resultRole}) +
                   _list(properties));
        deliverInstances(result);
    }
    void associatorNames(const Context& context, const Path& path, const Name& assocClass,
                         const Name& resultClass, const Name& role, const Name& resultRole,
                         Paths& result) override {
        called(
            context, &path,
            "associatorNames " + path.str() + _names({assocClass, resultClass, role, resultRole}));
        deliverPaths(result);
    }
    void references(const Context& context, const Path& path, const Name& resultClass,
                    const Name& role, const char** properties, Instances& result) override {
        called(context, &path,
               "references " + path.str() + _names({resultClass, role}) + _list(properties));
        deliverInstances(result);
    }
    void referenceNames(const Context& context, const Path& path, const Name& resultClass,
                        const Name& role, Paths& result) override {
        called(context, &path, "referenceNames " + path.str() + _names({resultClass, role}));
        deliverPaths(result);
    }

    void authorizeFilter(const Context& context, const CMPISelectExp* given,
                         const std::string& className, const Path& path,
                         const std::string& owner) override {
        called(context, &path, "authorizeFilter " + _filterText(given, className) + " " + owner);
        deliverNothing();
    }
    void mustPoll(const Context& context, const CMPISelectExp* given, const std::string& className,
                  const Path& path) override {
        called(context, &path, "mustPoll " + _filterText(given, className));
        deliverNothing();
    }
    void activateFilter(const Context& context, const CMPISelectExp* given,
                        const std::string& className, const Path& path, bool last) override {
        called(context, &path,
               "activateFilter " + _filterText(given, className) + (last ? " last" : ""));
        deliverNothing();
    }
    void deactivateFilter(const Context& context, const CMPISelectExp* given,
                          const std::string& className, const Path& path, bool last) override {
        called(context, &path,
               "deactivateFilter " + _filterText(given, className) + (last ? " last" : ""));
        deliverNothing();
    }
    void enableIndications(const Context& context) override {
        called(context, nullptr, "enableIndications");
        deliverNothing();
    }
    void disableIndications(const Context& context) override {
        called(context, nullptr, "disableIndications");
        deliverNothing();
    }

    /// The select expression that tests pass; only its address counts.
    static const CMPISelectExp* filter() {
        static const CMPISelectExp expression{};
        return &expression;
    }

protected:
    /// `path` is null where the operation has none.
    virtual void called(const Context& context, const Path* path, const std::string& call) = 0;
    virtual void deliverPaths(Paths& result) = 0;
    virtual void deliverInstances(Instances& result) = 0;
    virtual void deliverResult(CmpiCpp::CmpiMethodResult& result) = 0;
    virtual void deliverNothing() {}

private:
    static std::string _list(const char** properties) {
        if (!properties) return " no list";
        std::string text = " list";
        for (; *properties; ++properties) text += std::string(" ") + *properties;
        return text;
    }
    static std::string _names(std::initializer_list<Name> names) {
        std::string text;
        for (const Name& name : names) text += " " + name.str();
        return text;
    }
    static std::string _filterText(const CMPISelectExp* given, const std::string& className) {
        return className + (given == filter() ? "" : " with another filter");
    }
};
