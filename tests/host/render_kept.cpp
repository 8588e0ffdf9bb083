// What is drawn of things that drawings bring along for others: pictures of foreign objects, clips of references, blocks of
// leaders, shapes of linetypes, gradients.
#include "host/io/drawing_file.h"
#include "host/io/external_reference.h"
#include "render_support.h"
#include "sdk/vcdb_text.h"

#include <cstring>
#include <map>
#include <fmt/format.h>

using namespace rendertest;

namespace {

// Records as foreign programs write them: each its length, its kind, and little-endian values.
class Records {
public:
    Records& begin(std::uint32_t kind)
    {
        end();
        m_start = m_bytes.size();
        number(0);
        number(kind);
        ++m_count;
        return *this;
    }
    Records& number(std::uint32_t n) { return raw(&n, sizeof n); }
    Records& text(const std::string& bytes) { return raw(bytes.data(), bytes.size()); }
    Records& reals(std::initializer_list<double> values)
    {
        for (const double v : values)
            raw(&v, sizeof v);
        return *this;
    }
    std::string all()
    {
        end();
        std::string whole;
        for (const std::uint32_t n : {std::uint32_t(m_bytes.size() + 8), m_count})
            whole.append(reinterpret_cast<const char*>(&n), 4);
        return whole + m_bytes;
    }

private:
    Records& raw(const void* data, std::size_t size)
    {
        m_bytes.append(static_cast<const char*>(data), size);
        return *this;
    }
    void end()
    {
        if (m_count == 0)
            return;
        const std::uint32_t length = std::uint32_t(m_bytes.size() - m_start);
        std::memcpy(m_bytes.data() + m_start, &length, 4);
    }
    std::string m_bytes;
    std::size_t m_start = 0;
    std::uint32_t m_count = 0;
};

// Bits without gaps, as polylines are packed.
class PackedBits {
public:
    PackedBits& bits(unsigned value, int count)
    {
        for (int i = count - 1; i >= 0; --i, ++m_count) {
            if (m_count % 8 == 0)
                m_bytes.push_back(0);
            m_bytes.back() = char(m_bytes.back() | (value >> i & 1) << (7 - m_count % 8));
        }
        return *this;
    }
    PackedBits& bytes(const void* data, std::size_t size)
    {
        for (std::size_t i = 0; i < size; ++i)
            bits(static_cast<const std::uint8_t*>(data)[i], 8);
        return *this;
    }
    PackedBits& plain(double v) { return bytes(&v, sizeof v); }
    PackedBits& real(double v) { return v == 0 ? bits(2, 2) : v == 1 ? bits(1, 2) : bits(0, 2).plain(v); }
    PackedBits& same() { return bits(0, 2); }  // as the number before
    PackedBits& other(double v) { return bits(3, 2).plain(v); }
    // The number before with the last two of its upper four bytes, and the lower four, replaced.
    PackedBits& near(double v)
    {
        std::uint8_t raw[8];
        std::memcpy(raw, &v, sizeof raw);
        return bits(2, 2).bytes(raw + 4, 2).bytes(raw, 4);
    }
    PackedBits& shortNumber(std::int16_t v) { return bits(0, 2).bytes(&v, sizeof v); }
    PackedBits& longNumber(std::uint8_t v) { return bits(1, 2).bits(v, 8); }
    std::string all()
    {
        while (m_bytes.size() % 4)
            m_bytes.push_back(0);
        return m_bytes;
    }

private:
    std::string m_bytes;
    std::size_t m_count = 0;
};

std::string foreignObject(const std::string& bytes)
{
    std::string hex;
    for (const char c : bytes)
        hex += fmt::format("{:02X}", std::uint8_t(c));
    std::string groups = "0\nACAD_PROXY_ENTITY\n5\n50\n100\nAcDbEntity\n8\n0\n100\nAcDbProxyEntity\n90\n498\n91\n500\n";
    for (std::size_t at = 0; at < hex.size(); at += 254)
        groups += "310\n" + hex.substr(at, 254) + "\n";
    return groups;
}

std::string drawing(const std::string& entities, const std::string& before = {}, const std::string& after = {})
{
    return before + "0\nSECTION\n2\nENTITIES\n" + entities + "0\nENDSEC\n" + after + "0\nEOF\n";
}

}

class RenderKept : public Picture {
protected:
    void paintFile(const std::string& file, bool mayFail = false)
    {
        sheet = {};
        omissions = {};
        VcDbDatabase database(false);
        const bool read = readDrawingBytes(database, file).ok();
        ASSERT_TRUE(read || mayFail);
        if (!read)
            return;
        vk::render::Scene scene(database.core(), *vk::render::findLayout(database.core(), ""), omissions);
        scene.paint(sheet, {{0, 0}, {kSide, kSide}}, {kSide, kSide, kPage, true});
    }
};

TEST_F(RenderKept, PicturesOfForeignObjects)
{
    Records r;
    r.begin(14).number(1);                                                               // red
    r.begin(6).number(2).reals({100, 100, 0, 300, 100, 0});                              // a line
    r.begin(22).number(0xc200ff00);                                                      // a true colour
    r.begin(2).reals({500, 500, 0, 100, 0, 0, 1});                                       // a circle
    r.begin(4).reals({500, 500, 0, 200, 0, 0, 1, 1, 0, 0, 3.14159265358979}).number(0);  // a half circle above it
    r.begin(3).reals({810, 500, 0, 800, 510, 0, 790, 500, 0});                           // through three points
    r.begin(20).number(1);                                                               // filled from here on
    r.begin(7).number(4).reals({100, 700, 0, 200, 700, 0, 200, 800, 0, 100, 800, 0});    // a square
    r.begin(99).reals({1, 2, 3});                                                        // what nobody knows
    r.begin(29).reals({1, 0, 0, 500, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1});               // moved
    r.begin(32).number(2).reals({100, 100, 0, 300, 100, 0, 0, 0, 1});
    r.begin(31);
    r.begin(9)
        .number(3)
        .reals({700, 700, 0, 900, 700, 0, 800, 900, 0})
        .number(4)
        .number(3)
        .number(0)
        .number(1)
        .number(2);
    paintFile(drawing(foreignObject(r.all())));
    EXPECT_EQ(at(200, 100), kRed);
    EXPECT_EQ(at(600, 500), kGreen);
    EXPECT_EQ(at(500, 700), kGreen);
    EXPECT_FALSE(isInk(500, 300));
    EXPECT_TRUE(isInk(800, 490));
    EXPECT_EQ(at(150, 750), kGreen);
    EXPECT_TRUE(isInk(700, 100));
    EXPECT_TRUE(isInk(800, 700));
    EXPECT_FALSE(isInk(800, 750)) << "shells are drawn by their edges";
    EXPECT_TRUE(omissions.counts().empty());
}

TEST_F(RenderKept, BrokenPicturesOfForeignObjectsAreHarmless)
{
    Records r;
    r.begin(8).number(2).number(2).reals({100, 100, 0, 300, 100, 0, 100, 300, 0, 300, 300, 0});
    r.begin(6).number(0xffffffff).reals({100, 100, 0});
    r.begin(8).number(0xffffffff).number(0xffffffff);
    r.begin(9).number(1).reals({0, 0, 0}).number(0xffffffff).number(0x80000000).number(7);
    r.begin(38).reals({0, 0, 0, 0, 0, 1, 1, 0, 0}).number(0x00410041);
    const std::string whole = r.all();
    for (std::size_t length = 0; length <= whole.size(); ++length)
        paintFile(drawing(foreignObject(whole.substr(0, length))), true);
    EXPECT_TRUE(isInk(200, 100)) << "what came before the nonsense";
    EXPECT_TRUE(isInk(100, 200));
    paintFile(drawing(foreignObject("")));
    EXPECT_EQ(omissions.counts().size(), 1u) << "an object without a picture is told";
}

// Closed, with half a circle below and a side that is wide.
TEST_F(RenderKept, PackedPolylinesOfForeignObjects)
{
    PackedBits b;
    b.shortNumber(512 | 16 | 32).longNumber(4).longNumber(4).longNumber(4);
    b.plain(300).plain(500).other(700).same().near(695).other(800).other(300).same();
    b.real(1).real(0).real(0).real(0);
    b.real(0).real(0).real(40).real(40).real(0).real(0).real(0).real(0);
    const std::string packed = b.all();
    const std::uint32_t length = std::uint32_t(packed.size());
    for (const bool saysLength : {false, true}) {
        Records r;
        r.begin(33);
        if (saysLength)
            r.number(length);
        r.text(packed);
        paintFile(drawing(foreignObject(r.all())));
        EXPECT_TRUE(isInk(500, 300)) << "the half circle";
        EXPECT_TRUE(isInk(712, 650)) << "the wide side";
        EXPECT_TRUE(isInk(500, 800));
        EXPECT_TRUE(isInk(300, 650));
        EXPECT_FALSE(isInk(500, 650));
        EXPECT_TRUE(omissions.counts().empty());
    }
    for (std::size_t size = 0; size + 4 < packed.size(); ++size) {
        Records r;
        r.begin(33).text(packed.substr(0, size));
        paintFile(drawing(foreignObject(r.all())), true);
        EXPECT_EQ(omissions.counts().size(), 1u) << "half a polyline is none: " << size;
    }
}

TEST_F(RenderKept, ClipsOfForeignObjects)
{
    static constexpr std::initializer_list<double> kWorld{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    Records r;
    r.begin(27).reals({0, 0, 1, 0, 0, 0}).number(2).reals({200, 0, 400, 1000}).reals(kWorld).reals(kWorld);
    r.number(0).number(0).reals({0, 0}).number(0);
    r.begin(6).number(2).reals({100, 500, 0, 900, 500, 0});
    r.begin(28);
    r.begin(6).number(2).reals({100, 700, 0, 900, 700, 0});
    r.begin(28);  // one too many
    r.begin(27)
        .reals({0, 0, 1, 0, 0, 0})
        .number(2)
        .reals({200, 0, 400, 1000})
        .reals(kWorld)
        .reals(kWorld);  // never popped
    paintFile(drawing(foreignObject(r.all()) +
                      "0\nLINE\n5\n51\n100\nAcDbEntity\n8\n0\n100\nAcDbLine\n10\n100\n20\n900\n11\n900\n21\n900\n"));
    EXPECT_TRUE(isInk(300, 500));
    EXPECT_FALSE(isInk(150, 500));
    EXPECT_FALSE(isInk(600, 500));
    EXPECT_TRUE(isInk(600, 700)) << "after the clip";
    EXPECT_TRUE(isInk(600, 900)) << "what comes after the object is not clipped";
}

TEST_F(RenderKept, FramesOfUnderlays)
{
    const std::string underlay = "0\nPDFUNDERLAY\n5\n50\n100\nAcDbEntity\n8\n0\n62\n1\n100\nAcDbUnderlayReference\n340"
                                 "\n51\n10\n100\n20\n200\n30\n0\n"
                                 "41\n2\n42\n2\n43\n1\n50\n90\n280\n3\n11\n0\n21\n0\n11\n100\n21\n50\n";
    paintFile(drawing(underlay));
    EXPECT_EQ(at(100, 300), kRed) << "the longer side points upwards";
    EXPECT_EQ(at(0, 300), kRed);
    EXPECT_EQ(at(50, 400), kRed);
    EXPECT_FALSE(isInk(50, 450));
    EXPECT_EQ(omissions.counts().at("page of an underlay"), 1u);
}

TEST_F(RenderKept, PolygonsOfMappingPrograms)
{
    const std::string rings = "91\n2\n92\n3\n73\n1\n72\n1\n93\n4\n10\n100\n20\n100\n42\n0\n10\n900\n20\n100\n42\n0\n10"
                              "\n900\n20\n900\n42\n1\n10\n100\n20\n900\n42\n0\n"
                              "92\n3\n73\n1\n72\n0\n93\n3\n10\n400\n20\n200\n10\n600\n20\n200\n10\n500\n20\n400\n";
    const std::string head = "0\nMPOLYGON\n5\n50\n100\nAcDbEntity\n8\n0\n62\n1\n100\nAcDbMPolygon\n70\n1\n10\n0\n20\n0"
                             "\n30\n0\n210\n0\n220\n0\n230\n1\n2\n";
    paintFile(drawing(head + "SOLID\n71\n1\n" + rings + "63\n3\n11\n0\n21\n0\n99\n0\n"));
    EXPECT_EQ(at(200, 500), kGreen);
    EXPECT_FALSE(isInk(500, 250)) << "the island";
    EXPECT_EQ(at(900, 500), kRed) << "the rim";
    EXPECT_EQ(at(500, 950), kGreen) << "beyond the bulged side";
    paintFile(drawing(head + "LINES\n71\n0\n" + rings +
                      "76\n1\n52\n0\n41\n1\n77\n0\n78\n1\n53\n0\n43\n0\n44\n0\n45\n0\n46\n50\n79\n0\n63\n3\n99\n0\n"));
    EXPECT_EQ(at(200, 500), kGreen) << "a line of the pattern";
    EXPECT_FALSE(isInk(200, 525));
    EXPECT_TRUE(omissions.counts().empty());
}

TEST_F(RenderKept, ArcsOfEllipsesAndWeightsOfForeignObjects)
{
    Records r;
    r.begin(44).reals({500, 500, 0, 0, 0, 1, 300, 100, 0, 3.14159265358979, 1.5707963267949}).number(0);
    r.begin(23).number(200);
    r.begin(6).number(2).reals({100, 900, 0, 900, 900, 0});
    r.begin(23).number(0xffffffff);
    r.begin(6).number(2).reals({100, 100, 0, 900, 100, 0});
    paintFile(drawing(foreignObject(r.all())));
    EXPECT_TRUE(isInk(500, 800)) << "the greater axis is turned upwards";
    EXPECT_TRUE(isInk(400, 500)) << "the half that runs anticlockwise from there";
    EXPECT_FALSE(isInk(600, 500));
    EXPECT_TRUE(isInk(500, 903)) << "two millimetres wide";
    EXPECT_FALSE(isInk(500, 103));
}

// The block is 1000 wide and high, all filled; the clip leaves out what is between 400 and 600.
TEST_F(RenderKept, InvertedClips)
{
    const auto numbers = [](int code, std::initializer_list<double> values) {
        std::string all;
        for (const double v : values)
            all += fmt::format("{}\n{}\n", code, v);
        return all;
    };
    const auto points = [](std::initializer_list<std::pair<double, double>> list, bool inSpace) {
        std::string all;
        for (const auto& [x, y] : list)
            all += fmt::format("10\n{}\n20\n{}\n{}", x, y, inSpace ? "30\n0.0\n" : "");
        return all;
    };
    const std::initializer_list<std::pair<double, double>> around{{0, 0}, {1000, 0}, {1000, 1000}, {0, 1000}},
        hole{{400, 400}, {600, 600}};
    const std::string blocks =
        "0\nSECTION\n2\nHEADER\n9\n$"
        "ACADVER\n1\nAC1015\n0\nENDSEC\n0\nSECTION\n2\nBLOCKS\n0\nBLOCK\n8\n0\n2\nALL\n10\n0\n20\n0\n0\nSOLID\n8\n0\n"
        "10\n0\n20\n0\n11\n1000\n21\n0\n12\n0\n22\n1000\n13\n1000\n23\n1000\n0\nENDBLK\n0\nENDSEC\n";
    const std::string reference = "0\nINSERT\n5\n60\n102\n{ACAD_XDICTIONARY\n360\n61\n102\n}"
                                  "\n100\nAcDbEntity\n8\n0\n100\nAcDbBlockReference\n2\nALL\n10\n0\n20\n0\n";
    const std::string identity = numbers(40, {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0});
    const auto file = [&](const std::string& compared) {
        const std::string objects =
            "0\nSECTION\n2\nOBJECTS\n0\nDICTIONARY\n5\nC\n100\nAcDbDictionary\n0\nDICTIONARY\n5\n61\n330\n60\n100\nAcDb"
            "Dictionary\n280\n1\n3\nACAD_FILTER\n360\n62\n"
            "0\nDICTIONARY\n5\n62\n330\n61\n100\nAcDbDictionary\n280\n1\n3\nSPATIAL\n360\n63\n"
            "0\nSPATIAL_FILTER\n5\n63\n102\n{ACAD_XDICTIONARY\n360\n64\n102\n}"
            "\n330\n62\n100\nAcDbFilter\n100\nAcDbSpatialFilter\n70\n4\n" +
            points(around, false) + "210\n0\n220\n0\n230\n1\n11\n0\n21\n0\n31\n0\n71\n1\n72\n0\n73\n0\n" + identity +
            identity +
            "0\nDICTIONARY\n5\n64\n330\n63\n100\nAcDbDictionary\n280\n1\n3\nACAD_INVERTEDCLIP_ROUNDTRIP\n360\n65\n"
            "0\nXRECORD\n5\n65\n330\n64\n100\nAcDbXrecord\n280\n1\n102\nACAD_INVERTEDCLIP_ROUNDTRIP\n" +
            points(hole, true) + "102\nACAD_INVERTEDCLIP_ROUNDTRIP_COMPARE\n" + compared + "0\nENDSEC\n";
        return drawing(reference, blocks, objects);
    };
    paintFile(file(points(around, true)));
    EXPECT_TRUE(isInk(200, 200));
    EXPECT_FALSE(isInk(500, 500));
    paintFile(file(points(hole, true)));
    EXPECT_TRUE(isInk(500, 500)) << "the filter has changed since, so it counts by itself";
}

TEST_F(RenderKept, BlocksOfLeadersHaveTheirAttributes)
{
    const std::string file =
        drawing("0\nMULTILEADER\n5\n70\n100\nAcDbEntity\n8\n0\n100\nAcDbMLeader\n300\nCONTEXT_DATA{"
                "\n296\n1\n341\n41\n14\n0\n24\n0\n34\n1\n15\n500\n25\n500\n35\n0\n"
                "16\n2\n26\n2\n36\n2\n46\n0\n301\n}\n170\n1\n330\n44\n177\n1\n44\n0\n302\nHHHH\n",
                "0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\nAC1015\n0\nENDSEC\n0\nSECTION\n2\nTABLES\n0\nTABLE\n2\nBLOCK_"
                "RECORD\n5\n1\n70\n1\n0\nBLOCK_RECORD\n5\n41\n100\nAcDbSymbolTableRecord\n"
                "100\nAcDbBlockTableRecord\n2\nMARK\n0\nENDTAB\n0\nENDSEC\n0\nSECTION\n2\nBLOCKS\n0\nBLOCK\n5\n42\n330"
                "\n41\n100\nAcDbEntity\n8\n0\n100\nAcDbBlockBegin\n2\nMARK\n10\n0\n20\n0\n"
                "0\nLINE\n5\n43\n330\n41\n100\nAcDbEntity\n8\n0\n100\nAcDbLine\n10\n0\n20\n0\n11\n100\n21\n0\n"
                "0\nATTDEF\n5\n44\n330\n41\n100\nAcDbEntity\n8\n0\n100\nAcDbText\n10\n0\n20\n50\n40\n50\n1\nD\n100\nAcD"
                "bAttributeDefinition\n3\nP\n2\nTAG\n70\n0\n"
                "0\nENDBLK\n5\n45\n330\n41\n100\nAcDbEntity\n8\n0\n100\nAcDbBlockEnd\n0\nENDSEC\n");
    paintFile(file);
    EXPECT_TRUE(isInk(650, 500)) << "the block, twice as large";
    double right = 0;
    for (const Sheet::Mark& mark : sheet.marks)
        for (const Point2& p : mark.line)
            if (p.y < kSide - 510)
                right = std::max(right, p.x);
    EXPECT_GT(right, 700) << "four letters, twice as large, over the block";
}

// A leader of two lines: both have arrows, what they share is drawn once; the rest is as wide as the text and its colours.
TEST_F(RenderKept, LeadersExplodeIntoWhatIsSeenOfThem)
{
    const std::string line = "304\nLEADER_LINE{\n10\n100\n20\n%d\n30\n0\n305\n}\n";
    const auto from = [&](const char* y) { return std::string(line).replace(line.find("%d"), 2, y); };
    VcDbDatabase database(false);
    const std::string file = drawing(
        "0\nMULTILEADER\n5\n70\n100\nAcDbEntity\n8\n0\n62\n3\n100\nAcDbMLeader\n300\nCONTEXT_DATA{\n41\n40\n140\n50\n"
        "290\n1\n304\nHH\n12\n600\n22\n620\n32\n0\n13\n1\n23\n0\n33\n0\n171\n2\n90\n-1023410171\n302\nLEADER{\n"
        "290\n1\n291\n1\n10\n500\n20\n600\n30\n0\n11\n1\n21\n0\n31\n0\n40\n80\n" +
        from("500") + from("700") + "303\n}\n301\n}\n170\n1\n91\n-1056964608\n171\n50\n");
    ASSERT_TRUE(readDrawingBytes(database, file).ok());
    const auto* leader = VcDbEntity::cast(database.core().object(database.core().findHandle(0x70)));
    ASSERT_TRUE(leader);
    std::vector<VcDbEntity*> made;
    ASSERT_EQ(leader->explode(made), Vcad::eOk);
    std::map<std::string, int> counts;
    for (VcDbEntity* piece : made) {
        ++counts[piece->isA()->dxfName()];
        const bool isText = piece->isKindOf(VcDbMText::desc());
        EXPECT_EQ(piece->colorIndex(), isText ? 5 : 3);
        EXPECT_EQ(piece->lineWeight(), isText ? -1 : 50);
        EXPECT_TRUE(!isText || static_cast<VcDbMText*>(piece)->attachment() == VcDbMText::kTopCenter);
        delete piece;
    }
    EXPECT_EQ(counts, (std::map<std::string, int>{{"LINE", 3}, {"SOLID", 2}, {"MTEXT", 1}}));
}

TEST_F(RenderKept, PiecesOnTheirWayIntoADrawingHaveTheirStyle)
{
    auto& style = *db().objectAs<VcDbTextStyleTableRecord>(db().recordFor(NameTable::TextStyle, "WIDE"));
    style.setFontFiles("txt", "");
    style.setXScale(2);
    VcDbMText text;
    text.setContentsUtf8("HH");
    text.setTextHeight(10);
    const double narrow = text.actualWidth();
    text.setTextStyle(style.objectId());
    EXPECT_NEAR(text.actualWidth(), 2 * narrow, 1e-6);
}

TEST_F(RenderKept, LoadedReferencesThatHoldNothingAreNotMissing)
{
    constexpr const char* kMissing = "external reference that is not loaded";
    const auto& over = addExternalReference(db(), "OVER", "over.dxf", true);
    add(new VcDbBlockReference({0, 0, 0}, over.objectId()));
    paint();
    EXPECT_EQ(omissions.counts().count(kMissing), 1u);
    omissions = {};
    db().loadedReferences.insert(over.objectId().slot());
    paint();
    EXPECT_EQ(omissions.counts().count(kMissing), 0u);
}

TEST_F(RenderKept, FiguresOfLinetypes)
{
    auto& style = *db().objectAs<VcDbTextStyleTableRecord>(db().recordFor(NameTable::TextStyle, "SHAPES"));
    style.setFontFiles("ltypeshp.shx", "");
    auto& linetype = *db().objectAs<VcDbLinetypeTableRecord>(db().recordFor(NameTable::Linetype, "FENCE"));
    std::vector<VcDbLinetypeTableRecord::Dash> pattern(2);
    pattern[0].length = 200;
    pattern[1].length = -100;
    pattern[1].flags = VcDbLinetypeTableRecord::kShape;
    pattern[1].shapeNumber = 132;
    pattern[1].style = style.objectId();
    pattern[1].scale = 25;
    linetype.setPattern("", pattern);
    line(0, 500, 800, 500, {.linetype = "FENCE"});
    paint();
    EXPECT_TRUE(omissions.counts().empty());
    std::size_t boxes = 0;
    for (const Sheet::Mark& mark : sheet.marks)
        boxes += mark.line.size() == 6;
    EXPECT_EQ(boxes, 2u) << "one in each gap";
    pattern[1].shapeNumber = 999;
    linetype.setPattern("", pattern);
    paint();
    EXPECT_EQ(omissions.counts().count("shape of a linetype"), 1u);
}

// Programs that know true colours only write colour 7 of a layer as white.
TEST_F(RenderKept, WhiteLayersAreSeenOnAWhitePage)
{
    VcCmColor white;
    white.setTrueColor(0xffffff);
    layer("WHITE").setColor(white);
    line(0, 100, 1000, 100, {.layer = "WHITE"});
    line(0, 200, 1000, 200, {.layer = "WHITE"}).setColor(white);
    paint();
    EXPECT_EQ(at(500, 100), kBlack);
    EXPECT_EQ(at(500, 200), 0xffffffffu) << "its own colour is meant";
    paint("", 0xff000000);
    EXPECT_EQ(at(500, 100), 0xffffffffu);
}

TEST_F(RenderKept, Gradients)
{
    const auto file = [](const char* name, int isOneColour, double angle) {
        return drawing(
            fmt::format(
                "0\nHATCH\n5\n50\n100\nAcDbEntity\n8\n0\n100\nAcDbHatch\n10\n0\n20\n0\n30\n0\n210\n0\n220\n0\n230\n1\n2"
                "\nSOLID\n70\n1\n71\n0\n91\n1\n92\n7\n72\n0\n73\n1\n"
                "93\n4\n10\n100\n20\n100\n10\n900\n20\n100\n10\n900\n20\n900\n10\n100\n20\n900\n97\n0\n75\n1\n76\n1\n98"
                "\n0\n450\n1\n451\n0\n460\n{}\n461\n0.0\n"
                "452\n{}\n462\n0.5\n453\n2\n463\n0.0\n63\n5\n421\n255\n463\n1.0\n63\n1\n421\n16711680\n470\n{}\n",
                angle, isOneColour, name),
            "0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\nAC1024\n0\nENDSEC\n");
    };
    paintFile(file("LINEAR", 0, 0));
    ASSERT_EQ(sheet.gradients.size(), 1u);
    EXPECT_FALSE(sheet.gradients[0].radial);
    EXPECT_NEAR(sheet.gradients[0].from.x, 100, 1e-6);
    EXPECT_NEAR(sheet.gradients[0].to.x, 900, 1e-6);
    EXPECT_EQ(sheet.gradients[0].stops.front().second, kBlue);
    EXPECT_EQ(sheet.gradients[0].stops.back().second, kRed);
    paintFile(file("INVLINEAR", 0, 0));
    EXPECT_EQ(sheet.gradients.at(0).stops.front().second, kRed);
    paintFile(file("CYLINDER", 0, 1.5707963267948966));
    EXPECT_EQ(sheet.gradients.at(0).stops.size(), 3u);
    EXPECT_NEAR(sheet.gradients.at(0).from.x, sheet.gradients.at(0).to.x, 1e-6);
    paintFile(file("SPHERICAL", 0, 0));
    EXPECT_TRUE(sheet.gradients.at(0).radial);
    EXPECT_NEAR(sheet.gradients.at(0).from.x, 500, 1e-6);
}

// An image that is not at hand is a frame with its name.
TEST_F(RenderKept, ImagesThatAreNotThere)
{
    paintFile(
        drawing("0\nIMAGE\n5\n50\n100\nAcDbEntity\n8\n0\n100\nAcDbRasterImage\n90\n0\n10\n200\n20\n200\n30\n0\n11\n2\n2"
                "1\n0\n31\n0\n12\n0\n22\n2\n32\n0\n13\n300\n23\n200\n340\n51\n"
                "70\n1\n280\n0\n281\n50\n282\n50\n283\n0\n71\n1\n91\n2\n14\n-0.5\n24\n-0.5\n14\n299.5\n24\n199.5\n",
                "0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\nAC1024\n0\nENDSEC\n",
                "0\nSECTION\n2\nOBJECTS\n0\nDICTIONARY\n5\nC\n100\nAcDbDictionary\n0\nIMAGEDEF\n5\n51\n100\nAcDbRasterI"
                "mageDef\n90\n0\n1\nnowhere/photo.png\n10\n300\n20\n200\n11\n1\n21\n1\n280\n1\n281\n0\n0\nENDSEC\n"));
    EXPECT_EQ(sheet.images.size(), 1u);
    EXPECT_TRUE(isInk(500, 200));
    EXPECT_TRUE(isInk(800, 400));
    EXPECT_EQ(omissions.counts().count("image that cannot be loaded"), 1u);
}
