/** The CMPI C interface, first of three headers: scalars, codes, and the structs for values and
 * handles.
 *
 * Layout and numbers are those of CMPI 2.1, which contains 2.0, on 64-bit Linux. All names are the
 * standard's, the reserved ones included, so that a provider compiles unchanged against the CMPI
 * headers of a distribution; with PYL_SYSTEM_CMPI those headers are used and this one declares
 * nothing. For C and C++ of any age; there is nothing to link. */
#pragma once

/* C89 and C++98 lack line comments, 64-bit integers or variadic macros: a system header may use
 * them, and #include_next, without a word from -Wpedantic. */
#if defined(PYL_SYSTEM_CMPI) || (defined(__cplusplus) && __cplusplus < 201103L) || \
    (!defined(__cplusplus) && (!defined(__STDC_VERSION__) || __STDC_VERSION__ < 199901L))
#pragma GCC system_header
#endif

#ifdef PYL_SYSTEM_CMPI

#include_next <cmpi/cmpidt.h>

#else

// A foreign broker or provider may store a number that an enumeration does not list. C defines what
// that means; C++ does so only for an enumeration whose underlying type is fixed.
#if defined(__cplusplus) && __cplusplus >= 201103L
#define PYL_CMPI_INT : int
#else
#define PYL_CMPI_INT
#endif

#ifdef __cplusplus
extern "C" {
#endif

/// Interface levels, as the version fields of brokers and tables hold them.
#define CMPIVersion100 100
#define CMPIVersion200 200
#define CMPIVersion210 210
#define CMPICurrentVersion CMPIVersion210

/// The level that a provider is written to: it may define CMPI_VERSION before it includes this, as
/// 100, 200 or 210. The stub macros of cmpimacs.h ask for the functions of that level; the structs
/// are the same at each. CMPI_VER_... are the levels that it contains.
#ifndef CMPI_VERSION
#define CMPI_VERSION CMPIVersion200
#endif
#if CMPI_VERSION < CMPIVersion100
#error "CMPI_VERSION is 100, 200 or 210: no older level is supported"
#endif
#ifndef CMPI_VER_100
#define CMPI_VER_100 1
#endif
#if CMPI_VERSION >= CMPIVersion200 && !defined(CMPI_VER_200)
#define CMPI_VER_200 1
#endif
#if CMPI_VERSION >= CMPIVersion210 && !defined(CMPI_VER_210)
#define CMPI_VER_210 1
#endif

/// CIM scalars. A boolean is true for every value but zero. Several share one C type, and the
/// 64-bit integers are not the `long` that <stdint.h> uses here: do not overload on them.
typedef unsigned char CMPIBoolean;
typedef unsigned short CMPIChar16;
typedef unsigned char CMPIUint8;
typedef unsigned short CMPIUint16;
typedef unsigned int CMPIUint32;
typedef unsigned long long CMPIUint64;
typedef signed char CMPISint8;
typedef short CMPISint16;
typedef int CMPISint32;
typedef long long CMPISint64;
typedef float CMPIReal32;
typedef double CMPIReal64;

typedef unsigned int CMPICount;         ///< a size, a count or an index
typedef unsigned int CMPIFlags;         ///< CMPI_FLAG_... bits
typedef unsigned short CMPIType;        ///< a type code, CMPI_boolean and so on
typedef unsigned short CMPIValueState;  ///< CMPI_nullValue and its like
typedef int CMPIVersion;                ///< an interface level, CMPIVersion...

typedef void* CMPIMsgFileHandle;  ///< an open message catalogue
typedef void CMPIGcStat;          ///< the token of a memory mark, only used through a pointer

/// Handles of the operating system layer.
typedef void* CMPI_THREAD_TYPE;
typedef void* CMPI_THREAD_RETURN;
typedef void* CMPI_MUTEX_TYPE;
typedef void* CMPI_COND_TYPE;

/// The key of a thread-specific value. Headers in the field disagree on its width: 4 bytes in 2.1
/// and wherever it is a pthread_key_t, 8 bytes in 2.0. Eight bytes suit every broker as long as the
/// caller sets the key to zero before createThreadKey: on a little-endian machine a broker with
/// 4-byte keys then reads and writes the low half. For the same reason whoever implements the table
/// stores the first 4 bytes only: a caller may own no more. No slot changes its place.
typedef unsigned long CMPI_THREAD_KEY_TYPE;

/// Calling convention of thread functions: the platform's own.
#define CMPI_THREAD_CDECL

typedef CMPI_THREAD_RETURN (*CMPIThreadFunc)(void* parameter);
typedef void (*CMPIThreadOnceFunc)(void);
typedef void (*CMPIThreadKeyCleanupFunc)(void* value);

/// Type codes without a value, and of the simple types.
#define CMPI_null 0x0000
#define CMPI_SIMPLE 0x0002
#define CMPI_boolean 0x0002
#define CMPI_char16 0x0003

/// Reals.
#define CMPI_REAL 0x0008
#define CMPI_real32 0x0008
#define CMPI_real64 0x000C

/// Integers: bit 0x80, with 0x40 for signed; bits 4 and 5 give the width, 8 << n. The groups are no
/// disjoint bits: CMPI_UINT matches signed codes, a non-zero AND with CMPI_SINT unsigned ones.
#define CMPI_UINT 0x0080
#define CMPI_uint8 0x0080
#define CMPI_uint16 0x0090
#define CMPI_uint32 0x00A0
#define CMPI_uint64 0x00B0
#define CMPI_SINT 0x00C0
#define CMPI_sint8 0x00C0
#define CMPI_sint16 0x00D0
#define CMPI_sint32 0x00E0
#define CMPI_sint64 0x00F0
#define CMPI_INTEGER (CMPI_UINT | CMPI_SINT)

/// Encapsulated types: objects and text.
#define CMPI_ENC 0x1000
#define CMPI_instance 0x1000
#define CMPI_ref 0x1100
#define CMPI_args 0x1200
#define CMPI_class 0x1300
#define CMPI_filter 0x1400
#define CMPI_enumeration 0x1500
#define CMPI_string 0x1600
#define CMPI_chars 0x1700
#define CMPI_dateTime 0x1800
#define CMPI_ptr 0x1900
#define CMPI_charsptr 0x1A00

/// Arrays. The value is then in the member `array`; inside an array and in the array functions the
/// code of the element is used.
#define CMPI_ARRAY 0x2000
#define CMPI_SIMPLEA (CMPI_ARRAY | CMPI_SIMPLE)
#define CMPI_booleanA (CMPI_ARRAY | CMPI_boolean)
#define CMPI_char16A (CMPI_ARRAY | CMPI_char16)
#define CMPI_REALA (CMPI_ARRAY | CMPI_REAL)
#define CMPI_real32A (CMPI_ARRAY | CMPI_real32)
#define CMPI_real64A (CMPI_ARRAY | CMPI_real64)
#define CMPI_UINTA (CMPI_ARRAY | CMPI_UINT)
#define CMPI_uint8A (CMPI_ARRAY | CMPI_uint8)
#define CMPI_uint16A (CMPI_ARRAY | CMPI_uint16)
#define CMPI_uint32A (CMPI_ARRAY | CMPI_uint32)
#define CMPI_uint64A (CMPI_ARRAY | CMPI_uint64)
#define CMPI_SINTA (CMPI_ARRAY | CMPI_SINT)
#define CMPI_sint8A (CMPI_ARRAY | CMPI_sint8)
#define CMPI_sint16A (CMPI_ARRAY | CMPI_sint16)
#define CMPI_sint32A (CMPI_ARRAY | CMPI_sint32)
#define CMPI_sint64A (CMPI_ARRAY | CMPI_sint64)
#define CMPI_INTEGERA (CMPI_ARRAY | CMPI_INTEGER)
#define CMPI_ENCA (CMPI_ARRAY | CMPI_ENC)
#define CMPI_instanceA (CMPI_ARRAY | CMPI_instance)
#define CMPI_refA (CMPI_ARRAY | CMPI_ref)
#define CMPI_stringA (CMPI_ARRAY | CMPI_string)
#define CMPI_charsA (CMPI_ARRAY | CMPI_chars)
#define CMPI_dateTimeA (CMPI_ARRAY | CMPI_dateTime)
#define CMPI_charsptrA (CMPI_ARRAY | CMPI_charsptr)

/// What a broker reports for a key whose exact type it does not know: who expects another integer
/// type must be ready for sint64.
#define CMPI_keyInteger CMPI_sint64
#define CMPI_keyString CMPI_string
#define CMPI_keyBoolean CMPI_boolean
#define CMPI_keyRef CMPI_ref

/// Types of a predicate's operands. CMPI_dateTimeString and CMPI_nameString are the same number,
/// and so are CMPI_classNameString and CMPI_chars.
#define CMPI_charString CMPI_string
#define CMPI_integerString (CMPI_string | CMPI_sint64)
#define CMPI_realString (CMPI_string | CMPI_real64)
#define CMPI_numericString (CMPI_string | CMPI_sint64 | CMPI_real64)
#define CMPI_booleanString (CMPI_string | CMPI_boolean)
#define CMPI_dateTimeString (CMPI_string | CMPI_dateTime)
#define CMPI_classNameString (CMPI_string | CMPI_class)
#define CMPI_nameString (CMPI_string | CMPI_charsptr)

/// Obsolete synonyms.
#define CMPI_Byte CMPI_sint8
#define CMPI_Short CMPI_sint16
#define CMPI_Int CMPI_sint32
#define CMPI_Long CMPI_sint64
#define CMPI_Float CMPI_real32
#define CMPI_Double CMPI_real64
#define CMPI_ByteA CMPI_sint8A
#define CMPI_ShortA CMPI_sint16A
#define CMPI_IntA CMPI_sint32A
#define CMPI_LongA CMPI_sint64A
#define CMPI_FloatA CMPI_real32A
#define CMPI_DoubleA CMPI_real64A

/// State bits of a value: test them with AND. CMPI_notFound is obsolete since 2.1, where the return
/// code tells that an item is absent.
#define CMPI_goodValue 0x0000
#define CMPI_nullValue 0x0100
#define CMPI_keyValue 0x0200
#define CMPI_notFound 0x0400
#define CMPI_badValue 0x8000

/// Options of the CIM operation in progress, in the context entry CMPIInvocationFlags.
#define CMPI_FLAG_LocalOnly 1
#define CMPI_FLAG_DeepInheritance 2
#define CMPI_FLAG_IncludeQualifiers 4
#define CMPI_FLAG_IncludeClassOrigin 8

/// Names of context entries: all are strings, but the flags are a uint32.
#define CMPIInitNameSpace "CMPIInitNameSpace"      ///< the target namespace
#define CMPIInvocationFlags "CMPIInvocationFlags"  ///< CMPI_FLAG_... bits
#define CMPIPrincipal "CMPIPrincipal"              ///< the authenticated user
#define CMPIRole "CMPIRole"                        ///< the user's role, or an empty text
#define CMPIAcceptLanguage "CMPIAcceptLanguage"    ///< languages wanted, as in HTTP
#define CMPIContentLanguage "CMPIContentLanguage"  ///< languages of the data sent, as in HTTP

/// What a broker offers. A mask includes the bits that the capability depends on, so compare
/// (capabilities & mask) with the mask. The functions of a capability that is missing can still be
/// called: they answer CMPI_RC_ERR_NOT_SUPPORTED.
#define CMPI_MB_BasicRead 0x00000001
#define CMPI_MB_BasicWrite 0x00000003
#define CMPI_MB_InstanceManipulation 0x00000007
#define CMPI_MB_AssociationTraversal 0x00000009
#define CMPI_MB_QueryExecution 0x00000011
#define CMPI_MB_QueryNormalization 0x00000031
#define CMPI_MB_BasicQualifierSupport 0x00000047
#define CMPI_MB_Indications 0x00000081
#define CMPI_MB_OSEncapsulationSupport 0x00000100
#define CMPI_MB_Supports_MemEnhancements 0x00004000
#define CMPI_MB_Supports_Extended_Error 0x00008000

/// Bits that 2.1 added. Brokers of 2.0 may log, trace and filter without telling.
#define CMPI_MB_Logging 0x00010000
#define CMPI_MB_Tracing 0x00020000
#define CMPI_MB_PropertyFiltering 0x00040001
#define CMPI_MB_CodepageConversion 0x00080000

/// Older names of the first three masks.
#define CMPI_MB_Class_0 CMPI_MB_BasicRead
#define CMPI_MB_Class_1 CMPI_MB_BasicWrite
#define CMPI_MB_Class_2 CMPI_MB_InstanceManipulation

/// Return codes. Those up to 17, and 27 and 29, are the status codes of CIM operations (DSP0200).
typedef enum _CMPIrc PYL_CMPI_INT {
    CMPI_RC_OK = 0,
    CMPI_RC_ERR_FAILED = 1,  ///< only where no other code fits
    CMPI_RC_ERR_ACCESS_DENIED = 2,
    CMPI_RC_ERR_INVALID_NAMESPACE = 3,
    CMPI_RC_ERR_INVALID_PARAMETER = 4,
    CMPI_RC_ERR_INVALID_CLASS = 5,
    CMPI_RC_ERR_NOT_FOUND = 6,
    CMPI_RC_ERR_NOT_SUPPORTED = 7,
    CMPI_RC_ERR_CLASS_HAS_CHILDREN = 8,
    CMPI_RC_ERR_CLASS_HAS_INSTANCES = 9,
    CMPI_RC_ERR_INVALID_SUPERCLASS = 10,
    CMPI_RC_ERR_ALREADY_EXISTS = 11,
    CMPI_RC_ERR_NO_SUCH_PROPERTY = 12,  ///< also: no such key, entry, argument or index
    CMPI_RC_ERR_TYPE_MISMATCH = 13,
    CMPI_RC_ERR_QUERY_LANGUAGE_NOT_SUPPORTED = 14,
    CMPI_RC_ERR_INVALID_QUERY = 15,
    CMPI_RC_ERR_METHOD_NOT_AVAILABLE = 16,  ///< the class has the method, nobody serves it
    CMPI_RC_ERR_METHOD_NOT_FOUND = 17,
    CMPI_RC_NO_MORE_ELEMENTS = 18,                 ///< since 2.1
    CMPI_RC_ERR_SERVER_LIMITS_EXCEEDED = 27,       ///< since 2.1
    CMPI_RC_ERR_QUERY_FEATURE_NOT_SUPPORTED = 29,  ///< since 2.1
    CMPI_RC_DO_NOT_UNLOAD = 50,                    ///< from cleanup only: ask again later
    CMPI_RC_NEVER_UNLOAD = 51,        ///< from cleanup only: not before the broker ends
    CMPI_RC_ERR_INVALID_HANDLE = 60,  ///< a bad object pointer, or an aborted request
    CMPI_RC_ERR_INVALID_DATA_TYPE = 61,
    CMPI_RC_ERR_NOT_IN_CODEPAGE = 62,  ///< since 2.1
    CMPI_RC_ERROR_SYSTEM = 100,        ///< reserved
    CMPI_RC_ERROR = 200                ///< reserved
} CMPIrc;

/// Operators of a predicate; the last four since 2.0.
typedef enum _CMPIPredOp PYL_CMPI_INT {
    CMPI_PredOp_Equals = 1,
    CMPI_PredOp_NotEquals = 2,
    CMPI_PredOp_LessThan = 3,
    CMPI_PredOp_GreaterThanOrEquals = 4,
    CMPI_PredOp_GreaterThan = 5,
    CMPI_PredOp_LessThanOrEquals = 6,
    CMPI_PredOp_Isa = 7,
    CMPI_PredOp_NotIsa = 8,
    CMPI_PredOp_Like = 9,
    CMPI_PredOp_NotLike = 10,
    CMPI_PredOp_Not_Null = 11,
    CMPI_PredOp_Null = 12,
    CMPI_PredOp_And = 13,
    CMPI_PredOp_Or = 14
} CMPIPredOp;

/// How the sub-conditions of a select condition are joined.
typedef enum _CMPISelectCondType PYL_CMPI_INT {
    CMPI_COND_DOC = 0,  ///< OR of ANDs
    CMPI_COND_COD = 1   ///< AND of ORs
} CMPISelectCondType;

/// Weight of a line for the broker's log; the standard spells the fourth name so.
typedef enum _CMPISeverity PYL_CMPI_INT {
    CMPI_SEV_ERROR = 1,
    CMPI_SEV_INFO = 2,
    CMPI_SEV_WARNING = 3,
    CMPI_DEV_DEBUG = 4
} CMPISeverity;

/// Detail of a line for the broker's trace.
typedef enum _CMPILevel PYL_CMPI_INT {
    CMPI_LEV_INFO = 1,
    CMPI_LEV_WARNING = 2,
    CMPI_LEV_VERBOSE = 3
} CMPILevel;

/// Character sets of text conversion (2.1).
typedef enum _CMPICodepageID PYL_CMPI_INT {
    CMPI_CPID_SYSTEM = 1,   ///< what the broker's system uses
    CMPI_CPID_USASCII = 2,  ///< 7 bits
    CMPI_CPID_UTF16 = 3
} CMPICodepageID;

/// CIM_Error.ErrorType; 8 is also known under the spelling of 2.0.
typedef enum _CMPIErrorType PYL_CMPI_INT {
    UnknownErrorType = 0,
    OtherErrorType = 1,
    CommunicationsError = 2,
    QualityOfServiceError = 3,
    SoftwareError = 4,
    HardwareError = 5,
    EnvironmentalError = 6,
    SecurityError = 7,
    OversubscriptionError = 8,
    Oversubscription_Error = 8,
    UnavailableResourceError = 9,
    UnsupportedOperationError = 10
} CMPIErrorType;

/// CIM_Error.PerceivedSeverity, without the value 1.
typedef enum _CMPIErrorSeverity PYL_CMPI_INT {
    ErrorSevUnknown = 0,
    ErrorSevLow = 2,
    ErrorSevMedium = 3,
    ErrorSevHigh = 4,
    ErrorSevFatal = 5
} CMPIErrorSeverity;

/// CIM_Error.ErrorSourceFormat.
typedef enum _CMPIErrorSrcFormat PYL_CMPI_INT {
    CMPIErrSrcUnknown = 0,
    CMPIErrSrcOther = 1,
    CIMObjectHandle = 2
} CMPIErrorSrcFormat;

/// CIM_Error.ProbableCause.
typedef enum _CMPIErrorProbableCause PYL_CMPI_INT {
    ErrorProbCauseUnknown = 0,
    ErrorProbCauseOther = 1,
    Adapter_Card_Error = 2,
    Application_Subsystem_Failure = 3,
    Bandwidth_Reduced = 4,
    Connection_Establishment_Error = 5,
    Communications_Protocol_Error = 6,
    Communications_Subsystem_Failure = 7,
    ConfigurationCustomization_Error = 8,
    Congestion = 9,
    Corrupt_Data = 10,
    CPU_Cycles_Limit_Exceeded = 11,
    DatasetModem_Error = 12,
    Degraded_Signal = 13,
    DTE_DCE_Interface_Error = 14,
    Enclosure_Door_Open = 15,
    Equipment_Malfunction = 16,
    Excessive_Vibration = 17,
    File_Format_Error = 18,
    Fire_Detected = 19,
    Flood_Detected = 20,
    Framing_Error = 21,
    HVAC_Problem = 22,
    Humidity_Unacceptable = 23,
    IO_Device_Error = 24,
    Input_Device_Error = 25,
    LAN_Error = 26,
    Non_Toxic_Leak_Detected = 27,
    Local_Node_Transmission_Error = 28,
    Loss_of_Frame = 29,
    Loss_of_Signal = 30,
    Material_Supply_Exhausted = 31,
    Multiplexer_Problem = 32,
    Out_of_Memory = 33,
    Output_Device_Error = 34,
    Performance_Degraded = 35,
    Power_Problem = 36,
    Pressure_Unacceptable = 37,
    Processor_Problem = 38,
    Pump_Failure = 39,
    Queue_Size_Exceeded = 40,
    Receive_Failure = 41,
    Receiver_Failure = 42,
    Remote_Node_Transmission_Error = 43,
    Resource_at_or_Nearing_Capacity = 44,
    Response_Time_Excessive = 45,
    Retransmission_Rate_Excessive = 46,
    Software_Error = 47,
    Software_Program_Abnormally_Terminated = 48,
    Software_Program_Error = 49,
    Storage_Capacity_Problem = 50,
    Temperature_Unacceptable = 51,
    Threshold_Crossed = 52,
    Timing_Problem = 53,
    Toxic_Leak_Detected = 54,
    Transmit_Failure = 55,
    Transmitter_Failure = 56,
    Underlying_Resource_Unavailable = 57,
    Version_Mismatch = 58,
    Previous_Alert_Cleared = 59,
    Login_Attempts_Failed = 60,
    Software_Virus_Detected = 61,
    Hardware_Security_Breached = 62,
    Denial_of_Service_Detected = 63,
    Security_Credential_Mismatch = 64,
    Unauthorized_Access = 65,
    Alarm_Received = 66,
    Loss_of_Pointer = 67,
    Payload_Mismatch = 68,
    Transmission_Error = 69,
    Excessive_Error_Rate = 70,
    Trace_Problem = 71,
    Element_Unavailable = 72,
    Element_Missing = 73,
    Loss_of_Multi_Frame = 74,
    Broadcast_Channel_Failure = 75,
    Invalid_Message_Received = 76,
    Routing_Failure = 77,
    Backplane_Failure = 78,
    Identifier_Duplication = 79,
    Protection_Path_Failure = 80,
    Sync_Loss_or_Mismatch = 81,
    Terminal_Problem = 82,
    Real_Time_Clock_Failure = 83,
    Antenna_Failure = 84,
    Battery_Charging_Failure = 85,
    Disk_Failure = 86,
    Frequency_Hopping_Failure = 87,
    Loss_of_Redundancy = 88,
    Power_Supply_Failure = 89,
    Signal_Quality_Problem = 90,
    Battery_Discharging = 91,
    Battery_Failure = 92,
    Commercial_Power_Problem = 93,
    Fan_Failure = 94,
    Engine_Failure = 95,
    Sensor_Failure = 96,
    Fuse_Failure = 97,
    Generator_Failure = 98,
    Low_Battery = 99,
    Low_Fuel = 100,
    Low_Water = 101,
    Explosive_Gas = 102,
    High_Winds = 103,
    Ice_Buildup = 104,
    Smoke = 105,
    Memory_Mismatch = 106,
    Out_of_CPU_Cycles = 107,
    Software_Environment_Problem = 108,
    Software_Download_Failure = 109,
    Element_Reinitialized = 110,
    Timeout = 111,
    Logging_Problems = 112,
    Leak_Detected = 113,
    Protection_Mechanism_Failure = 114,
    Protecting_Resource_Failure = 115,
    Database_Inconsistency = 116,
    Authentication_Failure = 117,
    Breach_of_Confidentiality = 118,
    Cable_Tamper = 119,
    Delayed_Information = 120,
    Duplicate_Information = 121,
    Information_Missing = 122,
    Information_Modification = 123,
    Information_Out_of_Sequence = 124,
    Key_Expired = 125,
    Non_Repudiation_Failure = 126,
    Out_of_Hours_Activity = 127,
    Out_of_Service = 128,
    Procedural_Error = 129,
    Unexpected_Information = 130
} CMPIErrorProbableCause;

#undef PYL_CMPI_INT

/// Every handle is a pointer to a struct that names its function table (cmpift.h).
typedef struct _CMPIBroker CMPIBroker;
typedef struct _CMPIContext CMPIContext;
typedef struct _CMPIResult CMPIResult;
typedef struct _CMPIString CMPIString;
typedef struct _CMPIArray CMPIArray;
typedef struct _CMPIEnumeration CMPIEnumeration;
typedef struct _CMPIInstance CMPIInstance;
typedef struct _CMPIObjectPath CMPIObjectPath;
typedef struct _CMPIArgs CMPIArgs;
typedef struct _CMPIDateTime CMPIDateTime;
typedef struct _CMPISelectExp CMPISelectExp;
typedef struct _CMPISelectCond CMPISelectCond;
typedef struct _CMPISubCond CMPISubCond;
typedef struct _CMPIPredicate CMPIPredicate;
typedef struct _CMPIError CMPIError;
typedef struct _CMPIPropertyList CMPIPropertyList;
typedef struct _CMPIEnumerationFilter CMPIEnumerationFilter;
typedef struct _CMPIInstanceMI CMPIInstanceMI;
typedef struct _CMPIAssociationMI CMPIAssociationMI;
typedef struct _CMPIMethodMI CMPIMethodMI;
typedef struct _CMPIPropertyMI CMPIPropertyMI;
typedef struct _CMPIIndicationMI CMPIIndicationMI;

typedef struct _CMPIBrokerFT CMPIBrokerFT;
typedef struct _CMPIBrokerEncFT CMPIBrokerEncFT;
typedef struct _CMPIBrokerExtFT CMPIBrokerExtFT;
typedef struct _CMPIBrokerMemFT CMPIBrokerMemFT;
typedef struct _CMPIContextFT CMPIContextFT;
typedef struct _CMPIResultFT CMPIResultFT;
typedef struct _CMPIStringFT CMPIStringFT;
typedef struct _CMPIArrayFT CMPIArrayFT;
typedef struct _CMPIEnumerationFT CMPIEnumerationFT;
typedef struct _CMPIInstanceFT CMPIInstanceFT;
typedef struct _CMPIObjectPathFT CMPIObjectPathFT;
typedef struct _CMPIArgsFT CMPIArgsFT;
typedef struct _CMPIDateTimeFT CMPIDateTimeFT;
typedef struct _CMPISelectExpFT CMPISelectExpFT;
typedef struct _CMPISelectCondFT CMPISelectCondFT;
typedef struct _CMPISubCondFT CMPISubCondFT;
typedef struct _CMPIPredicateFT CMPIPredicateFT;
typedef struct _CMPIErrorFT CMPIErrorFT;
typedef struct _CMPIPropertyListFT CMPIPropertyListFT;
typedef struct _CMPIEnumerationFilterFT CMPIEnumerationFilterFT;
typedef struct _CMPIInstanceMIFT CMPIInstanceMIFT;
typedef struct _CMPIAssociationMIFT CMPIAssociationMIFT;
typedef struct _CMPIMethodMIFT CMPIMethodMIFT;
typedef struct _CMPIPropertyMIFT CMPIPropertyMIFT;
typedef struct _CMPIIndicationMIFT CMPIIndicationMIFT;

/// Raw bytes, in contexts only.
typedef struct _CMPIValuePtr {
    void* ptr;
    CMPICount length;  ///< in bytes
} CMPIValuePtr;

/// A value without its type. Zero the whole union before setting a narrow member, and read no other
/// member than the type names: callers also pass a pointer to a bare scalar.
typedef union _CMPIValue {
    CMPIUint64 uint64;  // First, so that an empty initialiser clears every scalar and pointer.
    CMPIUint32 uint32;
    CMPIUint16 uint16;
    CMPIUint8 uint8;
    CMPISint64 sint64;
    CMPISint32 sint32;
    CMPISint16 sint16;
    CMPISint8 sint8;
    CMPIReal64 real64;
    CMPIReal32 real32;
    CMPIBoolean boolean;
    CMPIChar16 char16;

    CMPIInstance* inst;
    CMPIObjectPath* ref;
    CMPIArgs* args;
    CMPISelectExp* filter;
    CMPIEnumeration* Enum;
    CMPIArray* array;
    CMPIString* string;
    char* chars;
    CMPIDateTime* dateTime;
    CMPIValuePtr dataPtr;

    // Obsolete names.
    CMPISint8 Byte;
    CMPISint16 Short;
    CMPISint32 Int;
    CMPISint64 Long;
    CMPIReal32 Float;
    CMPIReal64 Double;
} CMPIValue;

/// A value with its type. Where the state has CMPI_badValue the rest means nothing; where it has
/// CMPI_nullValue only the type does.
typedef struct _CMPIData {
    CMPIType type;
    CMPIValueState state;
    CMPIValue value;
} CMPIData;

/// The outcome of a call.
typedef struct _CMPIStatus {
    CMPIrc rc;
    CMPIString* msg;  ///< borrowed from the broker; may be NULL
} CMPIStatus;

/// Gives a query the value of one property, from whatever source the caller has.
typedef CMPIData CMPIAccessor(const char* propertyName, void* parameter);

// Data objects: the broker makes them, and `hdl` is its own.

/// How a request came in: user, flags, languages.
struct _CMPIContext {
    const void* hdl;
    const CMPIContextFT* ft;
};

/// Where an operation puts its results.
struct _CMPIResult {
    const void* hdl;
    const CMPIResultFT* ft;
};

/// UTF-8 text.
struct _CMPIString {
    const void* hdl;
    const CMPIStringFT* ft;
};

/// A fixed number of elements of one type.
struct _CMPIArray {
    const void* hdl;
    const CMPIArrayFT* ft;
};

/// Instances or object paths, one after the other.
struct _CMPIEnumeration {
    const void* hdl;
    const CMPIEnumerationFT* ft;
};

/// An instance: properties and an object path.
struct _CMPIInstance {
    const void* hdl;
    const CMPIInstanceFT* ft;
};

/// Host, namespace, class and keys.
struct _CMPIObjectPath {
    const void* hdl;
    const CMPIObjectPathFT* ft;
};

/// Arguments of a method.
struct _CMPIArgs {
    const void* hdl;
    const CMPIArgsFT* ft;
};

/// A timestamp or an interval.
struct _CMPIDateTime {
    const void* hdl;
    const CMPIDateTimeFT* ft;
};

/// A query.
struct _CMPISelectExp {
    const void* hdl;
    const CMPISelectExpFT* ft;
};

/// The condition of a query, in a normal form.
struct _CMPISelectCond {
    const void* hdl;
    const CMPISelectCondFT* ft;
};

/// One member of a condition.
struct _CMPISubCond {
    const void* hdl;
    const CMPISubCondFT* ft;
};

/// One comparison.
struct _CMPIPredicate {
    const void* hdl;
    const CMPIPredicateFT* ft;
};

/// An extended error, CIM_Error (2.0).
struct _CMPIError {
    const void* hdl;
    const CMPIErrorFT* ft;
};

/// Names of properties (2.1).
struct _CMPIPropertyList {
    const void* hdl;
    const CMPIPropertyListFT* ft;
};

/// A filter over instances (2.1).
struct _CMPIEnumerationFilter {
    const void* hdl;
    const CMPIEnumerationFilterFT* ft;
};

// Management instrumentations (MI): a provider makes one for each kind of operation that it serves,
// and `hdl` is its own.

/// Instances.
struct _CMPIInstanceMI {
    const void* hdl;
    const CMPIInstanceMIFT* ft;
};

/// Associations.
struct _CMPIAssociationMI {
    const void* hdl;
    const CMPIAssociationMIFT* ft;
};

/// Methods.
struct _CMPIMethodMI {
    const void* hdl;
    const CMPIMethodMIFT* ft;
};

/// Single properties, obsolete.
struct _CMPIPropertyMI {
    const void* hdl;
    const CMPIPropertyMIFT* ft;
};

/// Indications.
struct _CMPIIndicationMI {
    const void* hdl;
    const CMPIIndicationMIFT* ft;
};

#ifdef __cplusplus
}
#endif

#endif
