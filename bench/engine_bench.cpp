// The drafting engine: what selecting, crossing, copying and exploding cost, beside a plain scan.
//
// The scan is a loop over the entities of the model that opens each one, asks for its layer and closes it: the least that a
// tool does which looks at everything. What selects says its time for each object that it hits in scans of one object.
//
// usage: engine_bench [extents|areas|picks|crossings|copies|explosions] DRAWING.dxf...

#include "bench/support.h"
#include "host/app/session.h"
#include "host/db/database.h"
#include "host/edit/editor.h"
#include "sdk/vcdb_chains.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_tables.h"
#include "sdk/vced.h"
#include "sdk/vcut.h"

#include <filesystem>
#include <fmt/format.h>
#include <random>

namespace {

using bench::check;
using vk::edit::Editor;

constexpr double kSide = 5000;  // of the drawings

std::vector<VcDbObjectId> modelEntities()
{
    const DatabaseCore& db = Editor::instance().db();
    std::vector<VcDbObjectId> ids;
    for (const std::uint32_t slot : db.objectAs<VcDbBlockTableRecord>(db.currentSpace())->memberSlots())
        if (const VcDbObject* object = db.objectAt(slot); object && !object->isErased())
            ids.push_back(object->objectId());
    return ids;
}

VcDbEntity* opened(VcDbObjectId id)
{
    VcDbEntity* entity = nullptr;
    check(vcdbOpenObject(entity, id, VcDb::kForRead) == Vcad::eOk, "an entity cannot be opened");
    return entity;
}

std::size_t entitiesOnLayer(const std::vector<VcDbObjectId>& ids, VcDbObjectId layer)
{
    std::size_t count = 0;
    for (const VcDbObjectId id : ids) {
        VcDbEntity* entity = opened(id);
        count += entity->layerId() == layer;
        entity->close();
    }
    return count;
}

VcDbExtents extentsOfAll(const std::vector<VcDbObjectId>& ids)
{
    VcDbExtents all;
    for (const VcDbObjectId id : ids) {
        VcDbExtents one;
        VcDbEntity* entity = opened(id);
        if (entity->getGeomExtents(one) == Vcad::eOk)
            all.addExt(one);
        entity->close();
    }
    return all;
}

// A set that is let go again.
struct Selected {
    vds_name name = {};
    int count = 0;
    Selected(const wchar_t* mode, const void* first, const void* second, const resbuf* filter = nullptr)
    {
        if (vcedSSGet(mode, first, second, filter, name) == RTNORM)
            vcedSSLength(name, &count);
    }
    ~Selected() { vcedSSFree(name); }
    Selected(const Selected&) = delete;
    Selected& operator=(const Selected&) = delete;
};

class EngineBench {
public:
    EngineBench(bench::Table& table, const bench::Drawing& drawing, double loading, double scanning)
        : m_table(table), m_drawing(drawing), m_ids(modelEntities()), m_loading(loading),
          m_scan(scanning / double(m_ids.size()))
    {
    }
    void run(std::string_view only);

private:
    using Corners = std::pair<VcGePoint3d, VcGePoint3d>;
    Corners randomWindow(double part);
    void hits(const char* what, int runs, const std::function<int()>& one);
    void shareOfLoad(const char* what, std::size_t entities, double seconds);
    void extents();
    void areas();
    void picks();
    void crossings();
    void copies();
    void explosions();

    bench::Table& m_table;
    const bench::Drawing& m_drawing;
    std::vector<VcDbObjectId> m_ids;
    double m_loading, m_scan;  // seconds, of the drawing and of an entity
    std::mt19937 m_random{7};
};

EngineBench::Corners EngineBench::randomWindow(double part)
{
    std::uniform_real_distribution<double> at(0, kSide * (1 - part));
    const VcGePoint3d low(at(m_random), at(m_random), 0);
    return {low, low + VcGeVector3d(kSide * part, kSide * part, 0)};
}

void EngineBench::hits(const char* what, int runs, const std::function<int()>& one)
{
    std::size_t found = 0;
    const double seconds = bench::secondsOf([&] {
        for (int i = 0; i < runs; ++i)
            found += std::size_t(one());
    });
    const double each = seconds / double(std::max<std::size_t>(found, 1));
    m_table.row(what, m_drawing, found, seconds,
                fmt::format("{:.1f} scans a hit, {:.1f} us a call", each / m_scan, 1e6 * seconds / runs));
}

void EngineBench::shareOfLoad(const char* what, std::size_t entities, double seconds)
{
    m_table.row(what, m_drawing, entities, seconds, fmt::format("{:.2f} of the load", seconds / m_loading));
}

void EngineBench::extents()
{
    VcDbExtents all;
    const double first = bench::secondsOf([&] { all = extentsOfAll(m_ids); });
    const double again = bench::bestOf(bench::kRuns, [&] { all = extentsOfAll(m_ids); });
    const double scan = m_scan * double(m_ids.size());
    m_table.row("extents of all", m_drawing, m_ids.size(), first, fmt::format("{:.1f} scans", first / scan));
    m_table.row("extents of all, again", m_drawing, m_ids.size(), again, fmt::format("{:.1f} scans", again / scan));
}

void EngineBench::areas()
{
    const auto area = [this](const wchar_t* mode, double part) {
        const auto [low, high] = randomWindow(part);
        return Selected(mode, &low, &high).count;
    };
    const double indexing = bench::secondsOf([&] { area(L"C", 1e-6); });
    m_table.row("first window: the index", m_drawing, m_ids.size(), indexing,
                fmt::format("{:.1f} scans", indexing / (m_scan * double(m_ids.size()))));
    hits("crossing window", 100, [&] { return area(L"C", 0.05); });
    hits("window", 100, [&] { return area(L"W", 0.05); });
    hits("fence", 100, [&] {
        const auto [low, high] = randomWindow(0.2);
        resbuf* points = vcutBuildList(RT3DPOINT, &low, RT3DPOINT, &high, 0);
        const int count = Selected(L"F", points, nullptr).count;
        vcutRelRb(points);
        return count;
    });
}

// As a person picks: zoomed in, on something that is there.
void EngineBench::picks()
{
    bench::type("ZOOM\nC\n2500,2500\n50\n");
    std::vector<VcGePoint3d> places;
    for (std::size_t i = 0; i < m_ids.size(); i += m_ids.size() / 20000 + 1) {
        VcDbEntity* entity = opened(m_ids[i]);
        VcGePoint3d at;
        if (const auto* curve = VcDbCurve::cast(entity); curve && curve->getStartPoint(at) == Vcad::eOk)
            places.push_back(at);
        entity->close();
    }
    Selected(nullptr, &places.front(), nullptr);  // the index stands
    std::size_t next = 0;
    hits("pick", int(places.size()), [&] { return Selected(nullptr, &places[next++], nullptr).count; });
    bench::type("ZOOM\nE\n");
}

std::unique_ptr<VcDbPolyline> zigzag(unsigned corners)
{
    auto line = std::make_unique<VcDbPolyline>();
    for (unsigned i = 0; i < corners; ++i)
        line->addVertexAt(i, {kSide * (0.01 + 0.98 * i / (corners - 1)), kSide * (i % 2 ? 0.97 : 0.03)});
    return line;
}

// The candidates by a fence along the line, then the points.
void EngineBench::crossings()
{
    const auto line = zigzag(20);
    resbuf* fence = nullptr;
    for (unsigned i = line->numVerts(); i-- > 0;) {
        VcGePoint3d at;
        line->getPointAt(i, at);
        resbuf* point = vcutBuildList(RT3DPOINT, &at, 0);
        point->rbnext = fence;
        fence = point;
    }
    std::vector<VcGePoint3d> points;
    const double seconds = bench::secondsOf([&] {
        const Selected met(L"F", fence, nullptr);
        for (int i = 0; i < met.count; ++i) {
            vds_name name = {};
            VcDbObjectId id;
            vcedSSName(met.name, i, name);
            vcdbGetObjectId(id, name);
            VcDbEntity* entity = opened(id);
            line->intersectWith(entity, VcDb::kOnBothOperands, points);
            entity->close();
        }
    });
    vcutRelRb(fence);
    const double each = seconds / double(points.size());
    m_table.row("crossings of a polyline", m_drawing, points.size(), seconds,
                fmt::format("{:.1f} scans a crossing", each / m_scan));
}

void EngineBench::copies()
{
    const std::size_t before = modelEntities().size();
    const double moving = bench::secondsOf([] { bench::type("MOVE\nALL\n\n0,0\n10,20\n"); });
    const double back = bench::secondsOf([] { bench::type("U\n"); });
    const double copying = bench::secondsOf([] { bench::type("COPY\nALL\n\n0,0\n10,20\n\n"); });
    check(modelEntities().size() == 2 * before, "COPY did not copy everything");
    const double undoing = bench::secondsOf([] { bench::type("U\n"); });
    check(modelEntities().size() == before, "U left copies");
    shareOfLoad("move", before, moving);
    shareOfLoad("take the move back", before, back);
    shareOfLoad("copy", before, copying);
    shareOfLoad("take the copies back", before, undoing);
    shareOfLoad("copy and take back", before, copying + undoing);
}

void EngineBench::explosions()
{
    resbuf* filter = vcutBuildList(RTDXF0, L"INSERT", 0);
    const Selected references(L"X", nullptr, nullptr, filter);
    vcutRelRb(filter);
    const std::size_t before = modelEntities().size();
    vcedSSSetFirst(nullptr, references.name);
    const double exploding = bench::secondsOf([] { bench::type("EXPLODE\n"); });
    check(modelEntities().size() > before, "EXPLODE made nothing");
    const double undoing = bench::secondsOf([] { bench::type("U\n"); });
    check(modelEntities().size() == before, "U left pieces");
    shareOfLoad("explode references", std::size_t(references.count), exploding);
    shareOfLoad("take it back", std::size_t(references.count), undoing);
}

void EngineBench::run(std::string_view only)
{
    static constexpr std::pair<std::string_view, void (EngineBench::*)()> kParts[] = {
        {"extents", &EngineBench::extents}, {"areas", &EngineBench::areas},
        {"picks", &EngineBench::picks},     {"crossings", &EngineBench::crossings},
        {"copies", &EngineBench::copies},   {"explosions", &EngineBench::explosions},
    };
    for (const auto& [name, part] : kParts)
        if (only.empty() || only == name)
            (this->*part)();
}

void measure(bench::Table& table, const bench::Drawing& drawing, std::string_view only)
{
    std::unique_ptr<VcDbDatabase> database;
    const double loading = bench::secondsOf([&] { database = bench::load(drawing); });
    vk::app::Session session((std::filesystem::temp_directory_path() / "engine_bench_profile").string());
    for (const std::string& fault : session.open(std::move(database)))
        check(false, fault);
    Editor::instance().setTranscriptSink([](std::string_view) {});
    const std::vector<VcDbObjectId> ids = modelEntities();
    volatile std::size_t keep = 0;
    const double scanning = bench::bestOf(bench::kRuns, [&] { keep = entitiesOnLayer(ids, VcDbObjectId()); });
    table.row("load", drawing, ids.size(), loading);
    table.row("scan", drawing, ids.size(), scanning,
              fmt::format("{:.0f} ns an entity", 1e9 * scanning / double(ids.size())));
    EngineBench(table, drawing, loading, scanning).run(only);
}

}

int main(int argc, char** argv)
{
    const bool hasPart = argc > 1 && !std::filesystem::exists(argv[1]);
    bench::Table table;
    for (int i = hasPart ? 2 : 1; i < argc; ++i)
        measure(table, bench::drawingAt(argv[i]), hasPart ? argv[1] : "");
    return argc > (hasPart ? 2 : 1) ? 0 : 2;
}
