// Matrices of the sdk. They act on column points, M * p.
#include "vcge.h"

#include "host/geom/arbitrary_axis.h"

#include <algorithm>
#include <utility>

namespace {

// Gauss-Jordan with row pivots. The pivots' sizes are measured against their rows as they came in, so that a drawing
// in tiny units is not taken for a flat one. False when a pivot vanishes.
template <int N>
bool invert(const double (&from)[N][N], double (&to)[N][N])
{
    constexpr double kVanishing = 1e-14;
    double a[N][2 * N] = {};
    for (int r = 0; r < N; ++r) {
        double largest = 0;
        for (int c = 0; c < N - 1; ++c)
            largest = std::max(largest, std::fabs(from[r][c]));
        const double weight = r == N - 1 || largest == 0 ? 1 : 1 / largest;
        for (int c = 0; c < N; ++c)
            a[r][c] = from[r][c] * weight;
        a[r][N + r] = weight;
    }
    for (int k = 0; k < N; ++k) {
        int pivot = k;
        for (int r = k + 1; r < N; ++r)
            if (std::fabs(a[r][k]) > std::fabs(a[pivot][k]))
                pivot = r;
        if (!(std::fabs(a[pivot][k]) > kVanishing))
            return false;
        std::swap(a[k], a[pivot]);
        const double divisor = a[k][k];
        for (double& value : a[k])
            value /= divisor;
        for (int r = 0; r < N; ++r) {
            const double factor = r == k ? 0 : a[r][k];
            for (int c = 0; factor != 0 && c < 2 * N; ++c)
                a[r][c] -= factor * a[k][c];
        }
    }
    for (int r = 0; r < N; ++r)
        std::copy_n(&a[r][N], N, to[r]);
    return true;
}

template <int N>
void multiply(const double (&a)[N][N], const double (&b)[N][N], double (&to)[N][N])
{
    for (int r = 0; r < N; ++r)
        for (int c = 0; c < N; ++c) {
            double sum = 0;
            for (int k = 0; k < N; ++k)
                sum += a[r][k] * b[k][c];
            to[r][c] = sum;
        }
}

template <int N>
bool nearlyEqual(const double (&a)[N][N], const double (&b)[N][N], const VcGeTol& tol)
{
    for (int r = 0; r < N; ++r)
        for (int c = 0; c < N; ++c)
            if (!(std::fabs(a[r][c] - b[r][c]) <= (c == N - 1 ? tol.equalPoint : tol.equalVector)))
                return false;
    return true;
}

VcGeVector3d column(const VcGeMatrix3d& m, int c) { return {m.entry[0][c], m.entry[1][c], m.entry[2][c]}; }

VcGeMatrix3d frameMatrix(const vk::geom::Frame& f)
{
    VcGeMatrix3d m;
    return m.setCoordSystem(f.origin, f.x, f.y, f.z);
}

// The linear map that leaves `about` in place.
VcGeMatrix3d keeping(VcGeMatrix3d linear, const VcGePoint3d& about)
{
    const VcGeVector3d shift = about.asVector() - linear * about.asVector();
    linear.entry[0][3] = shift.x;
    linear.entry[1][3] = shift.y;
    linear.entry[2][3] = shift.z;
    return linear;
}

VcGeMatrix3d fromImages(const VcGeVector3d& x, const VcGeVector3d& y, const VcGeVector3d& z)
{
    VcGeMatrix3d m;
    return m.setCoordSystem({}, x, y, z);
}

}  // namespace

VcGeMatrix2d VcGeMatrix2d::translation(const VcGeVector2d& v)
{
    VcGeMatrix2d m;
    return m.setCoordSystem({v.x, v.y}, {1, 0}, {0, 1});
}

VcGeMatrix2d VcGeMatrix2d::rotation(double angle, const VcGePoint2d& about)
{
    VcGeVector2d x{1, 0};
    x.rotateBy(angle);
    VcGeMatrix2d m;
    const VcGeVector2d turned = x * about.x + x.perpVector() * about.y;
    return m.setCoordSystem(about - turned, x, x.perpVector());
}

VcGeMatrix2d VcGeMatrix2d::scaling(double scale, const VcGePoint2d& about)
{
    VcGeMatrix2d m;
    return m.setCoordSystem(about - about.asVector() * scale, {scale, 0}, {0, scale});
}

VcGeMatrix2d VcGeMatrix2d::mirroring(const VcGePoint2d& onLine, const VcGeVector2d& direction)
{
    const VcGeVector2d d = direction.normal();
    const VcGeVector2d x{d.x * d.x - d.y * d.y, 2 * d.x * d.y};
    const VcGeVector2d y{x.y, -x.x};
    VcGeMatrix2d m;
    return m.setCoordSystem(onLine - (x * onLine.x + y * onLine.y), x, y);
}

VcGeMatrix2d& VcGeMatrix2d::setToIdentity() { return *this = {}; }

VcGeMatrix2d& VcGeMatrix2d::setToProduct(const VcGeMatrix2d& a, const VcGeMatrix2d& b) { return *this = a * b; }

VcGeMatrix2d& VcGeMatrix2d::setCoordSystem(const VcGePoint2d& origin, const VcGeVector2d& x, const VcGeVector2d& y)
{
    const double rows[3][3] = {{x.x, y.x, origin.x}, {x.y, y.y, origin.y}, {0, 0, 1}};
    std::copy_n(&rows[0][0], 9, &entry[0][0]);
    return *this;
}

void VcGeMatrix2d::getCoordSystem(VcGePoint2d& origin, VcGeVector2d& x, VcGeVector2d& y) const
{
    origin = {entry[0][2], entry[1][2]};
    x = {entry[0][0], entry[1][0]};
    y = {entry[0][1], entry[1][1]};
}

VcGeMatrix2d VcGeMatrix2d::inverse() const
{
    VcGeMatrix2d m;
    return invert(entry, m.entry) ? m : VcGeMatrix2d{};
}

bool VcGeMatrix2d::isSingular(const VcGeTol& tol) const
{
    const double scale = std::hypot(entry[0][0], entry[1][0]) * std::hypot(entry[0][1], entry[1][1]);
    return !(std::fabs(det()) > tol.equalVector * scale);
}

double VcGeMatrix2d::det() const { return entry[0][0] * entry[1][1] - entry[0][1] * entry[1][0]; }

bool VcGeMatrix2d::isEqualTo(const VcGeMatrix2d& m, const VcGeTol& tol) const
{
    return nearlyEqual(entry, m.entry, tol);
}

VcGeMatrix2d VcGeMatrix2d::operator*(const VcGeMatrix2d& m) const
{
    VcGeMatrix2d product;
    multiply(entry, m.entry, product.entry);
    return product;
}

VcGePoint2d VcGeMatrix2d::operator*(const VcGePoint2d& p) const
{
    return VcGePoint2d(entry[0][2], entry[1][2]) + *this * p.asVector();
}

VcGeVector2d VcGeMatrix2d::operator*(const VcGeVector2d& v) const
{
    return {entry[0][0] * v.x + entry[0][1] * v.y, entry[1][0] * v.x + entry[1][1] * v.y};
}

VcGeMatrix3d VcGeMatrix3d::translation(const VcGeVector3d& v)
{
    VcGeMatrix3d m;
    return m.setCoordSystem({v.x, v.y, v.z}, VcGeVector3d::xAxis(), VcGeVector3d::yAxis(), VcGeVector3d::zAxis());
}

VcGeMatrix3d VcGeMatrix3d::rotation(double angle, const VcGeVector3d& axis, const VcGePoint3d& about)
{
    VcGeVector3d x{1, 0, 0}, y{0, 1, 0}, z{0, 0, 1};
    return keeping(fromImages(x.rotateBy(angle, axis), y.rotateBy(angle, axis), z.rotateBy(angle, axis)), about);
}

VcGeMatrix3d VcGeMatrix3d::scaling(double scale, const VcGePoint3d& about)
{
    return scaling(VcGeScale3d(scale), about);
}

VcGeMatrix3d VcGeMatrix3d::scaling(const VcGeScale3d& scale, const VcGePoint3d& about)
{
    return keeping(fromImages({scale.sx, 0, 0}, {0, scale.sy, 0}, {0, 0, scale.sz}), about);
}

VcGeMatrix3d VcGeMatrix3d::mirroring(const VcGePlane& plane)
{
    VcGeVector3d x{1, 0, 0}, y{0, 1, 0}, z{0, 0, 1};
    const VcGeVector3d n = plane.normal();
    return keeping(fromImages(x.mirror(n), y.mirror(n), z.mirror(n)), plane.pointOnPlane());
}

VcGeMatrix3d VcGeMatrix3d::mirroring(const VcGePoint3d& about) { return scaling(-1, about); }

VcGeMatrix3d VcGeMatrix3d::projection(const VcGePlane& plane, const VcGeVector3d& direction)
{
    const VcGeVector3d n = plane.normal();
    const double along = direction.dotProduct(n);
    if (along == 0)
        return {};
    const VcGeVector3d step = direction / along;
    return keeping(fromImages(VcGeVector3d::xAxis() - step * n.x, VcGeVector3d::yAxis() - step * n.y,
                              VcGeVector3d::zAxis() - step * n.z),
                   plane.pointOnPlane());
}

VcGeMatrix3d VcGeMatrix3d::worldToPlane(const VcGeVector3d& normal) { return planeToWorld(normal).transpose(); }

VcGeMatrix3d VcGeMatrix3d::worldToPlane(const VcGePlane& plane) { return planeToWorld(plane).inverse(); }

VcGeMatrix3d VcGeMatrix3d::planeToWorld(const VcGeVector3d& normal)
{
    return frameMatrix(vk::geom::arbitraryFrame(normal));
}

VcGeMatrix3d VcGeMatrix3d::planeToWorld(const VcGePlane& plane)
{
    return frameMatrix(vk::geom::arbitraryFrame(plane.normal(), plane.pointOnPlane()));
}

VcGeMatrix3d VcGeMatrix3d::alignCoordSys(const VcGePoint3d& fromOrigin, const VcGeVector3d& fromX,
                                         const VcGeVector3d& fromY, const VcGeVector3d& fromZ,
                                         const VcGePoint3d& toOrigin, const VcGeVector3d& toX, const VcGeVector3d& toY,
                                         const VcGeVector3d& toZ)
{
    VcGeMatrix3d from, to;
    from.setCoordSystem(fromOrigin, fromX, fromY, fromZ);
    to.setCoordSystem(toOrigin, toX, toY, toZ);
    return to * from.inverse();
}

VcGeMatrix3d& VcGeMatrix3d::setToIdentity() { return *this = {}; }

VcGeMatrix3d& VcGeMatrix3d::setToProduct(const VcGeMatrix3d& a, const VcGeMatrix3d& b) { return *this = a * b; }

VcGeMatrix3d& VcGeMatrix3d::setCoordSystem(const VcGePoint3d& origin, const VcGeVector3d& x, const VcGeVector3d& y,
                                           const VcGeVector3d& z)
{
    const double rows[4][4] = {
        {x.x, y.x, z.x, origin.x}, {x.y, y.y, z.y, origin.y}, {x.z, y.z, z.z, origin.z}, {0, 0, 0, 1}};
    std::copy_n(&rows[0][0], 16, &entry[0][0]);
    return *this;
}

void VcGeMatrix3d::getCoordSystem(VcGePoint3d& origin, VcGeVector3d& x, VcGeVector3d& y, VcGeVector3d& z) const
{
    origin = VcGePoint3d() + translation();
    x = column(*this, 0);
    y = column(*this, 1);
    z = column(*this, 2);
}

VcGeMatrix3d& VcGeMatrix3d::setToAlignCoordSys(const VcGePoint3d& fromOrigin, const VcGeVector3d& fromX,
                                               const VcGeVector3d& fromY, const VcGeVector3d& fromZ,
                                               const VcGePoint3d& toOrigin, const VcGeVector3d& toX,
                                               const VcGeVector3d& toY, const VcGeVector3d& toZ)
{
    return *this = alignCoordSys(fromOrigin, fromX, fromY, fromZ, toOrigin, toX, toY, toZ);
}

VcGeMatrix3d VcGeMatrix3d::inverse() const
{
    VcGeMatrix3d m;
    return invert(entry, m.entry) ? m : VcGeMatrix3d{};
}

bool VcGeMatrix3d::isSingular(const VcGeTol& tol) const
{
    const double scale = column(*this, 0).length() * column(*this, 1).length() * column(*this, 2).length();
    return !(std::fabs(det()) > tol.equalVector * scale);
}

double VcGeMatrix3d::det() const
{
    return column(*this, 0).dotProduct(column(*this, 1).crossProduct(column(*this, 2)));
}

double VcGeMatrix3d::scale() const { return column(*this, 0).length(); }

bool VcGeMatrix3d::isUniScaledOrtho(const VcGeTol& tol) const
{
    const VcGeVector3d x = column(*this, 0), y = column(*this, 1), z = column(*this, 2);
    const double length = x.length();
    return length > 0 && std::fabs(y.length() - length) <= tol.equalVector * length &&
           std::fabs(z.length() - length) <= tol.equalVector * length && x.isPerpendicularTo(y, tol) &&
           y.isPerpendicularTo(z, tol) && z.isPerpendicularTo(x, tol);
}

bool VcGeMatrix3d::isEqualTo(const VcGeMatrix3d& m, const VcGeTol& tol) const
{
    return nearlyEqual(entry, m.entry, tol);
}

VcGeMatrix3d VcGeMatrix3d::transpose() const
{
    VcGeMatrix3d m;
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c)
            m.entry[r][c] = entry[c][r];
    return m;
}

VcGeMatrix3d VcGeMatrix3d::operator*(const VcGeMatrix3d& m) const
{
    VcGeMatrix3d product;
    multiply(entry, m.entry, product.entry);
    return product;
}

VcGePoint3d VcGeMatrix3d::operator*(const VcGePoint3d& p) const
{
    return VcGePoint3d() + (*this * p.asVector() + translation());
}

VcGeVector3d VcGeMatrix3d::operator*(const VcGeVector3d& v) const
{
    return column(*this, 0) * v.x + column(*this, 1) * v.y + column(*this, 2) * v.z;
}
