// Texts of one line, attributes and their definitions, and texts of many lines.
//
// Points of the accessors are in world coordinates; angles are radians from the X axis of the text's own plane.
#pragma once

#include "vcdb_entity.h"
#include "vcdb_rare.h"

namespace VcDb {
enum TextHorzMode : int { kTextLeft = 0, kTextCenter = 1, kTextRight = 2, kTextAlign = 3, kTextMid = 4, kTextFit = 5 };
enum TextVertMode : int { kTextBase = 0, kTextBottom = 1, kTextVertMid = 2, kTextTop = 3 };
enum LineSpacingStyle : int { kAtLeast = 1, kExactly = 2 };
}

// A line of text. Unless it is justified left on its base line it hangs on the alignment point, and its position (and for
// aligned and fitted texts its rotation, height or width factor) follows from that whenever the text is changed.
class VK_SDK VcDbText : public VcDbEntity {
    VCDB_DECLARE(VcDbText)
public:
    VcDbText() = default;
    VcDbText(const VcGePoint3d& position, const wchar_t* text, double height = 0.2, double rotation = 0);

    VcGePoint3d position() const;
    Vcad::ErrorStatus setPosition(const VcGePoint3d& p);
    VcGePoint3d alignmentPoint() const;
    Vcad::ErrorStatus setAlignmentPoint(const VcGePoint3d& p);
    bool isDefaultAlignment() const { return m_horizontal == 0 && m_vertical == 0; }
    VcDb::TextHorzMode horizontalMode() const { return VcDb::TextHorzMode(m_horizontal); }
    Vcad::ErrorStatus setHorizontalMode(VcDb::TextHorzMode mode);
    VcDb::TextVertMode verticalMode() const { return VcDb::TextVertMode(m_vertical); }
    Vcad::ErrorStatus setVerticalMode(VcDb::TextVertMode mode);
    // Works the position out anew from the alignment point.
    Vcad::ErrorStatus adjustAlignment(const VcDbDatabase* database = nullptr);

    // The copy belongs to the caller (vcutDelString).
    wchar_t* textString() const;
    // Valid until the text changes or is closed.
    const wchar_t* textStringConst() const { return m_wide.of(m_text); }
    Vcad::ErrorStatus setTextString(const wchar_t* text);

    VcDbObjectId textStyle() const;
    Vcad::ErrorStatus setTextStyle(VcDbObjectId style);
    double height() const { return m_height; }
    Vcad::ErrorStatus setHeight(double height);
    double rotation() const { return m_rotation; }
    Vcad::ErrorStatus setRotation(double rotation);
    double widthFactor() const { return m_widthFactor; }
    Vcad::ErrorStatus setWidthFactor(double factor);
    double oblique() const { return m_oblique; }  // within 85 degrees
    Vcad::ErrorStatus setOblique(double angle);
    bool isMirroredInX() const { return (m_generation & 2) != 0; }  // backwards
    Vcad::ErrorStatus mirrorInX(bool mirrored);
    bool isMirroredInY() const { return (m_generation & 4) != 0; }  // upside down
    Vcad::ErrorStatus mirrorInY(bool mirrored);
    double thickness() const { return m_extrusion.thickness(); }
    Vcad::ErrorStatus setThickness(double thickness);
    VcGeVector3d normal() const { return m_extrusion.normal(); }
    Vcad::ErrorStatus setNormal(const VcGeVector3d& normal);

    // Any invertible matrix: an uneven scale goes into height, width factor and oblique angle.
    Vcad::ErrorStatus transformBy(const VcGeMatrix3d& m) override;
    Vcad::ErrorStatus getGeomExtents(VcDbExtents& extents) const override;
    void fields(FieldVisitor& visitor) override;
    void fieldsChanged() override;

    // Host side.
    const std::string& textUtf8() const { return m_text; }
    Vcad::ErrorStatus setTextUtf8(std::string text);
    VcGePoint3d ownPosition() const { return m_position; }  // in the text's own coordinates
    VcGePoint3d ownAlignmentPoint() const { return m_alignment; }

protected:
    // The groups of AcDbText but the vertical mode, whose place depends on the class.
    void textFields(FieldVisitor& visitor);
    void verticalField(FieldVisitor& visitor, int code);
    // What is drawn and measured: the text, or the tag of a definition.
    virtual const std::string& drawnText() const { return m_text; }
    template <class T>
    Vcad::ErrorStatus change(T& member, const T& value);
    void align();

    VcGePoint3d m_position, m_alignment;  // in the text's own coordinates
    std::string m_text;
    VcDbExtrusion m_extrusion;
    VcDbWideText m_wide;
    VcDbObjectId m_style;
    double m_height = 0.2, m_rotation = 0, m_widthFactor = 1, m_oblique = 0;
    std::int16_t m_generation = 0;
    std::int8_t m_horizontal = 0, m_vertical = 0;
};

// What attributes and their definitions share.
class VK_SDK VcDbTaggedText : public VcDbText {
    VCRX_DECLARE(VcDbTaggedText)
public:
    // The copy belongs to the caller (vcutDelString).
    wchar_t* tag() const;
    // Valid until the object changes or is closed.
    const wchar_t* tagConst() const { return m_wideTag.of(m_tag); }
    // A tag has at least one character and no blanks; it is kept in capitals.
    Vcad::ErrorStatus setTag(const wchar_t* tag);
    const std::string& tagUtf8() const { return m_tag; }
    bool isInvisible() const { return (m_attributeFlags & 1) != 0; }
    Vcad::ErrorStatus setInvisible(bool on) { return setFlag(1, on); }
    bool isConstant() const { return (m_attributeFlags & 2) != 0; }
    bool isVerifiable() const { return (m_attributeFlags & 4) != 0; }
    bool isPreset() const { return (m_attributeFlags & 8) != 0; }
    std::int16_t fieldLength() const { return m_fieldLength; }
    Vcad::ErrorStatus setFieldLength(std::int16_t length);
    bool lockPositionInBlock() const { return m_lockPosition; }
    Vcad::ErrorStatus setLockPositionInBlock(bool on);

protected:
    void tagFields(FieldVisitor& visitor, std::string* prompt = nullptr);
    Vcad::ErrorStatus setFlag(std::int16_t flag, bool on);
    bool isManyLined() const { return (m_manyLined & 6) != 0; }

    std::string m_tag;
    VcDbWideText m_wideTag;
    std::int16_t m_attributeFlags = 0, m_fieldLength = 0;
    std::int16_t m_manyLined = 0;  // 1 one line, 2 attribute of many, 4 constant definition of many
    std::int8_t m_versionNumber = 0;
    bool m_lockPosition = false;
};

class VK_SDK VcDbAttribute : public VcDbTaggedText {
    VCDB_DECLARE(VcDbAttribute)
public:
    bool isMTextAttribute() const { return isManyLined(); }
    // Takes over text properties, flags and tag of a definition, moved by the matrix of the reference.
    Vcad::ErrorStatus setAttributeFromBlock(const class VcDbAttributeDefinition* definition,
                                            const VcGeMatrix3d& blockTransform);
    void fields(FieldVisitor& visitor) override;
};

class VK_SDK VcDbAttributeDefinition : public VcDbTaggedText {
    VCDB_DECLARE(VcDbAttributeDefinition)
public:
    bool isMTextAttributeDefinition() const { return isManyLined(); }
    // The copy belongs to the caller (vcutDelString).
    wchar_t* prompt() const;
    const wchar_t* promptConst() const { return m_widePrompt.of(m_prompt); }
    Vcad::ErrorStatus setPrompt(const wchar_t* prompt);
    Vcad::ErrorStatus setConstant(bool on) { return setFlag(2, on); }
    Vcad::ErrorStatus setVerifiable(bool on) { return setFlag(4, on); }
    Vcad::ErrorStatus setPreset(bool on) { return setFlag(8, on); }
    void fields(FieldVisitor& visitor) override;

protected:
    const std::string& drawnText() const override { return m_tag; }

private:
    friend class VcDbAttribute;
    std::string m_prompt;
    VcDbWideText m_widePrompt;
};

// Text of many lines with codes for its looks.
class VK_SDK VcDbMText : public VcDbEntity {
    VCDB_DECLARE(VcDbMText)
public:
    enum AttachmentPoint : int {
        kTopLeft = 1,
        kTopCenter,
        kTopRight,
        kMiddleLeft,
        kMiddleCenter,
        kMiddleRight,
        kBottomLeft,
        kBottomCenter,
        kBottomRight,
    };
    enum FlowDirection : int { kLtoR = 1, kRtoL = 2, kTtoB = 3, kBtoT = 4, kByStyle = 5 };
    enum ColumnType : int { kNoColumns = 0, kStaticColumns = 1, kDynamicColumns = 2 };

    VcGePoint3d location() const { return m_location; }
    Vcad::ErrorStatus setLocation(const VcGePoint3d& p);
    VcGeVector3d normal() const { return m_normal; }
    Vcad::ErrorStatus setNormal(const VcGeVector3d& normal);
    // In the world; the rotation is its angle from the X axis of the text's own plane.
    VcGeVector3d direction() const;
    Vcad::ErrorStatus setDirection(const VcGeVector3d& direction);
    double rotation() const;
    Vcad::ErrorStatus setRotation(double rotation);

    // The copy belongs to the caller (vcutDelString).
    wchar_t* contents() const;
    Vcad::ErrorStatus setContents(const wchar_t* contents);
    VcDbObjectId textStyle() const;
    Vcad::ErrorStatus setTextStyle(VcDbObjectId style);
    double textHeight() const { return m_textHeight; }
    Vcad::ErrorStatus setTextHeight(double height);
    AttachmentPoint attachment() const { return AttachmentPoint(m_attachment); }
    Vcad::ErrorStatus setAttachment(AttachmentPoint point);  // the location stays
    FlowDirection flowDirection() const { return FlowDirection(m_flow); }
    Vcad::ErrorStatus setFlowDirection(FlowDirection flow);
    VcDb::LineSpacingStyle lineSpacingStyle() const { return VcDb::LineSpacingStyle(m_spacingStyle); }
    Vcad::ErrorStatus setLineSpacingStyle(VcDb::LineSpacingStyle style);
    double lineSpacingFactor() const { return m_spacingFactor; }  // 0.25 to 4
    Vcad::ErrorStatus setLineSpacingFactor(double factor);
    // Width at which lines break, 0 for none; height that was asked for, 0 for none.
    double width() const { return m_width; }
    Vcad::ErrorStatus setWidth(double width);
    double height() const { return m_height; }
    Vcad::ErrorStatus setHeight(double height);
    // Of the text as it is laid out.
    double actualWidth() const;
    double actualHeight() const;

    ColumnType columnType() const;
    int columnCount() const;
    double columnWidth() const;
    double columnGutterWidth() const;
    bool columnAutoHeight() const;
    bool columnFlowReversed() const;
    // Of one column, where each has its own.
    double columnHeight(int index) const;

    bool backgroundFillOn() const { return (m_background.get().flags & 1) != 0; }
    bool useBackgroundColorOn() const { return (m_background.get().flags & 2) != 0; }
    double backgroundScaleFactor() const { return m_background.get().scale; }
    VcCmColor backgroundFillColor() const;
    Vcad::ErrorStatus setBackgroundFill(bool on);
    Vcad::ErrorStatus setBackgroundFillColor(const VcCmColor& color);
    Vcad::ErrorStatus setBackgroundScaleFactor(double factor);  // 1 to 5

    Vcad::ErrorStatus transformBy(const VcGeMatrix3d& m) override;
    Vcad::ErrorStatus getGeomExtents(VcDbExtents& extents) const override;
    // Texts of one line that look the same.
    Vcad::ErrorStatus explode(std::vector<VcDbEntity*>& pieces) const override;
    void fields(FieldVisitor& visitor) override;
    void fieldsChanged() override { layoutChanged(); }

    // Host side.
    const std::string& contentsUtf8() const { return m_contents; }
    Vcad::ErrorStatus setContentsUtf8(std::string contents);

private:
    struct Background {
        std::int32_t flags = 0, color = 0, trueColor = 0, transparency = 0;
        double scale = 1.5;
        std::string book;
        bool operator==(const Background&) const = default;
    };
    // The object embedded in newer files. Its axis, place and sizes repeat those of the text.
    struct Embedded {
        std::int32_t version = 1, type = 0, count = 0, autoHeight = 0, reversed = 0;
        VcGeVector3d xAxis{1, 0, 0};
        VcGePoint3d location;
        double width = 0, height = 0, extentsWidth = 0, extentsHeight = 0, columnWidth = 0, gutter = 0;
        std::vector<double> heights;
        bool operator==(const Embedded&) const = default;
    };
    struct Actual {
        double width, height;
    };
    Actual actual() const;
    void layoutChanged();
    void directionFields(FieldVisitor& visitor);
    void actualFields(FieldVisitor& visitor);
    void backgroundFields(FieldVisitor& visitor);
    void embeddedFields(FieldVisitor& visitor);
    template <class T>
    Vcad::ErrorStatus change(T& member, const T& value);
    double ownAngle(const VcGeVector3d& direction) const;

    VcGePoint3d m_location;
    VcGeVector3d m_normal{0, 0, 1};
    // One of the two says the direction: the vector when it is not zero, else the angle.
    VcGeVector3d m_direction;
    double m_rotation = 0;
    std::string m_contents;
    VcDbObjectId m_style;
    double m_textHeight = 0.2, m_width = 0, m_height = 0, m_spacingFactor = 1;
    // As the file says them, until the text changes; 0 when it does not.
    double m_fileWidth = 0, m_fileHeight = 0;
    mutable double m_actualWidth = -1, m_actualHeight = -1;  // negative until laid out
    VcDbRare<Background> m_background;
    VcDbRare<Embedded> m_embedded;
    std::int8_t m_attachment = 1, m_flow = 5, m_spacingStyle = 1;
};
