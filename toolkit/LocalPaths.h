#pragma once

#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiName.h"
#include "cmpicpp/CmpiObjectPath.h"
#include "cmpicpp/CmpiValue.h"
#include "common/PYLConstants.h"
#include "pylcommon_export.h"

#include <initializer_list>
#include <string>

/// @file
/// The paths of a provider's own objects: host, namespace, class and keys in one call.
///
/// Every path names this host as PYLUtil::getHostName() gives it at the call, which is what a
/// collection compares with. They are made of the broker that PYLUtil::setBroker() recorded, and
/// are good until the provider's call returns; what that broker refuses is thrown as CmpiStatus,
/// CMPI_RC_ERR_INVALID_HANDLE when none was recorded. Safe from several threads.
namespace PYL {

/// A key on its way into a path. Borrows the text of its value: written as a literal or made in the
/// call itself.
struct LocalKey {
    const char* name;          ///< as the class declares it
    CmpiCpp::CmpiValue value;  ///< its CIM type is that of the C++ value
};

/// The broker that PYLUtil recorded.
PYL_EXPORT CmpiCpp::CmpiBroker localBroker();

/// The path of an object of this host, its keys in the order in which they stand:
///
///     makeLocalPath("PYL_Fan", {{"CreationClassName", "PYL_Fan"}, {"DeviceID", "KTQ:PYL_Fan:1"}})
PYL_EXPORT CmpiCpp::CmpiObjectPath makeLocalPath(
    const CmpiCpp::CmpiName& className, std::initializer_list<LocalKey> keys = {},
    const CmpiCpp::CmpiName& nameSpace = BaseServerNameSpace);

/// The path of an object that is known by an InstanceID alone: "KTQ:PYL_FanGroup:1" of class and
/// suffix, "KTQ:PYL_FanGroup" where the suffix is empty.
PYL_EXPORT CmpiCpp::CmpiObjectPath makeInstanceIdPath(const char* className,
                                                      const std::string& suffix = "1");

/// The path of a device of this server, by the four keys of CIM_LogicalDevice.
PYL_EXPORT CmpiCpp::CmpiObjectPath makeDevicePath(const char* className,
                                                  const std::string& deviceId);

/// The same path on this host, whatever host it named: clients may call the host by any of its
/// names. Throws for an empty path.
PYL_EXPORT CmpiCpp::CmpiObjectPath onThisHost(CmpiCpp::CmpiObjectPath path);

}  // namespace PYL
