// What the worker's converters make of scenes that no sound file gives.

#include <limits>

#include <assimp/anim.h>
#include <assimp/mesh.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "apps/import/ImportError.h"
#include "apps/import/worker/ClipConverter.h"
#include "apps/import/worker/MeshConverter.h"
#include "apps/import/worker/NodeNames.h"
#include "apps/import/worker/SkinConverter.h"

using namespace vantorix::apps::import;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

constexpr float noNumber = std::numeric_limits<float>::quiet_NaN();

std::vector<ModelNode> threeNodes() {
    std::vector<ModelNode> nodes(3);
    nodes[1].name = "hip";
    nodes[2].name = "knee";
    return nodes;
}

}  // namespace

/// A mesh of three vertices that frees nothing but what Assimp frees.
struct OddMesh : ::testing::Test {
    OddMesh() {
        source.mNumVertices = 3;
        source.mVertices = new aiVector3D[3];
    }
    void setFaces(const std::vector<std::vector<unsigned int>>& faces) {
        source.mNumFaces = static_cast<unsigned int>(faces.size());
        source.mFaces = new aiFace[faces.size()];
        for (std::size_t i = 0; i < faces.size(); ++i) {
            source.mFaces[i].mNumIndices = static_cast<unsigned int>(faces[i].size());
            source.mFaces[i].mIndices = new unsigned int[faces[i].size()];
            std::copy(faces[i].begin(), faces[i].end(), source.mFaces[i].mIndices);
        }
    }
    void setBones(const std::vector<std::string>& boneNames) {
        source.mNumBones = static_cast<unsigned int>(boneNames.size());
        source.mBones = new aiBone*[boneNames.size()];
        for (std::size_t i = 0; i < boneNames.size(); ++i) {
            source.mBones[i] = new aiBone();
            source.mBones[i]->mName = boneNames[i];
        }
    }
    void setWeights(unsigned int bone, const std::vector<aiVertexWeight>& weights) {
        source.mBones[bone]->mNumWeights = static_cast<unsigned int>(weights.size());
        source.mBones[bone]->mWeights = new aiVertexWeight[weights.size()];
        std::copy(weights.begin(), weights.end(), source.mBones[bone]->mWeights);
    }
    ModelMesh convert() {
        ModelMesh mesh = MeshConverter(limits, 1, report).convert(source);
        SkinConverter(limits, names, report).convert(source, mesh);
        return mesh;
    }

    aiMesh source;
    ImportLimits limits;
    ImportReport report;
    NodeNames names{threeNodes()};
};

/// Two channels, of which the second names no node.
struct OddClip : ::testing::Test {
    OddClip() {
        source.mTicksPerSecond = 10.0;
        source.mNumChannels = 2;
        source.mChannels = new aiNodeAnim*[2];
        for (unsigned int i = 0; i < 2; ++i) source.mChannels[i] = new aiNodeAnim();
        source.mChannels[0]->mNodeName = "knee";
        source.mChannels[1]->mNodeName = "nobody";
    }
    void setPositions(const std::vector<aiVectorKey>& keys) {
        auto& channel = *source.mChannels[0];
        channel.mNumPositionKeys = static_cast<unsigned int>(keys.size());
        channel.mPositionKeys = new aiVectorKey[keys.size()];
        std::copy(keys.begin(), keys.end(), channel.mPositionKeys);
    }
    std::vector<ModelClip> convert() {
        std::vector<ModelClip> clips;
        ClipConverter(limits, names, report).convert(source, clips);
        return clips;
    }

    aiAnimation source;
    ImportLimits limits;
    ImportReport report;
    NodeNames names{threeNodes()};
};

TEST_F(OddMesh, FacesWithoutThreeSoundCornersAreDropped) {
    setFaces({{0, 1, 2}, {0, 1}, {}, {0, 1, 3}, {0, 1, 2, 0}, {2, 1, 0, 9}});
    const auto mesh = convert();
    EXPECT_THAT(mesh.triangles, ElementsAre(0, 1, 2));
    EXPECT_THAT(mesh.polygonSizes, ElementsAre(4));
    EXPECT_THAT(mesh.polygons, ElementsAre(0, 1, 2, 0));
    EXPECT_THAT(report.getNotes(), ElementsAre(HasSubstr("2 points"), HasSubstr("2 faces with")));
}

TEST_F(OddMesh, OnlyUsableWeightsOfKnownBonesRemain) {
    setBones({"knee", "nobody", "hip"});
    setWeights(0, {{0, 0.5f}, {3, 1.0f}, {1, noNumber}, {1, 0.0f}, {2, -1.0f}});
    setWeights(1, {{0, 1.0f}});
    setWeights(2, {{2, 0.25f}, {0, 0.5f}});
    source.mBones[2]->mOffsetMatrix.a1 = noNumber;
    const auto skin = convert().skin;
    ASSERT_EQ(skin.bones.size(), 2u);
    EXPECT_EQ(skin.bones[0].node, 2u);
    EXPECT_EQ(skin.bones[1].node, 1u);
    EXPECT_EQ(skin.bones[1].inverseBind, ModelBone().inverseBind);
    EXPECT_THAT(skin.counts, ElementsAre(2, 0, 1));
    EXPECT_THAT(skin.influences, ElementsAre(0, 1, 1));
    EXPECT_THAT(skin.weights, ElementsAre(0.5f, 0.5f, 0.25f));
    EXPECT_THAT(report.getNotes(),
                ElementsAre(HasSubstr("\"nobody\" names no node"), HasSubstr("no number replaced"),
                            HasSubstr("3 unusable weights")));
}

TEST_F(OddMesh, BonesAndTheirInfluencesAreLimited) {
    setBones({"knee", "hip"});
    setWeights(0, {{0, 0.5f}, {1, 0.5f}});
    limits.influences = 1;
    EXPECT_THROW(convert(), LimitError);
    limits = {};
    limits.items = 1;
    EXPECT_THROW(convert(), LimitError);
    limits = {};
    limits.corners = 3;
    setFaces({{0, 1, 2, 0}});
    EXPECT_THROW(convert(), LimitError);
}

TEST_F(OddMesh, WithoutAnyNodeThereIsNoSkin) {
    setBones({"nobody"});
    setWeights(0, {{0, 1.0f}});
    const auto skin = convert().skin;
    EXPECT_THAT(skin.bones, IsEmpty());
    EXPECT_THAT(skin.counts, IsEmpty());
}

TEST_F(OddClip, KeysComeInOrderAndTheLastOfATimeCounts) {
    setPositions({{20.0, {2, 0, 0}},
                  {0.0, {0, 0, 0}},
                  {10.0, {1, 0, 0}},
                  {10.0, {1, 5, 0}},
                  {1e300, {9, 0, 0}},
                  {std::numeric_limits<double>::quiet_NaN(), {9, 0, 0}},
                  {15.0, {noNumber, 0, 0}}});
    const auto clips = convert();
    ASSERT_EQ(clips.size(), 1u);
    ASSERT_EQ(clips[0].channels.size(), 1u);
    EXPECT_EQ(clips[0].duration, 2.0f);
    EXPECT_THAT(clips[0].channels[0].positions.times, ElementsAre(0, 1, 2));
    EXPECT_THAT(clips[0].channels[0].positions.values, ElementsAre(0, 0, 0, 1, 5, 0, 2, 0, 0));
    EXPECT_THAT(report.getNotes(),
                ElementsAre(HasSubstr("there is no such node"), HasSubstr("3 keys that are no")));
}

TEST_F(OddClip, WhatMovesNothingIsLeftOut) {
    EXPECT_THAT(convert(), IsEmpty());
    setPositions({{0.0, {0, 0, 0}}});
    EXPECT_THAT(convert(), IsEmpty()) << "it lasts no time";
    source.mTicksPerSecond = -1.0;
    source.mDuration = 50.0;
    ASSERT_EQ(convert().size(), 1u);
    EXPECT_EQ(convert()[0].duration, 2.0f) << "at the usual 25 ticks per second";
}

TEST_F(OddClip, ChannelsAndKeysAreLimited) {
    setPositions({{0.0, {0, 0, 0}}, {10.0, {0, 0, 0}}});
    limits.keys = 1;
    EXPECT_THROW(convert(), LimitError);
    limits = {};
    limits.items = 1;
    EXPECT_THROW(convert(), LimitError);
}
