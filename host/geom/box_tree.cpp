#include "host/geom/box_tree.h"

#include <array>
#include <cfloat>
#include <cmath>
#include <numeric>
#include <span>

#if defined(__linux__)
#include <sys/mman.h>
#endif
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace vk::geom {

namespace {

using Rectangle = BoxTree::Rectangle;

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr Rectangle kNone{kInfinity, kInfinity, -kInfinity, -kInfinity};
constexpr float kNotANumber = std::numeric_limits<float>::quiet_NaN();
constexpr Rectangle kFree{kNotANumber, kNotANumber, kNotANumber,
                          kNotANumber};  // not even a search of everything meets it

// The next float down. Around zero all of them would do, and the smallest normal one costs no more than others.
float justBelow(float f)
{
    if (std::fabs(f) < FLT_MIN)
        return -FLT_MIN;
    const auto bits = std::bit_cast<std::int32_t>(f);
    return std::bit_cast<float>(f > 0 ? bits - 1 : bits + 1);
}

float floatBelow(double v)
{
    if (!(std::fabs(v) <= FLT_MAX))
        return v > 0 ? FLT_MAX : -kInfinity;
    const float f = float(v);
    return double(f) <= v ? f : justBelow(f);
}

float floatAbove(double v) { return -floatBelow(-v); }

[[gnu::always_inline]] inline Rectangle both(const Rectangle& a, const Rectangle& b)
{
    return {std::min(a.left, b.left), std::min(a.bottom, b.bottom), std::max(a.right, b.right), std::max(a.top, b.top)};
}

bool equal(const Rectangle& a, const Rectangle& b)
{
    return a.left == b.left && a.bottom == b.bottom && a.right == b.right && a.top == b.top;
}

double halfAround(const Rectangle& r) { return (double(r.right) - r.left) + (double(r.top) - r.bottom); }

void setRectangle(BoxTree::Node& node, unsigned place, const Rectangle& r)
{
    node.left[place] = r.left;
    node.bottom[place] = r.bottom;
    node.right[place] = r.right;
    node.top[place] = r.top;
}

// The order in which neighbours come one after the other

constexpr unsigned kSideBits = 14;  // even

// Steps along a Hilbert curve through a square of cells, two bits of each coordinate at a time. In the lower half of a
// square the curve is turned over, in its right quarter the other way round: how it runs in a square are its two low bits.
struct HilbertStep {
    std::uint8_t place, manner;
};

constexpr HilbertStep hilbertStep(unsigned manner, unsigned x, unsigned y)
{
    unsigned place = 0;
    for (unsigned bit = 2; bit-- > 0;) {
        const unsigned turned = manner & 1, reversed = manner >> 1, a = x >> bit & 1, b = y >> bit & 1;
        const unsigned right = (turned ? b : a) ^ reversed, up = (turned ? a : b) ^ reversed;
        place = place << 2 | ((3 * right) ^ up);
        manner ^= up ? 0 : 1 | right << 1;
    }
    return {std::uint8_t(place), std::uint8_t(manner)};
}

constexpr auto kHilbertSteps = [] {
    std::array<HilbertStep, 64> steps{};
    for (unsigned i = 0; i < steps.size(); ++i)
        steps[i] = hilbertStep(i >> 4, i >> 2 & 3, i & 3);
    return steps;
}();

std::uint32_t alongHilbert(std::uint32_t x, std::uint32_t y)
{
    std::uint32_t place = 0;
    unsigned manner = 0;
    for (unsigned bit = kSideBits; bit > 0;) {
        bit -= 2;
        const HilbertStep step = kHilbertSteps[manner << 4 | (x >> bit & 3) << 2 | (y >> bit & 3)];
        place = place << 4 | step.place;
        manner = step.manner;
    }
    return place;
}

// The place of a box on the curve, by its centre.
class Ordering {
public:
    explicit Ordering(const std::vector<BoxTree::Entry>& entries)
    {
        for (const auto& [id, box] : entries)
            m_all.add(box);
        m_scaleX = cellsPerUnit(m_all.max.x - m_all.min.x);
        m_scaleY = cellsPerUnit(m_all.max.y - m_all.min.y);
    }
    std::uint32_t operator()(const Box3d& box) const
    {
        const VcGePoint3d center = box.center();
        return alongHilbert(std::uint32_t((center.x - m_all.min.x) * m_scaleX),
                            std::uint32_t((center.y - m_all.min.y) * m_scaleY));
    }
    // The distance at which so many things would stand on a grid.
    static double spacing(const Rectangle& around, std::size_t count)
    {
        return halfAround(around) / 2 / std::sqrt(double(count));
    }

private:
    static double cellsPerUnit(double side)
    {
        const double cells = double((1u << kSideBits) - 1) / side;
        return std::isfinite(cells) ? cells : 0;
    }
    Box3d m_all;
    double m_scaleX, m_scaleY;
};

// By the upper half of each number, digit after digit.
void sortByUpperHalf(std::vector<std::uint64_t>& numbers)
{
    constexpr unsigned kBits = 11;
    std::vector<std::uint64_t> other(numbers.size());
    for (unsigned shift = 32; shift < 64; shift += kBits) {
        const auto digit = [shift](std::uint64_t n) { return (n >> shift) & ((1u << kBits) - 1); };
        std::array<std::uint32_t, (1u << kBits) + 1> starts{};
        for (const std::uint64_t n : numbers)
            ++starts[digit(n) + 1];
        std::partial_sum(starts.begin(), starts.end(), starts.begin());
        for (const std::uint64_t n : numbers)
            other[starts[digit(n)]++] = n;
        numbers.swap(other);
    }
}

// A search comes to a few places in tens of megabytes, and with small pages each costs a walk through the page table.
void askForLargePages([[maybe_unused]] void* start, [[maybe_unused]] std::size_t size)
{
#if defined(MADV_HUGEPAGE)
    constexpr std::uintptr_t kPage = std::uintptr_t(2) << 20;
    const std::uintptr_t first = (reinterpret_cast<std::uintptr_t>(start) + kPage - 1) / kPage * kPage;
    const std::uintptr_t last = (reinterpret_cast<std::uintptr_t>(start) + size) / kPage * kPage;
    if (first < last)
        madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);  // it works without as well
#endif
}

// Indices of the entries in the lower halves.
std::vector<std::uint64_t> orderOf(const std::vector<BoxTree::Entry>& entries)
{
    const Ordering placeOf(entries);
    std::vector<std::uint64_t> order(entries.size());
    for (std::size_t i = 0; i < entries.size(); ++i)
        order[i] = std::uint64_t(placeOf(entries[i].second)) << 32 | i;
    sortByUpperHalf(order);
    return order;
}

// Members of one node above the leaves, divided among its leaves. One wide text among small marks would make its leaf as
// wide as itself, and every search beside it would come by for nothing: a division goes by place, or parts what lies
// from what stands, whichever leaves the least for searches to come by.
class Division {
public:
    struct Member {
        Rectangle r;
        std::uint32_t entry;
    };
    explicit Division(std::span<Member> members) : m_reach(Ordering::spacing(around(members), members.size()))
    {
        divide(members);
    }

private:
    // As types of their own, so that each search through the members is built for its key.
    struct Across {
        double operator()(const Rectangle& r) const { return double(r.left) + r.right; }
    };
    struct Up {
        double operator()(const Rectangle& r) const { return double(r.bottom) + r.top; }
    };
    struct Lying {
        double operator()(const Rectangle& r) const
        {
            const double width = double(r.right) - r.left, height = double(r.top) - r.bottom;
            return width == height ? 0 : width - height;  // both may be infinite
        }
    };

    static Rectangle around(std::span<const Member> members)
    {
        Rectangle all = kNone;
        for (const Member& m : members)
            all = both(all, m.r);
        return all;
    }
    // What a search of some reach has to do with what stands in the rectangle.
    double cost(const Rectangle& r, std::size_t count) const
    {
        return count ? (r.right - r.left + m_reach) * (r.top - r.bottom + m_reach) * double(count) : 0;
    }
    template <class Key>
    double costAboutMean(std::span<const Member> members, Key key) const
    {
        double sum = 0;
        for (const Member& m : members)
            sum += key(m.r);
        const double mean = sum / double(members.size());
        Rectangle sides[2] = {kNone, kNone};
        std::size_t counts[2] = {};
        for (const Member& m : members) {
            const bool beyond = key(m.r) > mean;
            sides[beyond] = both(sides[beyond], m.r);
            ++counts[beyond];
        }
        return cost(sides[0], counts[0]) + cost(sides[1], counts[1]);
    }
    template <class Key>
    static void part(std::span<Member> members, std::size_t cut, Key key)
    {
        std::nth_element(members.begin(), members.begin() + cut, members.end(),
                         [key](const Member& a, const Member& b) { return key(a.r) < key(b.r); });
    }
    void divide(std::span<Member> members)
    {
        if (members.size() <= BoxTree::kWidth)
            return;
        const std::size_t leaves = (members.size() + BoxTree::kWidth - 1) / BoxTree::kWidth;
        const std::size_t cut = leaves / 2 * BoxTree::kWidth;
        const double across = costAboutMean(members, Across()), up = costAboutMean(members, Up()),
                     lying = costAboutMean(members, Lying());
        if (across <= up && across <= lying)
            part(members, cut, Across());
        else if (up <= lying)
            part(members, cut, Up());
        else
            part(members, cut, Lying());
        divide(members.first(cut));
        divide(members.subspan(cut));
    }

    double m_reach;
};

}  // namespace

Rectangle BoxTree::outward(const Box3d& box)
{
    return {floatBelow(box.min.x), floatBelow(box.min.y), floatAbove(box.max.x), floatAbove(box.max.y)};
}

unsigned BoxTree::Node::touching(const Rectangle& r) const
{
    unsigned met = 0;
#if defined(__SSE2__)
    const __m128 low = _mm_set1_ps(r.left), down = _mm_set1_ps(r.bottom), high = _mm_set1_ps(r.right),
                 up = _mm_set1_ps(r.top);
    for (unsigned i = 0; i < kWidth; i += 4) {
        const __m128 across =
            _mm_and_ps(_mm_cmple_ps(_mm_load_ps(left + i), high), _mm_cmple_ps(low, _mm_load_ps(right + i)));
        const __m128 along =
            _mm_and_ps(_mm_cmple_ps(_mm_load_ps(bottom + i), up), _mm_cmple_ps(down, _mm_load_ps(top + i)));
        met |= unsigned(_mm_movemask_ps(_mm_and_ps(across, along))) << i;
    }
#else
    for (unsigned i = 0; i < kWidth; ++i)
        met |= unsigned(left[i] <= r.right && r.left <= right[i] && bottom[i] <= r.top && r.bottom <= top[i]) << i;
#endif
    return met;
}

// Building

BoxTree::BoxTree(const std::vector<Entry>& entries)
{
    if (entries.empty())
        return;
    const std::size_t leaves = (entries.size() + kWidth - 1) / kWidth;
    m_nodes.reserve(leaves + leaves / (kWidth - 1) + 8);
    m_links.reserve(m_nodes.capacity());
    m_exact.reserve(m_nodes.capacity() * kWidth);
    askForLargePages(m_nodes.data(), m_nodes.capacity() * sizeof(Node));
    askForLargePages(m_exact.data(), m_exact.capacity() * sizeof(Box3d));
    packLeaves(entries, orderOf(entries));
    for (std::uint32_t first = 0, last = std::uint32_t(m_nodes.size()); last - first > 1;) {
        packAbove(first, last);
        first = std::exchange(last, std::uint32_t(m_nodes.size()));
    }
    m_root = std::uint32_t(m_nodes.size() - 1);
    m_height = m_links[m_root].height;
}

void BoxTree::packLeaves(const std::vector<Entry>& entries, const std::vector<std::uint64_t>& order)
{
    constexpr std::size_t kRun = kWidth * kWidth, kAhead = 16;
    const auto entryAt = [&](std::size_t i) -> const Entry& { return entries[std::uint32_t(order[i])]; };
    Id largest = 0;
    for (const auto& [id, box] : entries)
        largest = std::max(largest, id);
    m_places.assign(std::size_t(largest) + 1, kNowhere);
    std::vector<Division::Member> run;
    for (std::size_t first = 0; first < order.size(); first += kRun) {
        run.clear();
        for (std::size_t i = first; i < std::min(first + kRun, order.size()); ++i) {
            __builtin_prefetch(&entryAt(std::min(i + kAhead, order.size() - 1)).second);
            run.push_back({outward(entryAt(i).second), std::uint32_t(order[i])});
        }
        Division{run};
        for (const auto& [r, entry] : run)
            packMember(r, entries[entry]);
    }
}

// Behind the last one packed.
void BoxTree::packMember(const Rectangle& r, const Entry& entry)
{
    if (m_nodes.empty() || m_links.back().count == kWidth)
        newNode(0);
    const std::uint32_t leaf = std::uint32_t(m_nodes.size() - 1);
    m_exact[std::size_t(leaf) * kWidth + m_links[leaf].count] = entry.second;
    put(leaf, r, entry.first);
    settle(leaf, m_links[leaf].count - 1u);
}

// Parents of a row of nodes, which stand in order.
void BoxTree::packAbove(std::uint32_t first, std::uint32_t last)
{
    std::uint32_t parent = kNowhere;
    for (std::uint32_t at = first; at < last; ++at) {
        if ((at - first) % kWidth == 0)
            parent = newNode(m_links[first].height + 1u);
        put(parent, around(at), at);
        m_links[at].parent = parent;
    }
}

std::uint32_t BoxTree::newNode(unsigned height)
{
    std::uint32_t at = std::uint32_t(m_nodes.size());
    if (m_free.empty()) {
        m_nodes.emplace_back();
        m_links.emplace_back();
        m_exact.resize(m_exact.size() + kWidth);
    } else {
        at = m_free.back();
        m_free.pop_back();
    }
    for (unsigned i = 0; i < kWidth; ++i)
        setRectangle(m_nodes[at], i, kFree);
    m_links[at] = {kNowhere, 0, std::uint16_t(height)};
    return at;
}

void BoxTree::release(std::uint32_t at) { m_free.push_back(at); }

// Changes

void BoxTree::put(std::uint32_t at, const Rectangle& r, std::uint32_t child)
{
    const unsigned place = m_links[at].count++;
    setRectangle(m_nodes[at], place, r);
    m_nodes[at].child[place] = child;
}

// What is known of a child by where it stands.
void BoxTree::settle(std::uint32_t at, unsigned place)
{
    const std::uint32_t child = m_nodes[at].child[place];
    if (m_links[at].height == 0)
        m_places[child] = at * kWidth + place;
    else
        m_links[child].parent = at;
}

// The last child takes the place.
void BoxTree::takeOut(std::uint32_t at, unsigned place)
{
    Node& node = m_nodes[at];
    const unsigned last = --m_links[at].count;
    if (place != last) {
        setRectangle(node, place, node.rectangle(last));
        node.child[place] = node.child[last];
        m_exact[std::size_t(at) * kWidth + place] = m_exact[std::size_t(at) * kWidth + last];
        settle(at, place);
    }
    setRectangle(node, last, kFree);
}

BoxTree::Rectangle BoxTree::around(std::uint32_t at) const
{
    Rectangle all = kNone;
    for (unsigned i = 0; i < m_links[at].count; ++i)
        all = both(all, m_nodes[at].rectangle(i));
    return all;
}

unsigned BoxTree::placeInParent(std::uint32_t at) const
{
    const Node& parent = m_nodes[m_links[at].parent];
    unsigned place = 0;
    while (parent.child[place] != at)
        ++place;
    return place;
}

// Tells the ancestors what the node's rectangle is now.
void BoxTree::refit(std::uint32_t at)
{
    for (; m_links[at].parent != kNowhere; at = m_links[at].parent) {
        Node& parent = m_nodes[m_links[at].parent];
        const unsigned place = placeInParent(at);
        const Rectangle now = around(at);
        if (equal(parent.rectangle(place), now))
            return;
        setRectangle(parent, place, now);
    }
}

// Down the children that grow least; of those that grow alike the smallest.
std::uint32_t BoxTree::leafFor(const Rectangle& r) const
{
    std::uint32_t at = m_root;
    for (unsigned height = m_height; height > 0; --height) {
        const Node& node = m_nodes[at];
        unsigned best = 0;
        std::pair<double, double> least{HUGE_VAL, HUGE_VAL};
        for (unsigned i = 0; i < m_links[at].count; ++i) {
            const Rectangle own = node.rectangle(i);
            const std::pair cost(halfAround(both(own, r)) - halfAround(own), halfAround(own));
            if (cost < least) {
                least = cost;
                best = i;
            }
        }
        at = node.child[best];
    }
    return at;
}

// Children that lie further along the side on which the centres are spread more go to the other node.
void BoxTree::moveUpperHalf(std::uint32_t from, std::uint32_t to)
{
    const Node before = m_nodes[from];
    const auto x = [&](unsigned i) { return double(before.left[i]) + before.right[i]; };
    const auto y = [&](unsigned i) { return double(before.bottom[i]) + before.top[i]; };
    std::array<unsigned, kWidth> order;
    std::iota(order.begin(), order.end(), 0u);
    const auto spreadOf = [&](auto along) {
        const auto [low, high] = std::minmax_element(order.begin(), order.end(),
                                                     [&](unsigned a, unsigned b) { return along(a) < along(b); });
        return along(*high) - along(*low);
    };
    const bool byX = spreadOf(x) >= spreadOf(y);
    std::nth_element(order.begin(), order.begin() + kWidth / 2, order.end(),
                     [&](unsigned a, unsigned b) { return byX ? x(a) < x(b) : y(a) < y(b); });
    std::sort(order.begin() + kWidth / 2, order.end(),
              std::greater<>());  // so that what is taken out moves none to come
    for (auto place = order.begin() + kWidth / 2; place != order.end(); ++place) {
        m_exact[std::size_t(to) * kWidth + m_links[to].count] = m_exact[std::size_t(from) * kWidth + *place];
        put(to, before.rectangle(*place), before.child[*place]);
        settle(to, m_links[to].count - 1u);
        takeOut(from, *place);
    }
}

// Makes room in a full node: half of its children go to a new one beside it.
void BoxTree::split(std::uint32_t at)
{
    if (at == m_root) {
        m_root = newNode(++m_height);
        put(m_root, around(at), at);
        m_links[at].parent = m_root;
    } else if (m_links[m_links[at].parent].count == kWidth) {
        split(m_links[at].parent);
    }
    const std::uint32_t beside = newNode(m_links[at].height);
    moveUpperHalf(at, beside);
    const std::uint32_t parent = m_links[at].parent;
    m_links[beside].parent = parent;
    put(parent, around(beside), beside);
    refit(at);
    refit(parent);
}

void BoxTree::insert(Id id, const Box3d& box)
{
    if (m_root == kNowhere) {
        m_root = newNode(0);
        m_height = 0;
    }
    if (m_places.size() <= id)
        m_places.resize(std::max<std::size_t>(std::size_t(id) + 1, m_places.size() * 3 / 2), kNowhere);
    const Rectangle r = outward(box);
    std::uint32_t leaf = leafFor(r);
    if (m_links[leaf].count == kWidth) {
        split(leaf);
        leaf = leafFor(r);
        if (m_links[leaf].count == kWidth)  // another one attracts it now
            return insert(id, box);
    }
    m_exact[std::size_t(leaf) * kWidth + m_links[leaf].count] = box;
    put(leaf, r, id);
    settle(leaf, m_links[leaf].count - 1u);
    refit(leaf);
}

void BoxTree::erase(Id id)
{
    std::uint32_t at = m_places[id] / kWidth;
    takeOut(at, m_places[id] % kWidth);
    m_places[id] = kNowhere;
    while (m_links[at].count == 0 && at != m_root) {
        const std::uint32_t parent = m_links[at].parent;
        takeOut(parent, placeInParent(at));
        release(at);
        at = parent;
    }
    if (m_links[m_root].count == 0)
        *this = {};
    else
        refit(at);
}

// Checking

const char* BoxTree::fault() const
{
    std::size_t members = 0;
    std::vector<std::uint32_t> open;
    if (m_root != kNowhere)
        open.push_back(m_root);
    while (!open.empty()) {
        const std::uint32_t at = open.back();
        open.pop_back();
        const Link& link = m_links[at];
        if (link.count == 0)
            return "an empty node";
        for (unsigned i = link.count; i < kWidth; ++i)
            if (!std::isnan(m_nodes[at].left[i]) || !std::isnan(m_nodes[at].right[i]))
                return "a free place that is met";
        for (unsigned i = 0; i < link.count; ++i) {
            const std::uint32_t child = m_nodes[at].child[i];
            if (link.height == 0) {
                ++members;
                if (!has(child) || m_places[child] != at * kWidth + i)
                    return "a member that is not known to be here";
                if (!equal(m_nodes[at].rectangle(i), outward(boxOf(child))))
                    return "a member's rectangle that is not its box's";
                continue;
            }
            if (m_links[child].parent != at || m_links[child].height + 1u != link.height)
                return "a child that is not under its parent";
            if (!equal(m_nodes[at].rectangle(i), around(child)))
                return "a node's rectangle that is not the one around its children";
            open.push_back(child);
        }
    }
    const auto known = m_places.size() - std::size_t(std::count(m_places.begin(), m_places.end(), kNowhere));
    return members == known ? nullptr : "a member that no leaf has";
}

}  // namespace vk::geom
