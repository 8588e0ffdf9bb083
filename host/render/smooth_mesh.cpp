#include "host/render/smooth_mesh.h"

#include <algorithm>
#include <map>

namespace vk::render {

namespace {

constexpr std::size_t kMostFaces = 200'000;

using EdgeKey = std::pair<std::uint32_t, std::uint32_t>;

EdgeKey keyOf(std::uint32_t a, std::uint32_t b) { return a < b ? EdgeKey(a, b) : EdgeKey(b, a); }

// How many more levels edges stay sharp; negative for always.
using Creases = std::map<EdgeKey, double>;

FaceMesh cageOf(const VcDbSubDMesh& mesh)
{
    FaceMesh cage;
    cage.vertices = mesh.vertices();
    const auto& all = mesh.faceArray();
    for (std::size_t at = 0; at < all.size(); at += std::size_t(all[at]) + 1) {
        if (all[at] < 0 || std::size_t(all[at]) > all.size() - at - 1)
            break;
        std::vector<std::uint32_t> face;
        for (std::size_t i = 1; i <= std::size_t(all[at]); ++i)
            if (all[at + i] >= 0 && std::size_t(all[at + i]) < cage.vertices.size())
                face.push_back(std::uint32_t(all[at + i]));
        if (face.size() >= 2)
            cage.faces.push_back(std::move(face));
    }
    return cage;
}

Creases creasesOf(const VcDbSubDMesh& mesh)
{
    Creases creases;
    const std::size_t count = std::min(mesh.edges().size(), mesh.creases().size());
    for (std::size_t i = 0; i < count; ++i)
        if (mesh.creases()[i] != 0)
            creases[keyOf(std::uint32_t(mesh.edges()[i].from), std::uint32_t(mesh.edges()[i].to))] = mesh.creases()[i];
    return creases;
}

class Subdivision {
public:
    Subdivision(const FaceMesh& mesh, const Creases& creases)
        : m_mesh(mesh), m_creases(creases), m_corners(mesh.vertices.size())
    {
        for (const auto& face : mesh.faces)
            addFace(face);
        for (auto& [key, edge] : m_edges)
            placeEdge(key, edge);
    }

    FaceMesh mesh() const
    {
        FaceMesh finer;
        for (std::size_t i = 0; i < m_mesh.vertices.size(); ++i)
            finer.vertices.push_back(cornerPoint(i));
        std::map<EdgeKey, std::uint32_t> middles;
        for (const auto& [key, edge] : m_edges) {
            middles[key] = std::uint32_t(finer.vertices.size());
            finer.vertices.push_back(edge.point);
        }
        for (std::size_t f = 0; f < m_mesh.faces.size(); ++f) {
            const auto& face = m_mesh.faces[f];
            const auto centre = std::uint32_t(finer.vertices.size());
            finer.vertices.push_back(m_centres[f]);
            for (std::size_t i = 0; i < face.size(); ++i) {
                const std::uint32_t before = face[(i + face.size() - 1) % face.size()],
                                    after = face[(i + 1) % face.size()];
                finer.faces.push_back(
                    {face[i], middles.at(keyOf(face[i], after)), centre, middles.at(keyOf(before, face[i]))});
            }
        }
        return finer;
    }

    // The halves of an edge stay sharp for a level less.
    Creases creases() const
    {
        Creases finer;
        auto middle = std::uint32_t(m_mesh.vertices.size());
        for (const auto& [key, edge] : m_edges) {
            const double left = edge.crease < 0 ? edge.crease : std::max(edge.crease - 1, 0.0);
            if (left != 0)
                finer[keyOf(key.first, middle)] = finer[keyOf(key.second, middle)] = left;
            ++middle;
        }
        return finer;
    }

private:
    struct Edge {
        VcGeVector3d centres;  // the sum of those of its faces
        int faces = 0;
        double crease = 0;
        VcGePoint3d point;
    };
    struct Corner {
        VcGeVector3d centres, middles, sharpEnds;
        int faces = 0, edges = 0, sharp = 0;
    };

    void addFace(const std::vector<std::uint32_t>& face)
    {
        VcGeVector3d sum;
        for (const std::uint32_t v : face)
            sum += m_mesh.vertices[v].asVector();
        const VcGeVector3d centre = sum / double(face.size());
        m_centres.push_back(VcGePoint3d() + centre);
        for (std::size_t i = 0; i < face.size(); ++i) {
            Edge& edge = m_edges[keyOf(face[i], face[(i + 1) % face.size()])];
            edge.centres += centre;
            ++edge.faces;
            m_corners[face[i]].centres += centre;
            ++m_corners[face[i]].faces;
        }
    }

    // Rims are as sharp as creases.
    void placeEdge(const EdgeKey& key, Edge& edge)
    {
        const auto crease = m_creases.find(key);
        edge.crease = crease == m_creases.end() ? 0 : crease->second;
        const VcGeVector3d a = m_mesh.vertices[key.first].asVector(), b = m_mesh.vertices[key.second].asVector();
        const bool isSharp = edge.crease != 0 || edge.faces != 2;
        edge.point = VcGePoint3d() + (isSharp ? (a + b) / 2 : (a + b + edge.centres) / 4);
        for (const auto& [corner, other] : {std::pair(key.first, b), std::pair(key.second, a)}) {
            Corner& c = m_corners[corner];
            c.middles += (a + b) / 2;
            ++c.edges;
            if (isSharp) {
                c.sharpEnds += other;
                ++c.sharp;
            }
        }
    }

    VcGePoint3d cornerPoint(std::size_t i) const
    {
        const Corner& c = m_corners[i];
        const VcGeVector3d at = m_mesh.vertices[i].asVector();
        if (c.faces == 0 || c.sharp > 2)
            return m_mesh.vertices[i];
        if (c.sharp == 2)
            return VcGePoint3d() + (at * 6 + c.sharpEnds) / 8;
        const double n = c.faces;
        return VcGePoint3d() + (c.centres / n + c.middles * (2.0 / c.edges) + at * (n - 3)) / n;
    }

    const FaceMesh& m_mesh;
    const Creases& m_creases;
    std::vector<VcGePoint3d> m_centres;
    std::map<EdgeKey, Edge> m_edges;
    std::vector<Corner> m_corners;
};

}

FaceMesh smoothed(const VcDbSubDMesh& source)
{
    FaceMesh mesh = cageOf(source);
    Creases creases = creasesOf(source);
    std::size_t sides = 0;
    for (const auto& face : mesh.faces)
        sides += face.size();
    for (int level = 0; level < source.subdivisionLevel() && sides <= kMostFaces; ++level, sides *= 4) {
        const Subdivision finer(mesh, creases);
        creases = finer.creases();
        mesh = finer.mesh();
    }
    return mesh;
}

}  // namespace vk::render
