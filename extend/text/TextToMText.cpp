#include "text/TextToMText.h"

#include "classlib_arrays.h"
#include "core/EntityGeometry.h"
#include "core/PublicFunction.h"
#include "system.h"
#include "vcdb_chains.h"
#include "vced.h"
#include "vcut.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace {

constexpr int kByLayer = 256;
constexpr std::size_t kFontNameSize = 512;

struct ChainRelease {
    void operator()(resbuf* chain) const { vcutRelRb(chain); }
};
using Chain = std::unique_ptr<resbuf, ChainRelease>;

struct DataSSOrder {
    vds_name name;
    double x;
    double y;
};
using OrderedTexts = CArray<DataSSOrder>;

// Texts without a group 10 are passed over.
OrderedTexts gathered(const vds_name selection)
{
    OrderedTexts texts;
    int length = 0;
    vcedSSLength(selection, &length);
    for (int i = 0; i < length; ++i) {
        DataSSOrder text = {};
        if (vcedSSName(selection, i, text.name) != RTNORM)
            continue;
        const Chain chain(vcdbEntGet(text.name));
        const resbuf* node = getResbuf(chain.get(), 10);
        if (!node)
            continue;
        text.x = node->resval.rpoint[0];
        text.y = node->resval.rpoint[1];
        texts.Add(text);
    }
    return texts;
}

// Texts of one height keep their order, wherever they stand from left to right.
void sortTopDown(OrderedTexts& texts)
{
    std::stable_sort(texts.GetData(), texts.GetData() + texts.GetSize(),
                     [](const DataSSOrder& a, const DataSSOrder& b) { return a.y > b.y; });
}

resbuf systemOf(const VcGeVector3d& normal)
{
    resbuf node = {};
    node.restype = RT3DPOINT;
    node.resval.rpoint[0] = normal.x;
    node.resval.rpoint[1] = normal.y;
    node.resval.rpoint[2] = normal.z;
    return node;
}

resbuf currentUcs()
{
    resbuf node = {};
    node.restype = RTSHORT;
    node.resval.rint = 1;
    return node;
}

VcGeVector3d axisVariable(const wchar_t* name)
{
    resbuf value = {};
    vcedGetVar(name, &value);
    return {value.resval.rpoint[0], value.resval.rpoint[1], value.resval.rpoint[2]};
}

// The X axis of the UCS, measured in the plane of the UCS as entities see it.
double ucsAngle()
{
    const VcGeVector3d normal = axisVariable(L"UCSXDIR").crossProduct(axisVariable(L"UCSYDIR"));
    const resbuf from = currentUcs(), to = systemOf(normal);
    const vds_point xAxis = {1, 0, 0};
    vds_point turned = {1, 0, 0};
    vcedTrans(xAxis, &from, &to, 1, turned);
    return std::atan2(turned[1], turned[0]);
}

// What an mtext needs to know of its first text.
struct BaseText {
    vds_point at = {};
    double height = 0;
    int colour = 0;
    CStdStrW style;
    CStdStrW text;
    double rotation = 0;
    CStdStrW layer;
    VcGeVector3d normal = {0, 0, 1};
    int direction = 0;
};

// The direction is the low word of the last group that has no place of its own, whatever that group is.
BaseText baseOf(const resbuf* chain)
{
    BaseText base;
    for (const resbuf* node = chain; node; node = node->rbnext) {
        const auto& value = node->resval;
        switch (node->restype) {
        case 0:
            break;
        case 10:
            std::copy_n(value.rpoint, 3, base.at);
            break;
        case 40:
            base.height = value.rreal;
            break;
        case 62:
            base.colour = value.rint;
            break;
        case 7:
            base.style = value.rstring;
            break;
        case 1:
            base.text = value.rstring;
            break;
        case 50:
            base.rotation = value.rreal;
            break;
        case 8:
            base.layer = value.rstring;
            break;
        case 210:
            base.normal = {value.rpoint[0], value.rpoint[1], value.rpoint[2]};
            break;
        default:
            base.direction = value.rint;
            break;
        }
    }
    return base;
}

// One text height above the base point of the first text: the top left corner of the mtext.
void topLeft(const BaseText& base, vds_point corner)
{
    constexpr double kUp = 1.5707963267949;
    const resbuf own = systemOf(base.normal), ucs = currentUcs(), world = systemOf({0, 0, 1});
    vds_point inUcs = {base.at[0], base.at[1], base.at[2]};
    vcedTrans(base.at, &own, &ucs, 0, inUcs);
    vds_point above = {};
    vcutPolar(inUcs, kUp, base.height, above);
    std::copy_n(above, 3, corner);
    vcedTrans(above, &ucs, &world, 0, corner);
}

// How far texts reach from left to right.
class Span {
public:
    void add(const vds_name name)
    {
        VcGePoint3d low, high;
        getTextExtent(name, low, high);
        m_min = m_isEmpty ? low.x : std::min(m_min, low.x);
        m_max = m_isEmpty ? high.x : std::max(m_max, high.x);
        m_isEmpty = false;
    }
    double width() const { return std::fabs(m_max - m_min); }

private:
    double m_min = 0, m_max = 0;
    bool m_isEmpty = true;
};

// False when there is no such style.
bool fontOf(const CStdStrW& style, CStdStrW& font)
{
    vds_name record = {};
    if (vcdbTblObjName(L"STYLE", style, record) != RTNORM)
        return false;
    wchar_t buffer[kFontNameSize] = L"";
    GetEntString(record, 3, buffer, kFontNameSize);
    font = buffer;
    return true;
}

// The contents as they grow. A code holds until the next of its kind, so only what differs from the text before is said.
class Contents {
public:
    Contents(const BaseText& first, bool wordWrap)
        : m_text(first.text), m_style(first.style), m_height(first.height), m_colour(first.colour), m_wordWrap(wordWrap)
    {
        fontOf(m_style, m_font);
    }

    void add(const resbuf* chain)
    {
        const BaseText text = baseOf(chain);
        m_text += L" ";
        if (!m_wordWrap)
            m_text += L"\\P";
        sayHeight(text.height);
        sayColour(text.colour);
        sayFont(text.style);
        m_text += text.text.str();
    }
    const std::wstring& text() const { return m_text; }

private:
    void sayHeight(double height)
    {
        if (height != m_height)
            say(L"\\H%lf;", m_height = height);
    }

    // The first text may count as colour 0 for what the others call by layer: the code then comes once.
    void sayColour(int colour)
    {
        const int wanted = colour == 0 ? kByLayer : colour;
        if (wanted != m_colour)
            say(L"\\C%d;", m_colour = wanted);
    }

    void sayFont(const CStdStrW& style)
    {
        if (style.CompareNoCase(m_style) == 0)
            return;
        m_style = style;
        CStdStrW font;
        if (!fontOf(style, font) || font.CompareNoCase(m_font) == 0)
            return;
        say(L"\\F%ls;", font);
        m_font = font;
    }

    template <class Value>
    void say(const wchar_t* format, const Value& value)
    {
        CStdStrW code;
        code.Format(format, value);
        m_text += code.str();
    }

    std::wstring m_text;
    CStdStrW m_style, m_font;
    double m_height;
    int m_colour;
    bool m_wordWrap;
};

int makeMText(const BaseText& base, const Contents& contents, double width)
{
    vds_point corner;
    topLeft(base, corner);
    const vds_point normal = {base.normal.x, base.normal.y, base.normal.z};
    const Chain chain(vcutBuildList(RTDXF0, L"MTEXT", 100, L"AcDbEntity", 100, L"AcDbMText", 10, corner, 1,
                                    contents.text().c_str(), 210, normal, 8, base.layer.GetString(), 7,
                                    base.style.GetString(), 50, base.rotation - ucsAngle(), 40, base.height, 41, width,
                                    72, base.direction, 62, base.colour, RTNONE));
    return vcdbEntMake(chain.get());
}

}  // namespace

int CreateMTextFromTxtSet(bool selectionOrder, bool wordWrap, const vds_name selection)
{
    OrderedTexts texts = gathered(selection);
    if (texts.IsEmpty())
        return RTERROR;
    if (!selectionOrder)
        sortTopDown(texts);

    const BaseText base = baseOf(Chain(vcdbEntGet(texts[0].name)).get());
    Contents contents(base, wordWrap);
    Span span;
    span.add(texts[0].name);
    for (int i = 1; i < texts.GetSize(); ++i) {
        contents.add(Chain(vcdbEntGet(texts[i].name)).get());
        span.add(texts[i].name);
    }
    return makeMText(base, contents, span.width());
}
