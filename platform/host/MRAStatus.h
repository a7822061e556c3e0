#pragma once

/// What a data library answers to a read or a getter.
enum MRAStatusEnum {
    MRA_STATUS_SUCCESS = 0,
    MRA_STATUS_DATA_NOT_AVAILABLE = 1,
    MRA_STATUS_NO_NEXT = 2,
    MRA_STATUS_FAILED = 3,
    MRA_STATUS_FORCE_NOT_SUPPORTED = 4
};
