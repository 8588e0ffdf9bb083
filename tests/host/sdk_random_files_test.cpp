// Random values in, the same out: through ASCII and binary files of every release.
#include "tests/host/sdk_drawing.h"

#include "host/io/drawing_file.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

namespace {

struct FileKind {
    DxfVersion version;
    bool binary;
};

std::vector<FileKind> fileKinds()
{
    std::vector<FileKind> all;
    for (const DxfVersion v : {DxfVersion::R12, DxfVersion::R2000, DxfVersion::R2004, DxfVersion::R2007,
                               DxfVersion::R2010, DxfVersion::R2013, DxfVersion::R2018})
        for (const bool binary : {false, true})
            all.push_back({v, binary});
    return all;
}

class RandomFiles : public testing::TestWithParam<FileKind> {
protected:
    // The drawing as it is read back.
    std::unique_ptr<VcDbDatabase> again()
    {
        WriteOptions options;
        options.version = GetParam().version;
        options.binary = GetParam().binary;
        options.allowLoss = true;
        std::string bytes;
        const WriteResult written = writeDrawingBytes(drawing.database, bytes, options);
        EXPECT_TRUE(written.ok()) << written.message;
        auto database = std::make_unique<VcDbDatabase>(false);
        const ReadResult read = readDrawingBytes(*database, bytes);
        EXPECT_TRUE(read.ok()) << read.message;
        EXPECT_EQ(read.problems.total(), 0u)
            << (read.problems.items().empty() ? "" : read.problems.items().front().text);
        return database;
    }
    template <class T>
    const T& twin(VcDbDatabase& database, VcDbObjectId id)
    {
        const T* found = database.core().objectAs<T>(database.core().findHandle(id.handle().value()));
        EXPECT_NE(found, nullptr);
        static const T none;
        return found ? *found : none;
    }

    std::mt19937_64 m_engine{20240229};
    SdkDrawing drawing;
};

INSTANTIATE_TEST_SUITE_P(All, RandomFiles, testing::ValuesIn(fileKinds()), [](const auto& info) {
    return std::string(info.param.version == DxfVersion::R12 ? "" : "R") + releaseName(info.param.version) +
           (info.param.binary ? "binary" : "ascii");
});

// Any finite number, with those at the edges more often than chance would have them.
double anyNumber(std::mt19937_64& engine)
{
    static constexpr double kEdges[] = {
        0.0,  -0.0,   1.0, -1.0, 0.1, 1.0 / 3, 1e-300, -1e300, 5e-324, 1.7976931348623157e308, 123456789012345.0,
        1e16, 2.5e-17};
    if (engine() % 4 == 0)
        return kEdges[engine() % std::size(kEdges)];
    while (true) {
        const std::uint64_t bits = engine();
        double value = 0;
        std::memcpy(&value, &bits, sizeof value);
        if (std::isfinite(value))
            return value;
    }
}

bool sameBits(double a, double b) { return a == b; }

TEST_P(RandomFiles, NumbersComeBackToTheBit)
{
    std::vector<std::pair<VcDbObjectId, VcGePoint3d>> lines;
    for (int i = 0; i < 200; ++i) {
        const VcGePoint3d p(anyNumber(m_engine), anyNumber(m_engine), anyNumber(m_engine));
        lines.emplace_back(drawing.line(p, {1, 2, 3}), p);
    }
    const auto database = again();
    for (const auto& [id, p] : lines) {
        const VcGePoint3d q = twin<VcDbLine>(*database, id).startPoint();
        EXPECT_TRUE(sameBits(p.x, q.x) && sameBits(p.y, q.y) && sameBits(p.z, q.z)) << p.x << ' ' << p.y << ' ' << p.z;
    }
}

TEST_P(RandomFiles, AnglesComeBackWithinTheirLastDigit)
{
    std::uniform_real_distribution<double> turn(0, 6.283185307179586);
    std::vector<std::tuple<VcDbObjectId, double, double>> arcs;
    for (int i = 0; i < 200; ++i) {
        const double start = turn(m_engine), end = turn(m_engine);
        arcs.emplace_back(drawing.add(std::make_unique<VcDbArc>(VcGePoint3d(), VcGeVector3d::zAxis(), 2.0, start, end)),
                          start, end);
    }
    const auto database = again();
    for (const auto& [id, start, end] : arcs) {
        EXPECT_NEAR(twin<VcDbArc>(*database, id).startAngle(), start, 4e-15);
        EXPECT_NEAR(twin<VcDbArc>(*database, id).endAngle(), end, 4e-15);
    }
}

std::wstring anyText(std::mt19937_64& engine)
{
    static constexpr std::wstring_view kLetters = L"aZ09 ^%\\{};,\"'\x00e4\x00df\x20ac\x0416\x4e2d\x3042\x1F600\t ";
    std::wstring text(1 + engine() % 40, L' ');
    for (wchar_t& c : text)
        c = kLetters[engine() % kLetters.size()];
    return text;
}

TEST_P(RandomFiles, TextsComeBackLetterForLetter)
{
    std::vector<std::pair<VcDbObjectId, std::wstring>> texts;
    for (int i = 0; i < 200; ++i) {
        const std::wstring contents = anyText(m_engine);
        texts.emplace_back(drawing.add(std::make_unique<VcDbText>(VcGePoint3d(), contents.c_str(), 2.5)), contents);
    }
    const auto database = again();
    for (const auto& [id, contents] : texts)
        EXPECT_EQ(taken(twin<VcDbText>(*database, id).textString()), contents);
}

TEST_P(RandomFiles, LongTextsComeBackWhole)
{
    if (GetParam().version == DxfVersion::R12)
        GTEST_SKIP() << "has no texts of many lines";
    std::vector<std::pair<VcDbObjectId, std::wstring>> texts;
    for (int i = 0; i < 20; ++i) {
        std::wstring contents;
        while (contents.size() < 200 + 77u * unsigned(i))
            contents += anyText(m_engine);
        auto text = std::make_unique<VcDbMText>();
        text->setContents(contents.c_str());
        texts.emplace_back(drawing.add(std::move(text)), contents);
    }
    const auto database = again();
    for (const auto& [id, contents] : texts)
        EXPECT_EQ(taken(twin<VcDbMText>(*database, id).contents()), contents);
}

TEST_P(RandomFiles, ColoursComeBackAsFarAsTheReleaseKnowsThem)
{
    std::vector<std::pair<VcDbObjectId, VcCmColor>> lines;
    for (int i = 0; i < 200; ++i) {
        VcCmColor color = VcCmColor::fromIndex(std::int16_t(m_engine() % 257));
        if (i % 2)
            color.setRGB(std::uint8_t(m_engine()), std::uint8_t(m_engine()), std::uint8_t(m_engine()));
        const VcDbObjectId id = drawing.line();
        Writing<VcDbLine>(id)->setColor(color);
        lines.emplace_back(id, color);
    }
    const auto database = again();
    for (const auto& [id, color] : lines) {
        const VcCmColor back = twin<VcDbLine>(*database, id).color();
        if (GetParam().version >= DxfVersion::R2004) {
            EXPECT_EQ(back, color);
        } else {
            EXPECT_EQ(back.colorIndex(), color.colorIndex()) << "the nearest of the palette";
        }
    }
}

TEST_P(RandomFiles, VerticesComeBackWithBulgesAndWidths)
{
    if (GetParam().version == DxfVersion::R12)
        GTEST_SKIP() << "becomes another class";
    std::uniform_real_distribution<double> number(-100, 100);
    std::vector<std::pair<VcDbObjectId, std::unique_ptr<VcDbObject>>> polylines;
    for (int i = 0; i < 30; ++i) {
        auto p = std::make_unique<VcDbPolyline>();
        const unsigned n = unsigned(2 + m_engine() % 30);
        for (unsigned v = 0; v < n; ++v)
            p->addVertexAt(v, {number(m_engine), number(m_engine)}, m_engine() % 2 ? number(m_engine) : 0,
                           m_engine() % 3 ? 0 : 1.25, m_engine() % 3 ? 0 : 0.5);
        p->setClosed(m_engine() % 2);
        p->setElevation(number(m_engine));
        auto copy = p->copyOf();
        polylines.emplace_back(drawing.add(std::move(p)), std::move(copy));
    }
    const auto database = again();
    for (const auto& [id, given] : polylines) {
        const auto& a = static_cast<const VcDbPolyline&>(*given);
        const auto& b = twin<VcDbPolyline>(*database, id);
        ASSERT_EQ(a.numVerts(), b.numVerts());
        EXPECT_EQ(a.isClosed(), b.isClosed());
        EXPECT_EQ(a.elevation(), b.elevation());
        for (unsigned v = 0; v < a.numVerts(); ++v) {
            VcGePoint2d p, q;
            double bulge = 0, same = 0, start = 0, end = 0, start2 = 0, end2 = 0;
            a.getPointAt(v, p);
            b.getPointAt(v, q);
            a.getBulgeAt(v, bulge);
            b.getBulgeAt(v, same);
            a.getWidthsAt(v, start, end);
            b.getWidthsAt(v, start2, end2);
            EXPECT_TRUE(p == q && bulge == same && start == start2 && end == end2) << v;
        }
    }
}

}
