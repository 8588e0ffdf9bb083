#include "host/geom/spline_fit.h"

#include <Eigen/SparseCore>
#include <Eigen/SparseLU>

#include <cmath>

namespace vk::geom {

namespace {

std::vector<Point3> distinct(const std::vector<Point3>& points, bool closed)
{
    std::vector<Point3> kept;
    for (const Point3& p : points)
        if (kept.empty() || p != kept.back())
            kept.push_back(p);
    if (closed && kept.size() > 1 && kept.front() == kept.back())
        kept.pop_back();
    if (closed && !kept.empty())
        kept.push_back(kept.front());
    return kept;
}

std::vector<double> chordParams(const std::vector<Point3>& points)
{
    std::vector<double> params{0};
    for (size_t i = 1; i < points.size(); ++i)
        params.push_back(params.back() + points[i].distanceTo(points[i - 1]));
    return params;
}

// The derivative at each point, so that second derivatives agree from both sides.
class Slopes {
public:
    Slopes(const std::vector<Point3>& points, const std::vector<double>& params)
        : m_points(points), m_params(params), m_count(int(points.size())), m_matrix(m_count, m_count),
          m_right(m_count, 3)
    {
        m_right.setZero();
    }

    std::vector<Vector3> solve(bool closed, const FitEnds& ends)
    {
        for (int i = 1; i + 1 < m_count; ++i)
            smoothAt(i, i - 1, i, i + 1, span(i - 1), span(i), chord(i - 1), chord(i));
        if (closed) {
            const int last = m_count - 1;
            smoothAt(0, last - 1, 0, 1, span(last - 1), span(0), chord(last - 1), chord(0));
            put(last, last, 1);
            put(last, 0, -1);
        } else {
            endAt(0, 1, span(0), chord(0), ends.start);
            endAt(m_count - 1, m_count - 2, span(m_count - 2), chord(m_count - 2), ends.end);
        }
        return solved();
    }

private:
    double span(int i) const { return m_params[size_t(i) + 1] - m_params[size_t(i)]; }
    Vector3 chord(int i) const { return (m_points[size_t(i) + 1] - m_points[size_t(i)]) / span(i); }
    void put(int row, int column, double value) { m_entries.emplace_back(row, column, value); }
    void setRight(int row, const Vector3& v) { m_right.row(row) << v.x, v.y, v.z; }

    void smoothAt(int row, int before, int at, int after, double h, double k, const Vector3& left, const Vector3& right)
    {
        put(row, before, k);
        put(row, at, 2 * (h + k));
        put(row, after, h);
        setRight(row, (left * k + right * h) * 3);
    }

    void endAt(int at, int next, double h, const Vector3& along, const std::optional<Vector3>& direction)
    {
        put(at, at, direction && direction->lengthSqrd() > 0 ? 1 : 2 * h);
        if (direction && direction->lengthSqrd() > 0)
            return setRight(at, direction->normal());
        put(at, next, h);
        setRight(at, along * (3 * h));
    }

    std::vector<Vector3> solved()
    {
        m_matrix.setFromTriplets(m_entries.begin(), m_entries.end());
        const Eigen::SparseLU<Eigen::SparseMatrix<double>> lu(m_matrix);
        const Eigen::MatrixX3d slopes = lu.solve(m_right);
        std::vector<Vector3> result;
        for (int i = 0; i < m_count; ++i)
            result.emplace_back(slopes(i, 0), slopes(i, 1), slopes(i, 2));
        return result;
    }

    const std::vector<Point3>& m_points;
    const std::vector<double>& m_params;
    int m_count;
    std::vector<Eigen::Triplet<double>> m_entries;
    Eigen::SparseMatrix<double> m_matrix;
    Eigen::MatrixX3d m_right;
};

Vector3 mix(const Vector3& a, const Vector3& b, double t) { return a * (1 - t) + b * t; }

// The cubic between two parameters, at three parameters at once: its poles over other knots are such values.
struct Cubic {
    Vector3 poles[4];
    double from, to;

    Vector3 blossom(double u, double v, double w) const
    {
        const auto share = [this](double t) { return (t - from) / (to - from); };
        Vector3 p[4] = {poles[0], poles[1], poles[2], poles[3]};
        int left = 3;
        for (const double t : {share(u), share(v), share(w)})
            for (int i = 0, n = left--; i < n; ++i)
                p[i] = mix(p[i], p[i + 1], t);
        return p[0];
    }
};

}  // namespace

std::optional<Nurbs> fittedThrough(const std::vector<Point3>& given, bool closed, const FitEnds& ends)
{
    const std::vector<Point3> points = distinct(given, closed && given.size() > 2);
    if (points.size() < 2)
        return std::nullopt;
    const std::vector<double> params = chordParams(points);
    if (!std::isfinite(params.back()))
        return std::nullopt;
    const auto slopes = Slopes(points, params).solve(closed && points.size() > 3, ends);

    const size_t segments = points.size() - 1;
    Nurbs n{3, {}, std::vector<double>(3, params.front()), {}};
    n.knots.insert(n.knots.end(), params.begin(), params.end());
    n.knots.insert(n.knots.end(), 3, params.back());
    for (size_t j = 0; j < segments + 3; ++j) {
        // Any segment that the pole bears upon gives the same.
        const size_t i = std::min(j < 3 ? 0 : j - 3, segments - 1);
        const double h = params[i + 1] - params[i];
        const Vector3 a = points[i] - points[0], b = points[i + 1] - points[0];
        const Cubic cubic{{a, a + slopes[i] * (h / 3), b - slopes[i + 1] * (h / 3), b}, params[i], params[i + 1]};
        n.poles.push_back(points[0] + cubic.blossom(n.knots[j + 1], n.knots[j + 2], n.knots[j + 3]));
    }
    return n;
}

}  // namespace vk::geom
