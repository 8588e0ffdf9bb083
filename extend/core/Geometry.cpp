#include "core/Geometry.h"

#include "vcut.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <utility>

bool vcutRealEqual(double a, double b, double tolerance)
{
    if (std::fabs(b) <= tolerance)
        return std::fabs(a) <= tolerance;
    return std::fabs(a - b) <= std::fabs(b * tolerance);
}

bool vcutIsZero(double value, double tolerance) { return -tolerance <= value && value <= tolerance; }

bool VkRealEqual(double a, double b) { return (a == 0.0 && b == 0.0) || vcutRealEqual(a, b, 1e-10); }

bool IsvalidReal(double x)
{
    constexpr std::uint64_t kFraction = (std::uint64_t(1) << 52) - 1;
    constexpr std::uint64_t kAllOnes = 0x7ff;
    const auto bits = std::bit_cast<std::uint64_t>(x);
    const std::uint64_t exponent = bits >> 52 & kAllOnes;
    return exponent == 0 ? (bits & kFraction) == 0 : exponent != kAllOnes;
}

bool vk_isvalid_real(double x) { return IsvalidReal(x); }

namespace {

template <class Compare>
bool allCoordinates(const vds_point p, const vds_point q, Compare&& compare)
{
    return compare(p[0], q[0]) && compare(p[1], q[1]) && compare(p[2], q[2]);
}

}  // namespace

bool VkPointEqual(const vds_point p, const vds_point q) { return allCoordinates(p, q, VkRealEqual); }

// Below the bound and not at it, where vcutRealEqual takes both.
bool isPointEqual(const vds_point p, const vds_point q, double tolerance)
{
    return allCoordinates(p, q, [tolerance](double a, double b) {
        if (std::fabs(b) <= tolerance)
            return std::fabs(a) <= tolerance;
        return std::fabs(a - b) < std::fabs(b * tolerance);
    });
}

bool is_equal_point(const vds_point p, const vds_point q)
{
    return allCoordinates(p, q, [](double a, double b) { return std::fabs(a - b) < 1e-5; });
}

namespace {

constexpr double kTwoPi = 6.283185307179586;

double withinOneTurn(double angle)
{
    double size = std::fabs(angle);
    if (size >= kTwoPi)
        size -= kTwoPi * std::trunc(size / kTwoPi);
    return angle < 0 ? kTwoPi - size : size;
}

}  // namespace

bool VkAngleEqual(double a, double b)
{
    return (a == 0.0 && b == 0.0) || VkRealEqual(withinOneTurn(a), withinOneTurn(b));
}

bool vkadAngleEqual(double a, double b)
{
    return (a == 0.0 && b == 0.0) || std::fabs(withinOneTurn(a) - withinOneTurn(b)) < 1e-6;
}

namespace {

constexpr double kAngleSlack = 1e-10;
constexpr double kLargestAngle = 1e6;

// Keeps the loops of one turn short. False for what is no angle, which becomes 0.
bool comeNear(double& angle)
{
    if (!IsvalidReal(angle) || std::fabs(angle) > kLargestAngle) {
        angle = 0.0;
        return false;
    }
    for (const double turns : {100000.0, 1000.0}) {
        while (angle > kTwoPi * turns)
            angle -= kTwoPi * turns;
        while (angle < -kTwoPi * turns)
            angle += kTwoPi * turns;
    }
    return true;
}

// The slack decides which of 0 and a whole turn a value beside them becomes: with it a start snaps to 0, without it an
// end stays at the turn.
void intoOneTurn(double& angle, double upperSlack)
{
    if (!comeNear(angle))
        return;
    if (angle + kAngleSlack < 0) {
        while (angle + kAngleSlack < 0)
            angle += kTwoPi;
    } else {
        while (angle + upperSlack >= kTwoPi)
            angle -= kTwoPi;
    }
}

// Two that both lie beside 0 are equal even where one is just below it and reduces to nearly a whole turn.
void normalize(double& start, double* end, bool (*angleEqual)(double, double))
{
    intoOneTurn(start, kAngleSlack);
    if (!end)
        return;
    intoOneTurn(*end, -kAngleSlack);
    if (!VkRealEqual(*end, start) && !angleEqual(start, *end) && start > *end)
        *end += kTwoPi;
}

}  // namespace

void normlizedAng(double& start, double* end) { normalize(start, end, VkAngleEqual); }

void vk_normang(double& start, double* end) { normalize(start, end, vkadAngleEqual); }

int vds_point_add(const vds_point a, const vds_point b, vds_point out)
{
    std::transform(a, a + 3, b, out, std::plus<>());
    return RTNORM;
}

int vds_point_sub(const vds_point a, const vds_point b, vds_point out)
{
    std::transform(a, a + 3, b, out, std::minus<>());
    return RTNORM;
}

int vds_piont_mul(const vds_point p, double s, vds_point out)
{
    std::transform(p, p + 3, out, [s](double x) { return x * s; });
    return RTNORM;
}

int vds_mid_pt(const vds_point a, const vds_point b, vds_point out)
{
    std::transform(a, a + 3, b, out, [](double x, double y) { return (x + y) / 2; });
    return 1;
}

void cross_product(const vds_point a, const vds_point b, vds_point out)
{
    out[0] = a[1] * b[2] - a[2] * b[1];
    out[1] = a[2] * b[0] - a[0] * b[2];
    out[2] = a[0] * b[1] - a[1] * b[0];
}

void vk_crossproduct(const vds_point a, const vds_point b, vds_point out)
{
    vds_point product;
    cross_product(a, b, product);
    std::copy_n(product, 3, out);
}

void vc_crossProduct(const vds_point a, const vds_point b, vds_point out) { vk_crossproduct(a, b, out); }

double vc_dotProduct(const vds_point a, const vds_point b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

void vc_identity(double (&m)[3][3])
{
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            m[row][column] = row == column;
}

void vk_idmat(vds_matrix m)
{
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            m[row][column] = row == column;
}

void multMtx2Mtx(const vds_matrix a, const vds_matrix b, vds_matrix out)
{
    vds_matrix product = {};
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            for (int i = 0; i < 4; ++i)
                product[row][column] += a[row][i] * b[i][column];
    std::copy_n(&product[0][0], 16, &out[0][0]);
}

bool vds_dyl_colin(const vds_point a, const vds_point b, const vds_point c)
{
    constexpr double kSlack = 0.01;
    const double d1 = vcutDistance(a, b), d2 = vcutDistance(a, c), d3 = vcutDistance(b, c);
    return std::fabs(d3 - (d1 + d2)) < kSlack || std::fabs(std::fabs(d1 - d2) - d3) < kSlack;
}

// Only the first two points are looked at for lying together; of the others one may lie on either.
bool _3PointsInSameLine(const vds_point a, const vds_point b, const vds_point c)
{
    constexpr double kSlack = 1.0;
    const double d1 = vcutDistance(a, b), d2 = vcutDistance(a, c), d3 = vcutDistance(b, c);
    if (d1 < kSlack)
        return true;
    const double longest = std::max({d1, d2, d3});
    return std::fabs(longest - (d1 + d2 + d3 - longest)) < kSlack;
}

bool isPtOnLine(const vds_point p, const vds_point a, const vds_point b)
{
    return std::fabs(vcutDistance(p, a) + vcutDistance(p, b) - vcutDistance(a, b)) <= 1e-11;
}

double cal_bulge(const vds_point start, const vds_point end, const vds_point onArc)
{
    if (vds_dyl_colin(start, end, onArc))
        return 0.0;
    vds_point middle, chord, height, cross;
    vds_mid_pt(start, end, middle);
    vds_point_sub(end, start, chord);
    vds_point_sub(onArc, middle, height);
    cross_product(chord, height, cross);
    const double bulge = vcutDistance(middle, onArc) / vcutDistance(start, middle);
    return cross[2] > 0 ? -bulge : bulge;
}
