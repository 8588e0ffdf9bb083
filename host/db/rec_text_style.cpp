#include "host/base/heap.h"
#include "host/base/unicode.h"
#include "host/db/extras.h"
#include "host/db/field_visitor.h"
#include "sdk/vcdb_records.h"

VCDB_DEFINE(VcDbTextStyleTableRecord, VcDbSymbolTableRecord, "STYLE")

namespace {

constexpr std::int16_t kShapeFile = 1, kVertical = 4;
constexpr double kMaxOblique = 85.0 * 3.14159265358979323846 / 180;

// The typeface is extended data of the application "ACAD": its name, then charset, pitch and style packed in one number.
constexpr std::string_view kFontApplication = "ACAD";
constexpr std::int64_t kItalic = 0x1000000, kBold = 0x2000000;

std::int64_t packFont(const VcDbTextStyleTableRecord::Typeface& face)
{
    return (face.bold ? kBold : 0) | (face.italic ? kItalic : 0) | (face.charset & 0xff) << 8 |
           (face.pitchAndFamily & 0xff);
}

TagList withoutApplication(const TagList& xdata, std::string_view application)
{
    TagList kept;
    bool skipping = false;
    for (const Tag& tag : xdata) {
        if (tag.code == 1001)
            skipping = equalNoCase(tag.view(), application);
        if (!skipping)
            kept.add(tag);
    }
    return kept;
}

}

void VcDbTextStyleTableRecord::setIsShapeFile(bool shapeFile)
{
    assertWriteEnabled();
    m_flags = std::int16_t(shapeFile ? m_flags | kShapeFile : m_flags & ~kShapeFile);
}

void VcDbTextStyleTableRecord::setIsVertical(bool vertical)
{
    assertWriteEnabled();
    m_flags = std::int16_t(vertical ? m_flags | kVertical : m_flags & ~kVertical);
}

Vcad::ErrorStatus VcDbTextStyleTableRecord::setTextSize(double size)
{
    if (!(size >= 0) || !std::isfinite(size))
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_textSize = size;
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbTextStyleTableRecord::setPriorSize(double size)
{
    if (!(size > 0) || !std::isfinite(size))
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_priorSize = size;
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbTextStyleTableRecord::setXScale(double scale)
{
    if (!(scale > 0) || !std::isfinite(scale))
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_xScale = scale;
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbTextStyleTableRecord::setObliquingAngle(double angle)
{
    if (!(std::abs(angle) <= kMaxOblique + 1e-12))
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_oblique = angle;
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbTextStyleTableRecord::setFlagBits(std::uint8_t bits)
{
    if (bits & ~6)
        return Vcad::eOutOfRange;
    assertWriteEnabled();
    m_generation = bits;
    return Vcad::eOk;
}

wchar_t* VcDbTextStyleTableRecord::fileName() const { return heapStringFromUtf8(m_file); }
wchar_t* VcDbTextStyleTableRecord::bigFontFileName() const { return heapStringFromUtf8(m_bigFont); }

Vcad::ErrorStatus VcDbTextStyleTableRecord::setFileName(const wchar_t* file)
{
    if (!file)
        return Vcad::eInvalidInput;
    assertWriteEnabled();
    m_file = wideToUtf8(file);
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbTextStyleTableRecord::setBigFontFileName(const wchar_t* file)
{
    if (!file)
        return Vcad::eInvalidInput;
    assertWriteEnabled();
    m_bigFont = wideToUtf8(file);
    return Vcad::eOk;
}

void VcDbTextStyleTableRecord::setFontFiles(std::string fileUtf8, std::string bigFontUtf8)
{
    assertWriteEnabled();
    m_file = std::move(fileUtf8);
    m_bigFont = std::move(bigFontUtf8);
}

std::optional<VcDbTextStyleTableRecord::Typeface> VcDbTextStyleTableRecord::typeface() const
{
    if (!extras())
        return std::nullopt;
    std::optional<Typeface> face;
    bool inFont = false;
    for (const Tag& tag : extras()->xdata) {
        if (tag.code == 1001)
            inFont = equalNoCase(tag.view(), kFontApplication);
        else if (inFont && tag.code == 1000 && !face)
            face = Typeface{std::string(tag.view())};
        else if (inFont && tag.code == 1071 && face) {
            face->bold = (tag.integer & kBold) != 0;
            face->italic = (tag.integer & kItalic) != 0;
            face->charset = int(tag.integer >> 8 & 0xff);
            face->pitchAndFamily = int(tag.integer & 0xff);
            return face;
        }
    }
    return face;
}

Vcad::ErrorStatus VcDbTextStyleTableRecord::font(wchar_t*& name, bool& bold, bool& italic, int& charset,
                                                 int& pitchAndFamily) const
{
    const Typeface face = typeface().value_or(Typeface());
    name = heapStringFromUtf8(face.family);
    bold = face.bold;
    italic = face.italic;
    charset = face.charset;
    pitchAndFamily = face.pitchAndFamily;
    return Vcad::eOk;
}

Vcad::ErrorStatus VcDbTextStyleTableRecord::setFont(const wchar_t* name, bool bold, bool italic, int charset,
                                                    int pitchAndFamily)
{
    if (!name || charset < 0 || charset > 255 || pitchAndFamily < 0 || pitchAndFamily > 255)
        return Vcad::eInvalidInput;
    assertWriteEnabled();
    const Typeface face{wideToUtf8(name), bold, italic, charset, pitchAndFamily};
    TagList xdata = extras() ? withoutApplication(extras()->xdata, kFontApplication) : TagList();
    if (!face.family.empty()) {
        xdata.addText(1001, kFontApplication);
        xdata.addText(1000, face.family);
        xdata.addInteger(1071, packFont(face));
    }
    makeExtras().xdata = std::move(xdata);
    return Vcad::eOk;
}

void VcDbTextStyleTableRecord::fields(FieldVisitor& v)
{
    VcDbSymbolTableRecord::fields(v);
    v.subclass("AcDbTextStyleTableRecord");
    nameAndFlags(v);
    v.real(40, m_textSize);
    v.real(41, m_xScale);
    v.angle(50, m_oblique);
    v.number(71, m_generation);
    v.real(42, m_priorSize);
    v.text(3, m_file);
    v.text(4, m_bigFont);
}
