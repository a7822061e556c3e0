#include "cimhost/operations/Dispatch.h"
#include "cimhost/operations/HostAssociations.h"
#include "cimhost/operations/Operations.h"
#include "cimhost/repository/Names.h"

#include <algorithm>
#include <optional>

// Each provider is asked once, with the filters as the client gave them, however many association
// classes it is registered for: it knows by the filters which of its classes are meant, so that no
// result is lost and none comes twice. A provider may refuse a filter; that ends the operation,
// since the result would not be what was asked for. Providers are not given the property list,
// which some refuse here: what it leaves out is left out of the results.

namespace cimhost {

namespace {

void requireFilterClass(const Target& target, const std::string& className) {
    if (className.empty() || target.nameSpace.findClass(className)) return;
    throw CimError(CimCode::invalidParameter, "namespace " + target.nameSpace.name() +
                                                  " has no class '" + className + "' to filter by" +
                                                  target.nameSpace.meantClass(className));
}

// Unknown classes count, on the association as at its ends: the provider knows better then.
bool canReferTo(const NameSpace& nameSpace, const Class* association, const Class& source) {
    if (!association) return true;
    const auto& properties = association->properties;
    return std::ranges::any_of(properties, [&](const auto& property) {
        if (property->type != CimType::reference) return false;
        return !nameSpace.findClass(property->referenceClass) ||
               nameSpace.isA(source.name, property->referenceClass);
    });
}

// A class that a client names and that is not registered is the business of its nearest ancestor.
bool serves(const Servers& servers, const Target& target, const Registration& registration,
            const std::string& associationClass) {
    const NameSpace& nameSpace = target.nameSpace;
    if (associationClass.empty() || equalNames(registration.className, associationClass) ||
        nameSpace.isA(registration.className, associationClass)) {
        return true;
    }
    const Class* const wanted = nameSpace.findClass(associationClass);
    if (!wanted) return false;
    const Registration* const nearest =
        servers.nearest(ProviderType::association, {nameSpace, *wanted}).registration;
    return nearest && equalNames(nearest->className, registration.className);
}

// One registration for each provider to ask, or where the host asks about each class, for each.
std::vector<const Registration*> providersFor(const Manner& manner, const ModuleHost& modules,
                                              const Servers& servers, const Target& target,
                                              const std::string& associationClass) {
    const NameSpace& nameSpace = target.nameSpace;
    std::vector<const Registration*> chosen;
    for (const Registration* const each :
         modules.registrations().all(ProviderType::association, nameSpace.name())) {
        const bool isChosen = !manner.has(Habit::namesTheRegisteredAssociation) &&
                              std::ranges::any_of(chosen, [each](const Registration* other) {
                                  return other->provider == each->provider;
                              });
        if (isChosen || !serves(servers, target, *each, associationClass)) continue;
        const Class* const association = nameSpace.findClass(each->className);
        if (canReferTo(nameSpace, association, target.definition)) chosen.push_back(each);
    }
    return chosen;
}

/// What the providers of one walk answer. Of those that are asked about all associations, some say
/// "not supported" for want of one here: that counts only where nobody has an answer. Who says so
/// to a filter may have had results, and ends the walk. In some hosts "not supported" always means
/// that the association is not the provider's own.
class Answers {
public:
    Answers(const Manner& manner, const AssociationFilter& filter) noexcept
        : _dropsRefusals(manner.has(Habit::dropsRefusedAssociations)),
          _isFiltered(!filter.associationClass.empty() || !filter.resultClass.empty() ||
                      !filter.role.empty() || !filter.resultRole.empty()) {}

    template <typename Ask>
    void take(Ask&& ask) {
        try {
            runWalk(ask);
            _hasAnswer = true;
        } catch (const CimError& error) {
            if (error.code() != CimCode::notSupported || (_isFiltered && !_dropsRefusals)) throw;
            _refusal = error;
        }
    }

    void requireOne() const {
        if (_refusal && !_hasAnswer && !_dropsRefusals) throw CimError(*_refusal);
    }

private:
    std::optional<CimError> _refusal;
    bool _dropsRefusals;
    bool _isFiltered;
    bool _hasAnswer = false;
};

const char* orNull(const std::string& text) noexcept {
    return text.empty() ? nullptr : text.c_str();
}

// The association class that a provider is told.
const char* associationFor(const Manner& manner, const Registration& registration,
                           const std::string& wanted) noexcept {
    const bool isRegistered = manner.has(Habit::namesTheRegisteredAssociation);
    return isRegistered ? registration.className.c_str() : orNull(wanted);
}

CMPIFlags walkFlags(const InstanceOptions& options) noexcept {
    return flagsOf(options) & ~CMPIFlags{CMPI_FLAG_DeepInheritance};
}

/// Passes on what another operation finds, as a result of this one.
class Relay final : public InstanceSink {
public:
    Relay(InstanceSink& sink, const PropertySelection& selection)
        : _sink(sink), _selection(selection) {}

    void deliver(const Instance& instance, const Class* definition,
                 const PropertySelection&) override {
        _sink.deliver(instance, definition, _selection);
    }

private:
    InstanceSink& _sink;
    const PropertySelection& _selection;
};

/// Among the arguments for a provider: the association class, which some hosts name otherwise for
/// each.
struct ToldAssociation {};

/// One walk: what it is about, and whom it asks.
struct Walk {
    Broker& broker;
    ModuleHost& modules;
    Servers& servers;
    const RequestContext& request;
    const ObjectPath& written;
    const AssociationFilter& filter;
    Target target;
    ObjectPath source;
    ClassFilter accepted;
    const ResultJudge* judge;

    Walk(Broker& host, ModuleHost& loaded, Servers& known, const RequestContext& context,
         const ObjectPath& path, const AssociationFilter& wanted, const ResultJudge* held)
        : broker(host),
          modules(loaded),
          servers(known),
          request(context),
          written(path),
          filter(wanted),
          target(requireTarget(host.repository(), context, path)),
          source(requireInstancePath(host.repository(), context, target, path)),
          accepted(wanted.resultClass),
          judge(held) {
        requireFilterClass(target, filter.associationClass);
        requireFilterClass(target, filter.resultClass);
    }

    /// Makes what takes a provider's results of this kind and passes them on.
    template <typename Results>
    auto into(auto&... sink) const {
        return [&](std::string_view provider) {
            return Results(broker.repository(), target, accepted, provider, judge, sink...);
        };
    }

    /// Asks each provider that may know of such associations by the function in this slot.
    template <typename Slot, typename... Arguments>
    void ask(const std::string& associationClass, CMPIFlags flags, auto makeResults, Slot slot,
             Arguments... arguments) const {
        const RequestContext context = providerContext(request, target.nameSpace, flags);
        Answers answers(broker.manner(), filter);
        for (const Registration* const each :
             providersFor(broker.manner(), modules, servers, target, associationClass)) {
            auto results = makeResults(each->provider);
            answers.take([&] {
                askProvider<CMPIAssociationMI>(
                    broker, modules, *each, context, results,
                    pathForProvider(broker.manner(), request, written, source), slot,
                    _argumentFor(*each, associationClass, arguments)...);
            });
        }
        answers.requireOne();
    }

private:
    const char* _argumentFor(const Registration& provider, const std::string& associationClass,
                             ToldAssociation) const noexcept {
        return associationFor(broker.manner(), provider, associationClass);
    }
    template <typename Argument>
    Argument _argumentFor(const Registration&, const std::string&,
                          Argument argument) const noexcept {
        return argument;
    }
};

}  // namespace

void Operations::associators(const RequestContext& request, const ObjectPath& path,
                             const AssociationFilter& filter, const InstanceOptions& options,
                             InstanceSink& sink) {
    const Walk walk(_broker, _modules, _servers, request, path, filter, _judgeFor(request));
    const PropertySelection selection = selectionOf(_broker.manner(), options);
    walk.ask(filter.associationClass, walkFlags(options), walk.into<InstanceWalk>(sink, selection),
             &CMPIAssociationMIFT::associators, ToldAssociation(), orNull(filter.resultClass),
             orNull(filter.role), orNull(filter.resultRole), nullptr);
    Relay relay(sink, selection);
    const auto visit = [&](const ObjectPath& end) {
        // An object that is gone has no instance to show.
        runWalk([&] { getInstance(request, end, options, relay); });
    };
    visitAssociators(_servers, _broker.repository(), walk.target, walk.source, filter, visit);
}

void Operations::associatorNames(const RequestContext& request, const ObjectPath& path,
                                 const AssociationFilter& filter, PathSink& sink) {
    const Walk walk(_broker, _modules, _servers, request, path, filter, _judgeFor(request));
    walk.ask(filter.associationClass, 0, walk.into<PathWalk>(sink),
             &CMPIAssociationMIFT::associatorNames, ToldAssociation(), orNull(filter.resultClass),
             orNull(filter.role), orNull(filter.resultRole));
    visitAssociators(_servers, _broker.repository(), walk.target, walk.source, filter,
                     [&](const ObjectPath& end) { sink.deliver(end); });
}

void Operations::references(const RequestContext& request, const ObjectPath& path,
                            const AssociationFilter& filter, const InstanceOptions& options,
                            InstanceSink& sink) {
    const Walk walk(_broker, _modules, _servers, request, path, filter, _judgeFor(request));
    const PropertySelection selection = selectionOf(_broker.manner(), options);
    walk.ask(filter.resultClass, walkFlags(options), walk.into<InstanceWalk>(sink, selection),
             &CMPIAssociationMIFT::references, ToldAssociation(), orNull(filter.role), nullptr);
    visitReferences(_servers, walk.target, walk.source, filter.resultClass, filter.role,
                    [&](const Instance& instance, const Class& definition) {
                        sink.deliver(instance, &definition, selection);
                    });
}

void Operations::referenceNames(const RequestContext& request, const ObjectPath& path,
                                const AssociationFilter& filter, PathSink& sink) {
    const Walk walk(_broker, _modules, _servers, request, path, filter, _judgeFor(request));
    walk.ask(filter.resultClass, 0, walk.into<PathWalk>(sink), &CMPIAssociationMIFT::referenceNames,
             ToldAssociation(), orNull(filter.role));
    visitReferences(_servers, walk.target, walk.source, filter.resultClass, filter.role,
                    [&](const Instance& instance, const Class&) { sink.deliver(instance.path); });
}

}  // namespace cimhost
