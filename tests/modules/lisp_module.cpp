// A module for tests: commands, and Lisp functions that give back each kind of value.
#include "sdk/vcdb_chains.h"
#include "sdk/vced.h"
#include "sdk/vcstring.h"
#include "sdk/vcut.h"

namespace {

int giveInt() { return vcedRetInt(2147483647); }
int giveReal() { return vcedRetReal(2.5); }
int giveText() { return vcedRetStr(L"100% \u00E9"); }
int giveNil() { return vcedRetNil(); }
int giveT() { return vcedRetT(); }
int giveNothing() { return vcedRetVoid(); }
int sayNothing() { return RTNORM; }
int givePoint()
{
    const vds_point p = {1, 2, 3};
    return vcedRetPoint(p);
}
int giveLast()
{
    vds_name name;
    return vcdbEntLast(name) == RTNORM ? vcedRetName(name, RTENAME) : vcedRetNil();
}
int echo()
{
    resbuf* arguments = vcedGetArgs();
    if (vcedGetArgs())  // they are given once
        return RTERROR;
    const int result = arguments ? vcedRetList(arguments) : vcedRetNil();
    vcutRelRb(arguments);
    return result;
}
int firstOnly()
{
    resbuf* arguments = vcedGetArgs();
    const int result = arguments ? vcedRetVal(arguments) : RTERROR;
    vcutRelRb(arguments);
    return result;
}
int refuse() { return vcdbFail(L"refused: 50%"); }
int fall() { throw VkExceptionWithMsg(L"fell"); }
int drawPoint()
{
    vcedCommand(RTSTR, L"_.POINT", RTSTR, L"3,4", RTNONE);
    return vcedRetVoid();
}
int twice()
{
    vcedRetInt(1);
    return vcedRetInt(2);
}
int nulls()
{
    const bool refused =
        vcedRetPoint(nullptr) == RTERROR && vcedRetName(nullptr, RTENAME) == RTERROR && vcedRetVal(nullptr) == RTERROR;
    return refused ? vcedRetStr(nullptr) : vcedRetNil();
}

struct Function {
    const wchar_t* name;
    int (*body)();
};
const Function kFunctions[] = {
    {L"give-int", giveInt},
    {L"give-real", giveReal},
    {L"give-text", giveText},
    {L"give-nil", giveNil},
    {L"give-t", giveT},
    {L"give-nothing", giveNothing},
    {L"say-nothing", sayNothing},
    {L"give-point", givePoint},
    {L"give-last", giveLast},
    {L"echo-all", echo},
    {L"first-only", firstOnly},
    {L"refuse", refuse},
    {L"fall", fall},
    {L"c:draw-point", drawPoint},
    {L"twice", twice},
    {L"give-nulls", nulls},
};

void command() { vcedCommand(RTSTR, L"_.CIRCLE", RTSTR, L"0,0", RTREAL, 5.0, RTNONE); }

VcEdCommandStack* commands() { return VcEdCommandStack::cast(vcrxSysRegistry()->at(L"VKAD_REGISTERED_COMMANDS")); }

void begin(void* application)
{
    VcRxDynamicLinker::cast(vcrxSysRegistry()->at(L"DynamicLinker"))->unlock(application);
    commands()->addCommand(L"LISPTEST", L"TESTCIRCLE", L"PROBEKREIS", VCED_CMD_MODAL, command);
}

void defineFunctions()
{
    for (std::size_t i = 0; i < std::size(kFunctions); ++i)
        vcedDefunEx(kFunctions[i].name, L"", int(i));
}

void end()
{
    for (std::size_t i = 0; i < std::size(kFunctions); ++i)
        vcedUndef(kFunctions[i].name, int(i));
    commands()->removeGroup(L"LISPTEST");
}

int call()
{
    const int code = vcedGetFunCode();
    return code >= 0 && code < int(std::size(kFunctions)) ? kFunctions[code].body() : RTERROR;
}

}

extern "C" VK_SDK int vcrxEntryPoint(unsigned message, void* argument)
{
    switch (message) {
    case kInitAppMsg:
        begin(argument);
        break;
    case kLoadDwgMsg:
        defineFunctions();
        break;
    case kInvkSubrMsg:
        return call();
    case kUnloadAppMsg:
        end();
        break;
    }
    return 0;
}
