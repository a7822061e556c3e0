#pragma once

#include "cimhost/indications/FilterActivation.h"
#include "cimhost/indications/IndicationOutlet.h"
#include "cimhost/indications/IndicationRoutes.h"
#include "cimhost/indications/SubscriptionRules.h"
#include "cimhost/operations/InstanceSource.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <list>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace cimhost {

/// What there may be at most; the next one is CimError serverLimitsExceeded.
struct SubscriptionLimits {
    static constexpr std::size_t filters = 1024;
    static constexpr std::size_t destinations = 64;  ///< each may have a thread that sends
    static constexpr std::size_t subscriptions = 4096;
    static constexpr std::chrono::minutes wait{1};  ///< for another change; then CimError failed
};

/// The filters, destinations and subscriptions of all interop namespaces, and their effect: a
/// subscription is a route for indications, and its filter is active at its providers. As a source
/// of instances they serve the classes of SubscriptionRules.h in those namespaces.
///
/// With a state file every change is on the disk before it is answered; a change that cannot be
/// written is refused. Those that came with the MOF are not written, and stay as they are; neither
/// are those that lead to the console, which end with the server. Safe
/// from several threads. One change is made at a time; a provider that is asked about a
/// subscription cannot make another. No lock is held on which deliverIndication could wait.
class Subscriptions final : public InstanceSource {
public:
    /// All of these outlive the subscriptions. A change that waits for another one, which a
    /// provider may never let end, is refused after `longestWait`.
    Subscriptions(Broker& broker, ModuleHost& modules, IndicationRoutes& routes,
                  IndicationOutlet& outlet,
                  std::chrono::milliseconds longestWait = SubscriptionLimits::wait);
    ~Subscriptions() override;
    Subscriptions(const Subscriptions&) = delete;
    Subscriptions& operator=(const Subscriptions&) = delete;

    /// Takes in what the MOF defines and the state file holds, and activates it. Once, before
    /// requests. A file that is not there is made by the first change; one in the old form is
    /// written anew. Throws std::runtime_error `file:line:column: reason` for a damaged one. A
    /// subscription that a provider refuses now is kept, shown as disabled and logged.
    void restore(const std::optional<std::filesystem::path>& file);

    bool serves(const Target& target) const noexcept override;
    void visit(const Target& target, const VisitInstance& visit) const override;
    void visitAssociations(const Target& end, const VisitInstance& visit) const override;
    std::optional<Instance> find(const ObjectPath& path) const override;

    /// The instance is of one of those classes or a subclass. Throws CimError: what the rules
    /// refuse; alreadyExists; notFound for a subscription to what is not there; what a provider
    /// refuses it with; failed when the state cannot be written, or when it waited too long for
    /// another change; serverLimitsExceeded; serverIsShuttingDown.
    ObjectPath create(const RequestContext& request, const Instance& instance) override;

    /// Changes the properties given. What a filter selects or where a destination leads cannot be
    /// changed while it is in use (failed). Throws as create.
    void modify(const RequestContext& request, const Instance& instance) override;

    /// Throws CimError notFound; failed for what is in use, or came with the MOF, and as create.
    void remove(const RequestContext& request, const ObjectPath& path) override;

    /// The instances of the class and its subclasses in the namespace.
    std::vector<Instance> all(const NameSpace& nameSpace, std::string_view className) const;

    /// Makes filters active anew whose providers' modules have been replaced, and then inactive at
    /// those of before. A filter that a new one refuses stays where it was, and is logged. Throws
    /// CimError serverIsShuttingDown; failed when it waited too long for another change.
    void renewActivations();

    /// Turns everything off at the providers. Later changes are refused. False when a change did
    /// not end within `patience`, and nothing was done.
    bool stop(std::chrono::milliseconds patience);

    const Repository& repository() const noexcept { return _broker.repository(); }

private:
    struct Part;
    struct Filter;
    struct Destination;
    struct Subscription;
    class Change;

    template <typename Kind>
    static Kind* _find(std::list<Kind>& parts, const ObjectPath& path);

    void _add(const RequestContext& request, Instance instance, bool isStatic);
    void _addFilter(Instance instance, bool isStatic);
    void _addDestination(Instance instance, bool isStatic);
    void _addSubscription(const RequestContext& request, Instance instance, bool isStatic);
    void _removeLast(const RequestContext& request, SubscriptionPart part);
    void _modifyFilter(Filter& filter, Instance changed);
    void _modifyDestination(Destination& destination, Instance changed);
    void _modifySubscription(const RequestContext& request, Subscription& subscription,
                             Instance changed);
    void _activate(const RequestContext& request, Subscription& subscription);
    void _deactivate(const RequestContext& request, Subscription& subscription) noexcept;
    void _setRoutes();
    void _save();
    void _restoreStatic();
    /// False for a file in the old form, which is to be written anew.
    bool _restoreFile(const std::filesystem::path& file);

    Broker& _broker;
    std::vector<const NameSpace*> _interop;  ///< where they are
    IndicationRoutes& _routes;
    IndicationOutlet& _outlet;
    FilterActivation _activation;
    std::optional<std::filesystem::path> _file;
    std::chrono::milliseconds _longestWait;

    // Held for the whole of a change, by whoever has set _isChanging. Not a timed mutex: its timed
    // lock is one that GCC 12's thread sanitizer does not see.
    std::mutex _changing;
    std::condition_variable _changeEnded;
    bool _isChanging = false;
    std::chrono::steady_clock::time_point _changeBegan;  ///< guarded as _isChanging is
    std::atomic<std::thread::id> _changer{};
    bool _isStopped = false;
    bool _isRestoring = false;

    mutable std::mutex _mutex;  ///< guards the lists and what is in them; not held in foreign calls
    std::list<Filter> _filters;
    std::list<Destination> _destinations;
    std::list<Subscription> _subscriptions;
};

}  // namespace cimhost
