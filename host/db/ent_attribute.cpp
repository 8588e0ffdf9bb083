// Attributes of block references and their definitions.
#include "host/base/heap.h"
#include "host/base/unicode.h"
#include "host/db/ent_util.h"
#include "sdk/vcdb_text.h"

VCDB_DEFINE_ABSTRACT(VcDbTaggedText, VcDbText)
VCDB_DEFINE(VcDbAttribute, VcDbTaggedText, "ATTRIB")
VCDB_DEFINE(VcDbAttributeDefinition, VcDbTaggedText, "ATTDEF")

wchar_t* VcDbTaggedText::tag() const { return heapStringFromUtf8(m_tag); }

Vcad::ErrorStatus VcDbTaggedText::setTag(const wchar_t* tag)
{
    const std::string text = tag ? toUpper(wideToUtf8(tag)) : std::string();
    if (text.empty() || text.find(' ') != std::string::npos)
        return Vcad::eInvalidInput;
    assertWriteEnabled();
    m_wideTag.drop();
    m_tag = text;
    align();
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbTaggedText::setFlag(std::int16_t flag, bool on)
{
    assertWriteEnabled();
    m_attributeFlags = std::int16_t(on ? m_attributeFlags | flag : m_attributeFlags & ~flag);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbTaggedText::setFieldLength(std::int16_t length)
{
    return setMember(*this, m_fieldLength, length, length >= 0 && length <= 255);
}

Vcad::ErrorStatus VcDbTaggedText::setLockPositionInBlock(bool on) { return setMember(*this, m_lockPosition, on, true); }

// Code 280 stands twice: first, in files from 2010, the version of the subclass, later the lock.
void VcDbTaggedText::tagFields(FieldVisitor& v, std::string* prompt)
{
    if (v.isReading())
        m_wideTag.drop();
    if (v.isReading() ? v.peek() == 280 : v.isChain() || v.atLeast(DxfVersion::R2010))
        v.number(280, m_versionNumber);
    if (prompt)
        v.text(3, *prompt);
    v.text(2, m_tag);
    v.number(70, m_attributeFlags);
    v.optionalNumber<std::int16_t>(73, m_fieldLength, 0);
    verticalField(v, 74);
    if (v.isReading() || v.isChain() || v.atLeast(DxfVersion::R2007))
        v.number(280, m_lockPosition);
    if (v.isReading() || m_manyLined != 0)
        v.optionalNumber<std::int16_t>(71, m_manyLined, 0);
}

// Attribute

Vcad::ErrorStatus VcDbAttribute::setAttributeFromBlock(const VcDbAttributeDefinition* definition,
                                                       const VcGeMatrix3d& blockTransform)
{
    if (!definition)
        return Vcad::eInvalidInput;
    const VcDbAttributeDefinition& from = *definition;
    assertWriteEnabled();
    m_position = from.m_position;
    m_alignment = from.m_alignment;
    m_extrusion = from.m_extrusion;
    m_style = from.m_style;
    m_height = from.m_height;
    m_rotation = from.m_rotation;
    m_widthFactor = from.m_widthFactor;
    m_oblique = from.m_oblique;
    m_generation = from.m_generation;
    m_horizontal = from.m_horizontal;
    m_vertical = from.m_vertical;
    m_tag = from.m_tag;
    m_wideTag.drop();
    m_attributeFlags = from.m_attributeFlags;
    m_fieldLength = from.m_fieldLength;
    m_lockPosition = from.m_lockPosition;
    setPropertiesFrom(definition);
    const Vcad::ErrorStatus status = transformBy(blockTransform);
    align();
    return status;
}

void VcDbAttribute::fields(FieldVisitor& v)
{
    textFields(v);
    v.subclass("AcDbAttribute");
    tagFields(v);
}

// Definition

wchar_t* VcDbAttributeDefinition::prompt() const { return heapStringFromUtf8(m_prompt); }

Vcad::ErrorStatus VcDbAttributeDefinition::setPrompt(const wchar_t* prompt)
{
    if (!prompt)
        return Vcad::eInvalidInput;
    assertWriteEnabled();
    m_widePrompt.drop();
    m_prompt = wideToUtf8(prompt);
    return Vcad::eOk;
}

void VcDbAttributeDefinition::fields(FieldVisitor& v)
{
    if (v.isReading())
        m_widePrompt.drop();
    textFields(v);
    v.subclass("AcDbAttributeDefinition");
    tagFields(v, &m_prompt);
}
