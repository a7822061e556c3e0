#pragma once

#include "cimhost/cimxml/Message.h"
#include "cimhost/cimxml/ModelReader.h"
#include "cimhost/cimxml/ObjectWriter.h"
#include "cimhost/cimxml/Parameters.h"
#include "cimhost/cimxml/ReplyStream.h"
#include "cimhost/cimxml/WrittenModel.h"
#include "cimhost/operations/CimOperations.h"
#include "cimhost/repository/CimError.h"
#include "cimhost/repository/Repository.h"

#include <string_view>

namespace cimhost {

/// All that the answer to one call is made from. Lives for one request on one thread.
struct Call {
    CimOperations& operations;
    const Repository& repository;
    const NameSpace& nameSpace;
    RequestContext context;
    ModelReader reader;
    ReplyStream& out;
    ObjectWriter writer;
    const WrittenModel* written =
        nullptr;  ///< of a request that is forwarded, whose reader is its own

    /// CimError `code` when the namespace has no class of this name.
    const Class& requireClass(std::string_view name, CimCode code = CimCode::invalidClass) const;
};

/// Answers one intrinsic operation: writes what stands inside IMETHODRESPONSE. Throws CimError,
/// what the operation throws, and what the reply throws.
using IntrinsicHandler = void (*)(Call& call, const Parameters& parameters);

struct IntrinsicOperation {
    std::string_view name;
    IntrinsicHandler handler;
    ParameterSet parameters;
};

/// The operation with this name in any case, or nullptr: those that change classes or qualifiers
/// and the pulled enumerations are not served.
const IntrinsicOperation* findIntrinsicOperation(std::string_view name) noexcept;

/// Answers a METHODCALL: writes what stands inside METHODRESPONSE. Throws as an IntrinsicHandler.
void invokeMethod(Call& call, const Message& message);

/// @name Intrinsic operations (DSP0200, 5.4.2)
/// LocalOnly counts as false for instances, and their qualifiers are never sent, as DSP0200 allows
/// since 1.3: both are deprecated.
/// @{
void getInstance(Call& call, const Parameters& parameters);
void enumerateInstances(Call& call, const Parameters& parameters);
void enumerateInstanceNames(Call& call, const Parameters& parameters);
void createInstance(Call& call, const Parameters& parameters);
void modifyInstance(Call& call, const Parameters& parameters);
void deleteInstance(Call& call, const Parameters& parameters);
void getProperty(Call& call, const Parameters& parameters);
void setProperty(Call& call, const Parameters& parameters);
void execQuery(Call& call, const Parameters& parameters);

void associators(Call& call, const Parameters& parameters);
void associatorNames(Call& call, const Parameters& parameters);
void references(Call& call, const Parameters& parameters);
void referenceNames(Call& call, const Parameters& parameters);

void getClass(Call& call, const Parameters& parameters);
void enumerateClasses(Call& call, const Parameters& parameters);
void enumerateClassNames(Call& call, const Parameters& parameters);
void getQualifier(Call& call, const Parameters& parameters);
void enumerateQualifiers(Call& call, const Parameters& parameters);
/// @}

}  // namespace cimhost
