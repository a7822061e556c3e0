#pragma once

#include "cimhost/objects/Broker.h"
#include "cimhost/operations/ClassRules.h"
#include "cimhost/repository/NameSpace.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <shared_mutex>
#include <string>
#include <string_view>
#include <unordered_map>

namespace cimhost {

/// What becomes of results that are not as their class declares them.
enum class ResultPolicy : std::uint8_t {
    warn,    ///< they are left out, and told once
    refuse,  ///< the operation fails
    pass,    ///< the client gets them
};

/// Holds what providers deliver against its classes: properties that the class has not or declares
/// otherwise, keys that are too many, too few or of another kind, instances of unknown classes. The
/// words name the provider and what is declared and given; under `warn` each goes to the log once.
/// The rules of each class are made once. Safe from several threads.
class ResultJudge {
public:
    /// The log outlives this, and the repository's classes do.
    ResultJudge(BrokerLog& log, ResultPolicy policy) : _log(log), _policy(policy) {}

    ResultPolicy policy() const noexcept { return _policy; }

    /// Good as long as the judge.
    const ClassRules& rulesOf(const Class& definition) const;

    // Of what is not clean. Under `refuse` CimError failed with the words; otherwise they are told.

    /// The instance without the properties that are wrong; nothing when its keys are.
    std::optional<Instance> mend(std::string_view provider, const ClassRules& rules,
                                 const Instance& instance) const;
    /// Tells what is wrong with the keys; true when something is.
    bool tellKeys(std::string_view provider, const ClassRules& rules, const ObjectPath& path) const;
    /// The namespace is that of the path, if it is known.
    void tellUnknownClass(std::string_view provider, const ObjectPath& path,
                          const NameSpace* nameSpace = nullptr) const;
    void tellOtherClass(std::string_view provider, const Class& given, const Class& asked) const;

private:
    template <typename Meant>
    void _tell(std::string_view provider, const std::string& what, const char* consequence,
               Meant&& meant) const;

    BrokerLog& _log;
    ResultPolicy _policy;
    mutable std::shared_mutex _rulesMutex;
    mutable std::unordered_map<const Class*, std::unique_ptr<const ClassRules>> _rules;
    mutable std::mutex _toldMutex;
    mutable std::set<std::string> _told;
};

}  // namespace cimhost
