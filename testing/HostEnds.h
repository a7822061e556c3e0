#pragma once

#include "cimhost/objects/Broker.h"
#include "cimhost/operations/ResultJudge.h"
#include "testing/cimhost/testing/Host.h"

#include <string>
#include <string_view>

namespace cimtest {

/// Hands the words to the handler that is set.
void failLate(const std::string& words);

/// Keeps what is logged.
class HostLog final : public cimhost::BrokerLog {
public:
    void write(Level level, std::string_view source, std::string_view message) noexcept override;

    Captured<LogLine> lines;
};

/// Where alerts arrive: each is held against its class, and kept. What is wrong with one is a late
/// failure, and the answer to whoever raised it.
class HostAlerts final : public cimhost::IndicationSink {
public:
    HostAlerts(const cimhost::Repository& repository, cimhost::BrokerLog& log)
        : _repository(repository), _judge(log, cimhost::ResultPolicy::refuse) {}

    void deliver(const cimhost::RequestContext& context, std::string_view nameSpace,
                 const cimhost::Instance& indication) override;

    /// Throws CimError with the words when the instance is not as its class declares it.
    void judge(std::string_view nameSpace, const cimhost::Instance& instance) const;

    Captured<Instance> captured;

private:
    const cimhost::Repository& _repository;
    cimhost::ResultJudge _judge;
};

}  // namespace cimtest
