#pragma once

#include "cimhost/cimxml/ObjectWriter.h"
#include "cimhost/cimxml/XmlBuffer.h"
#include "cimhost/http/HttpClient.h"
#include "cimhost/operations/CimOperations.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cimhost {

/// The path as text: `root/test:TST_Fan.Name="a"`.
std::string pathText(const ObjectPath& path);

/// A request message under construction (DSP0201), for a reader that knows numeric references.
/// Keys say their types. Used by one thread.
class RequestMessage {
public:
    /// Of an operation in the namespace; `host` stands in full paths.
    static RequestMessage intrinsic(std::string_view operation, std::string nameSpace,
                                    std::string_view host);
    /// Of a method of the instance, or of the class where the path has no keys.
    static RequestMessage method(std::string_view name, const ObjectPath& target,
                                 std::string_view host);

    /// @name Parameters of operations
    /// Empty texts, absent lists and what is the default are left out.
    /// @{
    void add(std::string_view parameter, std::string_view text);
    void add(std::string_view parameter, bool flag);
    void addClass(std::string_view parameter, std::string_view className);
    void addPath(std::string_view parameter, const ObjectPath& path);
    void addInstance(std::string_view parameter, const Instance& instance);
    void addNamedInstance(std::string_view parameter, const Instance& instance);
    void addValue(std::string_view parameter, const Value& value);
    void add(const InstanceOptions& options, bool isAboutClass);
    void addWalk(const InstanceOptions& options);  ///< of associations
    void addPropertyList(const std::optional<std::vector<std::string>>& names);
    void add(const AssociationFilter& filter, bool isAboutReferences);
    /// @}

    /// A parameter of a method.
    void add(const Argument& argument);

    /// The whole message; nothing can be added any more.
    std::string_view finish();
    /// What HTTP says of it.
    std::vector<HttpAnswerHead::Field> headers() const;

    const std::string& operation() const noexcept { return _operation; }

private:
    RequestMessage(std::string_view operation, bool isIntrinsic, std::string nameSpace,
                   std::string_view host);

    void _parameter(std::string_view name, auto&& writeContent);

    std::string _operation;
    bool _isIntrinsic;
    std::string _nameSpace;
    std::string _host;
    std::string _object;  ///< for the header
    XmlBuffer _out{true};

    ObjectWriter _writer() { return {_out, _host, _nameSpace, true}; }
};

}  // namespace cimhost
