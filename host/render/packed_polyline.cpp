#include "host/render/packed_polyline.h"

#include <cmath>
#include <cstring>

namespace vk::render {

namespace {

// From the highest bit of each byte to the lowest; past the end there are zeros and isShort tells.
class Bits {
public:
    explicit Bits(std::string_view bytes) : m_bytes(bytes) {}

    bool isShort = false;
    std::size_t left() const { return m_bytes.size() * 8 - m_at; }

    std::int32_t shortNumber()
    {
        switch (bits(2)) {
        case 0:
            return std::int16_t(value<std::uint16_t>());
        case 1:
            return byte();
        case 2:
            return 0;
        default:
            return 256;
        }
    }
    std::uint32_t longNumber()
    {
        switch (bits(2)) {
        case 0:
            return value<std::uint32_t>();
        case 1:
            return byte();
        default:
            return 0;
        }
    }
    double plainReal() { return value<double>(); }
    double real()
    {
        switch (bits(2)) {
        case 0:
            return plainReal();
        case 1:
            return 1;
        default:
            return 0;
        }
    }
    // Only the bytes that differ from those of another number.
    double realNear(double other)
    {
        std::uint8_t raw[sizeof(double)];
        std::memcpy(raw, &other, sizeof raw);
        const unsigned kind = bits(2);
        if (kind == 3)
            return plainReal();
        if (kind == 2)
            for (const int i : {4, 5})
                raw[i] = byte();
        for (int i = 0; kind != 0 && i < 4; ++i)
            raw[i] = byte();
        std::memcpy(&other, raw, sizeof raw);
        return other;
    }

private:
    unsigned bits(int count)
    {
        unsigned all = 0;
        for (; count > 0; --count, ++m_at) {
            isShort |= m_at >= m_bytes.size() * 8;
            all = all << 1 | (isShort ? 0u : unsigned(std::uint8_t(m_bytes[m_at / 8])) >> (7 - m_at % 8) & 1u);
        }
        return all;
    }
    std::uint8_t byte() { return std::uint8_t(bits(8)); }
    template <class T>
    T value()
    {
        std::uint8_t raw[sizeof(T)];
        for (std::uint8_t& b : raw)
            b = byte();
        T all;
        std::memcpy(&all, raw, sizeof all);
        return all;
    }

    std::string_view m_bytes;
    std::size_t m_at = 0;
};

enum PolylineFlag {
    kHasNormal = 1,
    kHasThickness = 2,
    kHasWidth = 4,
    kHasElevation = 8,
    kHasBulges = 16,
    kHasWidths = 32,
    kRunsOn = 256,
    kClosed = 512,
    kHasVertexIds = 1024,
};

std::optional<PlanePolyline> unpack(std::string_view bytes)
{
    Bits bits(bytes);
    const std::int32_t flags = bits.shortNumber();
    const auto has = [&](PolylineFlag flag) { return (flags & flag) != 0; };
    PlanePolyline polyline;
    polyline.closed = has(kClosed);
    polyline.runsOn = has(kRunsOn);
    const double width = has(kHasWidth) ? bits.real() : 0;
    polyline.elevation = has(kHasElevation) ? bits.real() : 0;
    polyline.thickness = has(kHasThickness) ? bits.real() : 0;
    if (has(kHasNormal))
        for (double* axis : {&polyline.normal.x, &polyline.normal.y, &polyline.normal.z})
            *axis = bits.real();
    const std::uint32_t count = bits.longNumber();
    const std::uint32_t bulges = has(kHasBulges) ? bits.longNumber() : 0;
    const std::uint32_t ids = has(kHasVertexIds) ? bits.longNumber() : 0;
    const std::uint32_t widths = has(kHasWidths) ? bits.longNumber() : 0;
    constexpr std::size_t kFewestBits = 4;  // of a vertex
    if (count == 0 || count > bits.left() / kFewestBits || bulges > count || ids > count || widths > count)
        return std::nullopt;
    const double x = bits.plainReal(), y = bits.plainReal();
    VcGePoint2d at(x, y);
    polyline.vertices.push_back({at, 0, width, width});
    for (std::uint32_t i = 1; i < count; ++i) {
        at.x = bits.realNear(at.x);
        at.y = bits.realNear(at.y);
        polyline.vertices.push_back({at, 0, width, width});
    }
    for (std::uint32_t i = 0; i < bulges; ++i)
        polyline.vertices[i].bulge = bits.real();
    for (std::uint32_t i = 0; i < ids; ++i)
        bits.longNumber();
    for (std::uint32_t i = 0; i < widths; ++i) {
        polyline.vertices[i].startWidth = bits.real();
        polyline.vertices[i].endWidth = bits.real();
    }
    for (const WidthVertex& v : polyline.vertices)
        bits.isShort |= !std::isfinite(v.point.x) || !std::isfinite(v.point.y);
    // What is left over may fill up four bytes, and a check sum may stand behind it.
    constexpr std::size_t kMostLeft = 64;
    if (bits.isShort || bits.left() > kMostLeft || !(polyline.normal.length() > 0))
        return std::nullopt;
    return polyline;
}

}

// Some programs write the number of bytes in front.
std::optional<PlanePolyline> unpackPolyline(std::string_view bytes)
{
    std::uint32_t length = 0;
    if (bytes.size() > sizeof length)
        std::memcpy(&length, bytes.data(), sizeof length);
    if (length > 0 && length <= bytes.size() - sizeof length && bytes.size() - sizeof length - length < 4)
        if (auto polyline = unpack(bytes.substr(sizeof length, length)))
            return polyline;
    return unpack(bytes);
}

}  // namespace vk::render
