// Basic types and result codes that every interface of the host shares.
#pragma once

#include <cstddef>
#include <cstdint>

// Marks what the host exports to modules.
#define VK_SDK __attribute__((visibility("default")))

using vds_real = double;
using vds_point = vds_real[3];
using vds_matrix = vds_real[4][4];  // row-major, applied to column points
using vds_name = std::int64_t[2];   // entity name or selection set name; all zero means none

// Result codes of the C-level interface.
enum {
    RTNONE = 5000,
    RTREAL = 5001,
    RTPOINT = 5002,
    RTSHORT = 5003,
    RTANG = 5004,
    RTSTR = 5005,
    RTENAME = 5006,
    RTPICKS = 5007,
    RTORINT = 5008,
    RT3DPOINT = 5009,
    RTLONG = 5010,
    RTVOID = 5014,
    RTLB = 5016,
    RTLE = 5017,
    RTDOTE = 5018,
    RTNIL = 5019,
    RTDXF0 = 5020,
    RTT = 5021,
    RTRESBUF = 5023,

    RTNORM = 5100,
    RTERROR = -5001,
    RTCAN = -5002,
    RTREJ = -5003,
    RTFAIL = -5004,
    RTKWORD = -5005,
};

// Statuses of the object interface: zero is success. Modules tell no other values apart.
namespace Vcad {
enum ErrorStatus : int {
    eOk = 0,
    eInvalidInput,
    eNullObjectId,
    eInvalidKey,
    eKeyNotFound,
    eDuplicateKey,
    eWasErased,
    eNotOpenForWrite,
    eNotOpenForRead,
    eWasOpenForRead,
    eWasOpenForWrite,
    eOnLockedLayer,
    eNotThatKindOfClass,
    eInvalidIndex,
    eOutOfRange,
    eCannotBeErased,
    eObjectToBeDeleted,
    eNoDatabase,
    eWrongDatabase,
    eNotApplicable,
    eCannotScaleNonUniformly,
    eCannotExplode,
    eFileNotFound,
    eFileAccess,
    eFileUnreadable,
    eUnsupportedVersion,
    eXdataSizeExceeded,
    eRegAppIdNotFound,
    eInsufficientMemory,
};
}
