#pragma once

#include "cimhost/objects/Broker.h"
#include "cimhost/operations/Operations.h"
#include "cimhost/operations/ResultJudge.h"
#include "cimhost/operations/Servers.h"
#include "cimhost/operations/Target.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Where MI functions deliver: each result is completed, held against the request and passed on at
/// once. For one MI call, on its thread. What does not belong into a result of the operation is
/// CimError failed that names the provider.
namespace cimhost {

/// Takes nothing: for functions that deliver nothing, and the base of the others.
class ProviderSink : public ResultSink {
public:
    explicit ProviderSink(std::string_view provider) : _provider(provider) {}

    void instance(const Instance& instance) override;
    void path(const ObjectPath& path) override;
    void data(const Value& value) override;

protected:
    [[noreturn]] void refuse(const std::string& what) const;

    std::string_view provider() const noexcept { return _provider; }

private:
    std::string_view _provider;
};

/// Whether a result belongs to what is asked for.
enum class Fit : std::uint8_t {
    belongs,
    leftOut,     ///< others answer for it, or the client does not want it
    misdirected  ///< no provider should deliver it here
};

/// Which results of a walk pass.
class ResultFilter {
public:
    virtual ~ResultFilter() = default;
    /// `nameSpace` and `definition` are null where the repository does not know them.
    virtual Fit judge(const NameSpace* nameSpace, const Class* definition) const = 0;
};

/// For an enumeration that asks about `asked`: its instances, and those of its subclasses, but for
/// subclasses that somebody answers for: those are asked about on their own. The classes of another
/// namespace count by their names. Whether results of unknown classes pass is not decided here.
class EnumerationFilter final : public ResultFilter {
public:
    EnumerationFilter(const Servers& servers, const Target& asked)
        : _servers(servers), _asked(asked) {}

    Fit judge(const NameSpace* nameSpace, const Class* definition) const override;

private:
    const Servers& _servers;
    const Target& _asked;
};

/// Instances of the named class and its subclasses; of all classes, and of unknown ones, for an
/// empty name. The class is looked up in the namespace of each result.
class ClassFilter final : public ResultFilter {
public:
    explicit ClassFilter(std::string_view className) noexcept : _className(className) {}

    Fit judge(const NameSpace* nameSpace, const Class* definition) const override;

private:
    std::string_view _className;
};

/// What walks share: completes the paths of results, finds their classes and holds them against
/// those.
class WalkSink : public ProviderSink {
public:
    /// Without a judge whatever belongs into the walk passes.
    WalkSink(const Repository& repository, const Target& asked, const ResultFilter& filter,
             std::string_view provider, const ResultJudge* judge)
        : ProviderSink(provider),
          _repository(repository),
          _asked(asked),
          _filter(filter),
          _judge(judge) {}

protected:
    bool isComplete(const ObjectPath& path) const noexcept;
    void complete(ObjectPath& path) const;

    /// What is known of a class of results.
    struct Verdict {
        std::string nameSpace;
        std::string className;
        const Class* definition = nullptr;  ///< null where the repository does not know it
        bool isAccepted = false;
        const ClassRules* rules = nullptr;  ///< null where results pass as they are
        ClassRules::Memory memory;
    };
    /// Good until the next is asked for. Throws CimError failed for a class that the judge refuses.
    Verdict& verdictOn(const ObjectPath& path);

    /// Null only where no verdict has rules.
    const ResultJudge* judge() const noexcept { return _judge; }

private:
    Verdict _judgeAnew(const ObjectPath& path) const;

    const Repository& _repository;
    const Target& _asked;
    const ResultFilter& _filter;
    const ResultJudge* _judge;
    std::optional<Verdict> _last;
};

class InstanceWalk final : public WalkSink {
public:
    InstanceWalk(const Repository& repository, const Target& asked, const ResultFilter& filter,
                 std::string_view provider, const ResultJudge* judge, InstanceSink& sink,
                 const PropertySelection& selection)
        : WalkSink(repository, asked, filter, provider, judge),
          _sink(sink),
          _selection(selection) {}

    void instance(const Instance& instance) override;

private:
    InstanceSink& _sink;
    const PropertySelection& _selection;
};

class PathWalk final : public WalkSink {
public:
    PathWalk(const Repository& repository, const Target& asked, const ResultFilter& filter,
             std::string_view provider, const ResultJudge* judge, PathSink& sink)
        : WalkSink(repository, asked, filter, provider, judge), _sink(sink) {}

    void path(const ObjectPath& path) override;

private:
    PathSink& _sink;
};

/// Exactly one instance, of the class asked for or a subclass. One that the judge would leave out
/// is refused, since nothing would be left.
class SingleInstance final : public ProviderSink {
public:
    SingleInstance(const Target& asked, const ObjectPath& path, std::string_view provider,
                   const ResultJudge* judge, InstanceSink& sink, const PropertySelection& selection)
        : ProviderSink(provider),
          _asked(asked),
          _path(path),
          _judge(judge),
          _sink(sink),
          _selection(selection) {}

    void instance(const Instance& instance) override;

    bool isDelivered() const noexcept { return _isDelivered; }

private:
    void _deliver(const Instance& instance, const Class* definition);

    const Target& _asked;
    const ObjectPath& _path;
    const ResultJudge* _judge;
    InstanceSink& _sink;
    const PropertySelection& _selection;
    bool _isDelivered = false;
};

/// Exactly one path.
class SinglePath final : public ProviderSink {
public:
    using ProviderSink::ProviderSink;

    void path(const ObjectPath& path) override;

    /// CimError failed when none was delivered.
    ObjectPath take();

    /// That, completed, as the path of an instance of the class asked for or a subclass. Held
    /// against its class unless the judge is null; one that the judge would leave out is refused.
    ObjectPath takeFor(const Repository& repository, const Target& asked, const ResultJudge* judge);

private:
    void _hold(const Repository& repository, const Target& asked, const ObjectPath& path,
               const ResultJudge& judge) const;

    std::optional<ObjectPath> _path;
};

/// At most one value: an embedded instance or a reference may come as such.
class SingleValue final : public ProviderSink {
public:
    using ProviderSink::ProviderSink;

    void instance(const Instance& instance) override;
    void path(const ObjectPath& path) override;
    void data(const Value& value) override;
    bool isForMethod() const override { return true; }

    const std::optional<Value>& value() const noexcept { return _value; }

private:
    void _set(Value value);

    std::optional<Value> _value;
};

}  // namespace cimhost
