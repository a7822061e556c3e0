#pragma once

#include "cimhost/cimxml/Call.h"
#include "cimhost/operations/CimOperations.h"

/// Where operations leave their results: written as they come, nothing is kept.
/// Each lives for one operation on one thread.
namespace cimhost {

/// Writes IRETURNVALUE round what `body` writes. After a failure the element stays open: the error
/// takes the place of the whole answer.
void writeReturnValue(Call& call, auto&& body) {
    call.out.buffer().markup("<IRETURNVALUE>");
    body();
    call.out.buffer().markup("</IRETURNVALUE>");
}

/// How an instance among the results is wrapped.
enum class InstanceForm {
    bare,    ///< INSTANCE
    named,   ///< VALUE.NAMEDINSTANCE with INSTANCENAME
    inFull,  ///< VALUE.OBJECTWITHPATH with INSTANCEPATH
};

class InstanceWriter final : public InstanceSink {
public:
    InstanceWriter(Call& call, InstanceForm form, bool includeClassOrigin)
        : _call(call), _form(form), _includeClassOrigin(includeClassOrigin) {}

    void deliver(const Instance& instance, const Class* definition,
                 const PropertySelection& selection) override;

private:
    Call& _call;
    InstanceForm _form;
    bool _includeClassOrigin;
};

/// How a path among the results is wrapped.
enum class PathForm {
    name,    ///< INSTANCENAME
    inFull,  ///< OBJECTPATH with INSTANCEPATH
};

class PathWriter final : public PathSink {
public:
    PathWriter(Call& call, PathForm form) : _call(call), _form(form) {}

    void deliver(const ObjectPath& path) override;

private:
    Call& _call;
    PathForm _form;
};

/// The instance options among the parameters; absent ones take their defaults.
InstanceOptions readInstanceOptions(const Parameters& parameters);

}  // namespace cimhost
