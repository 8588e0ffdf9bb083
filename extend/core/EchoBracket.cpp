#include "core/EchoBracket.h"

#include "vced.h"

#include <iterator>

namespace {

// Saved, silenced and put back in this order.
constexpr const wchar_t* kVariables[] = {L"CMDECHO", L"BLIPMODE", L"EXPERT"};

void setShort(const wchar_t* name, short value)
{
    resbuf variable = {};
    variable.restype = RTSHORT;
    variable.resval.rint = value;
    vcedSetVar(name, &variable);
}

}  // namespace

EchoBracket::EchoBracket()
{
    static_assert(std::size(kVariables) == sizeof m_saved / sizeof *m_saved);
    for (std::size_t i = 0; i < std::size(kVariables); ++i) {
        resbuf variable = {};
        if (vcedGetVar(kVariables[i], &variable) == RTNORM)
            m_saved[i] = variable.resval.rint;
    }
    for (const wchar_t* name : kVariables)
        setShort(name, 0);
}

EchoBracket::~EchoBracket()
{
    for (std::size_t i = 0; i < std::size(kVariables); ++i)
        setShort(kVariables[i], m_saved[i]);
}
