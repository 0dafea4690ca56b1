#include <CGAL/AABB_traits.h>
#include <CGAL/AABB_tree.h>
#include <CGAL/AABB_triangle_primitive.h>
#include <CGAL/Simple_cartesian.h>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/TorusGrid.h"
#include "bench/spatial/RayCases.h"

namespace vantorix::bench {
namespace {

using Kernel = CGAL::Simple_cartesian<double>;
using Triangles = std::vector<Kernel::Triangle_3>;
using Primitive = CGAL::AABB_triangle_primitive<Kernel, Triangles::const_iterator>;
using Tree = CGAL::AABB_tree<CGAL::AABB_traits<Kernel, Primitive>>;

Triangles makeTriangles(const TorusGrid& grid) {
    const auto point = [&grid](std::size_t corner) {
        const float* const position = &grid.positions[std::size_t{3} * grid.indices[corner]];
        return Kernel::Point_3(position[0], position[1], position[2]);
    };
    Triangles triangles;
    for (std::size_t i = 0; i < grid.indices.size(); i += 3) {
        triangles.emplace_back(point(i), point(i + 1), point(i + 2));
    }
    return triangles;
}

/// range(0): cells per side of the torus. Gathers the triangles as well; items are faces.
void cgalBuild(benchmark::State& state) {
    const TorusGrid grid(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        const auto triangles = makeTriangles(grid);
        Tree tree(triangles.begin(), triangles.end());
        tree.build();
        if (tree.size() != grid.triangleCount()) state.SkipWithError("faces are lost");
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(grid.triangleCount()));
}
BENCHMARK(cgalBuild)->Arg(70)->Arg(223)->Arg(707)->Unit(benchmark::kMillisecond);

/// range(0): cells per side of the torus. Items are rays.
void cgalNearest(benchmark::State& state) {
    const auto triangles = makeTriangles(TorusGrid(static_cast<int>(state.range(0))));
    Tree tree(triangles.begin(), triangles.end());
    tree.build();
    measureHits(state, [&tree](const StraightLine& line) {
        const Kernel::Ray_3 ray(
            Kernel::Point_3(line.origin[0], line.origin[1], line.origin[2]),
            Kernel::Vector_3(line.direction[0], line.direction[1], line.direction[2]));
        return tree.first_intersected_primitive(ray).has_value();
    });
}
BENCHMARK(cgalNearest)->Arg(70)->Arg(223)->Arg(707);

}  // namespace
}  // namespace vantorix::bench
