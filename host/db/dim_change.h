// Setting a member of a dimension that shows in its picture.
#pragma once

#include "host/db/ent_util.h"
#include "sdk/vcdb_dims.h"

template <class T>
Vcad::ErrorStatus VcDbDimension::change(T& member, const T& value, bool valid)
{
    const Vcad::ErrorStatus status = setMember(*this, member, value, valid);
    m_stale |= status == Vcad::eOk;
    return status;
}
