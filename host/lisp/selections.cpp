// Selection sets.

#include "host/lisp/arguments.h"
#include "host/lisp/chain.h"
#include "host/lisp/drawing.h"
#include "host/lisp/errors.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/library.h"

#include "vced.h"

#include <cmath>

namespace vk::lisp {

namespace {

// The arguments of ssget take their places by type: a mode, then points as the mode wants them, then a filter.
class SelectionRequest {
public:
    explicit SelectionRequest(Args args) : m_rest(args)
    {
        takeMode();
        if (isPolygonMode() && !m_rest.empty())
            takePolygon();
        else
            takePoints();
        if (!m_rest.empty() && m_rest[0].isList())
            m_filter = listToGroups(takeNext());
        if (!m_rest.empty())
            badArgument("selection argument", m_rest[0]);
    }

    int run(vds_name setOut) const
    {
        const void* first = m_polygon          ? static_cast<const void*>(m_polygon.get())
                            : m_pointCount > 0 ? m_points[0]
                                               : nullptr;
        const void* second = m_pointCount > 1 ? m_points[1] : nullptr;
        return vcedSSGet(m_hasMode ? m_mode.c_str() : nullptr, first, second, m_filter.get(), setOut);
    }

private:
    const Value& takeNext()
    {
        const Value& next = m_rest[0];
        m_rest = m_rest.subspan(1);
        return next;
    }

    void takeMode()
    {
        if (m_rest.empty() || !m_rest[0].isText())
            return;
        m_mode = asWide(takeNext());
        m_hasMode = true;
    }

    // "_WP:L" is a window polygon: without the underscore and the modifiers.
    bool isPolygonMode() const
    {
        const std::size_t start = m_mode.starts_with(L'_') ? 1 : 0;
        const std::wstring letters = m_mode.substr(start, m_mode.find(L':') - start);
        for (const wchar_t* polygonal : {L"WP", L"CP", L"F", L"wp", L"cp", L"f"})
            if (letters == polygonal)
                return true;
        return false;
    }

    void takePolygon()
    {
        RbBuilder corners;
        for (const Value& corner : itemsOf(takeNext())) {
            const Point point = asPoint(corner);
            corners.addPoint(RT3DPOINT, point.x, point.y, point.z);
        }
        m_polygon = corners.take();
    }

    void takePoints()
    {
        while (m_pointCount < 2 && !m_rest.empty() && isPoint(m_rest[0]))
            toPoint(takeNext(), m_points[m_pointCount++]);
    }

    Args m_rest;
    std::wstring m_mode;
    bool m_hasMode = false;
    RbPtr m_polygon;
    vds_point m_points[2] = {};
    int m_pointCount = 0;
    RbPtr m_filter;
};

Value setIf(int status, const Name& set) { return succeeded(status) ? selectionValue(set, Ownership::Owned) : Value(); }

Value ssget(Interpreter&, Args args)
{
    Name set;
    return setIf(SelectionRequest(args).run(set), set);
}

Value ssadd(Interpreter&, Args args)
{
    const Name entity = asEntityOrNone(argument(args, 0));
    Name set;
    if (args.size() < 2)
        return setIf(vcedSSAdd(args.empty() ? nullptr : entity.words, nullptr, set), set);
    set = asSelection(args[1]);
    return succeeded(vcedSSAdd(entity, set, set)) ? args[1] : Value();
}

Value ssdel(Interpreter&, Args args)
{
    return succeeded(vcedSSDel(asEntity(args[0]), asSelection(args[1]))) ? args[1] : Value();
}

Value sslength(Interpreter&, Args args)
{
    int length = 0;
    return succeeded(vcedSSLength(asSelection(args[0]), &length)) ? Value::integer(length) : Value();
}

Value ssname(Interpreter&, Args args)
{
    const double index = std::trunc(asNumber(args[1]));
    if (!(index >= 0 && index <= INT32_MAX))
        return Value();
    Name found;
    return entityIf(vcedSSName(asSelection(args[0]), static_cast<int>(index), found), found);
}

Value ssmemb(Interpreter&, Args args)
{
    return succeeded(vcedSSMemb(asEntity(args[0]), asSelection(args[1]))) ? args[0] : Value();
}

// Grips and selection are one set here: the second argument counts where both are given.
Value sssetfirst(Interpreter&, Args args)
{
    const Value& chosen = argument(args, 1) ? args[1] : args[0];
    const Name set = chosen ? asSelection(chosen) : Name();
    return succeeded(vcedSSSetFirst(chosen ? set.words : nullptr, nullptr)) ? listOf(args) : Value();
}

Value setOfChain(const resbuf* chain)
{
    return chain && chain->restype == RTPICKS ? selectionValue(chain->resval.rlname, Ownership::Owned) : Value();
}

Value ssgetfirst(Interpreter&, Args)
{
    resbuf* grips = nullptr;
    resbuf* picks = nullptr;
    if (!succeeded(vcedSSGetFirst(&grips, &picks)))
        return Value();
    const RbPtr gripChain(grips);
    const RbPtr pickChain(picks);
    const Value sets[] = {setOfChain(grips), setOfChain(picks)};
    return listOf(sets);
}

constexpr Builtin kSelections[] = {
    {"SSGET", ssget, 0, 4},           {"SSADD", ssadd, 0, 2},           {"SSDEL", ssdel, 2, 2},
    {"SSLENGTH", sslength, 1, 1},     {"SSNAME", ssname, 2, 2},         {"SSMEMB", ssmemb, 2, 2},
    {"SSSETFIRST", sssetfirst, 1, 2}, {"SSGETFIRST", ssgetfirst, 0, 0},
};

}  // namespace

void defineSelections(Interpreter& lisp) { lisp.define(kSelections); }

}  // namespace vk::lisp
