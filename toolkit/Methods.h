#pragma once

#include "cmpicpp/CmpiArray.h"
#include "cmpicpp/CmpiName.h"
#include "cmpicpp/CmpiObjectPath.h"
#include "cmpicpp/CmpiResult.h"
#include "pylcommon_export.h"

/// @file
/// What invokeMethod() does in every provider. Each function works on what it is given alone:
/// several threads may use them at once.
namespace PYL {

/// Throws CMPI_RC_ERR_METHOD_NOT_FOUND, with the method's name in the text, unless a request is for
/// this method of exactly this class. Names compare without regard to case.
PYL_EXPORT void requireMethod(const CmpiCpp::CmpiObjectPath& path,
                              const CmpiCpp::CmpiName& methodName, const char* ofClass,
                              const char* method);

/// Delivers an array as an output argument. What the sink throws goes on to the caller.
PYL_EXPORT void deliverArray(CmpiCpp::CmpiMethodResult& result, const char* name,
                             const CmpiCpp::CmpiArray& array);

}  // namespace PYL
