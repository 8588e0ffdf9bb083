#include "host/geom/spatial_index.h"

#include <boost/geometry.hpp>
#include <boost/geometry/geometries/box.hpp>
#include <boost/geometry/geometries/point.hpp>
#include <boost/geometry/geometries/segment.hpp>
#include <boost/geometry/index/rtree.hpp>
#include <boost/iterator/function_output_iterator.hpp>

#include <unordered_map>
#include <unordered_set>

namespace vk::geom {

namespace bg = boost::geometry;
namespace bgi = boost::geometry::index;

namespace {

using FlatPoint = bg::model::point<double, 2, bg::cs::cartesian>;
using FlatBox = bg::model::box<FlatPoint>;
using FlatSegment = bg::model::segment<FlatPoint>;

// What the tree holds: a whole box, of which it looks at X and Y.
struct Value
{
    FlatBox flat;
    double low, high;
    SpatialIndex::Id id;
    bool operator==(const Value& o) const { return id == o.id; }

    Box3d box() const
    {
        return {{flat.min_corner().get<0>(), flat.min_corner().get<1>(), low},
                {flat.max_corner().get<0>(), flat.max_corner().get<1>(), high}};
    }
};

struct FlatOf
{
    using result_type = const FlatBox&;
    result_type operator()(const Value& v) const { return v.flat; }
};

using RTree = bgi::rtree<Value, bgi::quadratic<16>, FlatOf, std::equal_to<Value>>;

FlatPoint flat(const VcGePoint3d& p)
{
    return {p.x, p.y};
}

FlatBox flat(const Box3d& b)
{
    return {flat(b.min), flat(b.max)};
}

Value valueOf(SpatialIndex::Id id, const Box3d& b)
{
    return {flat(b), b.min.z, b.max.z, id};
}

// Takes what a query finds until the visitor has had enough.
class Visiting
{
public:
    explicit Visiting(const SpatialIndex::Visitor& visitor) : m_visitor(visitor) {}
    bool operator()(SpatialIndex::Id id, const Box3d& box) { return m_goesOn = m_goesOn && m_visitor(id, box); }

private:
    const SpatialIndex::Visitor& m_visitor;
    bool m_goesOn = true;
};

double distanceToBox(const Box3d& b, const VcGePoint3d& p)
{
    const double dx = std::max({b.min.x - p.x, 0.0, p.x - b.max.x});
    const double dy = std::max({b.min.y - p.y, 0.0, p.y - b.max.y});
    const double dz = std::max({b.min.z - p.z, 0.0, p.z - b.max.z});
    return std::hypot(dx, dy, dz);
}

// The part of base + direction * t, from <= t <= to, that lies in the box.
struct Stretch
{
    double from, to;
    bool empty() const { return !(from <= to); }

    void clip(double base, double step, double low, double high)
    {
        if (step == 0) {
            if (base < low || base > high)
                to = -Box3d::kInfinite;
            return;
        }
        const double a = (low - base) / step, b = (high - base) / step;
        from = std::max(from, std::min(a, b));
        to = std::min(to, std::max(a, b));
    }
};

Stretch within(const Box3d& box, const VcGePoint3d& base, const VcGeVector3d& direction, double to)
{
    Stretch s{0, to};
    s.clip(base.x, direction.x, box.min.x, box.max.x);
    s.clip(base.y, direction.y, box.min.y, box.max.y);
    s.clip(base.z, direction.z, box.min.z, box.max.z);
    return s;
}

} // namespace

struct SpatialIndex::Tree
{
    RTree flatTree;
    std::unordered_map<Id, Box3d> boxes;
    std::unordered_set<Id> unbounded;

    bool isIndexed(const Box3d& box) const { return box.isFinite(); }

    void place(Id id, const Box3d& box)
    {
        if (isIndexed(box))
            flatTree.insert(valueOf(id, box));
        else if (!box.isEmpty())
            unbounded.insert(id);
    }

    void displace(Id id, const Box3d& box)
    {
        if (isIndexed(box))
            flatTree.remove(valueOf(id, box));
        else
            unbounded.erase(id);
    }

    // The boxes met by the stretch, each asked itself, so that rounding in the tree's own test adds none.
    std::vector<Id> along(const VcGePoint3d& base, const VcGeVector3d& direction, double to) const
    {
        std::vector<Id> found;
        const auto add = [&](Id id, const Box3d& box) {
            if (!within(box, base, direction, to).empty())
                found.push_back(id);
        };
        for (Id id : unbounded)
            add(id, boxes.at(id));
        Box3d bounds = extents();
        bounds.min.z = -Box3d::kInfinite;
        bounds.max.z = Box3d::kInfinite;
        const Stretch inside = within(bounds, base, direction, to);
        if (bounds.isEmpty() || inside.empty())
            return found;
        const auto addValue = [&](const Value& v) { add(v.id, v.box()); };
        const FlatPoint from = flat(base + direction * inside.from);
        const auto out = boost::make_function_output_iterator(addValue);
        if (direction.x == 0 && direction.y == 0)
            flatTree.query(bgi::intersects(from), out);
        else
            flatTree.query(bgi::intersects(FlatSegment(from, flat(base + direction * inside.to))), out);
        return found;
    }

    Box3d extents() const
    {
        if (flatTree.empty())
            return {};
        const FlatBox b = flatTree.bounds();
        return {{b.min_corner().get<0>(), b.min_corner().get<1>(), 0},
                {b.max_corner().get<0>(), b.max_corner().get<1>(), 0}};
    }
};

SpatialIndex::SpatialIndex() : m_tree(std::make_unique<Tree>()) {}
SpatialIndex::~SpatialIndex() = default;
SpatialIndex::SpatialIndex(SpatialIndex&&) noexcept = default;
SpatialIndex& SpatialIndex::operator=(SpatialIndex&&) noexcept = default;

SpatialIndex::SpatialIndex(const std::vector<Entry>& entries) : SpatialIndex()
{
    m_tree->boxes.reserve(entries.size());
    for (const auto& [id, box] : entries)
        m_tree->boxes[id] = box;
    std::vector<Value> values;
    values.reserve(m_tree->boxes.size());
    for (const auto& [id, box] : m_tree->boxes) {
        if (m_tree->isIndexed(box))
            values.push_back(valueOf(id, box));
        else if (!box.isEmpty())
            m_tree->unbounded.insert(id);
    }
    m_tree->flatTree = RTree(values);
}

void SpatialIndex::set(Id id, const Box3d& box)
{
    const auto [known, isNew] = m_tree->boxes.try_emplace(id, box);
    if (!isNew) {
        if (known->second == box)
            return;
        m_tree->displace(id, known->second);
        known->second = box;
    }
    m_tree->place(id, box);
}

bool SpatialIndex::erase(Id id)
{
    const auto known = m_tree->boxes.find(id);
    if (known == m_tree->boxes.end())
        return false;
    m_tree->displace(id, known->second);
    m_tree->boxes.erase(known);
    return true;
}

void SpatialIndex::clear()
{
    m_tree = std::make_unique<Tree>();
}

size_t SpatialIndex::size() const
{
    return m_tree->boxes.size();
}

std::optional<Box3d> SpatialIndex::boxOf(Id id) const
{
    const auto known = m_tree->boxes.find(id);
    return known == m_tree->boxes.end() ? std::nullopt : std::optional(known->second);
}

Box3d SpatialIndex::extents() const
{
    return m_tree->extents();
}

std::vector<SpatialIndex::Id> SpatialIndex::touching(const Box3d& box) const
{
    std::vector<Id> found;
    visit(box, [&](Id id, const Box3d&) {
        found.push_back(id);
        return true;
    });
    return found;
}

void SpatialIndex::visit(const Box3d& box, const Visitor& visitor) const
{
    if (box.isEmpty())
        return;
    const Tree& tree = *m_tree;
    Visiting visiting(visitor);
    for (Id id : tree.unbounded)
        if (const Box3d& known = tree.boxes.at(id); known.touches(box) && !visiting(id, known))
            return;
    tree.flatTree.query(bgi::intersects(flat(box)), boost::make_function_output_iterator([&](const Value& v) {
                            if (v.low <= box.max.z && box.min.z <= v.high)
                                visiting(v.id, v.box());
                        }));
}

void SpatialIndex::visitBelow(const VcGePoint3d& from, const VcGePoint3d& to, const Visitor& visitor) const
{
    const Tree& tree = *m_tree;
    Visiting visiting(visitor);
    for (Id id : tree.unbounded)
        if (!visiting(id, tree.boxes.at(id)))
            return;
    const auto out = boost::make_function_output_iterator([&](const Value& v) { visiting(v.id, v.box()); });
    if (from.x == to.x && from.y == to.y)
        tree.flatTree.query(bgi::intersects(flat(from)), out);
    else
        tree.flatTree.query(bgi::intersects(FlatSegment(flat(from), flat(to))), out);
}

std::vector<SpatialIndex::Id> SpatialIndex::alongSegment(const VcGePoint3d& from, const VcGePoint3d& to) const
{
    return m_tree->along(from, to - from, 1);
}

std::vector<SpatialIndex::Id> SpatialIndex::alongRay(const VcGePoint3d& base, const VcGeVector3d& direction) const
{
    return m_tree->along(base, direction, Box3d::kInfinite);
}

std::vector<SpatialIndex::Neighbour> SpatialIndex::nearest(const VcGePoint3d& to, size_t count,
                                                           const std::function<double(Id)>& measure) const
{
    const Tree& tree = *m_tree;
    std::vector<Neighbour> best;
    const auto closer = [](const Neighbour& a, const Neighbour& b) { return a.distance < b.distance; };
    const auto offer = [&](Id id) {
        const double distance = measure ? measure(id) : distanceToBox(tree.boxes.at(id), to);
        if (!std::isfinite(distance) || (best.size() == count && distance >= best.back().distance))
            return;
        const Neighbour n{id, distance};
        best.insert(std::upper_bound(best.begin(), best.end(), n, closer), n);
        if (best.size() > count)
            best.pop_back();
    };
    if (count == 0)
        return best;
    for (Id id : tree.unbounded)
        offer(id);
    // Comes in the order of flat distances, which true ones never fall below.
    const FlatPoint target = flat(to);
    if (tree.flatTree.empty())
        return best;
    for (auto it = tree.flatTree.qbegin(bgi::nearest(target, unsigned(tree.flatTree.size())));
         it != tree.flatTree.qend(); ++it) {
        if (best.size() == count && bg::distance(target, it->flat) > best.back().distance)
            break;
        offer(it->id);
    }
    return best;
}

} // namespace vk::geom
