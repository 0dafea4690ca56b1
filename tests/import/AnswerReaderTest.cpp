#include <cmath>
#include <limits>
#include <random>

#include <boost/function.hpp>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "apps/import/ImportError.h"
#include "apps/import/WorkerMessages.h"
#include "tests/import/SampleDocument.h"

using namespace vantorix::apps::import;
using nlohmann::json;

namespace {

using Bytes = std::vector<std::uint8_t>;

enum Verdict { ACCEPTED, REFUSED, LIMITED };

Verdict verdict(const Bytes& message, const ImportLimits& limits = {}) {
    try {
        readAnswer(message, limits);
        return ACCEPTED;
    } catch (const LimitError&) {
        return LIMITED;
    } catch (const RefusedError&) {
        return REFUSED;
    }
}

/// The message of a CBOR part behind @p block.
Bytes messageOf(const json& object, Bytes block) {
    const auto cbor = json::to_cbor(object);
    block.insert(block.end(), cbor.begin(), cbor.end());
    for (std::uint64_t size = cbor.size(), i = 0; i < 8; ++i, size >>= 8) {
        block.push_back(static_cast<std::uint8_t>(size));
    }
    return block;
}

/// Takes the sample's message apart, so that a test can change what no writer would write.
struct TakenApart {
    TakenApart() {
        const auto message = writeAnswer(sampleAnswer());
        std::uint64_t size = 0;
        std::memcpy(&size, &message[message.size() - 8], 8);
        const auto cbor = message.end() - 8 - static_cast<std::ptrdiff_t>(size);
        block.assign(message.begin(), cbor);
        object = json::from_cbor(cbor, message.end() - 8);
    }
    Verdict verdictWith(const char* pointer, const json& value) const {
        json changed = object;
        changed[json::json_pointer(pointer)] = value;
        return verdict(messageOf(changed, block));
    }

    Bytes block;
    json object;
};

}  // namespace

TEST(AnswerReader, GivesBackWhatWasWritten) {
    const auto message = writeAnswer(sampleAnswer());
    EXPECT_EQ(writeAnswer(readAnswer(message, {})), message);

    WorkerAnswer limited;
    limited.status = WorkerAnswer::LIMIT;
    limited.reason = "has 5 nodes, 4 are allowed";
    limited.limit = {"nodes", "", 5, 4};
    EXPECT_EQ(writeAnswer(readAnswer(writeAnswer(limited), {})), writeAnswer(limited));
}

TEST(AnswerReader, RefusesDocumentsThatCannotBeBuilt) {
    const std::vector<boost::function<void(ModelDocument&)>> faults = {
        [](auto& d) { d.nodes.clear(); },
        [](auto& d) { d.nodes[0].parent = 1; },
        [](auto& d) { d.nodes[1].parent = 1; },
        [](auto& d) { d.nodes[1].parent = 2; },
        [](auto& d) { d.nodes[2].meshes = {3}; },
        [](auto& d) { d.nodes[2].matrix[3] = std::nanf(""); },
        [](auto& d) { d.meshes[0].material = 2; },
        [](auto& d) { d.meshes[0].positions.pop_back(); },
        [](auto& d) { d.meshes[0].positions[4] = std::numeric_limits<float>::infinity(); },
        [](auto& d) { d.meshes[0].positions.clear(); },
        [](auto& d) { d.meshes[0].normals.resize(6); },
        [](auto& d) {
            d.meshes[0].colors = {1, 1, 1, 1};
        },
        [](auto& d) { d.meshes[0].texCoords[0].components = 1; },
        [](auto& d) { d.meshes[0].texCoords[0].components = 3; },
        [](auto& d) {
            d.meshes[0].texCoords.resize(9, {2, {}});
        },
        [](auto& d) { d.meshes[0].triangles[1] = 3; },
        [](auto& d) { d.meshes[0].triangles.pop_back(); },
        [](auto& d) { d.meshes[2].polygons[1] = 8; },
        [](auto& d) { d.meshes[2].polygons.pop_back(); },
        [](auto& d) { d.meshes[2].polygonSizes[0] = 3; },
        [](auto& d) {
            d.meshes[2].polygonSizes = {0xfffffffcu, 8};
        },
        [](auto& d) { d.meshes[2].skin.bones[0].node = 7; },
        [](auto& d) { d.meshes[2].skin.bones[0].inverseBind[0] = std::nanf(""); },
        [](auto& d) { d.meshes[2].skin.counts.pop_back(); },
        [](auto& d) { d.meshes[2].skin.counts[0] = 2; },
        [](auto& d) { d.meshes[2].skin.influences[3] = 2; },
        [](auto& d) { d.meshes[2].skin.weights[3] = 0.0f; },
        [](auto& d) { d.meshes[2].skin.weights.pop_back(); },
        [](auto& d) { d.clips[0].duration = 0.0f; },
        [](auto& d) { d.clips[0].duration = 1.25f; },
        [](auto& d) { d.clips[0].duration = 2e6f; },
        [](auto& d) { d.clips[0].channels[0].node = 7; },
        [](auto& d) { d.clips[0].channels[0].node = 3; },
        [](auto& d) { d.clips[0].channels[0].rotations.times[0] = 1.0f; },
        [](auto& d) { d.clips[0].channels[0].rotations.times[0] = -2e6f; },
        [](auto& d) { d.clips[0].channels[0].rotations.times[0] = std::nanf(""); },
        [](auto& d) { d.clips[0].channels[0].rotations.values.pop_back(); },
        [](auto& d) { d.clips[0].channels[1].positions.times.push_back(1.75f); },
        [](auto& d) { d.materials.pop_back(); },
        [](auto& d) { d.materials[1].textures[1].embedded = 1; },
        [](auto& d) { d.materials[1].textures[0].embedded = -2; },
        [](auto& d) { d.materials[1].textures[0].texCoordSet = 8; },
        [](auto& d) { d.textures[0].width = 2; },
        [](auto& d) { d.textures[0].width = d.textures[0].height = 0x80000000u; },
        [](auto& d) { d.cameras[0].placement.node = 7; },
        [](auto& d) { d.cameras[0].yFov = 180.0f; },
        [](auto& d) { d.cameras[0].zFar = d.cameras[0].zNear; },
        [](auto& d) { d.lights[0].placement.node = 7; },
        [](auto& d) { d.lights[0].color[2] = std::nanf(""); },
        [](auto& d) { d.upAxis = 3; },
        [](auto& d) { d.meterUnit = std::nanf(""); },
        [](auto& d) { d.name = std::string(100000, 'x'); },
    };
    for (std::size_t i = 0; i < faults.size(); ++i) {
        auto answer = sampleAnswer();
        faults[i](answer.document);
        EXPECT_EQ(verdict(writeAnswer(answer)), REFUSED) << "fault " << i;
    }
}

TEST(AnswerReader, ChecksEveryArrayReference) {
    const TakenApart sample;
    const char* const at = "/document/meshes/0/positions/at";
    const char* const count = "/document/meshes/0/positions/count";
    ASSERT_EQ(sample.verdictWith("/status", 0u), ACCEPTED);
    EXPECT_EQ(sample.verdictWith(at, sample.block.size()), REFUSED);
    EXPECT_EQ(sample.verdictWith(at, -4), REFUSED);
    EXPECT_EQ(sample.verdictWith(at, "0"), REFUSED);
    // Products that wrap around to something small, and more than any memory holds.
    for (const int shift : {30, 61, 62, 63}) {
        EXPECT_EQ(sample.verdictWith(count, std::uint64_t{1} << shift), REFUSED) << shift;
    }
    EXPECT_EQ(sample.verdictWith("/document/meshes", json::object()), REFUSED);
    EXPECT_EQ(sample.verdictWith("/document", json::array({1})), REFUSED);
    EXPECT_EQ(sample.verdictWith("/status", 3u), REFUSED);
    EXPECT_EQ(sample.verdictWith("/document/lights/0/kind", 4u), REFUSED);
    const json none = {{"at", 0u}, {"count", 0u}};
    EXPECT_EQ(sample.verdictWith("/document/clips/0/counts", none), REFUSED);
    EXPECT_EQ(sample.verdictWith("/document/clips/0/times", none), REFUSED);
}

TEST(AnswerReader, ASmallMessageStaysSmallInMemory) {
    TakenApart sample;
    auto& meshes = sample.object["document"]["meshes"];
    const json mesh = meshes[0];
    for (int i = 0; i < 1000; ++i) meshes.push_back(mesh);  // All name the same bytes.
    EXPECT_EQ(verdict(messageOf(sample.object, sample.block)), REFUSED);
}

TEST(AnswerReader, NamesTheLimitThatADocumentMeets) {
    ImportLimits nodes, depth, vertices, faces, items, corners, influences, keys;
    nodes.nodes = 2;
    depth.depth = 2;
    vertices.vertices = 5;
    faces.faces = 1;
    items.items = 1;
    corners.corners = 15;
    influences.influences = 9;
    keys.keys = 4;
    const auto message = writeAnswer(sampleAnswer());
    for (const auto& limits : {nodes, depth, vertices, faces, items, corners, influences, keys}) {
        EXPECT_EQ(verdict(message, limits), LIMITED);
    }
}

TEST(AnswerReader, SurvivesEveryCutAndManyChangedBytes) {
    const auto message = writeAnswer(sampleAnswer());
    for (std::size_t size = 0; size < message.size(); ++size) {
        EXPECT_EQ(verdict(Bytes(message.begin(), message.begin() + static_cast<int>(size))),
                  REFUSED)
            << size;
    }
    std::mt19937 random(7);
    for (int round = 0; round < 20000; ++round) {
        auto changed = message;
        for (int i = 0; i < 1 + round % 3; ++i) {
            changed[random() % changed.size()] = static_cast<std::uint8_t>(random());
        }
        verdict(changed);  // Any verdict will do; anything else thrown fails the test.
    }
}
