// Multilines, embedded objects of other programs, tables.
#pragma once

#include "vcdb_insert.h"

class VK_SDK VcDbMline : public VcDbEntity {
    VCDB_DECLARE(VcDbMline)
public:
    enum MlineJustification : int { kTop = 0, kZero = 1, kBottom = 2 };

    int numVertices() const { return int(m_vertices.size()); }
    VcGePoint3d vertexAt(int index) const;  // the origin for an index out of range
    MlineJustification justification() const { return MlineJustification(m_justification); }
    Vcad::ErrorStatus setJustification(MlineJustification justification);
    double scale() const { return m_scale; }
    Vcad::ErrorStatus setScale(double scale);
    bool closedMline() const { return (m_flags & 2) != 0; }
    bool hidesStartCap() const { return (m_flags & 4) != 0; }
    bool hidesEndCap() const { return (m_flags & 8) != 0; }
    VcDbObjectId style() const { return m_style; }
    VcGeVector3d normal() const { return m_normal; }

    // Moves, turns, mirrors and even scales.
    Vcad::ErrorStatus transformBy(const VcGeMatrix3d& m) override;
    // Of the line that the vertices make, not of the elements beside it.
    Vcad::ErrorStatus getGeomExtents(VcDbExtents& extents) const override;
    // Lines and arcs of the elements, joints and ends.
    Vcad::ErrorStatus explode(std::vector<VcDbEntity*>& pieces) const override;
    void fields(FieldVisitor& visitor) override;

    // Host side: where the elements run, measured from each vertex.
    struct Element {
        std::vector<double> lengths, fillLengths;
    };
    struct Vertex {
        VcGePoint3d point;
        VcGeVector3d direction, miter;
        std::vector<Element> elements;
    };
    const std::vector<Vertex>& vertices() const { return m_vertices; }

private:
    std::string m_styleName;
    VcDbObjectId m_style;
    std::vector<Vertex> m_vertices;
    VcGePoint3d m_start;
    VcGeVector3d m_normal{0, 0, 1};
    double m_scale = 1;
    std::int16_t m_flags = 1, m_elementCount = 0;
    std::int8_t m_justification = kTop;
};

// An object of another program. Its data is kept as it came.
class VK_SDK VcDbOle2Frame : public VcDbEntity {
    VCDB_DECLARE(VcDbOle2Frame)
public:
    VcGePoint3d upperLeft() const { return m_upperLeft; }
    VcGePoint3d lowerRight() const { return m_lowerRight; }
    int type() const { return m_type; }  // 1 link, 2 embedded, 3 static
    Vcad::ErrorStatus transformBy(const VcGeMatrix3d& m) override;
    Vcad::ErrorStatus getGeomExtents(VcDbExtents& extents) const override;
    void fields(FieldVisitor& visitor) override;

private:
    VcGePoint3d m_upperLeft, m_lowerRight;
    std::int16_t m_type = 2;
};

class VK_SDK VcDbOleFrame : public VcDbEntity {
    VCDB_DECLARE(VcDbOleFrame)
public:
    void fields(FieldVisitor& visitor) override;
};

// A table: a reference to the block that shows it. Its cells are kept as they came.
class VK_SDK VcDbTable : public VcDbBlockReference {
    VCDB_DECLARE(VcDbTable)
public:
    VcDbObjectId tableStyle() const { return m_tableStyle; }
    VcGeVector3d direction() const { return m_direction; }
    Vcad::ErrorStatus transformBy(const VcGeMatrix3d& m) override;
    void fields(FieldVisitor& visitor) override;

private:
    VcDbObjectId m_tableStyle, m_tableBlock;
    VcGeVector3d m_direction{1, 0, 0};
};
