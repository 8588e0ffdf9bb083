// Zeros of a0 + a1 cos t + b1 sin t + a2 cos 2t + b2 sin 2t: where an ellipse meets a conic, where it is closest.
#pragma once

#include <functional>
#include <vector>

namespace vk::geom {

struct TrigPolynomial {
    double a0 = 0, a1 = 0, b1 = 0, a2 = 0, b2 = 0;

    double operator()(double t) const;
    TrigPolynomial derivative() const { return {0, b1, -a1, 2 * b2, -2 * a2}; }
    double largest() const;  // a bound on the oscillating part
};

// In ascending order, from 0 to 2 pi; none when the polynomial is constant.
std::vector<double> stationaryAngles(const TrigPolynomial& f);

// Where `touches` holds at a stationary angle, that angle is the one zero of its neighbourhood.
std::vector<double> zeros(const TrigPolynomial& f, const std::function<bool(double)>& touches);

}  // namespace vk::geom
