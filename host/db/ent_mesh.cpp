// Subdivision meshes.
#include "host/db/ent_util.h"
#include "sdk/vcdb_faces.h"

#include <algorithm>

VCDB_DEFINE(VcDbSubDMesh, VcDbEntity, "MESH")

namespace {

// Calls each with the corners of one face after the other; stops at a count that runs past the end.
template <class Each>
void forEachFace(const std::vector<std::int32_t>& faces, Each&& each)
{
    for (std::size_t at = 0; at < faces.size();) {
        const std::int32_t corners = faces[at];
        if (corners < 0 || std::size_t(corners) > faces.size() - at - 1)
            return;
        each(faces.data() + at + 1, std::size_t(corners));
        at += std::size_t(corners) + 1;
    }
}

}

int VcDbSubDMesh::numOfFaces() const
{
    int count = 0;
    forEachFace(m_faces, [&](const std::int32_t*, std::size_t) { ++count; });
    return count;
}

Vcad::ErrorStatus VcDbSubDMesh::transformBy(const VcGeMatrix3d& m)
{
    if (!planeMove(m, VcGeVector3d::zAxis()))
        return Vcad::eInvalidInput;
    assertWriteEnabled();
    for (VcGePoint3d& p : m_vertices)
        p = m * p;
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbSubDMesh::getGeomExtents(VcDbExtents& extents) const
{
    extents = VcDbExtents();
    for (const VcGePoint3d& p : m_vertices)
        extents.addPoint(p);
    return extentsStatus(extents);
}

Vcad::ErrorStatus VcDbSubDMesh::explode(std::vector<VcDbEntity*>& pieces) const
{
    const auto isVertex = [this](std::int32_t i) { return i >= 0 && std::size_t(i) < m_vertices.size(); };
    forEachFace(m_faces, [&](const std::int32_t* corner, std::size_t n) {
        if (n < 3 || !std::all_of(corner, corner + n, isVertex))
            return;
        const auto at = [&](std::size_t i) { return m_vertices[std::size_t(corner[i])]; };
        for (std::size_t i = 1; i + 1 < n; i += 2) {
            auto face = std::make_unique<VcDbFace>(at(0), at(i), at(i + 1), at(std::min(i + 2, n - 1)));
            if (i > 1)
                face->makeEdgeInvisibleAt(0);
            if (i + 2 < n - 1)
                face->makeEdgeInvisibleAt(3);
            pieces.push_back(pieceOf(*this, std::move(face)));
        }
    });
    return Vcad::eOk;
}

// Counts and lists follow each other under the same few codes, so order alone tells them apart. A list whose count is
// wrong ends where its groups end. Properties of single vertices, edges and faces stand behind them and are no fields.
void VcDbSubDMesh::fields(FieldVisitor& v)
{
    VcDbEntity::fields(v);
    v.subclass("AcDbSubDMesh");
    v.number(71, m_version);
    v.number(72, m_blendCrease);
    v.number(91, m_level);

    OrderedFields inOrder(v);
    const auto list = [&v](int countCode, int code, auto& items, auto&& each) {
        std::int64_t left = v.count(countCode, items.size());
        if (!v.isReading()) {
            for (auto& item : items)
                each(item);
            return;
        }
        items.clear();
        for (; left > 0 && v.peek() == code; --left)
            each(items.emplace_back());
        items.shrink_to_fit();
    };
    list(92, 10, m_vertices, [&](VcGePoint3d& p) { v.point(10, p); });
    list(93, 90, m_faces, [&](std::int32_t& i) { v.number(90, i); });
    list(94, 90, m_edges, [&](Edge& e) {
        v.number(90, e.from);
        v.number(90, e.to);
    });
    list(95, 140, m_creases, [&](double& crease) { v.real(140, crease); });
}
