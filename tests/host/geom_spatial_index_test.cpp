// The index against looking at every box.
#include "host/geom/spatial_index.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <map>
#include <random>

using namespace vk::geom;
using Id = SpatialIndex::Id;

namespace {

class GeomSpatialIndex : public ::testing::Test {
protected:
    std::mt19937 random{7};
    std::map<Id, Box3d> boxes;

    double number(double low, double high) { return std::uniform_real_distribution<double>(low, high)(random); }
    VcGePoint3d point() { return {number(-50, 50), number(-50, 50), number(-5, 5)}; }
    Box3d box()
    {
        Box3d b;
        const VcGePoint3d p = point();
        b.add(p);
        // Some are points, some lines, as in drawings.
        b.add(p +
              VcGeVector3d(number(0, 1) < 0.3 ? 0 : number(0, 6), number(0, 1) < 0.3 ? 0 : number(0, 6), number(0, 2)));
        return b;
    }

    template <class Test>
    std::vector<Id> plain(Test test) const
    {
        std::vector<Id> found;
        for (const auto& [id, b] : boxes)
            if (test(b))
                found.push_back(id);
        return found;
    }

    void compare(const SpatialIndex& index)
    {
        ASSERT_EQ(index.size(), boxes.size());
        for (int i = 0; i < 40; ++i) {
            const Box3d window = box().grown(number(0, 8));
            EXPECT_EQ(sorted(index.touching(window)), plain([&](const Box3d& b) { return b.touches(window); }));
            const VcGePoint3d p = point(), q = point();
            EXPECT_EQ(sorted(index.alongSegment(p, q)), plain([&](const Box3d& b) { return meets(b, p, q - p, 1); }));
            EXPECT_EQ(sorted(index.alongRay(p, q - p)), plain([&](const Box3d& b) { return meets(b, p, q - p, 1e9); }));
            expectNearest(index, p);
        }
    }

    static std::vector<Id> sorted(std::vector<Id> ids)
    {
        std::sort(ids.begin(), ids.end());
        return ids;
    }

    // Along each axis apart, the parameters at which the line is between the box's sides.
    static bool meets(const Box3d& b, const VcGePoint3d& p, const VcGeVector3d& v, double to)
    {
        double from = 0;
        const double base[] = {p.x, p.y, p.z}, step[] = {v.x, v.y, v.z}, low[] = {b.min.x, b.min.y, b.min.z},
                     high[] = {b.max.x, b.max.y, b.max.z};
        for (int i = 0; i < 3; ++i) {
            const double s = (low[i] - base[i]) / step[i], t = (high[i] - base[i]) / step[i];
            from = std::max(from, std::min(s, t));
            to = std::min(to, std::max(s, t));
        }
        return from <= to;
    }

    void expectNearest(const SpatialIndex& index, const VcGePoint3d& p)
    {
        std::vector<double> distances;
        for (const auto& [id, b] : boxes) {
            const VcGePoint3d inside(std::clamp(p.x, b.min.x, b.max.x), std::clamp(p.y, b.min.y, b.max.y),
                                     std::clamp(p.z, b.min.z, b.max.z));
            distances.push_back(p.distanceTo(inside));
        }
        std::sort(distances.begin(), distances.end());
        const auto found = index.nearest(p, 5);
        ASSERT_EQ(found.size(), std::min<size_t>(5, distances.size()));
        for (size_t i = 0; i < found.size(); ++i)
            EXPECT_NEAR(found[i].distance, distances[i], 1e-12);
    }
};

}  // namespace

TEST_F(GeomSpatialIndex, FollowsChanges)
{
    SpatialIndex index;
    for (Id id = 0; id < 400; ++id)
        index.set(id, boxes[id] = box());
    compare(index);
    for (Id id = 0; id < 400; id += 3)
        index.set(id, boxes[id] = box());
    for (Id id = 1; id < 400; id += 3) {
        EXPECT_TRUE(index.erase(id));
        boxes.erase(id);
    }
    compare(index);
    EXPECT_FALSE(index.erase(1));
    index.clear();
    boxes.clear();
    compare(index);
}

TEST_F(GeomSpatialIndex, LoadsAtOnce)
{
    std::vector<SpatialIndex::Entry> entries;
    for (Id id = 0; id < 1000; ++id)
        entries.emplace_back(id, boxes[id] = box());
    SpatialIndex index(entries);
    compare(index);
    index.erase(17);
    boxes.erase(17);
    compare(index);
}

TEST_F(GeomSpatialIndex, EmptyAndInfiniteBoxes)
{
    SpatialIndex index;
    const double inf = Box3d::kInfinite;
    index.set(1, {});
    index.set(2, {{-inf, 0, 0}, {inf, 0, 0}});
    index.set(3, {{5, 5, 0}, {6, 6, 0}});
    EXPECT_EQ(index.size(), 3u);
    EXPECT_EQ(index.touching({{-inf, -inf, -inf}, {inf, inf, inf}}).size(), 2u);
    EXPECT_EQ(index.touching({{1e8, -1, -1}, {1e8 + 1, 1, 1}}), std::vector<Id>{2});
    EXPECT_EQ(index.alongRay({5.5, 5.5, -10}, {0, 0, 1}), std::vector<Id>{3});
    EXPECT_TRUE(index.alongRay({5.5, 5.5, 10}, {0, 0, 1}).empty());
    index.set(2, {});
    EXPECT_EQ(index.nearest({0, 0, 0}, 9).size(), 1u);
    EXPECT_TRUE(index.erase(1));
    EXPECT_FALSE(index.boxOf(1));
}

// Whatever the way there, the tree holds what it says of itself. Boxes of all sizes, many alike, some far from the origin.
TEST_F(GeomSpatialIndex, StaysSoundUnderAnyChanges)
{
    for (const double far : {0.0, 1e7, 1e300}) {
        boxes.clear();
        std::vector<SpatialIndex::Entry> entries;
        const auto anyBox = [&] {
            const double size = std::pow(10.0, number(-4, 2));
            const VcGePoint3d at(far + std::floor(number(-50, 50)), std::floor(number(-50, 50)), 0);
            return Box3d{at, at + VcGeVector3d(size, number(0, 1) < 0.5 ? 0 : size, 0)};
        };
        for (Id id = 0; id < 300; ++id)
            entries.emplace_back(id, boxes[id] = anyBox());
        SpatialIndex index(entries);
        for (int change = 0; change < 4000; ++change) {
            const Id id = Id(number(0, 600));
            // Whole regions come and go, so that nodes fill, split and empty.
            if (number(0, 1) < (change / 1000 % 2 ? 0.8 : 0.2)) {
                EXPECT_EQ(index.erase(id), boxes.erase(id) == 1);
            } else {
                index.set(id, boxes[id] = anyBox());
            }
            if (change % 100 == 0) {
                ASSERT_EQ(index.fault(), nullptr) << "after change " << change;
            }
        }
        ASSERT_EQ(index.size(), boxes.size());
        const Box3d window{{far - 10, -10, -1}, {far + 10, 10, 1}};
        EXPECT_EQ(sorted(index.touching(window)), plain([&](const Box3d& b) { return b.touches(window); }));
    }
}

// What a chain passes is found at whatever height it stands; a box that it only touches as well.
TEST_F(GeomSpatialIndex, FindsWhatLiesBelow)
{
    for (Id id = 0; id < 500; ++id)
        boxes[id] = box();
    SpatialIndex index(std::vector<SpatialIndex::Entry>(boxes.begin(), boxes.end()));
    for (int i = 0; i < 60; ++i) {
        const VcGePoint3d p = point(), q = i % 3 == 0 ? p : i % 3 == 1 ? VcGePoint3d(p.x, point().y, 0) : point();
        std::vector<SpatialIndex::Found> found;
        index.addBelow(p, q, found);
        std::vector<Id> ids;
        for (const auto& [id, at] : found)
            ids.push_back(id);
        const auto isPassed = [&](Box3d b) {
            if (p.x == q.x)
                return b.min.x <= p.x && p.x <= b.max.x && b.min.y <= std::max(p.y, q.y) &&
                       std::min(p.y, q.y) <= b.max.y;
            b.min.z = p.z - 1;
            b.max.z = p.z + 1;
            return meets(b, p, VcGeVector3d(q.x - p.x, q.y - p.y, 0), 1);
        };
        EXPECT_EQ(sorted(ids), plain(isPassed));
    }
}

TEST_F(GeomSpatialIndex, NearestByTheCallersMeasure)
{
    // A ring around the point has a box that holds it, yet stands off further than its neighbour.
    SpatialIndex index;
    index.set(1, {{-10, -10, 0}, {10, 10, 0}});
    index.set(2, {{3, 0, 0}, {3, 0, 0}});
    const auto found = index.nearest({0, 0, 0}, 1, [](Id id) { return id == 1 ? 10.0 : 3.0; });
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].id, 2u);
}

// A rectangle that were a hair too small would lose what stands at its very edge.
TEST_F(GeomSpatialIndex, RectanglesOfFloatsHoldTheirBoxes)
{
    for (const double number : {0.0, 1e-300, 1e-45, 1.3e-39, 0.1, 1.0 / 3, 1234567.0, 16777217.0, 3.4028236e38, 1e300})
        for (const double at : {number, -number}) {
            const BoxTree::Rectangle r = BoxTree::outward({{at, at, 0}, {at, at, 0}});
            EXPECT_TRUE(double(r.left) <= at && double(r.bottom) <= at) << at;
            EXPECT_TRUE(double(r.right) >= at && double(r.top) >= at) << at;
            EXPECT_TRUE(number > 1e38 || double(r.right) - double(r.left) <= number * 1e-6 + 1e-37) << at;
        }
}
