// resbuf: the host's linked list node of one typed value, the carrier of all data in the C-level interface.
// A chain handed out by the host belongs to the caller and is released with vcutRelRb.
#pragma once

#include "vkdefs.h"

struct vds_binary {
    std::int16_t clen;
    char* buf;
};

union vds_u_val {
    vds_real rreal;
    vds_point rpoint;
    std::int16_t rint;
    wchar_t* rstring;  // owned by the node
    vds_name rlname;
    std::int32_t rlong;
    vds_binary rbinary;  // bytes owned by the node
};

struct resbuf {
    resbuf* rbnext;
    std::int16_t restype;  // a result code or a DXF group code
    vds_u_val resval;
};
