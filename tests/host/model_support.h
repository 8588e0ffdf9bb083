// Small bodies in the modeller's notation, in the text form of several versions and in the binary form.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

namespace modeltest {

// Records as the text form has them from 4.0 on: a type and its values without what every record begins with.
struct Body {
    std::vector<std::pair<std::string, std::string>> records;

    // Gives its number.
    int add(std::string type, std::string values)
    {
        records.emplace_back(std::move(type), std::move(values));
        return int(records.size()) - 1;
    }
    std::string text(int version = 400) const
    {
        std::string out = std::to_string(version) + " " + std::to_string(records.size()) + " 1 0\n";
        if (version >= 200)
            out += "7 drafter 8 modeller 3 now\n1 9.9999999999999995e-07 1e-10\n";
        for (const auto& [type, values] : records)
            out += type + (version >= 700 ? (type == "transform" ? " $-1 -1 " : " $-1 -1 $-1 ") : " $-1 ") + values +
                   " #\n";
        return out + "End-of-ACIS-data\n";
    }
    std::string binary(int word = 4) const;
};

inline void putWord(std::string& out, std::int64_t value, int size)
{
    for (int i = 0; i < size; ++i)
        out += char(value >> 8 * i & 0xff);
}

inline void putReal(std::string& out, double value)
{
    out += '\x06';
    out.append(reinterpret_cast<const char*>(&value), sizeof value);
}

inline void putToken(std::string& out, const std::string& token, int word)
{
    char* end = nullptr;
    const double number = std::strtod(token.c_str(), &end);
    if (token == "{" || token == "}") {
        out += token == "{" ? '\x0f' : '\x10';
    } else if (token[0] == '$') {
        out += '\x0c';
        putWord(out, std::atoi(token.c_str() + 1), word);
    } else if (*end == '\0') {
        putReal(out, number);
    } else if (token == "reversed" || token == "rotate" || token == "F") {
        out += '\x0a';
    } else if (token.starts_with("forward") || token.starts_with("no_") || token == "I" || token == "single") {
        out += '\x0b';
    } else {
        out += std::string("\x07") + char(token.size()) + token;
    }
}

inline void putType(std::string& out, const std::string& type)
{
    std::size_t at = 0;
    for (std::size_t hyphen; (hyphen = type.find('-', at)) != std::string::npos; at = hyphen + 1)
        out += std::string("\x0e") + char(hyphen - at) + type.substr(at, hyphen - at);
    out += std::string("\x0d") + char(type.size() - at) + type.substr(at);
}

inline std::string Body::binary(int word) const
{
    std::string out = word == 8 ? "ASM BinaryFile8" : "ASM BinaryFile4";
    for (const std::int64_t head : {22300, int(records.size()), 1, 0})
        putWord(out, head, word);
    for (const std::string name : {"drafter", "modeller", "now"})
        out += std::string("\x07") + char(name.size()) + name;
    for (const double unit : {1.0, 1e-6, 1e-10})
        putReal(out, unit);
    for (const auto& [type, values] : records) {
        putType(out, type);
        putToken(out, "$-1", word);
        out += '\x04';
        putWord(out, -1, word);
        if (type != "transform")
            putToken(out, "$-1", word);
        std::istringstream in(values);
        for (std::string token; in >> token;)
            putToken(out, token, word);
        out += '\x11';
    }
    return out + "\x0e\x03"
                 "End"
                 "\x0e\x02"
                 "of"
                 "\x0e\x03"
                 "ASM"
                 "\x0d\x04"
                 "data";
}

inline std::string ref(int number) { return "$" + std::to_string(number) + " "; }

// A body of one shell whose first face is the record 3.
inline Body shellBody()
{
    Body b;
    b.add("body", "$1 $-1 $-1");
    b.add("lump", "$-1 $2 $0");
    b.add("shell", "$-1 $-1 $3 $-1 $1");
    return b;
}

// About the Z axis, its lower circle in the plane of X and Y.
inline Body cylinder(double radius, double height)
{
    const std::string r = std::to_string(radius), h = std::to_string(height);
    Body b = shellBody();
    b.add("face", "$4 $6 $2 $-1 $10 forward single");
    b.add("face", "$5 $8 $2 $-1 $11 reversed single");
    b.add("face", "$-1 $9 $2 $-1 $12 forward single");
    b.add("loop", "$7 $13 $3");
    b.add("loop", "$-1 $14 $3");
    b.add("loop", "$-1 $15 $4");
    b.add("loop", "$-1 $16 $5");
    b.add("cone-surface", "0 0 0 0 0 1 " + r + " 0 0 1 I I 0 1 forward I I I I");
    b.add("plane-surface", "0 0 0 0 0 1 1 0 0 forward_v I I I I");
    b.add("plane-surface", "0 0 " + h + " 0 0 1 1 0 0 forward_v I I I I");
    b.add("coedge", "$13 $13 $15 $17 forward $6 $-1");
    b.add("coedge", "$14 $14 $16 $18 reversed $7 $-1");
    b.add("coedge", "$15 $15 $13 $17 reversed $8 $-1");
    b.add("coedge", "$16 $16 $14 $18 forward $9 $-1");
    b.add("edge", "$19 $19 $13 $23 forward");
    b.add("edge", "$20 $20 $14 $24 forward");
    b.add("vertex", "$17 $21");
    b.add("vertex", "$18 $22");
    b.add("point", r + " 0 0");
    b.add("point", r + " 0 " + h);
    b.add("ellipse-curve", "0 0 0 0 0 1 " + r + " 0 0 1 I I");
    b.add("ellipse-curve", "0 0 " + h + " 0 0 1 " + r + " 0 0 1 I I");
    return b;
}

inline Body sphere(const std::string& centerAndRadius)
{
    Body b = shellBody();
    b.add("face", "$-1 $-1 $2 $-1 $4 forward single");
    b.add("sphere-surface", centerAndRadius + " 1 0 0 0 0 1 forward_v I I I I");
    return b;
}

// The mantle over a circle about the origin, without its base.
inline Body cone(double radius, double height)
{
    const std::string r = std::to_string(radius);
    const double side = std::hypot(radius, height);
    Body b = shellBody();
    b.add("face", "$-1 $5 $2 $-1 $4 forward single");
    b.add("cone-surface", "0 0 0 0 0 1 " + r + " 0 0 1 I I " + std::to_string(-radius / side) + " " +
                              std::to_string(height / side) + " forward I I I I");
    b.add("loop", "$-1 $6 $3");
    b.add("coedge", "$6 $6 $-1 $7 forward $5 $-1");
    b.add("edge", "$8 $8 $6 $10 forward");
    b.add("vertex", "$7 $9");
    b.add("point", r + " 0 0");
    b.add("ellipse-curve", "0 0 0 0 0 1 " + r + " 0 0 1 I I");
    return b;
}

// The upper half of a disc about the origin: an arc and its chord.
inline Body halfDisc()
{
    Body b = shellBody();
    b.add("face", "$-1 $5 $2 $-1 $4 forward double out");
    b.add("plane-surface", "0 0 0 0 0 1 1 0 0 forward_v I I I I");
    b.add("loop", "$-1 $6 $3");
    b.add("coedge", "$7 $7 $-1 $8 forward $5 $-1");
    b.add("coedge", "$6 $6 $-1 $9 reversed $5 $-1");
    b.add("edge", "$10 0 $11 3.1415926535897931 $6 $14 forward");
    b.add("edge", "$10 5 $11 -5 $7 $15 reversed");
    b.add("vertex", "$8 $12");
    b.add("vertex", "$8 $13");
    b.add("point", "5 0 0");
    b.add("point", "-5 0 0");
    b.add("ellipse-curve", "0 0 0 0 0 1 5 0 0 1 I I");
    b.add("straight-curve", "0 0 0 1 0 0 I I");
    return b;
}

// A cubic from the origin to 4,0 with poles at 1,2 and 3,2, and the chord between.
inline Body splineFace(const std::string& sense = "forward",
                       const std::string& data = "{ exactcur full nubs 3 open 2 0 3 1 3 0 0 0 1 2 0 3 2 0 4 0 0 0 }")
{
    Body b = shellBody();
    b.add("face", "$-1 $5 $2 $-1 $4 forward double out");
    b.add("plane-surface", "0 0 0 0 0 1 1 0 0 forward_v I I I I");
    b.add("loop", "$-1 $6 $3");
    b.add("coedge", "$7 $7 $-1 $8 forward $5 $-1");
    b.add("coedge", "$6 $6 $-1 $9 reversed $5 $-1");
    b.add("edge", "$10 $11 $6 $14 " + sense);
    b.add("edge", "$10 $11 $7 $15 forward");
    b.add("vertex", "$8 $12");
    b.add("vertex", "$8 $13");
    b.add("point", sense == "forward" ? "0 0 0" : "4 0 0");
    b.add("point", sense == "forward" ? "4 0 0" : "0 0 0");
    b.add("intcurve-curve", "forward " + data + " I I");
    b.add("straight-curve", "0 0 0 1 0 0 I I");
    return b;
}

// Corners at the origin and at the given one; each corner's bits say along which axes it is far.
inline Body box(double x, double y, double z)
{
    constexpr int kFaces = 6, kEdges = 12, kCorners = 8;
    const int face = 3, loop = face + kFaces, surface = loop + kFaces, coedge = surface + kFaces,
              edge = coedge + 4 * kFaces, vertex = edge + kEdges, point = vertex + kCorners, curve = point + kCorners;
    const double size[3] = {x, y, z};
    const auto place = [&](int corner) {
        std::string text;
        for (int axis = 0; axis < 3; ++axis)
            text += std::to_string(corner >> axis & 1 ? size[axis] : 0) + " ";
        return text;
    };
    std::vector<std::pair<int, int>> ends;  // of each edge, the second further along its axis
    for (int axis = 0; axis < 3; ++axis)
        for (int corner = 0; corner < kCorners; ++corner)
            if (!(corner >> axis & 1))
                ends.emplace_back(corner, corner | 1 << axis);
    Body b = shellBody();
    for (int f = 0; f < kFaces; ++f)
        b.add("face", (f + 1 < kFaces ? ref(face + f + 1) : "$-1 ") + ref(loop + f) + "$2 $-1 " + ref(surface + f) +
                          "forward single");
    for (int f = 0; f < kFaces; ++f)
        b.add("loop", "$-1 " + ref(coedge + 4 * f) + ref(face + f));
    for (int f = 0; f < kFaces; ++f) {
        const std::string out = f % 2 ? "1 " : "-1 ";
        b.add("plane-surface", place(f % 2 ? 7 : 0) +
                                   (f / 2 == 0   ? out + "0 0 "
                                    : f / 2 == 1 ? "0 " + out + "0 "
                                                 : "0 0 " + out) +
                                   "1 1 1 forward_v I I I I");
    }
    for (int f = 0; f < kFaces; ++f) {
        const int fixed = f / 2, u = 1 << (fixed + 1) % 3, v = 1 << (fixed + 2) % 3, base = f % 2 ? 1 << fixed : 0;
        const int round[4] = {base, base | u, base | u | v, base | v};
        for (int i = 0; i < 4; ++i) {
            const int from = std::min(round[i], round[(i + 1) % 4]), to = std::max(round[i], round[(i + 1) % 4]);
            int e = 0;
            while (ends[std::size_t(e)] != std::make_pair(from, to))
                ++e;
            b.add("coedge", ref(coedge + 4 * f + (i + 1) % 4) + ref(coedge + 4 * f + (i + 3) % 4) + "$-1 " +
                                ref(edge + e) + (from == round[i] ? "forward " : "reversed ") + ref(loop + f) + "$-1");
        }
    }
    for (int e = 0; e < kEdges; ++e)
        b.add("edge", ref(vertex + ends[std::size_t(e)].first) + ref(vertex + ends[std::size_t(e)].second) +
                          ref(coedge) + ref(curve + e) + "forward");
    for (int c = 0; c < kCorners; ++c)
        b.add("vertex", ref(edge) + ref(point + c));
    for (int c = 0; c < kCorners; ++c)
        b.add("point", place(c));
    for (int e = 0; e < kEdges; ++e)
        b.add("straight-curve", place(ends[std::size_t(e)].first) +
                                    (e < 4   ? "1 0 0"
                                     : e < 8 ? "0 1 0"
                                             : "0 0 1") +
                                    " I I");
    return b;
}

}
