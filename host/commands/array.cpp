// -ARRAY - copies in rows and columns, or about a centre.
#include "host/base/numbers.h"
#include "host/base/unicode.h"
#include "host/base/units.h"
#include "host/commands/copies.h"
#include "host/commands/families.h"
#include "host/db/curve_of.h"
#include "host/db/database.h"
#include "host/edit/sysvars.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_text.h"

namespace vk::commands {

namespace {

using namespace edit;
using Status = Answer::Status;

// Kept for the next time, as long as the program runs.
bool& lastWasPolar()
{
    static bool polar = false;
    return polar;
}

// The most objects that one array may make, by the environment.
std::int64_t mostObjects()
{
    wchar_t text[512] = L"";
    const auto limit = vcedGetEnv(L"MaxArray", text) == RTNORM ? parseInteger(wideToUtf8(text)) : std::nullopt;
    return limit && *limit > 0 ? *limit : 100000;
}

void checkCount(double copies, std::size_t objects)
{
    if (copies * double(objects) > double(mostObjects()))
        throw CommandError{fmt::format("An array of {:.0f} objects is more than the {} that MaxArray allows.",
                                       copies * double(objects), mostObjects())};
}

std::int64_t askCount(Editor& ed, const char* prompt)
{
    return ed.integer(prompt, 1, {.bits = InitGet::NoZero | InitGet::NoNegative});
}

struct Spacing {
    double up = 0;
    std::optional<double> along;  // of a cell shown by two corners, which says both
};

// A distance, or the corners of one cell.
Spacing askRowSpacing(Editor& ed, bool withCell)
{
    for (;;) {
        Question q;
        q.kind = Question::Kind::Point;
        q.prompt = withCell ? "Enter the distance between rows or specify unit cell (---): "
                            : "Specify the distance between rows (---): ";
        q.init.bits = InitGet::Arbitrary | InitGet::NoEnter;
        const Answer a = ed.ask(q);
        if (a.status == Status::Value) {
            const VcGePoint3d other =
                ed.point(withCell ? "Specify opposite corner" : "Specify second point", {.from = a.point});
            const VcGeVector3d cell = other - a.point;
            if (withCell ? cell.x == 0 || cell.y == 0 : cell.length() == 0) {
                ed.printLine(withCell ? "A cell needs a width and a height." : "Value must be nonzero.");
                continue;
            }
            return withCell ? Spacing{cell.y, cell.x} : Spacing{cell.length(), std::nullopt};
        }
        const auto number = parseDistance(a.text, LinearNotation(ed.vars().integer("LUNITS")));
        if (number && std::isfinite(*number) && *number != 0)
            return {*number, std::nullopt};
        ed.printLine(number ? "Value must be nonzero." : "Requires numeric distance or two points.");
    }
}

// How many could not be copied there.
std::size_t placeCopy(Editor& ed, const SelectionSet& objects, const VcGeMatrix3d& ucs)
{
    ed.throwIfInterrupted();
    return placeCopies(ed, objects, inWorld(ed, ucs)).left;
}

// Rows run along the Y axis of the UCS turned by SNAPANG, columns along its X axis.
void rectangular(Editor& ed, const SelectionSet& objects)
{
    const std::int64_t rows = askCount(ed, "Enter the number of rows (---)");
    const std::int64_t columns = askCount(ed, "Enter the number of columns (|||)");
    if (rows == 1 && columns == 1)
        throw CommandError{"An array of one element is what is there already."};
    checkCount(double(rows) * double(columns), objects.size());
    Spacing spacing;
    if (rows > 1)
        spacing = askRowSpacing(ed, columns > 1);
    if (columns > 1 && !spacing.along)
        spacing.along = ed.askDistance("Specify the distance between columns (|||)", {.bits = InitGet::NoZero}).real;
    const double turn = ed.vars().real("SNAPANG");
    const VcGeVector3d x(std::cos(turn), std::sin(turn), 0), y(-x.y, x.x, 0);
    std::size_t left = 0;
    for (std::int64_t row = 0; row < rows; ++row)
        for (std::int64_t column = 0; column < columns; ++column)
            if (row + column > 0)
                left += placeCopy(ed, objects,
                                  VcGeMatrix3d::translation(x * (spacing.along.value_or(0) * double(column)) +
                                                            y * (spacing.up * double(row))));
    reportNotCopied(ed, left);
}

// The place by which an object goes round when it is not turned: its centre, its insertion, its start.
VcGePoint3d referencePoint(const VcDbEntity& entity)
{
    if (const auto* reference = VcDbBlockReference::cast(&entity))
        return reference->position();
    if (const auto* text = VcDbText::cast(&entity))
        return text->position();
    if (const auto* text = VcDbMText::cast(&entity))
        return text->location();
    const auto curve = curveOf(entity);
    if (curve)
        if (const auto* circle = std::get_if<geom::Circle>(&*curve))
            return circle->center;
    if (const auto start = curve ? geom::startPoint(*curve) : std::nullopt)
        return *start;
    VcDbExtents e;
    return entity.getGeomExtents(e) || e.isEmpty() ? VcGePoint3d() : e.minPoint() + (e.maxPoint() - e.minPoint()) * 0.5;
}

struct PolarLayout {
    VcGePoint3d center, base;
    std::int64_t items = 0;
    double step = 0;  // anticlockwise
};

// Two of the number of items, the angle to fill and the angle between items.
void askItems(Editor& ed, PolarLayout& layout)
{
    const Answer count = ed.askInteger("Enter the number of items in the array",
                                       {.bits = InitGet::NoZero | InitGet::NoNegative, .enterEnds = true});
    const bool hasCount = count.status == Status::Value;
    if (hasCount && count.integer < 2)
        throw CommandError{"An array of one element is what is there already."};
    const double whole = 2 * M_PI;
    const Answer fill = ed.askAngle("Specify the angle to fill (+=ccw, -=cw) <360>",
                                    {.bits = hasCount ? 0 : int(InitGet::NoZero), .enterEnds = true});
    const double angle = fill.status == Status::Value ? fill.real : whole;
    const bool isWhole = std::fabs(std::fabs(angle) - whole) < 1e-9;
    if (hasCount && angle != 0) {
        layout.items = count.integer;
        layout.step = angle / double(isWhole ? layout.items : layout.items - 1);
        return;
    }
    const double between = ed.askAngle("Angle between items (+=ccw, -=cw)", {.bits = InitGet::NoZero}).real;
    layout.step = hasCount ? between : std::copysign(between, angle);
    layout.items =
        hasCount ? count.integer : std::int64_t(std::floor(std::fabs(angle / between) + 1e-9)) + (isWhole ? 0 : 1);
}

void polar(Editor& ed, const SelectionSet& objects)
{
    PolarLayout layout;
    const auto* last = ed.db().liveAs<VcDbEntity>(objects.ids().back());
    layout.base = last ? fromWorld(ed, referencePoint(*last)) : VcGePoint3d();
    const Answer center = ed.askPoint("Specify center point of array or [Base]", {.keywords = "Base"});
    layout.center = center.point;
    if (center.status == Status::Keyword) {
        layout.base = ed.point("Specify the base point of objects");
        layout.center = ed.point("Specify center point of array");
    }
    askItems(ed, layout);
    checkCount(double(layout.items), objects.size());
    const bool turns = ed.keyword("Rotate arrayed objects? [Yes/No] <Y>", "Yes No", "Yes") == "Yes";
    std::size_t left = 0;
    for (std::int64_t i = 1; i < layout.items; ++i) {
        const VcGeMatrix3d turn = VcGeMatrix3d::rotation(layout.step * double(i), VcGeVector3d::zAxis(), layout.center);
        left += placeCopy(ed, objects, turns ? turn : VcGeMatrix3d::translation(turn * layout.base - layout.base));
    }
    reportNotCopied(ed, left);
}

void array(Editor& ed)
{
    const auto objects = ed.select();
    if (objects->empty())
        return;
    const bool wasPolar = lastWasPolar();
    const std::string type =
        ed.keyword(fmt::format("Enter the type of array [Rectangular/Polar] <{}>", wasPolar ? "P" : "R"),
                   "Rectangular Polar", wasPolar ? "Polar" : "Rectangular");
    lastWasPolar() = type == "Polar";
    type == "Polar" ? polar(ed, *objects) : rectangular(ed, *objects);
}

const HostCommand kCommands[] = {
    {"-ARRAY", "-AR", kUsesPickSet, "Copies objects in rows and columns, or about a centre.", array},
    {"ARRAY", "AR", kUsesPickSet, "Copies objects in rows and columns, or about a centre.", array},
};

}

std::span<const HostCommand> arrayCommands() { return kCommands; }

}
