#include "host/lisp/chain.h"

#include "host/base/group_code.h"
#include "host/lisp/arguments.h"
#include "host/lisp/errors.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/printer.h"

#include "vced.h"

#include <cctype>

namespace vk::lisp {

namespace {

class SelectionCell : public NameCell {
public:
    using NameCell::NameCell;
    ~SelectionCell() override { vcedSSFree(words); }
};

constexpr int kExtendedData = -3;
constexpr int kApplication = 1001;

// Points that the drawing keeps with two coordinates; in a chain all points have three.
struct FlatPoints {
    const char* subclass;
    int first, last;
};
constexpr FlatPoints kFlatPoints[] = {
    {"AcDbPolyline", 10, 10},     {"AcDbViewportTableRecord", 10, 15}, {"AcDbViewTableRecord", 10, 10},
    {"AcDbViewport", 12, 15},     {"AcDbRasterImage", 13, 14},         {"AcDbWipeout", 13, 14},
    {"AcDbPlotSettings", 10, 15},
};

// What is needed to tell flat points while walking along a chain.
class Surface {
public:
    void pass(const resbuf& node)
    {
        if (node.restype == 100 && node.resval.rstring)
            m_subclass = rbUtf8(node);
        m_isInHatchPaths = m_subclass == "AcDbHatch" && (m_isInHatchPaths || node.restype == 91);
    }

    bool isFlat(int code) const
    {
        if (m_isInHatchPaths)
            return code >= 10 && code <= 13;
        return std::any_of(std::begin(kFlatPoints), std::end(kFlatPoints), [&](const FlatPoints& points) {
            return code >= points.first && code <= points.last && m_subclass == points.subclass;
        });
    }

private:
    std::string m_subclass;
    bool m_isInHatchPaths = false;
};

std::string toHex(std::string_view bytes)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    for (const char byte : bytes) {
        text += kDigits[static_cast<unsigned char>(byte) >> 4];
        text += kDigits[static_cast<unsigned char>(byte) & 15];
    }
    return text;
}

int hexDigit(char c)
{
    const int upper = std::toupper(static_cast<unsigned char>(c));
    return c >= '0' && c <= '9' ? c - '0' : upper >= 'A' && upper <= 'F' ? upper - 'A' + 10 : -1;
}

std::optional<std::string> fromHex(const std::string& text)
{
    std::string bytes;
    for (std::size_t i = 0; i + 1 < text.size(); i += 2) {
        const int high = hexDigit(text[i]);
        const int low = hexDigit(text[i + 1]);
        if (high < 0 || low < 0)
            return std::nullopt;
        bytes += static_cast<char>(high * 16 + low);
    }
    return text.size() % 2 == 0 ? std::optional(bytes) : std::nullopt;
}

Value groupValue(const resbuf& node, bool isFlat)
{
    switch (groupKind(node.restype)) {
    case GroupKind::String:
    case GroupKind::Handle:
        return Value::text(rbUtf8(node));
    case GroupKind::Reference:
        return entityValue(node.resval.rlname);
    case GroupKind::Point:
        return isFlat ? pointValue(node.resval.rpoint[0], node.resval.rpoint[1]) : pointValue(node.resval.rpoint);
    case GroupKind::Real:
        return Value::real(rbReal(node));
    case GroupKind::Int16:
    case GroupKind::Int32:
    case GroupKind::Int64:
    case GroupKind::Bool:
        return Value::whole(static_cast<double>(rbInteger(node)));
    case GroupKind::Binary:
        return Value::text(toHex(rbBytes(node)));
    case GroupKind::None:
        break;
    }
    return Value();
}

Value groupPair(const resbuf& node, bool isFlat)
{
    return Value::cons(Value::integer(node.restype), groupValue(node, isFlat));
}

// From the mark -3 to the end: each application's name heads a list of its data.
Value extendedData(const resbuf* node)
{
    ListBuilder applications;
    applications.add(Value::integer(kExtendedData));
    while (node) {
        ListBuilder data;
        data.add(groupValue(*node, false));
        for (node = node->rbnext; node && node->restype != kApplication; node = node->rbnext)
            data.add(groupPair(*node, false));
        applications.add(data.take());
    }
    return applications.take();
}

[[noreturn]] void badGroup(const Value& group) { throw LispError("bad DXF group: " + print(group)); }

void addWhole(RbBuilder& chain, int code, const Value& value, double lowest, double highest, const Value& group)
{
    if (!value.isInteger() || value.number() < lowest || value.number() > highest)
        badGroup(group);
    chain.addInteger(code, value.integer());
}

void addGroup(RbBuilder& chain, const Value& group);

void addExtendedData(RbBuilder& chain, const Value& group)
{
    chain.add(kExtendedData);
    for (const Value& application : Items(group.cdr())) {
        if (!application.car().isText())
            badGroup(group);
        chain.addUtf8(kApplication, application.car().text());
        for (const Value& item : Items(application.cdr())) {
            if (item.car().isInteger() && item.car().integer() == kExtendedData)
                badGroup(group);
            addGroup(chain, item);
        }
    }
}

void addBytes(RbBuilder& chain, int code, const Value& value, const Value& group)
{
    const auto bytes = value.isText() ? fromHex(value.text()) : std::nullopt;
    if (!bytes)
        badGroup(group);
    chain.addBytes(code, *bytes);
}

void addScalar(RbBuilder& chain, int code, const Value& value, const Value& group)
{
    switch (groupKind(code)) {
    case GroupKind::String:
    case GroupKind::Handle:
        return value.isText() ? chain.addUtf8(code, value.text()) : badGroup(group);
    case GroupKind::Real:
        return value.isNumber() ? chain.addReal(code, value.number()) : badGroup(group);
    case GroupKind::Int16:
        return addWhole(chain, code, value, INT16_MIN, UINT16_MAX, group);
    case GroupKind::Int32:
    case GroupKind::Int64:
        return addWhole(chain, code, value, INT32_MIN, INT32_MAX, group);
    case GroupKind::Bool:
        return addWhole(chain, code, value, 0, 1, group);
    case GroupKind::Binary:
        return addBytes(chain, code, value, group);
    default:
        badGroup(group);
    }
}

void addGroup(RbBuilder& chain, const Value& group)
{
    const Value& first = group.car();
    if (!first.isInteger() || first.integer() != static_cast<std::int16_t>(first.integer()))
        badGroup(group);
    const int code = first.integer();
    const Value& value = group.cdr();
    if (code == kExtendedData) {
        addExtendedData(chain, group);
    } else if (groupKind(code) == GroupKind::Point && isPoint(value)) {
        const Point point = asPoint(value);
        chain.addPoint(code, point.x, point.y, point.z);
    } else if (groupKind(code) == GroupKind::Reference && value.kind() == Kind::entity) {
        chain.addName(code, value.as<NameCell>().words);
    } else {
        addScalar(chain, code, value, group);
    }
}

Value simpleResult(Interpreter& lisp, const resbuf& node)
{
    switch (node.restype) {
    case RTNIL:
        return Value();
    case RTT:
        return lisp.truth(true);
    case RTVOID:
        return lisp.symbols().silence();
    case RTPOINT:
        return pointValue(node.resval.rpoint[0], node.resval.rpoint[1]);
    case RTPICKS:
        return selectionValue(node.resval.rlname, Ownership::Borrowed);
    case RTDXF0:
        return Value::cons(Value::integer(0), Value::text(rbUtf8(node)));
    default:
        break;
    }
    return node.restype >= RTNONE ? groupValue(node, false) : groupPair(node, false);
}

Value dottedList(std::vector<Value> items)
{
    ListBuilder list;
    for (std::size_t i = 0; i + 1 < items.size(); ++i)
        list.add(items[i]);
    if (!items.empty())
        list.finishWith(items.back());
    return list.take();
}

bool travelsAsPoint(const Value& value, PointRule rule)
{
    if (!isPoint(value))
        return false;
    bool areReal = true;
    for (const Value& coordinate : Items(value))
        areReal = areReal && coordinate.isReal();
    return areReal || rule == PointRule::AnyNumbers;
}

void addSimpleValue(RbBuilder& chain, const Value& value)
{
    switch (value.kind()) {
    case Kind::nil:
        chain.add(RTNIL);
        return;
    case Kind::integer:
        chain.addInteger(value.integer() == static_cast<std::int16_t>(value.integer()) ? RTSHORT : RTLONG,
                         value.integer());
        return;
    case Kind::real:
        chain.addReal(RTREAL, value.real());
        return;
    case Kind::text:
        chain.addUtf8(RTSTR, value.text());
        return;
    case Kind::entity:
        chain.addName(RTENAME, value.as<NameCell>().words);
        return;
    case Kind::selection:
        chain.addName(RTPICKS, value.as<NameCell>().words);
        return;
    case Kind::symbol:
        if (value.as<SymbolCell>().value.isSame(value)) {
            chain.add(RTT);
            return;
        }
        break;
    default:
        break;
    }
    badArgument("value for the drawing", value);
}

}  // namespace

Value groupsToList(const resbuf* chain)
{
    ListBuilder list;
    Surface surface;
    for (const resbuf* node = chain; node; node = node->rbnext) {
        if (node->restype == kExtendedData) {
            list.add(extendedData(node->rbnext));
            break;
        }
        surface.pass(*node);
        list.add(groupPair(*node, surface.isFlat(node->restype)));
    }
    return list.take();
}

RbPtr listToGroups(const Value& list)
{
    RbBuilder chain;
    for (const Value& group : Items(asList(list)))
        addGroup(chain, group);
    return chain.take();
}

std::vector<Value> chainToValues(Interpreter& lisp, const resbuf* chain)
{
    std::vector<std::vector<Value>> open(1);
    const auto close = [&](Value made) {
        if (open.size() > 1)
            open.pop_back();
        open.back().push_back(std::move(made));
    };
    for (; chain; chain = chain->rbnext) {
        if (chain->restype == RTLB)
            open.emplace_back();
        else if (chain->restype == RTLE && open.size() > 1)
            close(listOf(open.back()));
        else if (chain->restype == RTDOTE && open.size() > 1)
            close(dottedList(open.back()));
        else if (chain->restype != RTLE && chain->restype != RTDOTE)
            open.back().push_back(simpleResult(lisp, *chain));
    }
    while (open.size() > 1)
        close(listOf(open.back()));
    return open.front();
}

void addValue(RbBuilder& chain, const Value& value, PointRule rule)
{
    std::vector<const Value*> rests;
    const Value* item = &value;
    for (;;) {
        if (travelsAsPoint(*item, rule)) {
            const Point point = asPoint(*item);
            chain.addPoint(point.isFlat ? RTPOINT : RT3DPOINT, point.x, point.y, point.z);
        } else if (item->isCons()) {
            chain.add(RTLB);
            rests.push_back(&item->cdr());
            item = &item->car();
            continue;
        } else {
            addSimpleValue(chain, *item);
        }
        while (!rests.empty() && !rests.back()->isCons()) {
            if (!rests.back()->isNil())
                addSimpleValue(chain, *rests.back());
            chain.add(rests.back()->isNil() ? RTLE : RTDOTE);
            rests.pop_back();
        }
        if (rests.empty())
            return;
        item = &rests.back()->car();
        rests.back() = &rests.back()->cdr();
    }
}

RbPtr valuesToChain(Args values)
{
    RbBuilder chain;
    for (const Value& value : values)
        addValue(chain, value);
    return chain.take();
}

Value entityValue(const vds_name name) { return Value::cell(Kind::entity, new NameCell(name[0], name[1])); }

Value selectionValue(const vds_name set, Ownership ownership)
{
    return Value::cell(Kind::selection, ownership == Ownership::Owned ? new SelectionCell(set[0], set[1])
                                                                      : new NameCell(set[0], set[1]));
}

void copyName(const Value& value, vds_name nameOut)
{
    const auto& words = value.as<NameCell>().words;
    nameOut[0] = words[0];
    nameOut[1] = words[1];
}

void toPoint(const Value& value, vds_point pointOut)
{
    const Point point = asPoint(value);
    pointOut[0] = point.x;
    pointOut[1] = point.y;
    pointOut[2] = point.z;
}

Value pointValue(const vds_point point) { return pointValue(point[0], point[1], point[2]); }

}  // namespace vk::lisp
