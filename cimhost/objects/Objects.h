#pragma once

#include "cimhost/repository/Instance.h"
#include "cmpi/cmpift.h"

#include <exception>
#include <string>
#include <string_view>
#include <vector>

/// The data objects behind the CMPI tables: handles made of our data model, and the way back.
///
/// Every handle made here belongs to the innermost CallScope of the calling thread and dies with
/// it, clones excepted: those live until their own `release`. A handle is used by one thread at a
/// time. On a thread without a scope handles live until the thread ends, and the broker's log warns
/// once.
///
/// Choices that CMPI leaves to the broker, as seen through the tables:
/// - A new instance has its path's keys as properties. Setting a property that is a key of the path
///   sets the key too, and a new path sets the key properties. An instance whose path has no keys
///   gets them from its key properties where the repository knows the class.
/// - Properties that a filter leaves out are dropped, the ones already there included.
/// - A value of type CMPI_chars is the `char*` itself, cast to `CMPIValue*`; it is kept as a
///   string.
/// - A null object inside a CMPIValue is a NULL value.
/// - Names and types are not compared with the class here: modules may serve what nobody declared.
/// - `free...` and `release` on an object that they are not for do nothing but write to the log.
namespace cimhost {

class Broker;
class ObjectScope;

/// The lifetime of what a provider makes during one call (CMPI 2.1: objects live until the MI
/// function returns). Scopes nest on a thread; each must end on the thread that began it, innermost
/// first.
class CallScope {
public:
    CallScope();
    ~CallScope();
    CallScope(const CallScope&) = delete;
    CallScope& operator=(const CallScope&) = delete;

private:
    ObjectScope* _scope;
};

struct Argument {
    std::string name;
    Value value;
};
using Arguments = std::vector<Argument>;

/// Where the results of one MI call arrive, one at a time and in the provider's order.
/// A kind of result that a sink does not take is CimError failed.
/// What a sink throws becomes the status of the provider's return... call; later ones fail alike
/// without reaching the sink, and failureOf tells it to whoever made the MI call.
class ResultSink {
public:
    virtual ~ResultSink() = default;
    virtual void instance(const Instance& instance);
    virtual void path(const ObjectPath& path);
    virtual void data(const Value& value);
    virtual void done() {}
    /// Whether it takes a method's return value: hosts treat that otherwise than instances and
    /// paths.
    virtual bool isForMethod() const { return false; }
    /// An extended error, as an instance of CIM_Error. The status that the MI function returns is
    /// the outcome of the call; a sink that has no use for details lets them pass.
    virtual void error(const Instance& error) { static_cast<void>(error); }
};

/// Who asks, in which namespace and how: what a CMPIContext tells a provider.
struct RequestContext {
    std::string nameSpace;
    std::string principal;
    std::string acceptLanguage;
    std::string contentLanguage;
    CMPIFlags flags = 0;
    bool isProviders = false;  ///< a provider was given it: what asks with it is an up-call
};

CMPIObjectPath* makeObjectPath(const Broker& broker, ObjectPath path);
/// The path that an MI is called with.
CMPIObjectPath* makeRequestPath(const Broker& broker, ObjectPath path);
CMPIInstance* makeInstance(const Broker& broker, Instance instance);
CMPIArgs* makeArgs(const Broker& broker, Arguments arguments);
CMPIString* makeString(const Broker& broker, std::string_view text);
CMPIContext* makeContext(const Broker& broker, const RequestContext& context);
/// Of a call that no request makes: a factory, a clean-up, the start of indications.
CMPIContext* makeStartContext(const Broker& broker, const RequestContext& context);
CMPIEnumeration* makeEnumeration(const Broker& broker, std::vector<Instance> instances);
CMPIEnumeration* makeEnumeration(const Broker& broker, std::vector<ObjectPath> paths);

/// The sink must outlive the scope that the handle is made in. Clones of the handle that live
/// longer answer CMPI_RC_ERR_INVALID_HANDLE from then on.
CMPIResult* makeResult(const Broker& broker, ResultSink& sink);

/// What the sink threw first, or null. Rethrow it once the MI function has returned.
std::exception_ptr failureOf(const CMPIResult* result) noexcept;

/// What the first error object says that was put into the result; empty where there is none.
std::string errorTextOf(const CMPIResult* result);

/// The model behind a handle of ours. The reference is good while the handle is.
/// A null or foreign handle is CimError failed, with a text that says which object was expected.
const ObjectPath& modelOf(const CMPIObjectPath* path);
const Instance& modelOf(const CMPIInstance* instance);
const Arguments& modelOf(const CMPIArgs* arguments);
const RequestContext& modelOf(const CMPIContext* context);

/// Between model values and CMPI data. Values that hold objects make handles in the current scope.
CMPIData toCmpi(const Broker& broker, const Value& value);
/// CimError typeMismatch when the type code is none that CIM knows or an array is of another type;
/// CimError failed when the value holds a foreign handle.
Value fromCmpi(const CMPIValue* value, CMPIType type);

CMPIType cmpiType(CimType type, bool isArray) noexcept;
/// The type of the value or, for an array code, of its elements; `none` for a code that CIM has
/// not.
CimType cimType(CMPIType type) noexcept;

}  // namespace cimhost
