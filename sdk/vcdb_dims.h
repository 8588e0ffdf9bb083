// Dimensions, leaders and feature control frames. Points are in world coordinates, angles in radians.
#pragma once

#include "vcdb_dimvars.h"
#include "vcdb_entity.h"
#include "vcdb_rare.h"

#include <optional>

// The dimension variables that an entity sets over its style. A view: it reads and changes the entity's extended data.
// Variables go by their group code in a dimension style.
class VK_SDK VcDbDimOverrides {
public:
    explicit VcDbDimOverrides(VcDbObject& entity) : m_entity(entity) {}
    bool has(int code) const;
    std::optional<double> number(int code) const;  // whole numbers too
    std::optional<std::string> text(int code) const;
    VcDbObjectId reference(int code) const;  // null when it is not set
    Vcad::ErrorStatus setReal(int code, double value);
    Vcad::ErrorStatus setInteger(int code, std::int16_t value);
    Vcad::ErrorStatus setText(int code, const std::string& utf8);
    Vcad::ErrorStatus setReference(int code, VcDbObjectId id);
    Vcad::ErrorStatus remove(int code);
    // The variables of a style with the overrides in their place.
    VcDbDimVars over(VcDbObjectId style) const;

private:
    VcDbObject& m_entity;
};

class VK_SDK VcDbDimension : public VcDbEntity {
    VCRX_DECLARE(VcDbDimension)
public:
    // The anonymous block with what the dimension looks like, in world coordinates.
    VcDbObjectId dimBlockId() const { return m_block; }
    Vcad::ErrorStatus setDimBlockId(VcDbObjectId block);
    VcGePoint3d textPosition() const;
    Vcad::ErrorStatus setTextPosition(const VcGePoint3d& p);  // the text then stays where it is put
    bool isUsingDefaultTextPosition() const { return (m_flags & 128) == 0; }
    double textRotation() const { return m_textRotation; }
    Vcad::ErrorStatus setTextRotation(double angle);
    double horizontalRotation() const { return m_horizontal; }
    Vcad::ErrorStatus setHorizontalRotation(double angle);
    // Empty or with "<>" for the measurement. The copy belongs to the caller (vcutDelString).
    wchar_t* dimensionText() const;
    Vcad::ErrorStatus setDimensionText(const wchar_t* text);
    VcDbObjectId dimensionStyle() const;
    Vcad::ErrorStatus setDimensionStyle(VcDbObjectId style);
    // What it measures, before DIMLFAC: as the file says it, else as the picture was last made; radians of an angle.
    double measurement() const { return m_measurement; }
    int textAttachment() const { return m_attachment ? m_attachment : 5; }
    Vcad::ErrorStatus setTextAttachment(int attachment);  // 1 to 9
    int textLineSpacingStyle() const { return m_spacingStyle; }
    Vcad::ErrorStatus setTextLineSpacingStyle(int style);  // 1 or 2
    double textLineSpacingFactor() const { return m_spacingFactor; }
    Vcad::ErrorStatus setTextLineSpacingFactor(double factor);  // 0.25 to 4
    VcGeVector3d normal() const { return m_extrusion.normal(); }
    Vcad::ErrorStatus setNormal(const VcGeVector3d& normal);
    // Variables of the style with those that this dimension sets itself.
    VcDbDimVars dimVars() const;

    // Makes the block anew from what the dimension measures and its style says. Without force only when something that
    // shows has changed since the block was made. Done by itself when a changed dimension is closed, moved, or written
    // back as a chain; a dimension that came from a file keeps its block until then.
    Vcad::ErrorStatus recomputeDimBlock(bool force = true);

    // Those of the block that it looks like.
    Vcad::ErrorStatus getGeomExtents(VcDbExtents& extents) const override;
    Vcad::ErrorStatus explode(std::vector<VcDbEntity*>& pieces) const override;
    // Moves what the dimension measures.
    Vcad::ErrorStatus transformBy(const VcGeMatrix3d& m) override;

    // Host side.
    void fields(FieldVisitor& visitor) override;
    void fieldsChanged() override;
    void addedToDatabase() override;
    void dropCaches() override { recomputeDimBlock(false); }
    const std::string& dimensionTextUtf8() const { return m_text; }
    bool isTextMoved() const { return (m_flags & 128) != 0; }
    // An arrow that a person has turned round stands on the other side of its extension line.
    bool isArrowFlipped(bool second) const { return (second ? m_flipArrow2 : m_flipArrow1) != 0; }
    void setArrowFlipped(bool second, bool flipped);
    // The text goes back to where its style wants it.
    void useDefaultTextPosition();
    void markPictureStale() { m_stale = true; }
    void pictureMade(VcDbObjectId block, double measurement, const VcGePoint3d& textMiddle);

protected:
    explicit VcDbDimension(int type) : m_flags(std::int16_t(type | 32)) {}
    Vcad::ErrorStatus setPoint(VcGePoint3d& member, const VcGePoint3d& p);
    template <class T>
    Vcad::ErrorStatus change(T& member, const T& value, bool valid);
    // Further definition points of the class, which are in world coordinates, and angles. Called before the normal moves.
    virtual void movePoints(const VcGeMatrix3d& m) = 0;
    virtual bool isAngular() const { return false; }

    VcGePoint3d m_definition;  // group 10, whose meaning is the class's
    double m_horizontal = 0;
    std::int16_t m_flags;

private:
    VcGePoint3d m_textMiddle, m_cloneInsertion;  // in the dimension's own coordinates
    VcDbObjectId m_block, m_style;
    std::string m_text;
    VcDbExtrusion m_extrusion;
    double m_measurement = 0, m_textRotation = 0, m_insertionRotation = 0, m_spacingFactor = 1;
    std::int16_t m_attachment = 5, m_spacingStyle = 1;
    std::int8_t m_version = 0, m_flags73 = 0, m_flipArrow1 = 0, m_flipArrow2 = 0;
    bool m_stale = false;  // what shows has changed since the block was made
};

#define VCDB_DIM_POINT(getter, setter, member)                                                                         \
    VcGePoint3d getter() const { return member; }                                                                      \
    Vcad::ErrorStatus setter(const VcGePoint3d& p) { return setPoint(member, p); }

class VK_SDK VcDbAlignedDimension : public VcDbDimension {
    VCDB_DECLARE(VcDbAlignedDimension)
public:
    VcDbAlignedDimension() : VcDbDimension(1) {}
    VCDB_DIM_POINT(xLine1Point, setXLine1Point, m_xLine1)
    VCDB_DIM_POINT(xLine2Point, setXLine2Point, m_xLine2)
    VCDB_DIM_POINT(dimLinePoint, setDimLinePoint, m_definition)
    double oblique() const { return m_oblique; }
    Vcad::ErrorStatus setOblique(double angle);
    void fields(FieldVisitor& visitor) override;

protected:
    void movePoints(const VcGeMatrix3d& m) override;

private:
    VcGePoint3d m_xLine1, m_xLine2;
    double m_oblique = 0;
};

class VK_SDK VcDbRotatedDimension : public VcDbDimension {
    VCDB_DECLARE(VcDbRotatedDimension)
public:
    VcDbRotatedDimension() : VcDbDimension(0) {}
    VCDB_DIM_POINT(xLine1Point, setXLine1Point, m_xLine1)
    VCDB_DIM_POINT(xLine2Point, setXLine2Point, m_xLine2)
    VCDB_DIM_POINT(dimLinePoint, setDimLinePoint, m_definition)
    double rotation() const { return m_rotation; }
    Vcad::ErrorStatus setRotation(double angle);
    double oblique() const { return m_oblique; }
    Vcad::ErrorStatus setOblique(double angle);
    void fields(FieldVisitor& visitor) override;

protected:
    void movePoints(const VcGeMatrix3d& m) override;

private:
    VcGePoint3d m_xLine1, m_xLine2;
    double m_rotation = 0, m_oblique = 0;
    bool m_rotationLast = false;  // some programs write the angle in the subclass behind
};

// Between two lines.
class VK_SDK VcDb2LineAngularDimension : public VcDbDimension {
    VCDB_DECLARE(VcDb2LineAngularDimension)
public:
    VcDb2LineAngularDimension() : VcDbDimension(2) {}
    VCDB_DIM_POINT(xLine1Start, setXLine1Start, m_line1Start)
    VCDB_DIM_POINT(xLine1End, setXLine1End, m_line1End)
    VCDB_DIM_POINT(xLine2Start, setXLine2Start, m_line2Start)
    VCDB_DIM_POINT(xLine2End, setXLine2End, m_definition)
    VcGePoint3d arcPoint() const;
    Vcad::ErrorStatus setArcPoint(const VcGePoint3d& p);
    void fields(FieldVisitor& visitor) override;

protected:
    void movePoints(const VcGeMatrix3d& m) override;
    bool isAngular() const override { return true; }

private:
    VcGePoint3d m_line1Start, m_line1End, m_line2Start;
    VcGePoint3d m_arc;  // in the dimension's own coordinates
};

class VK_SDK VcDb3PointAngularDimension : public VcDbDimension {
    VCDB_DECLARE(VcDb3PointAngularDimension)
public:
    VcDb3PointAngularDimension() : VcDbDimension(5) {}
    VCDB_DIM_POINT(arcPoint, setArcPoint, m_definition)
    VCDB_DIM_POINT(xLine1Point, setXLine1Point, m_xLine1)
    VCDB_DIM_POINT(xLine2Point, setXLine2Point, m_xLine2)
    VCDB_DIM_POINT(centerPoint, setCenterPoint, m_center)
    void fields(FieldVisitor& visitor) override;

protected:
    void movePoints(const VcGeMatrix3d& m) override;
    bool isAngular() const override { return true; }

private:
    VcGePoint3d m_xLine1, m_xLine2, m_center;
};

// Length along an arc.
class VK_SDK VcDbArcDimension : public VcDbDimension {
    VCDB_DECLARE(VcDbArcDimension)
public:
    VcDbArcDimension() : VcDbDimension(5) {}
    VCDB_DIM_POINT(arcPoint, setArcPoint, m_definition)
    VCDB_DIM_POINT(xLine1Point, setXLine1Point, m_xLine1)
    VCDB_DIM_POINT(xLine2Point, setXLine2Point, m_xLine2)
    VCDB_DIM_POINT(centerPoint, setCenterPoint, m_center)
    VCDB_DIM_POINT(leader1Point, setLeader1Point, m_leader1)
    VCDB_DIM_POINT(leader2Point, setLeader2Point, m_leader2)
    bool isPartial() const { return m_partial; }
    double arcStartParam() const { return m_startParam; }
    double arcEndParam() const { return m_endParam; }
    bool hasLeader() const { return m_hasLeader; }
    void fields(FieldVisitor& visitor) override;

protected:
    void movePoints(const VcGeMatrix3d& m) override;

private:
    VcGePoint3d m_xLine1, m_xLine2, m_center, m_leader1, m_leader2;
    double m_startParam = 0, m_endParam = 0;
    bool m_partial = false, m_hasLeader = false;
};

class VK_SDK VcDbRadialDimension : public VcDbDimension {
    VCDB_DECLARE(VcDbRadialDimension)
public:
    VcDbRadialDimension() : VcDbDimension(4) {}
    VCDB_DIM_POINT(center, setCenter, m_definition)
    VCDB_DIM_POINT(chordPoint, setChordPoint, m_chord)
    double leaderLength() const { return m_leaderLength; }
    Vcad::ErrorStatus setLeaderLength(double length);
    // Where the arc is drawn further than it reaches; 0 when it is not.
    double extArcStartAngle() const;
    double extArcEndAngle() const;
    void fields(FieldVisitor& visitor) override;

protected:
    void movePoints(const VcGeMatrix3d& m) override;

private:
    VcGePoint3d m_chord;
    double m_leaderLength = 0;
};

class VK_SDK VcDbDiametricDimension : public VcDbDimension {
    VCDB_DECLARE(VcDbDiametricDimension)
public:
    VcDbDiametricDimension() : VcDbDimension(3) {}
    VCDB_DIM_POINT(farChordPoint, setFarChordPoint, m_definition)
    VCDB_DIM_POINT(chordPoint, setChordPoint, m_chord)
    double leaderLength() const { return m_leaderLength; }
    Vcad::ErrorStatus setLeaderLength(double length);
    double extArcStartAngle() const;
    double extArcEndAngle() const;
    void fields(FieldVisitor& visitor) override;

protected:
    void movePoints(const VcGeMatrix3d& m) override;

private:
    VcGePoint3d m_chord;
    double m_leaderLength = 0;
};

// A radius whose centre is too far away: its line has a jog.
class VK_SDK VcDbRadialDimensionLarge : public VcDbDimension {
    VCDB_DECLARE(VcDbRadialDimensionLarge)
public:
    VcDbRadialDimensionLarge() : VcDbDimension(9) {}
    VCDB_DIM_POINT(center, setCenter, m_definition)
    VCDB_DIM_POINT(overrideCenter, setOverrideCenter, m_overrideCenter)
    VCDB_DIM_POINT(jogPoint, setJogPoint, m_jog)
    VCDB_DIM_POINT(chordPoint, setChordPoint, m_chord)
    double jogAngle() const { return m_jogAngle; }
    Vcad::ErrorStatus setJogAngle(double angle);
    double extArcStartAngle() const;
    double extArcEndAngle() const;
    void fields(FieldVisitor& visitor) override;

protected:
    void movePoints(const VcGeMatrix3d& m) override;

private:
    VcGePoint3d m_overrideCenter, m_jog, m_chord;
    double m_jogAngle = 0;
};

class VK_SDK VcDbOrdinateDimension : public VcDbDimension {
    VCDB_DECLARE(VcDbOrdinateDimension)
public:
    VcDbOrdinateDimension() : VcDbDimension(6) {}
    VCDB_DIM_POINT(origin, setOrigin, m_definition)
    VCDB_DIM_POINT(definingPoint, setDefiningPoint, m_defining)
    VCDB_DIM_POINT(leaderEndPoint, setLeaderEndPoint, m_leaderEnd)
    bool isUsingXAxis() const { return (m_flags & 64) != 0; }
    bool isUsingYAxis() const { return !isUsingXAxis(); }
    void useXAxis();
    void useYAxis();
    void fields(FieldVisitor& visitor) override;

protected:
    void movePoints(const VcGeMatrix3d& m) override;

private:
    VcGePoint3d m_defining, m_leaderEnd;
};

#undef VCDB_DIM_POINT

class VK_SDK VcDbLeader : public VcDbEntity {
    VCDB_DECLARE(VcDbLeader)
public:
    VcDbObjectId dimensionStyle() const;
    Vcad::ErrorStatus setDimensionStyle(VcDbObjectId style);
    int numVertices() const { return int(m_vertices.size()); }
    VcGePoint3d vertexAt(int index) const;  // the origin for an index out of range
    Vcad::ErrorStatus setVertexAt(int index, const VcGePoint3d& p);
    Vcad::ErrorStatus appendVertex(const VcGePoint3d& p);
    bool hasArrowHead() const { return m_arrow != 0; }
    void enableArrowHead(bool on);
    bool isSplined() const { return m_splined != 0; }
    void setSplined(bool on);
    bool hasHookLine() const { return m_hook != 0; }
    // The last stretch is level and leads to the text: along the horizontal direction, or against it.
    void setHookLine(bool on, bool alongHorizontal = true);
    VcGeVector3d horizontalDirection() const { return m_xDirection; }
    Vcad::ErrorStatus setPlane(const VcGeVector3d& normal, const VcGeVector3d& horizontal);
    // 0 MTEXT, 1 TOLERANCE, 2 INSERT, 3 none.
    int annoType() const { return m_annotationType; }
    VcDbObjectId annotationObjId() const { return m_annotation; }
    // An MTEXT, TOLERANCE or block reference of the same drawing; the leader follows its size from then on.
    Vcad::ErrorStatus attachAnnotation(VcDbObjectId annotation);
    double annoHeight() const { return m_annoHeight; }
    double annoWidth() const { return m_annoWidth; }
    VcGeVector3d normal() const { return m_normal; }
    VcDbDimVars dimVars() const;
    // Brings the hook line and the sizes of the annotation in line with the style. Done by itself when a changed leader is
    // closed or written back as a chain.
    Vcad::ErrorStatus evaluateLeader();
    Vcad::ErrorStatus transformBy(const VcGeMatrix3d& m) override;
    // Those of what is drawn, as explode gives it: its lines or its curve, and its arrow.
    Vcad::ErrorStatus getGeomExtents(VcDbExtents& extents) const override;
    Vcad::ErrorStatus explode(std::vector<VcDbEntity*>& pieces) const override;
    void fields(FieldVisitor& visitor) override;
    void fieldsChanged() override;
    void dropCaches() override;

    // Host side.
    bool hookGoesAlong() const { return m_hookDirection != 0; }
    void markPictureStale() { m_stale = true; }

private:
    std::vector<VcGePoint3d> m_vertices;
    VcDbObjectId m_style, m_annotation;
    VcGeVector3d m_normal{0, 0, 1}, m_xDirection{1, 0, 0}, m_blockOffset, m_annoOffset;
    double m_annoHeight = 0, m_annoWidth = 0;
    std::int16_t m_byBlockColor = 0;
    std::int8_t m_arrow = 1, m_splined = 0, m_annotationType = 3, m_hookDirection = 0, m_hook = 0;
    bool m_stale = false;  // its style has changed since the hook line was placed
};

// A feature control frame.
class VK_SDK VcDbFcf : public VcDbEntity {
    VCDB_DECLARE(VcDbFcf)
public:
    VcGePoint3d location() const { return m_location; }
    Vcad::ErrorStatus setLocation(const VcGePoint3d& p);
    VcGeVector3d direction() const { return m_direction; }
    VcGeVector3d normal() const { return m_normal; }
    Vcad::ErrorStatus setOrientation(const VcGeVector3d& normal, const VcGeVector3d& direction);
    wchar_t* text() const;
    Vcad::ErrorStatus setText(const wchar_t* text);
    VcDbObjectId dimensionStyle() const;
    Vcad::ErrorStatus setDimensionStyle(VcDbObjectId style);
    VcDbDimVars dimVars() const;
    double dimgap() const { return dimVars().dimgap; }
    double dimtxt() const { return dimVars().dimtxt; }
    double dimscale() const { return dimVars().dimscale; }
    VcCmColor dimclrd() const;
    VcCmColor dimclrt() const;
    Vcad::ErrorStatus setDimclrd(const VcCmColor& color);
    Vcad::ErrorStatus setDimclrt(const VcCmColor& color);
    Vcad::ErrorStatus setDimgap(double gap);
    Vcad::ErrorStatus setDimtxt(double height);
    Vcad::ErrorStatus setDimscale(double scale);
    Vcad::ErrorStatus transformBy(const VcGeMatrix3d& m) override;
    // Its boxes and texts.
    Vcad::ErrorStatus getGeomExtents(VcDbExtents& extents) const override;
    Vcad::ErrorStatus explode(std::vector<VcDbEntity*>& pieces) const override;
    void fields(FieldVisitor& visitor) override;

    // Host side.
    const std::string& textUtf8() const { return m_text; }

private:
    VcGePoint3d m_location;
    VcGeVector3d m_normal{0, 0, 1}, m_direction{1, 0, 0};
    VcDbObjectId m_style;
    std::string m_text;
};
