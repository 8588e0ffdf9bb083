#include "host/geom/trig_roots.h"

#include <Eigen/Eigenvalues>

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

namespace vk::geom {

constexpr double kTwoPi = 2 * std::numbers::pi;

double TrigPolynomial::operator()(double t) const
{
    return a0 + a1 * std::cos(t) + b1 * std::sin(t) + a2 * std::cos(2 * t) + b2 * std::sin(2 * t);
}

double TrigPolynomial::largest() const { return std::fabs(a1) + std::fabs(b1) + std::fabs(a2) + std::fabs(b2); }

static double wrapped(double t)
{
    t = std::fmod(t, kTwoPi);
    return t < 0 ? t + kTwoPi : t;
}

// With z = e^(it) the polynomial is z^-2 times a quartic whose coefficients mirror each other; its zeros on the unit
// circle are ours. Those near it are kept too: a stationary angle too many does no harm.
static std::vector<double> anglesNearUnitCircle(const TrigPolynomial& f)
{
    using Complex = std::complex<double>;
    const Complex c1(f.a1 / 2, -f.b1 / 2), c2(f.a2 / 2, -f.b2 / 2);
    Eigen::Matrix4cd companion = Eigen::Matrix4cd::Zero();
    companion(1, 0) = companion(2, 1) = companion(3, 2) = 1;
    const Complex lower[] = {std::conj(c2), std::conj(c1), f.a0, c1};
    for (int i = 0; i < 4; ++i)
        companion(i, 3) = -lower[i] / c2;
    const Eigen::ComplexEigenSolver<Eigen::Matrix4cd> solver(companion, false);
    std::vector<double> angles;
    for (const Complex& z : solver.eigenvalues())
        if (std::fabs(std::abs(z) - 1) < 0.05)
            angles.push_back(std::arg(z));
    return angles;
}

static double polished(const TrigPolynomial& f, const TrigPolynomial& slope, double t)
{
    for (int i = 0; i < 4; ++i) {
        const double s = slope(t), next = t - f(t) / s;
        if (s == 0 || !(std::fabs(f(next)) < std::fabs(f(t))) || std::fabs(next - t) > 0.1)
            break;
        t = next;
    }
    return wrapped(t);
}

std::vector<double> stationaryAngles(const TrigPolynomial& f)
{
    constexpr double kNegligible = 1e-13;
    const double single = std::fabs(f.a1) + std::fabs(f.b1), twofold = std::fabs(f.a2) + std::fabs(f.b2);
    if (single + twofold == 0)
        return {};
    std::vector<double> angles;
    if (twofold <= kNegligible * single) {
        const double top = std::atan2(f.b1, f.a1);
        angles = {top, top + kTwoPi / 2};
    } else if (single <= kNegligible * twofold) {
        const double top = std::atan2(f.b2, f.a2) / 2;
        angles = {top, top + kTwoPi / 4, top + kTwoPi / 2, top + 3 * kTwoPi / 4};
    } else {
        angles = anglesNearUnitCircle(f.derivative());
    }
    const TrigPolynomial slope = f.derivative(), bend = slope.derivative();
    for (double& t : angles)
        t = polished(slope, bend, t);
    std::sort(angles.begin(), angles.end());
    return angles;
}

// False position with bisection, between values of unlike sign.
static double zeroBetween(const TrigPolynomial& f, double low, double high)
{
    double atLow = f(low), atHigh = f(high);
    for (int i = 0; i < 200 && high - low > 1e-16 * (1 + std::fabs(high)); ++i) {
        const double secant = low - atLow * (high - low) / (atHigh - atLow);
        const bool useful = i % 3 != 2 && secant > low && secant < high;
        const double mid = useful ? secant : low + (high - low) / 2;
        if (mid <= low || mid >= high)
            break;
        const double atMid = f(mid);
        if (atMid == 0)
            return mid;
        const bool lowSide = (atMid < 0) == (atLow < 0);
        (lowSide ? low : high) = mid;
        (lowSide ? atLow : atHigh) = atMid;
    }
    return std::fabs(atLow) < std::fabs(atHigh) ? low : high;
}

std::vector<double> zeros(const TrigPolynomial& f, const std::function<bool(double)>& touches)
{
    const std::vector<double> bends = stationaryAngles(f);
    std::vector<double> found;
    for (size_t i = 0; i < bends.size(); ++i) {
        const double here = bends[i], next = i + 1 < bends.size() ? bends[i + 1] : bends[0] + kTwoPi;
        if (touches(here))
            found.push_back(here);
        else if (!touches(next) && (f(here) < 0) != (f(next) < 0))
            found.push_back(wrapped(zeroBetween(f, here, next)));
    }
    return found;
}

}  // namespace vk::geom
