#include "host/render/dashes.h"

#include "sdk/vcdb_records.h"

#include <algorithm>
#include <cmath>

namespace vk::render {

DashPattern DashPattern::of(const VcDbLinetypeTableRecord& linetype, double scale)
{
    DashPattern pattern;
    for (const auto& dash : linetype.dashes()) {
        pattern.dashes.push_back(dash.length * scale);
        pattern.length += std::fabs(dash.length * scale);
    }
    pattern.fits = linetype.isScaledToFit() && !pattern.dashes.empty() && pattern.dashes.front() > 0;
    return pattern;
}

// With the first dash at both ends the line is end + n patterns - first dash + end long, where an end takes between a half
// and a whole of the first dash, and half a pattern more at most.
void DashWalk::run(double seenFrom, double seenTo, const Drawn& drawn, const Mark& mark) const
{
    const double period = m_pattern.length;
    const double repeats = std::floor(m_length / period * (1 + 1e-12));
    if (m_pattern.fits && repeats < 1)
        return drawn(0, m_length);
    const double firstDash = m_pattern.dashes.front();
    const double end = m_pattern.fits ? (m_length - repeats * period + firstDash) / 2 : 0;
    // Where the first pattern would begin.
    const double origin = m_pattern.fits ? end - firstDash : 0;
    const double last = m_pattern.fits ? repeats : std::ceil(m_length / period);
    const double begin = std::clamp(std::floor((seenFrom - origin) / period), 0.0, last);
    const double stop = std::clamp(std::ceil((seenTo - origin) / period), 0.0, last);
    for (double k = begin; k <= stop; ++k) {
        double at = origin + k * period;
        for (std::size_t i = 0; i < m_pattern.dashes.size(); ++i) {
            const double dash = m_pattern.dashes[i];
            const bool isFirst = m_pattern.fits && k == 0 && i == 0, isLast = m_pattern.fits && k == last && i == 0;
            const double from = isFirst ? 0 : at, until = isLast ? m_length : std::min(at + std::fabs(dash), m_length);
            if (mark && until < m_length)
                mark(i, until);
            if (dash >= 0 && from <= until)
                drawn(std::max(from, 0.0), until);
            at += std::fabs(dash);
            if (isLast || at >= m_length)
                break;
        }
    }
}

MeasuredLine::MeasuredLine(std::span<const VcGePoint3d> points) : m_points(points)
{
    m_lengths.reserve(points.size());
    double sum = 0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (i)
            sum += (points[i] - points[i - 1]).length();
        m_lengths.push_back(sum);
    }
}

std::size_t MeasuredLine::pieceAt(double along) const
{
    const auto above = std::upper_bound(m_lengths.begin(), m_lengths.end(), along);
    const std::size_t i = std::size_t(above - m_lengths.begin());
    return std::clamp<std::size_t>(i, 1, m_lengths.size() - 1) - 1;
}

VcGePoint3d MeasuredLine::at(double along) const
{
    const std::size_t i = pieceAt(along);
    const double span = m_lengths[i + 1] - m_lengths[i];
    const double t = span > 0 ? std::clamp((along - m_lengths[i]) / span, 0.0, 1.0) : 0;
    return m_points[i] + (m_points[i + 1] - m_points[i]) * t;
}

VcGeVector3d MeasuredLine::directionAt(double along) const
{
    const std::size_t i = pieceAt(along);
    return (m_points[i + 1] - m_points[i]).normal();
}

void MeasuredLine::add(std::vector<VcGePoint3d>& to, double from, double until) const
{
    to.push_back(at(from));
    for (std::size_t i = pieceAt(from) + 1; i < m_points.size() && m_lengths[i] < until; ++i)
        to.push_back(m_points[i]);
    to.push_back(at(until));
}

}  // namespace vk::render
