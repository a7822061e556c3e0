#pragma once

#include "cimhost/testing/Host.h"
#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiContext.h"
#include "cmpicpp/CmpiProvider.h"
#include "common/CmpiManagedInstance.h"
#include "platform/logger/Logger.h"

#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace cimtest {

/// A status that a provider has posted. Prints as "PYL_FanGroup 2".
struct Post {
    std::string className;    ///< of the group
    unsigned int status = 0;  ///< an operationalStatus

    /// Class and status count.
    bool operator==(const Post&) const = default;
    /// Prints as said above.
    friend std::ostream& operator<<(std::ostream& out, const Post& post) {
        return out << post.className << ' ' << post.status;
    }
};

/// A host for what is built on the library: provider objects, and managed instances, beside
/// modules.
///
///     cimtest::ProviderHost host("root/acme", {"Acme.mof"});
///     host.serve(std::make_unique<PortProvider>(host.broker(), host.logger()), {"ACME_Port"});
///     EXPECT_EQ(host.names("ACME_Port").size(), 2U);
///
/// While it lives, its broker is that of PYLUtil, lines of hosted loggers are in its log, and what
/// is posted to the server's status is taken, unless a provider serves PYL_ComputerSystem. One at a
/// time.
class ProviderHost : public Host {
public:
    /// As Host's.
    explicit ProviderHost(std::string nameSpace = "root/test",
                          const std::vector<std::filesystem::path>& mof = {},
                          const std::string& manner = {},
                          const std::filesystem::path& schema = PYL_SCHEMA_FOLDER);
    ~ProviderHost() override;

    /// @{
    /// The host's broker and a context for its calls, for the code under test.
    CmpiCpp::CmpiBroker broker() const noexcept { return CmpiCpp::CmpiBroker(handle()); }
    CmpiCpp::CmpiContext context() { return CmpiCpp::CmpiContext(callContext()); }
    /// @}
    /// Writes into the host's log, as loggers do that a loaded module makes itself.
    Logger& logger() noexcept;

    using Host::serve;
    /// For the classes, in all that the object is. The reference is good until the host ends.
    template <typename Provider>
    Provider& serve(std::unique_ptr<Provider> provider, const std::vector<std::string>& classes) {
        Provider& served = *provider;
        _serve(std::move(provider), classes);
        return served;
    }
    /// A managed instance, in a collection with the others: under its own class and namespace.
    void add(std::unique_ptr<PYL::CmpiManagedInstance> instance);

    using Host::show;
    /// @{
    /// The instance as it describes itself, held against its class and the path that it names.
    Instance show(PYL::CmpiManagedInstance& instance) const;
    Instance show(PYL::CmpiManagedInstance&& instance) const { return show(instance); }
    static Path show(const CmpiCpp::CmpiObjectPath& path) { return show(path.toCMPI()); }
    /// @}

    /// What providers have posted with PYLUtil::postStatus().
    Captured<Post>& posts() noexcept;

protected:
    void beforeStart() override;

private:
    void _serve(std::unique_ptr<CmpiCpp::CmpiProvider> provider,
                const std::vector<std::string>& classes);

    struct Library;
    std::unique_ptr<Library> _library;
};

}  // namespace cimtest
