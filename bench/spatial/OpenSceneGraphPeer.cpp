#include <osg/Geode>
#include <osg/KdTree>
#include <osgUtil/LineSegmentIntersector>

#include <benchmark/benchmark.h>

#include "bench/OpenSceneGraphTorus.h"
#include "bench/spatial/RayCases.h"

namespace vantorix::bench {
namespace {

osg::ref_ptr<osg::Geode> makeTorus(const TorusGrid& grid) {
    osg::ref_ptr<osg::Geode> geode = new osg::Geode;
    geode->addDrawable(makeOpenSceneGraphTorus(grid));
    osg::ref_ptr<osg::KdTreeBuilder> builder = new osg::KdTreeBuilder;
    geode->accept(*builder);
    return geode;
}

/// range(0): cells per side of the torus. With its tree of faces; items are rays.
void openSceneGraphNearest(benchmark::State& state) {
    const auto torus = makeTorus(TorusGrid(static_cast<int>(state.range(0))));
    measureHits(state, [&torus](const StraightLine& line) {
        const osg::Vec3d from(line.origin[0], line.origin[1], line.origin[2]);
        const osg::Vec3d direction(line.direction[0], line.direction[1], line.direction[2]);
        osg::ref_ptr<osgUtil::LineSegmentIntersector> segment =
            new osgUtil::LineSegmentIntersector(from, from + direction * 2);
        segment->setIntersectionLimit(osgUtil::Intersector::LIMIT_NEAREST);
        osgUtil::IntersectionVisitor visitor(segment);
        torus->accept(visitor);
        return segment->containsIntersections();
    });
}
BENCHMARK(openSceneGraphNearest)->Arg(70)->Arg(223)->Arg(707);

}  // namespace
}  // namespace vantorix::bench
