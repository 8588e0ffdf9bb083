// A tree of boxes in the plan, for a million of them as for ten: what SpatialIndex looks things up in.
//
// Nodes are wide and stand in one array. A node has the rectangles of its children side by side, as floats rounded
// outward, so that one look at a few cache lines tells which of them to follow; the exact boxes of a leaf's members stand
// apart, in the leaf's order, and are read only for members whose rectangle is met.
//
// Invariants: all leaves stand at the same height. The rectangle of a node, as its parent has it, is the one around its
// children's. A free place has a rectangle that nothing meets. Every member is in one leaf, and m_places says where.
// No node but the root is empty.
#pragma once

#include "host/base/api.h"
#include "host/geom/box.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace vk::geom {

class VKHOST_API BoxTree {
public:
    using Id = std::uint32_t;  // memory goes with the largest
    using Entry = std::pair<Id, Box3d>;
    static constexpr unsigned kWidth = 16;

    struct Rectangle {
        float left, bottom, right, top;
    };
    static Rectangle outward(const Box3d& box);

    struct alignas(64) Node {
        float left[kWidth], bottom[kWidth], right[kWidth], top[kWidth];
        std::uint32_t child[kWidth];  // ids in a leaf, nodes above
        // Children that touch the rectangle, a bit for each.
        unsigned touching(const Rectangle& r) const;
        Rectangle rectangle(unsigned place) const { return {left[place], bottom[place], right[place], top[place]}; }
    };

    BoxTree() = default;
    // Much faster than one by one. Each id once; boxes must be finite.
    explicit BoxTree(const std::vector<Entry>& entries);

    void insert(Id id, const Box3d& box);  // of an id that is not there
    void erase(Id id);                     // of one that is
    bool has(Id id) const { return id < m_places.size() && m_places[id] != kNowhere; }
    const Box3d& boxOf(Id id) const { return m_exact[m_places[id]]; }
    bool empty() const { return m_root == kNowhere; }
    Rectangle around() const { return m_root == kNowhere ? Rectangle{} : around(m_root); }

    // Goes down to the leaves through the children that meets(node) names by their bits, and gives take(id, box) those of
    // the leaves. While few nodes are met, it goes down level by level: those of a level are waited for together. The
    // boxes are on their way when they are given; who looks at them later does not wait.
    template <class Meets, class Take>
    void search(const Meets& meets, const Take& take) const
    {
        if (m_root == kNowhere)
            return;
        std::uint32_t open[kOpen] = {m_root}, opening[kOpen];
        std::size_t count = 1, coming = 0;
        unsigned height = m_height;
        for (; height > 0; --height, coming = 0) {
            for (std::size_t i = 0; i < count; ++i) {
                if (coming + kWidth > kOpen) {
                    searchEach({open + i, count - i}, height, meets, take);
                    break;
                }
                const Node& node = m_nodes[open[i]];
                for (unsigned met = meets(node); met; met &= met - 1)
                    fetch(opening[coming++] = node.child[std::countr_zero(met)]);
            }
            std::copy_n(opening, coming, open);
            count = coming;
        }
        searchEach({open, count}, 0, meets, take);
    }

    // For searches in an order of their own.
    std::uint32_t root() const { return m_root; }
    unsigned height() const { return m_height; }  // of the root; leaves stand at 0
    const Node& node(std::uint32_t at) const { return m_nodes[at]; }
    unsigned childCount(std::uint32_t at) const { return m_links[at].count; }

    // Empty where all invariants hold, else the one that does not.
    const char* fault() const;

private:
    static constexpr std::uint32_t kNowhere = ~0u;
    static constexpr std::size_t kOpen = 64;  // nodes that a search asks for at once; a small part of the nearest cache
    struct Link {
        std::uint32_t parent = kNowhere;
        std::uint16_t count = 0, height = 0;
    };

    template <class Meets, class Take>
    void searchEach(std::span<const std::uint32_t> nodes, unsigned height, const Meets& meets, const Take& take) const
    {
        for (const std::uint32_t at : nodes)
            searchNode(at, height, meets, take);
    }
    template <class Meets, class Take>
    void searchNode(std::uint32_t at, unsigned height, const Meets& meets, const Take& take) const
    {
        const Node& node = m_nodes[at];
        const unsigned met = meets(node);
        if (height == 0) {
            for (unsigned rest = met; rest; rest &= rest - 1) {
                const unsigned place = unsigned(std::countr_zero(rest));
                const Box3d& box = m_exact[std::size_t(at) * kWidth + place];
                __builtin_prefetch(&box);
                __builtin_prefetch(&box.max.z);
                take(node.child[place], box);
            }
            return;
        }
        for (unsigned rest = met; rest; rest &= rest - 1)
            fetch(node.child[std::countr_zero(rest)]);
        for (unsigned rest = met; rest; rest &= rest - 1)
            searchNode(node.child[std::countr_zero(rest)], height - 1, meets, take);
    }
    // Asks for the memory of a node ahead of its use, since all nodes that are met are waited for at once.
    void fetch(std::uint32_t at) const
    {
        const char* start = reinterpret_cast<const char*>(&m_nodes[at]);
        for (std::size_t line = 0; line < sizeof(Node); line += 64)
            __builtin_prefetch(start + line);
    }

    std::uint32_t newNode(unsigned height);
    void packLeaves(const std::vector<Entry>& entries, const std::vector<std::uint64_t>& order);
    void packMember(const Rectangle& r, const Entry& entry);
    void packAbove(std::uint32_t first, std::uint32_t last);
    Rectangle around(std::uint32_t at) const;
    std::uint32_t leafFor(const Rectangle& r) const;
    void put(std::uint32_t at, const Rectangle& r, std::uint32_t child);
    void takeOut(std::uint32_t at, unsigned place);
    void moveUpperHalf(std::uint32_t from, std::uint32_t to);
    void split(std::uint32_t at);
    void refit(std::uint32_t at);
    void settle(std::uint32_t at, unsigned place);
    unsigned placeInParent(std::uint32_t at) const;
    void release(std::uint32_t at);

    std::vector<Node> m_nodes;
    std::vector<Link> m_links;            // of the nodes
    std::vector<Box3d> m_exact;           // of the members of leaves; the width of a node for each
    std::vector<std::uint32_t> m_places;  // by id, into m_exact
    std::vector<std::uint32_t> m_free;    // nodes
    std::uint32_t m_root = kNowhere;
    unsigned m_height = 0;
};

}  // namespace vk::geom
