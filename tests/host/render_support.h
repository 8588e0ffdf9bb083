// What tests of pictures share: a drawing that is painted on a canvas which remembers what lies where.
#pragma once

#include "host/db/database.h"
#include "host/render/scene.h"
#include "host/text/font_library.h"
#include "sdk/vcdb_curves.h"
#include "sdk/vcdb_database.h"
#include "sdk/vcdb_insert.h"
#include "sdk/vcdb_records.h"
#include "sdk/vcdb_tables.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

namespace rendertest {

using vk::render::Canvas;
using vk::render::Pen;
using vk::render::PlaneWindow;
using vk::render::Point2;
using vk::render::Rings;

constexpr std::uint32_t kPage = 0xffffffff, kBlack = 0xff000000, kRed = 0xffff0000, kGreen = 0xff00ff00,
                        kBlue = 0xff0000ff;

// Keeps every stroke and area in order; the colour of a point is that of the last one that covers it.
class Sheet : public Canvas {
public:
    struct Mark {
        std::vector<Point2> line;
        Rings area;
        double reach = 0;  // half the width of a line
        bool nonZero = false;
        std::uint32_t argb = 0;
        std::size_t clips = 0;
        std::vector<std::pair<Rings, bool>> clip;
    };

    void stroke(std::span<const Point2> points, bool closed, const Pen& pen) override
    {
        Mark mark = begin(pen.argb);
        mark.line.assign(points.begin(), points.end());
        if (closed)
            mark.line.push_back(points.front());
        mark.reach = pen.width / 2;
        marks.push_back(std::move(mark));
    }
    void fill(const Rings& rings, bool nonZero, std::uint32_t argb) override
    {
        Mark mark = begin(argb);
        mark.area = rings;
        mark.nonZero = nonZero;
        marks.push_back(std::move(mark));
    }
    void fillGradient(const Rings& rings, const vk::render::Gradient& g) override
    {
        gradients.push_back(g);
        fill(rings, false, g.stops.front().second);
    }
    void erase(const Rings& rings) override { fill(rings, false, kPage); }
    bool image(const std::string& file, Point2, VcGeVector2d, VcGeVector2d, const Rings&,
               const vk::render::ImageAdjustment&) override
    {
        images.push_back(file);
        return false;
    }
    void pushClip(const Rings& rings, bool inverted) override { m_clips.emplace_back(rings, inverted); }
    void popClip() override { m_clips.pop_back(); }

    std::uint32_t at(const Point2& p) const
    {
        for (auto mark = marks.rbegin(); mark != marks.rend(); ++mark)
            if (covers(*mark, p))
                return mark->argb;
        return kPage;
    }
    // The widest stroke that covers a point.
    double widthAt(const Point2& p) const
    {
        double widest = 0;
        for (const Mark& mark : marks)
            if (!mark.line.empty() && covers(mark, p))
                widest = std::max(widest, 2 * mark.reach);
        return widest;
    }

    std::vector<Mark> marks;
    std::vector<vk::render::Gradient> gradients;
    std::vector<std::string> images;

private:
    Mark begin(std::uint32_t argb) const
    {
        Mark mark;
        mark.argb = argb;
        mark.clip = m_clips;
        return mark;
    }
    static int winding(const Rings& rings, const Point2& p, bool nonZero)
    {
        int sum = 0;
        rings.forEach([&](std::span<const Point2> ring) {
            for (std::size_t i = 0; i < ring.size(); ++i) {
                const Point2 &a = ring[i], &b = ring[(i + 1) % ring.size()];
                if ((a.y > p.y) != (b.y > p.y) && p.x < (b.x - a.x) * (p.y - a.y) / (b.y - a.y) + a.x)
                    sum += nonZero ? (a.y < b.y ? 1 : -1) : 1;
            }
        });
        return nonZero ? sum : sum & 1;
    }
    static double distance(const Point2& p, const Point2& a, const Point2& b)
    {
        const VcGeVector2d d = b - a;
        const double t = d.lengthSqrd() > 0 ? std::clamp((p - a).dotProduct(d) / d.lengthSqrd(), 0.0, 1.0) : 0;
        return (p - (a + d * t)).length();
    }
    static bool covers(const Mark& mark, const Point2& p)
    {
        for (const auto& [rings, inverted] : mark.clip)
            if ((winding(rings, p, false) != 0) == inverted)
                return false;
        for (std::size_t i = 0; i + 1 < mark.line.size(); ++i)
            if (distance(p, mark.line[i], mark.line[i + 1]) <= mark.reach)
                return true;
        return winding(mark.area, p, mark.nonZero) != 0;
    }
    std::vector<std::pair<Rings, bool>> m_clips;
};

struct Looks {
    const char* layer = "0";
    int colour = 256;
    const char* linetype = nullptr;
    int weight = -1;
};

// A drawing whose units are pixels: the window is that of the page, y up.
class Picture : public testing::Test {
protected:
    static constexpr double kSide = 1000;

    DatabaseCore& db() { return m_database.core(); }
    VcDbBlockTableRecord& space() { return *db().objectAs<VcDbBlockTableRecord>(db().modelSpace()); }
    VcDbBlockTableRecord& block(const char* name)
    {
        return *db().objectAs<VcDbBlockTableRecord>(db().recordFor(NameTable::Block, name));
    }
    VcDbLayerTableRecord& layer(const char* name)
    {
        return *db().objectAs<VcDbLayerTableRecord>(db().recordFor(NameTable::Layer, name));
    }
    VcDbLinetypeTableRecord& linetype(const char* name, std::vector<double> dashes)
    {
        auto& record = *db().objectAs<VcDbLinetypeTableRecord>(db().recordFor(NameTable::Linetype, name));
        std::vector<VcDbLinetypeTableRecord::Dash> pattern;
        for (const double length : dashes)
            pattern.emplace_back().length = length;
        record.setPattern("", pattern);
        return record;
    }

    template <class T>
    T& add(T* entity, const Looks& looks = {}, VcDbBlockTableRecord* owner = nullptr)
    {
        EXPECT_EQ((owner ? *owner : space()).appendVcDbEntity(entity), Vcad::eOk);
        entity->setLayer(layer(looks.layer).objectId());
        entity->setColorIndex(std::uint16_t(looks.colour));
        if (looks.linetype)
            entity->setLinetype(db().recordFor(NameTable::Linetype, looks.linetype));
        entity->setLineWeight(VcDb::LineWeight(looks.weight));
        entity->close();
        return *entity;
    }
    VcDbLine& line(double x1, double y1, double x2, double y2, const Looks& looks = {},
                   VcDbBlockTableRecord* owner = nullptr)
    {
        return add(new VcDbLine({x1, y1, 0}, {x2, y2, 0}), looks, owner);
    }

    void paint(const std::string& layoutName = "", std::uint32_t background = kPage)
    {
        sheet = {};
        const auto layout = vk::render::findLayout(db(), layoutName);
        ASSERT_TRUE(layout);
        vk::render::Scene scene(db(), *layout, omissions);
        scene.paint(sheet, {{0, 0}, {kSide, kSide}}, {kSide, kSide, background, true});
    }
    std::uint32_t at(double x, double y) const { return sheet.at({x, kSide - y}); }
    bool isInk(double x, double y) const { return at(x, y) != kPage; }
    PlaneWindow wholeWindow()
    {
        return vk::render::Scene(db(), *vk::render::findLayout(db(), ""), omissions).wholeWindow();
    }

    Sheet sheet;
    vk::render::Omissions omissions;

private:
    VcDbDatabase m_database;
};

}  // namespace rendertest
