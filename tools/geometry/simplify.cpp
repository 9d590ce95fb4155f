#include "tools/geometry/simplify.h"

#include <algorithm>
#include <utility>

namespace geometry {
namespace {

double squared_distance(const Eigen::Vector2d& point, const Eigen::Vector2d& begin,
                        const Eigen::Vector2d& end) {
  const Eigen::Vector2d along = end - begin;
  const double length = along.squaredNorm();
  if (length == 0) return (point - begin).squaredNorm();
  const double part = std::clamp((point - begin).dot(along) / length, 0.0, 1.0);
  return (begin + part * along - point).squaredNorm();
}

}  // namespace

// Douglas and Peucker's method: the farthest point stays if it is too far off, and divides the
// line.
ScreenLine simplified(const ScreenLine& line, double tolerance) {
  if (line.size() < 3) return line;
  std::vector<bool> stays(line.size(), false);
  stays.front() = stays.back() = true;
  std::vector<std::pair<std::size_t, std::size_t>> open = {{0, line.size() - 1}};
  while (!open.empty()) {
    const auto [begin, end] = open.back();
    open.pop_back();
    std::size_t farthest = begin;
    double distance = tolerance * tolerance;
    for (std::size_t i = begin + 1; i < end; ++i) {
      const double d = squared_distance(line[i], line[begin], line[end]);
      if (d <= distance) continue;
      distance = d;
      farthest = i;
    }
    if (farthest == begin) continue;
    stays[farthest] = true;
    open.emplace_back(begin, farthest);
    open.emplace_back(farthest, end);
  }
  ScreenLine result;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (stays[i]) result.push_back(line[i]);
  }
  return result;
}

}  // namespace geometry
