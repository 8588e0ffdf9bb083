#include "core/Variables.h"

#include "vced.h"

namespace {

resbuf valueOf(const wchar_t* name)
{
    resbuf variable = {};
    return vcedGetVar(name, &variable) == RTNORM ? variable : resbuf{};
}

}  // namespace

int shortVariable(const wchar_t* name) { return valueOf(name).resval.rint; }

double realVariable(const wchar_t* name) { return valueOf(name).resval.rreal; }

VcGePoint3d pointVariable(const wchar_t* name)
{
    const resbuf value = valueOf(name);
    return {value.resval.rpoint[0], value.resval.rpoint[1], value.resval.rpoint[2]};
}
