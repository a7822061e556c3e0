#pragma once

/// @file
/// The values of the properties of alert indications that are enumerations of the CIM schema or of
/// the maker's extension of it.
namespace PYL {

/// The value map of CIM_AlertIndication.AlertType (CIM schema 2.x).
enum CIMAlertType : unsigned short {
    alertTypeOther = 1,
    alertTypeCommunications = 2,
    alertTypeQualityofServiceAlert = 3,
    alertTypeProcessingError = 4,
    alertTypeDevice = 5,
    alertTypeEnvironmental = 6,
    alertTypeModelChange = 7,
    alertTypeSecurity = 8,
};

/// The values of CIM_OperatingSystem.OSType (CIM schema 2.x) that the maker's servers run.
enum CIMOSType : unsigned short {
    osTypeUnknown = 0,
    osTypeOpenVMS = 7,
    osTypeLinux = 36,
    osTypeVM = 39,
};

/// How far the effects of an event reach.
enum ImpactedDomain : int {
    ImpactedDomainEnclosure = 3,  ///< all servers of the enclosure
    ImpactedDomainSystem = 4,     ///< the server alone
};

}  // namespace PYL
