// Views, viewports, layouts, and what a program reads from the pointer.

#include "host/base/unicode.h"
#include "host/db/block_members.h"
#include "host/db/layouts.h"
#include "host/edit/editor.h"
#include "host/edit/view.h"
#include "host/edit/viewports.h"
#include "host/lisp/arguments.h"
#include "host/lisp/chain.h"
#include "host/lisp/drawing.h"
#include "host/lisp/errors.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/library.h"

#include "vcdb_layout.h"
#include "vcdb_objects.h"
#include "vcdb_records.h"
#include "vcdb_viewport.h"

#include <algorithm>
#include <deque>

namespace vk::lisp {

namespace {

using edit::Editor;

struct Pane {
    int number;
    VcGePoint2d low, high;
};

// Those of the model's tab are parts of the screen.
std::vector<Pane> panesOfModel(const DatabaseCore& db)
{
    std::vector<Pane> panes;
    for (const VcDbObjectId id : db.table(NameTable::Viewport).records()) {
        const auto* record = db.liveAs<VcDbViewportTableRecord>(id);
        if (record && equalNoCase(record->nameUtf8(), "*Active"))
            panes.push_back({int(panes.size()) + 2, record->lowerLeftCorner(), record->upperRightCorner()});
    }
    if (panes.empty())
        panes.push_back({2, {0, 0}, {1, 1}});
    return panes;
}

// Those of a sheet are in its units; number 1 is the sheet itself.
std::vector<Pane> panesOfSheet(const DatabaseCore& db)
{
    std::vector<Pane> panes;
    if (const auto* block = db.objectAs<VcDbBlockTableRecord>(db.paperSpace()))
        forEachMember(db, *block, [&](const VcDbEntity& entity) {
            const auto* viewport = VcDbViewport::cast(&entity);
            if (!viewport || !viewport->isOn())
                return;
            const VcGePoint3d c = viewport->centerPoint();
            const double x = viewport->width() / 2, y = viewport->height() / 2;
            panes.push_back({std::max<int>(1, viewport->number()), {c.x - x, c.y - y}, {c.x + x, c.y + y}});
        });
    return panes;
}

// The current one first: its number and two corners.
Value vports(Interpreter&, Args)
{
    const Editor& ed = Editor::instance();
    std::vector<Pane> panes = edit::isOnSheet(ed) ? panesOfSheet(ed.db()) : panesOfModel(ed.db());
    const int current = edit::currentViewportNumber(ed);
    std::stable_partition(panes.begin(), panes.end(), [&](const Pane& pane) { return pane.number == current; });
    ListBuilder list;
    for (const Pane& pane : panes) {
        const Value items[] = {Value::integer(pane.number), pointValue(pane.low.x, pane.low.y),
                               pointValue(pane.high.x, pane.high.y)};
        list.add(listOf(items));
    }
    return list.take();
}

// A view as TBLSEARCH gives it; a height and a centre it must have.
Value setview(Interpreter&, Args args)
{
    Editor& ed = Editor::instance();
    edit::View view = edit::currentView(ed);
    bool hasCenter = false, hasHeight = false;
    for (const Value& pair : Items(asList(args[0]))) {
        if (!pair.isCons() || !pair.car().isInteger())
            continue;
        const int code = pair.car().integer();
        const Value& value = pair.cdr();
        if (code == 10 || code == 11 || code == 12) {
            const Point p = asPoint(value);
            if (code == 10)
                view.center = {p.x, p.y, 0};
            else if (code == 11)
                view.direction = {p.x, p.y, p.z};
            else
                view.target = {p.x, p.y, p.z};
            hasCenter |= code == 10;
        } else if (code == 40) {
            view.height = asNumber(value);
            hasHeight = view.height > 0;
        } else if (code == 50) {
            view.twist = asNumber(value);
        }
    }
    if (!hasCenter || !hasHeight)
        badArgument("view", args[0]);
    if (argument(args, 1) && asInteger(args[1]) != 0 && !edit::setCurrentViewport(ed, asInteger(args[1])))
        return Value();
    edit::setCurrentView(ed, view);
    return args[0];
}

// Without the model.
Value layoutlist(Interpreter&, Args)
{
    const DatabaseCore& db = Editor::instance().db();
    ListBuilder names;
    for (const VcDbLayout* layout : layoutsByTab(db))
        if (!isModelLayout(db, *layout))
            names.add(Value::text(layout->nameUtf8()));
    return names.take();
}

// What has been typed for GRREAD and not been read yet, by characters.
std::deque<char32_t> s_typed;

Value read(int kind, Value what)
{
    const Value items[] = {Value::integer(kind), std::move(what)};
    return listOf(items);
}

constexpr int kKeyboard = 2, kPoint = 3;
constexpr char32_t kEnter = 13;

// One thing from the person: a point, or one character of what is typed, whose line ends with Enter.
Value grread(Interpreter&, Args)
{
    if (s_typed.empty()) {
        edit::Question q;
        q.kind = edit::Question::Kind::Point;
        q.init.bits = edit::InitGet::Arbitrary;
        const edit::Answer a = Editor::instance().askFromModule(q);
        if (a.status == edit::Answer::Status::Cancel)
            throw LispCancel();
        if (a.status == edit::Answer::Status::Value)
            return read(kPoint, pointValue(a.point.x, a.point.y, a.point.z));
        for (const wchar_t c : utf8ToWide(a.text))
            s_typed.push_back(char32_t(c));
        s_typed.push_back(kEnter);
    }
    const char32_t next = s_typed.front();
    s_typed.pop_front();
    return read(kKeyboard, Value::integer(std::int32_t(next)));
}

constexpr Builtin kViews[] = {
    {"VPORTS", vports, 0, 0},
    {"SETVIEW", setview, 1, 2},
    {"LAYOUTLIST", layoutlist, 0, 0},
    {"GRREAD", grread, 0, 3},
};

}  // namespace

void defineViews(Interpreter& lisp) { lisp.define(kViews); }

}  // namespace vk::lisp
