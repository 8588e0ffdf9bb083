// -VIEW - saves views under names and brings them back.
#include "host/base/unicode.h"
#include "host/base/wildcard.h"
#include "host/commands/drawing.h"
#include "host/commands/families.h"
#include "host/commands/ucs_names.h"
#include "host/db/coordinate_system.h"
#include "host/db/database.h"
#include "host/db/record_names.h"
#include "host/edit/sysvars.h"
#include "host/edit/ucs.h"
#include "host/edit/view.h"
#include "host/edit/viewports.h"
#include "sdk/vcdb_records.h"

namespace vk::commands {

namespace {

using namespace edit;
using Record = VcDbViewTableRecord;

Record* recordNamed(Editor& ed, std::string_view name)
{
    return ed.db().liveAs<Record>(ed.db().findRecord(NameTable::View, name));
}

bool seesPaper(const Editor& ed) { return isOnSheet(ed) && !activeViewport(ed); }

void list(Editor& ed)
{
    const Wildcard pattern(ed.word("Enter view name(s) to list", "*"));
    ed.printLine(fmt::format("{:<32}{}", "View name", "Space"));
    for (const VcDbObjectId id : ed.db().table(NameTable::View).records())
        if (const auto* record = ed.db().objectAs<Record>(id); pattern.matches(record->nameUtf8()))
            ed.printLine(
                fmt::format("{:<32}{}", "\"" + record->nameUtf8() + "\"", record->isPaperspaceView() ? "P" : "M"));
}

void fill(Editor& ed, Record& record, const View& view)
{
    fillViewRecord(ed, record, view);
    record.setIsPaperspaceView(seesPaper(ed));
    if (ed.vars().integer("UCSVIEW") != 0) {
        const CoordinateSystem ucs = currentUcs(ed.db());
        record.setUcs(ucs.origin, ucs.x, ucs.y);
        record.setUcsName(currentUcsRecord(ed.db()));
    }
}

void saveAs(Editor& ed, const View& view)
{
    const std::string name = ed.word("Enter view name to save");
    if (name.empty())
        return;
    if (!isLegalRecordName(name) || name.front() == '*')
        throw CommandError{fmt::format("\"{}\" is no name for a view.", name)};
    Record* record = recordNamed(ed, name);
    if (record && ed.vars().integer("EXPERT") < 2 &&
        ed.keyword(fmt::format("View \"{}\" already exists. Replace it? [Yes/No] <N>", name), "Yes No", "No") == "No")
        return;
    if (!record) {
        auto made = std::make_unique<Record>();
        made->setNameUtf8(name);
        record = made.get();
        if (ed.db().table(NameTable::View).add(made.get()))
            throw CommandError{"The view cannot be saved."};
        made.release()->close();
    }
    fill(ed, *record, view);
}

void save(Editor& ed) { saveAs(ed, currentView(ed)); }

void window(Editor& ed)
{
    const VcGePoint3d a = ed.point("Specify first corner"), b = ed.point("Specify opposite corner", {.from = a});
    const VcGeMatrix3d m = worldToDisplay(ed) * ucsToWorld(ed);
    const VcDbExtents box(m * a, m * b);
    const VcGeVector3d size = box.maxPoint() - box.minPoint();
    if (!(std::max(size.x, size.y) > 0))
        throw CommandError{"The window has no size."};
    saveAs(ed, viewOf(ed, currentView(ed), box));
}

void restore(Editor& ed)
{
    const std::string name = ed.word("Enter view name to restore");
    if (name.empty())
        return;
    const Record* record = recordNamed(ed, name);
    if (!record)
        throw CommandError{fmt::format("Cannot find view \"{}\".", name)};
    if (record->isPaperspaceView() != seesPaper(ed))
        throw CommandError{record->isPaperspaceView() ? "This is a view of paper space; enter a layout first."
                                                      : "This is a view of model space; enter it first."};
    setCurrentView(ed, viewOf(*record, currentView(ed)));
    if (record->isUcsAssociatedToView() && ed.vars().integer("UCSVIEW") != 0) {
        CoordinateSystem ucs;
        record->getUcs(ucs.origin, ucs.x, ucs.y);
        changeUcs(ed, ucs, record->ucsName());
    }
}

void erase(Editor& ed)
{
    const std::string names = ed.word("Enter view name(s) to delete");
    const Wildcard pattern(names);
    std::size_t count = 0;
    for (const VcDbObjectId id : ed.db().table(NameTable::View).records())
        if (auto* record = ed.db().objectAs<Record>(id); pattern.matches(record->nameUtf8()))
            count += record->erase() == Vcad::eOk;
    if (!names.empty())
        ed.printLine(count > 0 ? fmt::format("Deleted {} view(s).", count)
                               : fmt::format("No view matches \"{}\".", names));
}

void orthographic(Editor& ed)
{
    const CoordinateSystem side = askOrthographicSystem(ed);
    showPlan(ed, side);
    if (ed.vars().integer("UCSORTHO") != 0)
        changeUcs(ed, side);
}

void view(Editor& ed)
{
    const std::string what = ed.keyword("Enter an option [?/Delete/Orthographic/Restore/Save/Window]",
                                        "? Delete Orthographic Restore Save Window");
    what == "?"              ? list(ed)
    : what == "Delete"       ? erase(ed)
    : what == "Orthographic" ? orthographic(ed)
    : what == "Restore"      ? restore(ed)
    : what == "Save"         ? save(ed)
                             : window(ed);
}

const HostCommand kCommands[] = {
    {"-VIEW", "-V", kPlain, "Saves views under names and brings them back.", view},
    {"VIEW", "V", kPlain, "Saves views under names and brings them back.", view},
};

}

std::span<const HostCommand> viewCommands() { return kCommands; }

}
