#include "testing/pylcommon/testing/ProviderHost.h"

#include "cmpicpp/CmpiAssociationProvider.h"
#include "cmpicpp/CmpiIndicationProvider.h"
#include "cmpicpp/CmpiModule.h"
#include "cmpicpp/CmpiStatus.h"
#include "common/PYLUtil.h"
#include "toolkit/CollectionProvider.h"

#include <cxxabi.h>

#include <cstdlib>
#include <mutex>
#include <set>
#include <typeinfo>

namespace cimtest {
namespace {

using CmpiCpp::CmpiModule;
using CmpiCpp::CmpiProvider;

/// A provider object on its way to the module that will own it.
CmpiProvider* takeProvider(std::unique_ptr<CmpiProvider>* given) {
    static thread_local std::unique_ptr<CmpiProvider>* current = nullptr;
    if (given) {
        current = given;
        return nullptr;
    }
    CmpiProvider* const taken = current ? current->release() : nullptr;
    if (taken) return taken;
    throw CmpiCpp::CmpiStatus(CMPI_RC_ERR_FAILED, "the provider object of the test has ended");
}

CmpiProvider* makeProvider(const CmpiCpp::CmpiBroker&, const CMPIContext*) {
    return takeProvider(nullptr);
}

/// "FanProvider" of fan::FanProvider.
std::string nameOf(const CmpiProvider& provider) {
    const std::unique_ptr<char, decltype(&std::free)> text(
        abi::__cxa_demangle(typeid(provider).name(), nullptr, nullptr, nullptr), &std::free);
    std::string name = text ? text.get() : "Provider";
    name.erase(0, name.find_last_of(": ") + 1);
    return name;
}

/// Stands where the server's own provider takes the status that others post.
class PostCatcher final : public CmpiCpp::CmpiMethodProvider {
public:
    PostCatcher(CMPIBroker* broker, Captured<Post>& posts) : _broker(broker), _posts(posts) {}

    CMPIBroker* getBroker() override { return _broker; }
    void invokeMethod(const CmpiCpp::CmpiContext&, const CmpiCpp::CmpiObjectPath&,
                      const CmpiCpp::CmpiName&, const CmpiCpp::CmpiArgs& in,
                      CmpiCpp::CmpiMethodResult& result) override {
        _posts.add({in.getArg("ClassName").asString(),
                    static_cast<unsigned int>(in.getArg("Status").asUint64())});
        result.deliver(0U);
    }

private:
    CMPIBroker* _broker;
    Captured<Post>& _posts;
};

}  // namespace

struct ProviderHost::Library {
    /// Lines of the library into a host's log, as long as there is one: loggers may outlive it.
    class HostSink final : public LogSink {
    public:
        explicit HostSink(Captured<LogLine>& lines) : _lines(&lines) {}
        void end() {
            const std::lock_guard lock(_mutex);
            _lines = nullptr;
        }
        void write(LogLevel level, std::string_view source,
                   std::string_view message) noexcept override try {
            const std::lock_guard lock(_mutex);
            if (!_lines) return;
            _lines->add(
                {std::string(logLevelName(level)), std::string(source), std::string(message)});
        } catch (const std::exception&) {
            // Short of memory, as a test may want it: the line is lost.
        }

    private:
        std::mutex _mutex;
        Captured<LogLine>* _lines;
    };

    /// A provider object and the entry points to it.
    struct Served {
        explicit Served(std::unique_ptr<CmpiProvider> given) : provider(std::move(given)) {}

        template <typename Kind, typename MI>
        EntryPoints::Create<MI> entryPoint(MI* (CmpiModule::*create)(const CMPIBroker*,
                                                                     const CMPIContext*,
                                                                     CMPIStatus*) noexcept) {
            if (!dynamic_cast<Kind*>(provider.get())) return {};
            return [this, create](const CMPIBroker* broker, const CMPIContext* context,
                                  CMPIStatus* status) {
                takeProvider(&provider);
                return (module.*create)(broker, context, status);
            };
        }

        EntryPoints entryPoints() {
            return {entryPoint<CmpiCpp::CmpiInstanceProvider>(&CmpiModule::createInstanceMI),
                    entryPoint<CmpiCpp::CmpiAssociationProvider>(&CmpiModule::createAssociationMI),
                    entryPoint<CmpiCpp::CmpiMethodProvider>(&CmpiModule::createMethodMI),
                    entryPoint<CmpiCpp::CmpiIndicationProvider>(&CmpiModule::createIndicationMI)};
        }

        std::unique_ptr<CmpiProvider> provider;  ///< until the first entry point is called
        CmpiModule module{"test", makeProvider};
    };

    class GivenInstances final : public PYL::CollectionProvider {
    public:
        using CollectionProvider::_instances;
        using CollectionProvider::CollectionProvider;
    };

    explicit Library(Captured<LogLine>& lines) : sink(std::make_shared<HostSink>(lines)) {}

    std::shared_ptr<HostSink> sink;
    Logger logger{"test", sink};
    Captured<Post> posts;
    std::vector<std::unique_ptr<Served>> served;
    std::unique_ptr<GivenInstances> instances;
    std::set<std::string> classes;  ///< of those instances
};

ProviderHost::ProviderHost(std::string nameSpace, const std::vector<std::filesystem::path>& mof,
                           const std::string& manner, const std::filesystem::path& schema)
    : Host(std::move(nameSpace), mof, manner, schema), _library(std::make_unique<Library>(log())) {
    PYL::PYLUtil::setBroker(broker());
    setHostedLogSink(_library->sink);
}

ProviderHost::~ProviderHost() {
    end();
    _library->served.clear();
    _library->sink->end();
    setHostedLogSink(nullptr);
    PYL::PYLUtil::setBroker(CmpiCpp::CmpiBroker(nullptr));
}

Logger& ProviderHost::logger() noexcept { return _library->logger; }

Captured<Post>& ProviderHost::posts() noexcept { return _library->posts; }

void ProviderHost::_serve(std::unique_ptr<CmpiProvider> provider,
                          const std::vector<std::string>& classes) {
    const std::string name = nameOf(*provider);
    auto& served =
        *_library->served.emplace_back(std::make_unique<Library::Served>(std::move(provider)));
    serve(served.entryPoints(), classes, name);
}

void ProviderHost::add(std::unique_ptr<PYL::CmpiManagedInstance> instance) {
    auto& instances = _library->instances;
    if (!instances) instances = std::make_unique<Library::GivenInstances>(broker(), logger());
    const auto place = instance->getPath().getNameSpace().str();
    _library->classes.insert(place + ":" + instance->getClassName().str());
    PYL::add(instances->_instances, std::move(instance));
}

Instance ProviderHost::show(PYL::CmpiManagedInstance& instance) const {
    Instance shown = show(instance.getInstance().toCMPI());
    const Path claimed = show(instance.getPath());
    if (shown.path() == claimed) return shown;
    throw Failure("the path of " + shown.str() + " is not that of getPath(), " + claimed.str());
}

void ProviderHost::beforeStart() {
    if (_library->instances) {
        _serve(std::move(_library->instances),
               {_library->classes.begin(), _library->classes.end()});
    }
    const std::string place = PYL::BaseServerNameSpace;
    const std::string system = PYL::ScopedCentralClassName;
    if (isServed(place, system)) return;
    if (!hasClass(place, system)) {
        readMofText("class " + system +
                        " { [Key] string Name;"
                        " uint32 PostStatus([In] string ClassName, [In] uint16 Status); };",
                    place);
    }
    _serve(std::make_unique<PostCatcher>(broker().toRawCMPI(), posts()), {place + ":" + system});
}

}  // namespace cimtest
