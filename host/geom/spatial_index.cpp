#include "host/geom/spatial_index.h"

#include <cmath>
#include <queue>

namespace vk::geom {

namespace {

double distanceToBox(const Box3d& b, const VcGePoint3d& p)
{
    const double dx = std::max({b.min.x - p.x, 0.0, p.x - b.max.x});
    const double dy = std::max({b.min.y - p.y, 0.0, p.y - b.max.y});
    const double dz = std::max({b.min.z - p.z, 0.0, p.z - b.max.z});
    return std::hypot(dx, dy, dz);
}

// The part of base + direction * t, from <= t <= to, that lies in the box.
struct Stretch {
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

template <class Plan>
Stretch withinPlan(const Plan& r, const VcGePoint3d& base, const VcGeVector3d& direction, double to)
{
    Stretch s{0, to};
    s.clip(base.x, direction.x, r.left, r.right);
    s.clip(base.y, direction.y, r.bottom, r.top);
    return s;
}

Stretch within(const Box3d& box, const VcGePoint3d& base, const VcGeVector3d& direction, double to)
{
    Stretch s{0, to};
    s.clip(base.x, direction.x, box.min.x, box.max.x);
    s.clip(base.y, direction.y, box.min.y, box.max.y);
    s.clip(base.z, direction.z, box.min.z, box.max.z);
    return s;
}

// Children that a line passes. A larger rectangle never gives a shorter stretch, rounding included, so that no child is
// missed whose members are met.
class PassedBy {
public:
    PassedBy(const VcGePoint3d& base, const VcGeVector3d& direction, double to, double slack)
        : m_base(base), m_direction(direction), m_to(to), m_slack(slack)
    {
        Box3d around;
        for (const double t : {-slack, to + slack})
            around.add(VcGePoint3d(reached(base.x, direction.x, t), reached(base.y, direction.y, t), 0));
        m_around = BoxTree::outward(around);
    }
    unsigned operator()(const BoxTree::Node& node) const
    {
        unsigned passed = 0;
        for (unsigned rest = node.touching(m_around); rest; rest &= rest - 1) {
            const unsigned place = unsigned(std::countr_zero(rest));
            const Stretch s = withinPlan(node.rectangle(place), m_base, m_direction, m_to);
            passed |= unsigned(s.from <= s.to + m_slack) << place;
        }
        return passed;
    }

private:
    static double reached(double base, double step, double t) { return step == 0 ? base : base + step * t; }
    VcGePoint3d m_base;
    VcGeVector3d m_direction;
    double m_to, m_slack;
    BoxTree::Rectangle m_around;
};

double flatDistance(const BoxTree::Rectangle& r, const VcGePoint3d& p)
{
    return std::hypot(std::max({r.left - p.x, 0.0, p.x - r.right}), std::max({r.bottom - p.y, 0.0, p.y - r.top}));
}

}  // namespace

SpatialIndex::SpatialIndex(const std::vector<Entry>& entries) : m_size(entries.size())
{
    const auto isFinite = [](const Entry& e) { return e.second.isFinite(); };
    if (std::all_of(entries.begin(), entries.end(), isFinite)) {
        m_tree = BoxTree(entries);
        return;
    }
    std::vector<Entry> finite;
    for (const Entry& entry : entries)
        isFinite(entry) ? finite.push_back(entry) : void(m_aside.insert(entry));
    m_tree = BoxTree(finite);
}

void SpatialIndex::place(Id id, const Box3d& box)
{
    if (box.isFinite())
        m_tree.insert(id, box);
    else
        m_aside.emplace(id, box);
}

void SpatialIndex::set(Id id, const Box3d& box)
{
    if (const auto known = boxOf(id)) {
        if (*known == box)
            return;
        erase(id);
    }
    place(id, box);
    ++m_size;
}

bool SpatialIndex::erase(Id id)
{
    const bool inTree = m_tree.has(id);
    if (inTree)
        m_tree.erase(id);
    if (!inTree && m_aside.erase(id) == 0)
        return false;
    --m_size;
    return true;
}

std::optional<Box3d> SpatialIndex::boxOf(Id id) const
{
    if (m_tree.has(id))
        return m_tree.boxOf(id);
    const auto aside = m_aside.find(id);
    return aside == m_aside.end() ? std::nullopt : std::optional(aside->second);
}

Box3d SpatialIndex::extents() const
{
    if (m_tree.empty())
        return {};
    const BoxTree::Rectangle r = m_tree.around();
    return {{r.left, r.bottom, 0}, {r.right, r.top, 0}};
}

std::vector<SpatialIndex::Id> SpatialIndex::touching(const Box3d& box) const
{
    std::vector<Found> found;
    addTouching(box, found);
    std::vector<Id> ids;
    ids.reserve(found.size());
    for (const Found& one : found)
        ids.push_back(one.id);
    return ids;
}

void SpatialIndex::addTouching(const Box3d& box, std::vector<Found>& found) const
{
    const auto before = found.size();
    addNear(box, found);
    found.erase(std::remove_if(found.begin() + std::ptrdiff_t(before), found.end(),
                               [&box](const Found& f) { return !f.box->touches(box); }),
                found.end());
}

void SpatialIndex::addNear(const Box3d& box, std::vector<Found>& found) const
{
    if (box.isEmpty())
        return;
    const auto take = [&](Id id, const Box3d& known) { found.push_back({id, &known}); };
    for (const auto& [id, known] : m_aside)
        if (!known.isEmpty())
            take(id, known);
    const BoxTree::Rectangle r = BoxTree::outward(box);
    m_tree.search([&r](const BoxTree::Node& node) { return node.touching(r); }, take);
}

void SpatialIndex::addBelow(const VcGePoint3d& from, const VcGePoint3d& to, std::vector<Found>& found) const
{
    constexpr double kSlack = 1e-12;  // of the way
    const auto take = [&](Id id, const Box3d& known) { found.push_back({id, &known}); };
    for (const auto& [id, known] : m_aside)
        if (!known.isEmpty())
            take(id, known);
    m_tree.search(PassedBy(from, to - from, 1, kSlack), take);
}

// The boxes met by the stretch, each asked itself, so that rounding in the tree's own test adds none.
std::vector<SpatialIndex::Id> SpatialIndex::along(const VcGePoint3d& base, const VcGeVector3d& direction,
                                                  double to) const
{
    std::vector<Id> found;
    const auto take = [&](Id id, const Box3d& box) {
        if (!box.isEmpty() && !within(box, base, direction, to).empty())
            found.push_back(id);
    };
    for (const auto& [id, box] : m_aside)
        take(id, box);
    m_tree.search(PassedBy(base, direction, to, 0), take);
    return found;
}

std::vector<SpatialIndex::Id> SpatialIndex::alongSegment(const VcGePoint3d& from, const VcGePoint3d& to) const
{
    return along(from, to - from, 1);
}

std::vector<SpatialIndex::Id> SpatialIndex::alongRay(const VcGePoint3d& base, const VcGeVector3d& direction) const
{
    return along(base, direction, Box3d::kInfinite);
}

std::vector<SpatialIndex::Neighbour> SpatialIndex::nearest(const VcGePoint3d& to, size_t count,
                                                           const std::function<double(Id)>& measure) const
{
    std::vector<Neighbour> best;
    const auto closer = [](const Neighbour& a, const Neighbour& b) { return a.distance < b.distance; };
    const auto offer = [&](Id id, const Box3d& box) {
        const double distance = measure ? measure(id) : distanceToBox(box, to);
        if (!std::isfinite(distance) || (best.size() == count && distance >= best.back().distance))
            return;
        const Neighbour n{id, distance};
        best.insert(std::upper_bound(best.begin(), best.end(), n, closer), n);
        if (best.size() > count)
            best.pop_back();
    };
    if (count == 0)
        return best;
    for (const auto& [id, box] : m_aside)
        offer(id, box);
    if (m_tree.empty())
        return best;
    // Nodes come in the order of flat distances, which true ones never fall below.
    struct Open {
        double distance;
        std::uint32_t node;
        unsigned height;
        bool operator<(const Open& o) const { return distance > o.distance; }
    };
    std::priority_queue<Open> open;
    open.push({0, m_tree.root(), m_tree.height()});
    while (!open.empty() && !(best.size() == count && open.top().distance > best.back().distance)) {
        const Open next = open.top();
        open.pop();
        const BoxTree::Node& node = m_tree.node(next.node);
        for (unsigned i = 0; i < m_tree.childCount(next.node); ++i) {
            if (next.height > 0)
                open.push({flatDistance(node.rectangle(i), to), node.child[i], next.height - 1});
            else
                offer(node.child[i], m_tree.boxOf(node.child[i]));
        }
    }
    return best;
}

}  // namespace vk::geom
