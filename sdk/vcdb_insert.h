// References to blocks, what begins and ends a block, and shapes.
#pragma once

#include "vcdb_polylines.h"
#include "vcdb_rare.h"

class VcDbAttribute;

class VK_SDK VcDbBlockReference : public VcDbEntity {
    VCDB_DECLARE(VcDbBlockReference)
public:
    VcDbBlockReference() = default;
    VcDbBlockReference(const VcGePoint3d& position, VcDbObjectId block);

    VcDbObjectId blockTableRecord() const { return m_block; }
    Vcad::ErrorStatus setBlockTableRecord(VcDbObjectId block);
    VcGePoint3d position() const;
    Vcad::ErrorStatus setPosition(const VcGePoint3d& p);
    VcGeScale3d scaleFactors() const { return m_scale; }
    Vcad::ErrorStatus setScaleFactors(const VcGeScale3d& scale);  // none may be 0
    double rotation() const { return m_rotation; }
    Vcad::ErrorStatus setRotation(double angle);
    VcGeVector3d normal() const { return m_extrusion.normal(); }
    Vcad::ErrorStatus setNormal(const VcGeVector3d& normal);
    // From the block's coordinates to those that the reference stands in.
    VcGeMatrix3d blockTransform() const;

    // The caller deletes it.
    VcDbObjectIterator* attributeIterator() const;
    Vcad::ErrorStatus appendAttribute(VcDbObjectId& id, VcDbAttribute* attribute);
    Vcad::ErrorStatus appendAttribute(VcDbAttribute* attribute);
    std::vector<VcDbEntity*> attributes() const { return m_attributes.entities(*this); }

    // A scale that would make the axes oblique is refused.
    Vcad::ErrorStatus transformBy(const VcGeMatrix3d& m) override;
    Vcad::ErrorStatus getGeomExtents(VcDbExtents& extents) const override;
    // The block's members in their place, attribute definitions as they stand. Uneven scales are no hindrance: circles
    // become ellipses, and what cannot be scaled so is exploded in turn.
    Vcad::ErrorStatus explode(std::vector<VcDbEntity*>& pieces) const override;
    void fields(FieldVisitor& visitor) override;

    const std::vector<VcDbObjectId>* subEntities() const override { return &m_attributes.ids(); }
    std::vector<VcDbObjectId>* subEntities() override { return &m_attributes.ids(); }
    VcDbObjectId endMark() const override { return m_attributes.end(); }
    void setEndMark(VcDbObjectId id) override { m_attributes.setEnd(id); }
    void addedToDatabase() override { m_attributes.adoptPending(*this); }

protected:
    struct Grid {
        std::int16_t columns = 1, rows = 1;
        double columnSpacing = 0, rowSpacing = 0;
        bool operator==(const Grid&) const = default;
    };
    VcGeMatrix3d matrixWithBase(const VcGePoint3d& base) const;

    VcGePoint3d m_position;  // in the reference's own coordinates
    VcGeScale3d m_scale;
    double m_rotation = 0;
    VcDbObjectId m_block;
    VcDbExtrusion m_extrusion;
    VcDbRare<Grid> m_grid;
    VcDbSubEntities m_attributes;
};

// A grid of references in one object, along the axes that the rotation turns.
class VK_SDK VcDbMInsertBlock : public VcDbBlockReference {
    VCDB_DECLARE(VcDbMInsertBlock)
public:
    std::uint16_t columns() const { return std::uint16_t(m_grid.get().columns); }
    Vcad::ErrorStatus setColumns(std::uint16_t columns);
    std::uint16_t rows() const { return std::uint16_t(m_grid.get().rows); }
    Vcad::ErrorStatus setRows(std::uint16_t rows);
    double columnSpacing() const { return m_grid.get().columnSpacing; }
    Vcad::ErrorStatus setColumnSpacing(double spacing);
    double rowSpacing() const { return m_grid.get().rowSpacing; }
    Vcad::ErrorStatus setRowSpacing(double spacing);

    Vcad::ErrorStatus transformBy(const VcGeMatrix3d& m) override;
    Vcad::ErrorStatus getGeomExtents(VcDbExtents& extents) const override;
    // A reference for each cell, row by row.
    Vcad::ErrorStatus explode(std::vector<VcDbEntity*>& pieces) const override;

private:
    // From the first cell to the given one.
    VcGeVector3d cellOffset(int column, int row) const;
    Vcad::ErrorStatus setGrid(const Grid& grid);
};

// The BLOCK and ENDBLK of a block definition; the groups between are the record's own.
class VK_SDK VcDbBlockBegin : public VcDbEntity {
    VCDB_DECLARE(VcDbBlockBegin)
public:
    Vcad::ErrorStatus transformBy(const VcGeMatrix3d&) override { return Vcad::eOk; }
};

class VK_SDK VcDbBlockEnd : public VcDbEntity {
    VCDB_DECLARE(VcDbBlockEnd)
public:
    Vcad::ErrorStatus transformBy(const VcGeMatrix3d&) override { return Vcad::eOk; }
    void fields(FieldVisitor& visitor) override;
};

// A figure of a shape file, by its name there.
class VK_SDK VcDbShape : public VcDbEntity {
    VCDB_DECLARE(VcDbShape)
public:
    VcGePoint3d position() const;
    Vcad::ErrorStatus setPosition(const VcGePoint3d& p);
    double size() const { return m_size; }
    Vcad::ErrorStatus setSize(double size);
    // The copy belongs to the caller (vcutDelString).
    wchar_t* name() const;
    Vcad::ErrorStatus setName(const wchar_t* name);
    // Number of the figure in its file; 0 when the file is not at hand, since drawings say the name alone.
    std::int16_t shapeNumber() const { return m_number; }
    Vcad::ErrorStatus setShapeNumber(std::int16_t number);
    double rotation() const { return m_rotation; }
    Vcad::ErrorStatus setRotation(double angle);
    double widthFactor() const { return m_widthFactor; }
    Vcad::ErrorStatus setWidthFactor(double factor);
    double oblique() const { return m_oblique; }
    Vcad::ErrorStatus setOblique(double angle);
    double thickness() const { return m_extrusion.thickness(); }
    Vcad::ErrorStatus setThickness(double thickness);
    VcGeVector3d normal() const { return m_extrusion.normal(); }
    Vcad::ErrorStatus setNormal(const VcGeVector3d& normal);

    Vcad::ErrorStatus transformBy(const VcGeMatrix3d& m) override;
    Vcad::ErrorStatus getGeomExtents(VcDbExtents& extents) const override;
    void fields(FieldVisitor& visitor) override;

private:
    VcGePoint3d m_position;  // in the shape's own coordinates
    std::string m_name;
    VcDbExtrusion m_extrusion;
    double m_size = 1, m_rotation = 0, m_widthFactor = 1, m_oblique = 0;
    std::int16_t m_number = 0;
};
