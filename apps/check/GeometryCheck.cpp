#include "apps/check/GeometryCheck.h"

#include <algorithm>
#include <set>
#include <vector>

#include <Eigen/Geometry>

#include "apps/check/Report.h"
#include "apps/check/StreamCheck.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/PolygonMeshPrimitive.h"
#include "scene/geometry/Stream.h"

namespace vantorix::apps::check {
namespace {

using scene::Stream;
using scene::StreamMapping;
using Positions = std::vector<std::size_t>;

std::string number(std::size_t value) { return std::to_string(value); }

/// The tuples of a stream that faces use.
class UsedTuples {
public:
    explicit UsedTuples(const Stream& stream) : isUsed_(tuplesOf(stream), false) {}

    void add(std::size_t tuple) { isUsed_[tuple] = true; }

    Positions unused() const {
        Positions tuples;
        for (std::size_t i = 0; i < isUsed_.size(); ++i) {
            if (!isUsed_[i]) tuples.push_back(i);
        }
        return tuples;
    }

private:
    std::vector<bool> isUsed_;
};

/// One primitive: each of its records is read once for each stream that it leads to.
class PrimitiveCheck {
public:
    PrimitiveCheck(const scene::Mesh& mesh, scene::IMeshPrimitive& primitive, const Report& report)
        : mesh_(mesh),
          primitive_(primitive),
          indices_(primitive.getIndexStream()),
          stride_(static_cast<std::size_t>(std::max(primitive.getIndexStreamStride(), 0))),
          report_(report) {}

    /// @param used the tuples of @p positions, the stream of the mesh, which may be null.
    void run(const Stream* positions, UsedTuples& used) {
        report_.require(stride_ > 0 || indices_.empty(), Finding::COUNT,
                        number(indices_.size()) + " indices without a mapping");
        if (stride_ == 0) return;
        report_.require(indices_.size() % stride_ == 0, Finding::COUNT,
                        number(indices_.size()) + " indices in records of " + number(stride_));
        for (const auto& mapping : primitive_.getStreamMapping()) checkMapping(mapping);
        if (positions_) checkFaces();
        if (positions_ && positions_ == positions) markUsed(used);
    }

private:
    void checkMapping(const StreamMapping& mapping) {
        const auto slot = static_cast<std::size_t>(mapping.offset);
        if (mapping.offset < 0 || slot >= stride_) {
            report_.add(Finding::INDEX, "offset " + std::to_string(mapping.offset) +
                                            " in records of " + number(stride_));
            return;
        }
        if (mapping.semantic != scene::VERTEX) return checkInput(mapping, slot);
        for (const auto& vertices : mesh_.getVertices()) checkInput(vertices, slot);
    }

    void checkInput(const StreamMapping& input, std::size_t slot) {
        const auto name = scene::streamSemanticToString(input.semantic);
        if (!input.stream) {
            report_.add(Finding::ORPHAN, "no stream for " + name);
            return;
        }
        if (input.semantic == scene::POSITION && !positions_) {
            positions_ = input.stream.get();
            positionSlot_ = slot;
        }
        const std::size_t tuples = tuplesOf(*input.stream);
        Positions records;
        for (std::size_t i = slot; i < indices_.size(); i += stride_) {
            if (indices_[i] >= tuples) records.push_back(i / stride_);
        }
        report_.addAt(Finding::INDEX, "records past the " + number(tuples) + " tuples of " + name,
                      records);
    }

    void checkFaces() {
        if (auto* const polygons = dynamic_cast<scene::PolygonMeshPrimitive*>(&primitive_)) {
            checkPolygons(polygons->getPolygonStream());
        } else {
            for (std::size_t start = 0; start + 3 * stride_ <= indices_.size();
                 start += 3 * stride_) {
                checkFace(start / stride_ / 3, start, 3);
            }
        }
        report_.addAt(Finding::INDEX, "polygons past the end of the indices", past_);
        report_.addAt(Finding::DEGENERATE, "faces", degenerate_);
    }

    void checkPolygons(const std::vector<unsigned int>& polygons) {
        report_.require(polygons.size() % 2 == 0, Finding::COUNT, "half an entry for a polygon");
        for (std::size_t i = 0; i + 1 < polygons.size(); i += 2) {
            const std::size_t corners = polygons[i], start = polygons[i + 1];
            if (start + corners * stride_ > indices_.size()) {
                past_.push_back(i / 2);
            } else {
                checkFace(i / 2, start, corners);
            }
        }
    }

    /// By Newell's sum over the edges, in double: exact enough that only flat faces give 0.
    void checkFace(std::size_t face, std::size_t start, std::size_t corners) {
        Eigen::Vector3d normal = Eigen::Vector3d::Zero();
        bool isKnown = true;
        for (std::size_t i = 0; i < corners; ++i) {
            Eigen::Vector3d here, next, first;
            isKnown = isKnown && read(start, 0, first) && read(start, i, here) &&
                      read(start, (i + 1) % corners, next);
            if (isKnown) normal += (here - first).cross(next - first);
        }
        if (isKnown && normal.isZero(0.0)) degenerate_.push_back(face);
    }

    /// False where there is no position, or none that is finite: that is another finding.
    bool read(std::size_t start, std::size_t corner, Eigen::Vector3d& position) const {
        const std::size_t tuple = indices_[start + corner * stride_ + positionSlot_];
        if (positions_->stride < 3 || tuple >= tuplesOf(*positions_)) return false;
        const std::vector<float>& values = positions_->values;
        const float* const at =
            values.data() + tuple * static_cast<std::size_t>(positions_->stride);
        position = Eigen::Vector3f(at[0], at[1], at[2]).cast<double>();
        return position.allFinite();
    }

    void markUsed(UsedTuples& used) const {
        const std::size_t tuples = tuplesOf(*positions_);
        for (std::size_t i = positionSlot_; i < indices_.size(); i += stride_) {
            if (indices_[i] < tuples) used.add(indices_[i]);
        }
    }

    const scene::Mesh& mesh_;
    scene::IMeshPrimitive& primitive_;
    const std::vector<unsigned int>& indices_;
    std::size_t stride_;
    Report report_;
    const Stream* positions_ = nullptr;
    std::size_t positionSlot_ = 0;
    Positions past_, degenerate_;
};

/// Each stream once: those of the mesh, and those that only mappings hold.
void checkStreams(const scene::Mesh& mesh, const Report& report) {
    std::set<const Stream*> known;
    const auto check = [&](const boost::shared_ptr<Stream>& stream) {
        if (stream && known.insert(stream.get()).second) {
            checkStream(*stream, report.in("stream " + stream->name));
        }
    };
    for (const auto& stream : mesh.getStreams()) check(stream);
    for (const auto& mapping : mesh.getVertices()) check(mapping.stream);
    for (const auto& primitive : mesh.getMeshPrimitives()) {
        for (const auto& mapping : primitive->getStreamMapping()) {
            // What a VERTEX mapping points at is a stand-in.
            if (mapping.semantic != scene::VERTEX) check(mapping.stream);
        }
    }
}

/// Each meaning of each stream once.
void checkMeanings(const scene::Mesh& mesh, const Report& report) {
    std::set<std::pair<const Stream*, int>> known;
    const auto check = [&](const StreamMapping& mapping) {
        if (!mapping.stream || mapping.semantic == scene::VERTEX || mapping.stream->stride <= 0) {
            return;
        }
        if (!known.insert({mapping.stream.get(), mapping.semantic}).second) return;
        checkMeaning(*mapping.stream, mapping.semantic,
                     report.in("stream " + mapping.stream->name));
    };
    for (const auto& mapping : mesh.getVertices()) check(mapping);
    for (const auto& primitive : mesh.getMeshPrimitives()) {
        for (const auto& mapping : primitive->getStreamMapping()) check(mapping);
    }
}

const Stream* positionsOf(const scene::Mesh& mesh) {
    for (const auto& mapping : mesh.getVertices()) {
        if (mapping.semantic == scene::POSITION) return mapping.stream.get();
    }
    return nullptr;
}

}  // namespace

void checkMesh(const scene::Mesh& mesh, const Report& report) {
    checkStreams(mesh, report);
    checkMeanings(mesh, report);
    const Stream* const positions = positionsOf(mesh);
    UsedTuples used(positions ? *positions : Stream("", 3, true));
    for (unsigned int i = 0; i < mesh.getPrimitiveCount(); ++i) {
        PrimitiveCheck(mesh, *mesh.getPrimitive(i), report.in("primitive " + number(i)))
            .run(positions, used);
    }
    report.addAt(Finding::UNUSED, "positions", used.unused());
}

}  // namespace vantorix::apps::check
