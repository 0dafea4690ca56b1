#include "apps/import/SkinAssembly.h"

#include <algorithm>

#include <boost/make_shared.hpp>

#include "scene/controller/Skin.h"
#include "scene/geometry/Stream.h"

namespace vantorix::apps::import {

using scene::Stream;

SkinAssembly::SkinAssembly() : weights_(boost::make_shared<Stream>("", 1, false)) { numberOf({}); }

std::vector<unsigned int> SkinAssembly::listsOf(const ModelMesh& source) {
    const auto& skin = source.skin;
    const auto joints = jointsOf(skin);
    std::vector<unsigned int> lists(source.countVertices(), 0);
    std::vector<Influence> influences;
    std::size_t next = 0;
    for (std::size_t vertex = 0; vertex < skin.counts.size(); ++vertex) {
        influences.clear();
        for (const std::size_t end = next + skin.counts[vertex]; next < end; ++next) {
            influences.push_back({joints[skin.influences[next]], skin.weights[next]});
        }
        lists[vertex] = listFor(influences);
    }
    return lists;
}

void SkinAssembly::addVertex(unsigned int list) { vertices_.push_back(list); }

/// The joint of each bone.
std::vector<int> SkinAssembly::jointsOf(const ModelSkin& source) {
    std::vector<int> joints;
    for (const auto& bone : source.bones) {
        const auto [joint, added] = jointNumbers_.try_emplace({bone.node, bone.inverseBind},
                                                              static_cast<int>(joints_.size()));
        if (added) joints_.push_back(bone);
        joints.push_back(joint->second);
    }
    return joints;
}

/// Of a joint that moves a vertex twice, the weights are added.
unsigned int SkinAssembly::listFor(std::vector<Influence>& influences) {
    std::stable_sort(influences.begin(), influences.end(),
                     [](const Influence& a, const Influence& b) { return a.joint < b.joint; });
    std::vector<int> pairs;
    for (auto first = influences.begin(); first != influences.end();) {
        Influence sum{first->joint, 0.0f};
        for (; first != influences.end() && first->joint == sum.joint; ++first) {
            sum.weight += first->weight;
        }
        pairs.push_back(sum.joint);
        pairs.push_back(weights_->insertValue(1, &sum.weight));
    }
    return numberOf(pairs);
}

unsigned int SkinAssembly::numberOf(const std::vector<int>& pairs) {
    const std::string bytes(reinterpret_cast<const char*>(pairs.data()),
                            pairs.size() * sizeof(int));
    const auto [number, added] =
        listNumbers_.try_emplace(bytes, static_cast<unsigned int>(lists_.size()));
    if (added) lists_.push_back(pairs);
    return number->second;
}

void SkinAssembly::fill(const std::string& id, const std::vector<std::string>& nodeIds,
                        scene::Skin& skin) const {
    const auto weights = boost::make_shared<Stream>(*weights_);
    weights->name = id + "-weights";
    weights->params = {{"WEIGHT", "float"}};
    const auto joints = jointStream(id, nodeIds);
    const auto matrices = matrixStream(id);
    skin.setStreams({joints, matrices, weights});
    skin.setJointsInput("JOINT", joints->name);
    skin.setJointsInput("INV_BIND_MATRIX", matrices->name);
    skin.setVertexWeightsInput("JOINT", joints->name);
    skin.setVertexWeightsInput("WEIGHT", weights->name);

    std::vector<unsigned int> counts;
    std::vector<int> pairs;
    for (const auto list : vertices_) {
        counts.push_back(static_cast<unsigned int>(lists_[list].size() / 2));
        pairs.insert(pairs.end(), lists_[list].begin(), lists_[list].end());
    }
    skin.setVCount(std::move(counts));
    skin.setV(std::move(pairs));
}

boost::shared_ptr<Stream> SkinAssembly::jointStream(const std::string& id,
                                                    const std::vector<std::string>& nodeIds) const {
    const auto stream = boost::make_shared<Stream>(id + "-joints", 1, true);
    stream->params = {{"JOINT", "Name"}};
    for (const auto& joint : joints_) stream->stringValues.push_back(nodeIds[joint.node]);
    stream->count = static_cast<int>(joints_.size());
    return stream;
}

boost::shared_ptr<Stream> SkinAssembly::matrixStream(const std::string& id) const {
    const auto stream = boost::make_shared<Stream>(id + "-bind_poses", 16, true);
    stream->params = {{"TRANSFORM", "float4x4"}};
    for (const auto& joint : joints_) {
        std::array<float, 16> rows{};
        for (std::size_t i = 0; i < 16; ++i) rows[i] = joint.inverseBind[i % 4 * 4 + i / 4];
        stream->insertValue(16, rows.data());
    }
    return stream;
}

}  // namespace vantorix::apps::import
