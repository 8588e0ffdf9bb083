// The picture that other programs leave with objects of their own classes: a sequence of records, each its length and kind
// and then little-endian values, in world coordinates. Kinds that are not known are passed over by their length.
#include "host/base/unicode.h"
#include "host/db/database.h"
#include "host/db/ent_util.h"
#include "host/db/extras.h"
#include "host/db/packed_colour.h"
#include "host/render/packed_polyline.h"

#include <cmath>
#include <cstring>
#include <functional>
#include <utility>

namespace vk::render {

namespace {

enum RecordKind : std::uint32_t {
    kCircle = 2,
    kCircleByPoints = 3,
    kArc = 4,
    kArcByPoints = 5,
    kPolyline = 6,
    kPolygon = 7,
    kMesh = 8,
    kShell = 9,
    kText = 10,
    kStyledText = 11,
    kXline = 12,
    kRay = 13,
    kColourIndex = 14,
    kLinetype = 18,
    kFill = 20,
    kColour = 22,
    kLineweight = 23,
    kPushClip = 27,
    kPopClip = 28,
    kPushMatrix = 29,
    kPushOtherMatrix = 30,
    kPopMatrix = 31,
    kPolylineWithNormal = 32,
    kPackedPolyline = 33,
    kUnicodeText = 36,
    kStyledUnicodeText = 38,
    kEllipticArc = 44,
};

// Values one after the other; past the end there are zeros and isShort tells.
class Bytes {
public:
    explicit Bytes(std::string_view data) : m_data(data) {}

    template <class T>
    T take()
    {
        T value{};
        if (m_data.size() < sizeof(T)) {
            m_data = {};
            isShort = true;
            return value;
        }
        std::memcpy(&value, m_data.data(), sizeof(T));
        m_data.remove_prefix(sizeof(T));
        return value;
    }
    std::uint32_t number() { return take<std::uint32_t>(); }
    double real() { return take<double>(); }
    VcGeVector3d vector()
    {
        const double x = real(), y = real(), z = real();
        return {x, y, z};
    }
    VcGePoint3d point() { return VcGePoint3d() + vector(); }
    VcGeMatrix3d matrix()
    {
        VcGeMatrix3d m;
        for (auto& row : m.entry)
            for (double& value : row)
                value = real();
        return m;
    }
    Bytes part(std::size_t size)
    {
        const Bytes taken(m_data.substr(0, size));
        m_data.remove_prefix(std::min(size, m_data.size()));
        return taken;
    }
    // A text ends at a zero and fills whole groups of four bytes.
    std::string text(bool unicode)
    {
        std::string all;
        const std::size_t before = m_data.size();
        if (unicode) {
            std::wstring wide;
            while (const auto c = take<char16_t>())
                wide.push_back(wchar_t(c));
            all = wideToUtf8(wide);
        } else {
            while (const char c = take<char>())
                all.push_back(c);
        }
        const std::size_t used = before - m_data.size();
        part((4 - used % 4) % 4);
        return all;
    }
    std::size_t left() const { return m_data.size(); }
    std::string_view rest() const { return m_data; }
    bool isShort = false;

private:
    std::string_view m_data;
};

std::string graphicsOf(const VcDbEntity& entity)
{
    std::string all;
    if (entity.extras())
        for (const UnclaimedGroups& groups : entity.extras()->unclaimed)
            for (const Tag& tag : groups.tags)
                if (tag.code == 310 && tag.form == Tag::Form::Bytes &&
                    (groups.subclass == "AcDbEntity" || groups.subclass == "AcDbProxyEntity"))
                    all += tag.view();
    return all;
}

class Player {
public:
    explicit Player(ListBuilder& b) : m_b(b), m_look(b.props()) {}

    void play(Bytes all)
    {
        all.number();  // its length
        all.number();  // how many records
        constexpr std::size_t kHeader = 8;
        while (all.left() >= kHeader) {
            const std::uint32_t length = all.number(), kind = all.number();
            if (length < kHeader)
                return;
            draw(kind, all.part(length - kHeader));
        }
        for (; m_clips > 0; --m_clips)
            m_b.unclip();
    }
    bool hasDrawn = false;

private:
    using Points = std::vector<VcGePoint3d>;

    void draw(std::uint32_t kind, Bytes data)
    {
        switch (kind) {
        case kCircle:
            return circle(data);
        case kCircleByPoints:
            return throughPoints(data, true);
        case kArc:
            return arc(data);
        case kArcByPoints:
            return throughPoints(data, false);
        case kPolyline:
        case kPolylineWithNormal:
            return chain(points(data, data.number()), false);
        case kPolygon:
            return chain(points(data, data.number()), true);
        case kMesh:
            return mesh(data);
        case kShell:
            return shell(data);
        case kText:
        case kUnicodeText:
            return text(data, kind == kUnicodeText);
        case kStyledText:
        case kStyledUnicodeText:
            return styledText(data, kind == kStyledUnicodeText);
        case kXline:
        case kRay:
            return endless(data, kind == kXline);
        case kPackedPolyline:
            return packedPolyline(data);
        case kEllipticArc:
            return ellipticArc(data);
        case kColourIndex:
            setColourIndex(data.number());
            return keepColour();
        case kColour:
            setColour(data.number());
            return keepColour();
        case kLineweight:
            m_look.lineWeight = std::int16_t(data.take<std::int32_t>());
            return m_b.setOwnLook(m_look);
        case kLinetype:
            return setLinetype(data.number());
        case kPushClip:
            return pushClip(data);
        case kPopClip:
            return popClip();
        case kFill:
            m_fills = data.number() == 1;
            return;
        case kPushMatrix:
        case kPushOtherMatrix:
            return push(data);
        case kPopMatrix:
            if (!m_matrices.empty())
                m_matrices.pop_back();
            return;
        }
    }

    VcGePoint3d place(const VcGePoint3d& p) const { return m_matrices.empty() ? p : m_matrices.back() * p; }
    VcGeVector3d place(const VcGeVector3d& v) const { return m_matrices.empty() ? v : m_matrices.back() * v; }

    Points points(Bytes& data, std::uint32_t count) const
    {
        constexpr std::size_t kSize = 3 * sizeof(double);
        Points all;
        for (std::size_t i = 0; i < count && data.left() >= kSize; ++i)
            all.push_back(place(data.point()));
        return all;
    }

    void figure(bool closed, const std::function<void()>& content)
    {
        const std::uint32_t first = m_b.figureCount();
        m_b.beginFigure();
        content();
        m_b.endFigure(closed);
        if (closed && m_fills)
            m_b.fill(first, FillRule::EvenOdd);
        else
            m_b.stroke(first);
        hasDrawn = true;
    }

    void chain(const Points& points, bool closed)
    {
        if (points.size() >= 2)
            figure(closed, [&] {
                for (const VcGePoint3d& p : points)
                    m_b.point(p);
            });
    }

    void bow(const VcGePoint3d& center, const VcGeVector3d& u, const VcGeVector3d& v, double sweep, bool closed)
    {
        figure(closed, [&] { m_b.arc({place(center), place(u), place(v), 0, sweep}); });
    }

    void circle(Bytes data)
    {
        const VcGePoint3d center = data.point();
        const double radius = data.real();
        const geom::Frame frame = geom::arbitraryFrame(data.vector().normal());
        if (!data.isShort)
            bow(center, frame.x * radius, frame.y * radius, 2 * kPi, true);
    }

    void arc(Bytes data)
    {
        const VcGePoint3d center = data.point();
        const double radius = data.real();
        const VcGeVector3d normal = data.vector().normal(), start = data.vector().normal();
        const double sweep = data.real();
        if (!data.isShort)
            bow(center, start * radius, normal.crossProduct(start) * radius, sweep, false);
    }

    // The greater axis is turned within the plane from where the plane's own X axis runs.
    void ellipticArc(Bytes data)
    {
        const VcGePoint3d center = data.point();
        const geom::Frame frame = geom::arbitraryFrame(data.vector().normal());
        const double major = data.real(), minor = data.real(), from = data.real(), to = data.real(), turn = data.real();
        if (data.isShort)
            return;
        const VcGeVector3d u = frame.x * std::cos(turn) + frame.y * std::sin(turn), v = frame.z.crossProduct(u);
        figure(false, [&] { m_b.arc({place(center), place(u * major), place(v * minor), from, to - from}); });
    }

    void packedPolyline(Bytes data)
    {
        const auto polyline = unpackPolyline(data.rest());
        if (!polyline)
            return;
        geom::Frame frame = frameOf(*polyline);
        frame = {place(frame.origin), place(frame.x), place(frame.y), place(frame.z)};
        addPlanePolyline(m_b, *polyline, frame);
        hasDrawn = true;
    }

    void throughPoints(Bytes data, bool whole)
    {
        const VcGePoint3d a = data.point(), b = data.point(), c = data.point();
        const VcGeVector3d u = b - a, v = c - a, normal = u.crossProduct(v);
        const double doubled = 2 * normal.lengthSqrd();
        if (data.isShort)
            return;
        if (!(doubled > 1e-24 * u.lengthSqrd() * v.lengthSqrd()))
            return chain({place(a), place(c)}, false);
        const VcGePoint3d center =
            a + (normal.crossProduct(u) * v.lengthSqrd() + v.crossProduct(normal) * u.lengthSqrd()) / doubled;
        const VcGeVector3d first = a - center, side = normal.normal().crossProduct(first), last = c - center;
        const double sweep = std::atan2(last.dotProduct(side), last.dotProduct(first));
        bow(center, first, side, whole ? 2 * kPi : sweep <= 0 ? sweep + 2 * kPi : sweep, whole);
    }

    void mesh(Bytes data)
    {
        const std::uint32_t rows = data.number(), columns = data.number();
        const std::uint64_t count = std::uint64_t(rows) * columns;
        if (count == 0 || count > data.left() / (3 * sizeof(double)))
            return;
        const Points all = points(data, std::uint32_t(count));
        for (std::uint32_t r = 0; r < rows; ++r)
            chain(Points(all.begin() + r * columns, all.begin() + (r + 1) * columns), false);
        for (std::uint32_t c = 0; c < columns; ++c) {
            Points column;
            for (std::uint32_t r = 0; r < rows; ++r)
                column.push_back(all[r * columns + c]);
            chain(column, false);
        }
    }

    // Faces are a count and as many indices; a negative count is that of a hole.
    void shell(Bytes data)
    {
        const Points all = points(data, data.number());
        std::uint32_t entries = data.number();
        while (entries > 0 && data.left() >= 4) {
            const auto corners = std::uint32_t(std::abs(std::int64_t(data.take<std::int32_t>())));
            --entries;
            Points face;
            for (std::uint32_t i = 0; i < corners && entries > 0 && data.left() >= 4; ++i, --entries)
                if (const std::uint32_t at = data.number(); at < all.size())
                    face.push_back(all[at]);
            const bool fills = std::exchange(m_fills, false);
            chain(face, true);
            m_fills = fills;
        }
    }

    struct TextPlace {
        VcGePoint3d at;
        VcGeVector3d normal, direction;
    };
    TextPlace textPlace(Bytes& data) const
    {
        const VcGePoint3d at = data.point();
        const VcGeVector3d normal = data.vector(), direction = data.vector();
        return {at, normal, direction};
    }

    void letters(const TextPlace& where, double height, const vktext::TextStyleSpec& style, const std::string& said)
    {
        const VcGeVector3d x = place(where.direction).normal(),
                           y = place(where.normal).normal().crossProduct(x).normal();
        if (!(height > 0) || x.length() == 0)
            return;
        m_b.text(style, height, said, place(where.at), x, y);
        hasDrawn = true;
    }

    void text(Bytes data, bool unicode)
    {
        const TextPlace where = textPlace(data);
        vktext::TextStyleSpec style;
        style.font = "txt";
        const double height = data.real();
        style.widthFactor = data.real();
        style.oblique = data.real();
        const std::string said = data.text(unicode);
        if (!data.isShort)
            letters(where, height, style, said);
    }

    void styledText(Bytes data, bool unicode)
    {
        const TextPlace where = textPlace(data);
        const std::string said = data.text(unicode);
        data.number();  // the length again
        data.number();  // whether codes are taken as they are
        vktext::TextStyleSpec style;
        const double height = data.real();
        style.widthFactor = data.real();
        style.oblique = data.real();
        data.real();  // between letters
        style.backwards = data.number() != 0;
        style.upsideDown = data.number() != 0;
        style.vertical = data.number() != 0;
        data.number();  // a line under it and one over it
        data.number();
        style.bold = data.number() != 0;
        style.italic = data.number() != 0;
        data.number();  // character set and pitch
        data.number();
        const std::string typeface = data.text(unicode), file = data.text(unicode);
        style.font = file.empty() ? typeface : file;
        if (style.font.empty())
            style.font = "txt";
        if (!(style.widthFactor > 0))
            style.widthFactor = 1;
        letters(where, height, style, said);
    }

    void endless(Bytes data, bool bothWays)
    {
        const VcGePoint3d base = place(data.point()), through = place(data.point());
        if (data.isShort || base == through)
            return;
        m_b.list().endless.push_back({base, (through - base).normal(), bothWays});
        m_b.item(Item::Endless, 0, m_b.list().endless.size() - 1);
        hasDrawn = true;
    }

    void push(Bytes data)
    {
        const VcGeMatrix3d m = data.matrix();
        if (!data.isShort)
            m_matrices.push_back(m_matrices.empty() ? m : m_matrices.back() * m);
    }

    // The boundary is in a plane of its own. One matrix leads there from the world, the other from the world to the block that
    // was clipped, as both were then.
    void pushClip(Bytes data)
    {
        data.vector();  // the plane's normal
        data.point();   // its origin
        ClipFrame clip;
        const std::uint32_t count = data.number();
        for (std::uint32_t i = 0; i < count && data.left() >= 2 * sizeof(double); ++i) {
            const double x = data.real(), y = data.real();
            clip.corners.emplace_back(x, y);
        }
        const VcGeMatrix3d toPlane = data.matrix(), toBlock = data.matrix();
        if (data.isShort)
            return;
        if (clip.corners.size() == 2) {
            const VcGePoint2d a = clip.corners[0], c = clip.corners[1];
            clip.corners = {a, {c.x, a.y}, c, {a.x, c.y}};
        }
        const VcGeMatrix3d placed = m_matrices.empty() ? VcGeMatrix3d() : m_matrices.back();
        clip.toClip = toPlane * toBlock.inverse() * placed.inverse();
        m_b.clip(std::move(clip));
        ++m_clips;
    }

    void popClip()
    {
        if (m_clips == 0)
            return;
        --m_clips;
        m_b.unclip();
    }

    // By block is the entity's own.
    void setColour(std::uint32_t packed)
    {
        const auto colour = colourOfPacked(packed);
        m_b.setColour(!colour || colour->isByBlock() ? m_b.props().color : *colour);
    }

    void setColourIndex(std::uint32_t index)
    {
        constexpr std::uint32_t kByLayer = 256;
        m_b.setColour(index < kByLayer ? VcCmColor::fromIndex(std::int16_t(index)) : m_b.props().color);
    }

    void keepColour()
    {
        m_look.color = m_b.colour();
        m_b.setOwnLook(m_look);
    }

    // Others than these two are numbers in the table of a drawing that is not at hand.
    void setLinetype(std::uint32_t index)
    {
        constexpr std::uint32_t kByLayer = 0x7fff, kByBlock = 0x7ffe;
        if (index == kByLayer || index == kByBlock)
            m_look.linetype = m_b.db().findRecord(NameTable::Linetype, index == kByLayer ? "ByLayer" : "ByBlock");
        m_b.setOwnLook(m_look);
    }

    ListBuilder& m_b;
    EntityProps m_look;
    int m_clips = 0;
    std::vector<VcGeMatrix3d> m_matrices;
    bool m_fills = false;
};

}

bool addKeptGraphics(const VcDbEntity& entity, ListBuilder& b)
{
    const std::string data = graphicsOf(entity);
    if (data.empty())
        return false;
    Player player(b);
    player.play(Bytes(data));
    return player.hasDrawn;
}

}  // namespace vk::render
