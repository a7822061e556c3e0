#pragma once

#include "cimhost/testing/Captured.h"
#include "cimhost/testing/FaultyBroker.h"
#include "cimhost/testing/Values.h"
#include "cmpi/cmpift.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#ifndef PYL_SCHEMA_FOLDER  // the target's definition
/// Where the schema of this library is: the folder that hosts read MOF from by default.
#define PYL_SCHEMA_FOLDER ""
#endif

/// The harness: an object manager in the process of a test, and the machine that a provider sees.
namespace cimtest {

/// The entry points of a provider that is linked into the test; those that it has not stay empty.
struct EntryPoints {
    /// The entry point of one kind of provider, as CMPI declares it.
    template <typename MI>
    using Create = std::function<MI*(const CMPIBroker*, const CMPIContext*, CMPIStatus*)>;

    /// @{
    /// Empty for a kind that the provider is not.
    Create<CMPIInstanceMI> instance = {};
    Create<CMPIAssociationMI> association = {};
    Create<CMPIMethodMI> method = {};
    Create<CMPIIndicationMI> indication = {};
    /// @}
};

/// What an association walk is to be narrowed to. Empty names do not narrow.
struct Walk {
    /// @{
    /// A filter of the association operations (DSP0200).
    std::string associationClass = {};
    std::string resultClass = {};
    std::string role = {};
    std::string resultRole = {};
    /// @}
};

/// Takes what nobody can throw to a test any more: what an alert has that its class has not, on
/// whatever thread raised it, and objects that were still there at the end of a host. The default
/// writes it to standard error and ends the program. `<cimhost/testing.h>`, included after
/// GoogleTest, makes it a failure of the test.
using LateFailure = std::function<void(const std::string& words)>;
/// Replaces the handler of the process.
void setLateFailure(LateFailure handler);

/// An object manager in the process of a test: no server, no installation, no root.
///
///     cimtest::Host host("root/acme", {"Acme.mof"});
///     host.load("acme.registration", "build");
///     EXPECT_EQ(host.get("ACME_Port.Name=\"a\"")["Speed"], 1000);
///
/// Classes come first, then providers, then calls. What a call names without a namespace is in the
/// host's own. Each call throws Failure as the provider or the host refuses it, and where an answer
/// is not as its class declares it: a property or key that the class has not, or of another type.
/// The words say which. Property lists, filters and arguments reach the provider as a client's do.
///
/// While it lives, gethostname(2) answers as HostName.h says, and the thread that made it is inside
/// of a call, so that a test may make objects of the broker. When it ends, every provider is
/// cleaned up, and an object that one has cloned and not released by then, or a block of memory, is
/// a late failure. Calls may come from several threads, once one has been made.
class Host {
public:
    /// A property list; nullopt is all properties.
    using Properties = std::optional<std::vector<std::string>>;

    /// The qualifiers of the standard are there. Files are looked for in the current folder, and in
    /// the one of the schema that came with this library: "base/base.mof" there is a small CIM.
    /// Throws Failure as `file:line:column: reason`.
    /// `manner` is one of `cimhost manners`; when it is empty, the one that PYL_MANNER names in the
    /// environment, or the standard's.
    explicit Host(std::string nameSpace = "root/test",
                  const std::vector<std::filesystem::path>& mof = {},
                  const std::string& manner = {},
                  const std::filesystem::path& schema = PYL_SCHEMA_FOLDER);
    virtual ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    /// The host's own.
    const std::string& nameSpace() const noexcept;

    // Classes and instances. The host itself answers for instances of classes without a provider.

    /// @{
    /// Reads classes and instances into a namespace, the host's own unless another is named, which
    /// is made where need be. Throws Failure as the constructor does.
    void readMof(const std::filesystem::path& file, const std::string& nameSpace = {});
    void readMofText(const std::string& text, const std::string& nameSpace = {});
    /// @}

    // Providers.

    /// The modules that a registration file names, from a folder. They are opened when a call needs
    /// them, as an object manager does.
    void load(const std::filesystem::path& registration, const std::filesystem::path& folder);
    /// The same from lines `Class Namespace Provider Module type...`.
    void loadText(const std::string& registrations, const std::filesystem::path& folder);

    /// A provider that is part of the test, for these classes of the host's namespace, or of the
    /// one that stands before a colon: associations, indications and other classes, each in what
    /// they can be served in. Words about it have its name.
    void serve(const EntryPoints& provider, const std::vector<std::string>& classes,
               const std::string& name = "TestProvider");

    /// Has the provider of the module cleaned up and closed, as an object manager does that has not
    /// needed it for a while. False when it wants to stay.
    bool unload(const std::string& module);

    /// Cleans every provider up. The destructor does it too.
    void end() noexcept;

    // Operations.

    /// @{
    /// A client's operation (DSP0200), answered as a whole: EnumerateInstances,
    /// EnumerateInstanceNames, GetInstance and so on.
    std::vector<Instance> enumerate(const Path& ofClass, const Properties& properties = {});
    std::vector<Path> names(const Path& ofClass);
    Instance get(const Path& path, const Properties& properties = {});
    /// The path of what was made.
    Path create(const Path& ofClass, const Named& properties);
    void modify(const Path& path, const Named& properties);
    void remove(const Path& path);
    std::vector<Instance> associators(const Path& path, const Walk& walk = {});
    std::vector<Path> associatorNames(const Path& path, const Walk& walk = {});
    /// The result class is that of the associations.
    std::vector<Instance> references(const Path& path, const Walk& walk = {});
    std::vector<Path> referenceNames(const Path& path, const Walk& walk = {});
    /// Arguments take the types that the method declares.
    Answer invoke(const Path& path, const std::string& method, const Named& arguments = {});
    std::vector<Instance> query(const std::string& text, const std::string& language = "WQL");
    /// @}

    /// Activates a filter for all indications of the class at its providers, and enables them.
    void subscribe(const std::string& indicationClass);
    /// Takes all filters back and disables indications.
    void unsubscribe();

    // What came of it.

    /// Lines of the host and of providers, by CMPI's own means.
    Captured<LogLine>& log() noexcept;
    /// Indications that were raised, subscribed to or not, held against their classes.
    Captured<Instance>& alerts() noexcept;
    /// The objects that providers have cloned and not released since this host was made. While it
    /// runs that may be right: some keep things.
    std::ptrdiff_t clones() const noexcept;

    // How it fails.

    /// Makes single calls of the broker and of its objects fail. Up-calls are in CMPIBrokerFT:
    ///
    ///     host.faults().failCall("CMPIBrokerFT.getInstance", 2, FaultyBroker::Fault::status);
    FaultyBroker& faults();

    /// The broker that providers are given; good as long as the host.
    const CMPIBroker* handle() const noexcept;
    /// An object of the broker as a plain value, an instance held against its class in the host's
    /// namespace: Failure with the words when it is not as declared.
    Instance show(const CMPIInstance* instance) const;
    /// The same for a path, which is held against nothing.
    static Path show(const CMPIObjectPath* path);

    /// A context as calls have it, good as long as the host, for what a test asks a provider object
    /// by itself: from then on it finds the other providers.
    const CMPIContext* callContext();

protected:
    /// Called once, before the first operation.
    virtual void beforeStart() {}
    /// Whether the namespace declares the class.
    bool hasClass(const std::string& nameSpace, const std::string& name) const;
    /// Whether a provider is registered for the class's methods.
    bool isServed(const std::string& nameSpace, const std::string& name) const;

private:
    struct Parts;
    struct Request;
    template <typename Call>
    auto _run(const Path& path, Call call);
    void _start();
    void _requireUnstarted() const;

    std::unique_ptr<Parts> _parts;
};

}  // namespace cimtest
