#pragma once

#include "common/CmpiManagedInstance.h"
#include "tests/support/TestBroker.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

/// Looks at every call that the managed instances of a test get, such as "getPath a", and may
/// throw.
struct Calls {
    std::function<void(const std::string&)> onCall = [](const std::string&) {};
    std::function<void()> onDelete = [] {};
    std::vector<std::string> deletions;  // keys, in order
};

/// A managed instance whose path is fixed: the base of those below.
template <typename Base>
class BasicThing : public Base {
public:
    BasicThing(TestBroker& broker, Calls& calls, CmpiCpp::CmpiObjectPath path)
        : _broker(broker), _calls(calls), _path(std::move(path)), _key(_keyOf(_path)) {}
    ~BasicThing() override {
        _calls.deletions.push_back(_key);
        _calls.onDelete();
    }

    CmpiCpp::CmpiObjectPath getPath() override {
        called("getPath");
        return _path;
    }
    CmpiCpp::CmpiInstance getInstance() override {
        called("getInstance");
        auto instance = CmpiCpp::makeCmpiInstance(_broker.broker(), _path);
        if (!_key.empty()) instance.setProperty("Id", _key);
        return instance;
    }
    CmpiCpp::CmpiName getClassName() override {
        called("getClassName");
        return _path.getClassName();
    }

protected:
    void called(const std::string& operation) { _calls.onCall(operation + " " + _key); }

private:
    static std::string _keyOf(const CmpiCpp::CmpiObjectPath& path) {
        return path.empty() ? "" : path.getKey("Id").asString();
    }

    TestBroker& _broker;
    Calls& _calls;
    CmpiCpp::CmpiObjectPath _path;
    std::string _key;
};

using Thing = BasicThing<PYL::CmpiManagedInstance>;

/// A link between two paths.
class Link : public BasicThing<PYL::CmpiManagedInstanceAssociation> {
public:
    Link(TestBroker& broker, Calls& calls, CmpiCpp::CmpiObjectPath path,
         CmpiCpp::CmpiObjectPath left, CmpiCpp::CmpiObjectPath right)
        : BasicThing(broker, calls, std::move(path)),
          _left(std::move(left)),
          _right(std::move(right)) {}

    CmpiCpp::CmpiObjectPath getAssociatedPath(const CmpiCpp::CmpiObjectPath& path) override {
        called("getAssociatedPath");
        if (path == _left) return _right;
        if (path == _right) return _left;
        return {};
    }

private:
    CmpiCpp::CmpiObjectPath _left;
    CmpiCpp::CmpiObjectPath _right;
};

/// A link from one path to a list of others, which may hold empty paths.
class MultiLink : public BasicThing<PYL::CmpiManagedInstanceMultiAssociation> {
public:
    MultiLink(TestBroker& broker, Calls& calls, CmpiCpp::CmpiObjectPath path,
              CmpiCpp::CmpiObjectPath source, std::vector<CmpiCpp::CmpiObjectPath> farEnds)
        : BasicThing(broker, calls, std::move(path)),
          _source(std::move(source)),
          _farEnds(std::move(farEnds)) {}

    std::vector<CmpiCpp::CmpiObjectPath> getAssociatedPaths(
        const CmpiCpp::CmpiObjectPath& path) override {
        called("getAssociatedPaths");
        if (path == _source) return _farEnds;
        return {};
    }

private:
    CmpiCpp::CmpiObjectPath _source;
    std::vector<CmpiCpp::CmpiObjectPath> _farEnds;
};
