#pragma once

#include "cimhost/objects/Objects.h"

#include <vector>

namespace CmpiCpp::test {

/// Keeps what a provider returned through the C interface.
class RecordingSink final : public cimhost::ResultSink {
public:
    void instance(const cimhost::Instance& instance) override { instances.push_back(instance); }
    void path(const cimhost::ObjectPath& path) override { paths.push_back(path); }
    void data(const cimhost::Value& value) override { values.push_back(value); }
    void done() override { ++dones; }

    std::vector<cimhost::Instance> instances;
    std::vector<cimhost::ObjectPath> paths;
    std::vector<cimhost::Value> values;
    int dones = 0;
};

}  // namespace CmpiCpp::test
