// Chains from variable argument lists.
#include "host/base/group_code.h"
#include "host/base/rb.h"

#include "sdk/vkdefs.h"

namespace {

// Codes without a value that may stand in an argument list.
bool isMark(int code)
{
    switch (code) {
    case -3:
    case RTVOID:
    case RTLB:
    case RTLE:
    case RTDOTE:
    case RTNIL:
    case RTT:
        return true;
    default:
        return false;
    }
}

void addNullable(RbBuilder& chain, int code, const wchar_t* text)
{
    if (text)
        chain.addString(code, text);
    else
        chain.add(code);
}

// A whole list behind one code, spliced in as a copy.
void addList(RbBuilder& chain, const resbuf* list) { chain.append(copyRbChain(list)); }

bool addArgument(RbBuilder& chain, int code, std::va_list* arguments)
{
    switch (groupKind(code)) {
    case GroupKind::String:
    case GroupKind::Handle:
        addNullable(chain, code, va_arg(*arguments, const wchar_t*));
        return true;
    case GroupKind::Reference: {
        static const vds_name none = {0, 0};
        const auto* name = va_arg(*arguments, const std::int64_t*);
        chain.addName(code, name ? name : none);
        return true;
    }
    case GroupKind::Point: {
        const auto* point = va_arg(*arguments, const double*);
        const bool flat = code == RTPOINT;  // a caller's 2D point has two coordinates
        point ? chain.addPoint(code, point[0], point[1], flat ? 0 : point[2]) : chain.addPoint(code, 0, 0);
        return true;
    }
    case GroupKind::Real:
        chain.addReal(code, va_arg(*arguments, double));
        return true;
    case GroupKind::Int64:
        chain.addInteger(code, va_arg(*arguments, std::int64_t));
        return true;
    case GroupKind::Int16:
    case GroupKind::Int32:
    case GroupKind::Bool:
        chain.addInteger(code, va_arg(*arguments, int));
        return true;
    case GroupKind::Binary: {
        const auto* bytes = va_arg(*arguments, const vds_binary*);
        const bool any = bytes && bytes->buf && bytes->clen > 0;
        chain.addBytes(code, any ? std::string_view(bytes->buf, static_cast<std::size_t>(bytes->clen)) : "");
        return true;
    }
    case GroupKind::None:
        break;
    }
    if (code == RTRESBUF) {
        addList(chain, va_arg(*arguments, const resbuf*));
        return true;
    }
    if (isMark(code))
        chain.add(code);
    return isMark(code);
}

}  // namespace

RbPtr buildRbChain(int firstCode, std::va_list arguments)
{
    std::va_list rest;
    va_copy(rest, arguments);
    RbBuilder chain;
    bool known = true;
    for (int code = firstCode; code != RTNONE && code != 0; code = va_arg(rest, int))
        if (!(known = addArgument(chain, code, &rest)))
            break;
    va_end(rest);
    return known ? chain.take() : nullptr;
}
