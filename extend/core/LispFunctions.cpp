// The functions of the module that Lisp calls. A handler gives a value back through the vcedRet calls; what it returns
// is a status.
#include "core/Extend_Mpd.h"
#include "vced.h"
#include "vcut.h"

namespace {

constexpr int kHandled = 0;
constexpr int kNoValue = 3;

// Room beyond the 512 characters that a prompt can give.
using Expression = wchar_t[2048];

int askExpression(Expression& expression)
{
    CStdStrW prompt;
    prompt.LoadString(3505);
    if (vcedGetString(1, prompt, expression) == RTNORM)
        return kHandled;
    vcedRetVoid();
    return kNoValue;
}

}  // namespace

// The front of a calculator: values come back as they are, and nothing is calculated.
int cal2(const resbuf* arguments)
{
    CVcModuleResourceOverride resources(hLibModule);
    Expression expression = L"?";
    if (!arguments)
        return askExpression(expression);
    switch (arguments->restype) {
    case RTSHORT:
        vcedRetInt(arguments->resval.rint);
        return kHandled;
    case RTSTR:
        wcsncpy_s(expression, arguments->resval.rstring, _TRUNCATE);
        return kHandled;
    case RTLONG:
        vcedRetInt(arguments->resval.rlong);
        return kHandled;
    case RTREAL:
        vcedRetVal(arguments);
        return kHandled;
    default:
        vcedRetNil();
        return kNoValue;
    }
}

int ai_refedit_alert(const resbuf*)
{
    CVcModuleResourceOverride resources(hLibModule);
    CStdStrW message;
    message.LoadString(6650);
    vcutPrintf(L"%s", message);
    return kHandled;
}
