#include "apps/check/SkinCheck.h"

#include <numeric>

#include "apps/check/Report.h"
#include "apps/check/StreamCheck.h"
#include "scene/controller/Skin.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/SceneManager.h"

namespace vantorix::apps::check {
namespace {

using scene::Stream;
using StreamPointer = boost::shared_ptr<Stream>;
using Positions = std::vector<std::size_t>;

class SkinCheck {
public:
    SkinCheck(const scene::Skin& skin, const scene::SceneManager& scene, const Report& report)
        : skin_(skin), scene_(scene), report_(report) {}

    void run() {
        for (const auto& stream : skin_.getStreams()) {
            if (stream) checkStream(*stream, report_.in("stream " + stream->name));
        }
        joints_ = input("joints", "JOINT", skin_.getJointsInput("JOINT"));
        const auto matrices =
            input("joints", "INV_BIND_MATRIX", skin_.getJointsInput("INV_BIND_MATRIX"));
        input("vertex weights", "JOINT", skin_.getVertexWeightsInput("JOINT"));
        weights_ = input("vertex weights", "WEIGHT", skin_.getVertexWeightsInput("WEIGHT"));
        report_.require(skin_.getBindShapeMatrix().allFinite(), Finding::NOT_FINITE,
                        "bind shape matrix");
        if (joints_) checkJoints();
        if (joints_ && matrices) checkMatrices(*matrices);
        checkCounts();
        checkInfluences();
    }

private:
    StreamPointer input(const char* list, const char* semantic, const StreamPointer& stream) {
        report_.require(stream != nullptr, Finding::ORPHAN,
                        std::string("no stream for ") + semantic + " of the " + list);
        return stream;
    }

    void checkJoints() {
        for (const auto& joint : joints_->stringValues) {
            report_.require(scene_.getNodeByID(joint) != nullptr, Finding::ORPHAN,
                            "no node for joint " + joint);
        }
    }

    void checkMatrices(const Stream& matrices) {
        report_.require(matrices.stride == 16, Finding::STRIDE,
                        "stride " + std::to_string(matrices.stride) + " for INV_BIND_MATRIX");
        const auto joints = joints_->stringValues.size();
        report_.require(tuplesOf(matrices) == joints, Finding::SKIN,
                        std::to_string(tuplesOf(matrices)) + " inverse bind matrices for " +
                            std::to_string(joints) + " joints");
    }

    void checkCounts() {
        const auto& counts = skin_.getVCount();
        const auto influences = std::accumulate(counts.begin(), counts.end(), std::uint64_t{0});
        report_.require(2 * influences == skin_.getV().size(), Finding::SKIN,
                        std::to_string(skin_.getV().size()) + " entries of V for " +
                            std::to_string(influences) + " influences");
        const auto mesh = boost::dynamic_pointer_cast<scene::Mesh>(skin_.getSourceGeometry());
        report_.require(mesh != nullptr, Finding::ORPHAN, "no mesh");
        if (!mesh) return;
        for (const auto& mapping : mesh->getVertices()) {
            if (mapping.semantic != scene::POSITION || !mapping.stream) continue;
            const auto vertices = tuplesOf(*mapping.stream);
            report_.require(counts.size() == vertices, Finding::SKIN,
                            "influences of " + std::to_string(counts.size()) + " vertices for " +
                                std::to_string(vertices) + " positions");
            return;
        }
    }

    void checkInfluences() {
        const auto& v = skin_.getV();
        const std::size_t joints = joints_ ? joints_->stringValues.size() : 0;
        const std::size_t weights = weights_ ? tuplesOf(*weights_) : 0;
        Positions noJoint, noWeight, negative;
        for (std::size_t i = 0; i + 1 < v.size(); i += 2) {
            // -1 stands for the bind shape.
            if (v[i] < -1 || (v[i] >= 0 && static_cast<std::size_t>(v[i]) >= joints)) {
                noJoint.push_back(i / 2);
            }
            if (v[i + 1] < 0 || static_cast<std::size_t>(v[i + 1]) >= weights) {
                noWeight.push_back(i / 2);
            } else if (weights_->stride == 1 &&
                       weights_->values.data()[static_cast<std::size_t>(v[i + 1])] < 0.0f) {
                negative.push_back(i / 2);
            }
        }
        report_.addAt(Finding::SKIN, "influences of joints that are missing", noJoint);
        report_.addAt(Finding::SKIN, "influences with weights that are missing", noWeight);
        report_.addAt(Finding::SKIN, "influences with negative weights", negative);
    }

    const scene::Skin& skin_;
    const scene::SceneManager& scene_;
    Report report_;
    StreamPointer joints_, weights_;
};

}  // namespace

void checkSkin(const scene::Skin& skin, const scene::SceneManager& scene, const Report& report) {
    SkinCheck(skin, scene, report).run();
}

}  // namespace vantorix::apps::check
