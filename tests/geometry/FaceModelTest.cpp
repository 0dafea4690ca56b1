// Adding random faces, against a model that follows the rules step by step.

#include <random>
#include <set>

#include "scene/geometry/Polygon.h"
#include "scene/geometry/PolygonMeshPrimitive.h"
#include "scene/geometry/TriangleMeshPrimitive.h"
#include "scene/geometry/VertexElement.h"
#include "tests/geometry/GeometrySupport.h"

namespace vantorix::scene {
namespace {

struct Value {
    StreamSemantic semantic;
    Floats floats;
};
using Corner = std::vector<Value>;

struct ModelStream {
    std::string name;
    std::size_t stride;
    bool keepsDuplicates;
    std::vector<Floats> tuples;

    unsigned int insert(const Floats& tuple) {
        for (std::size_t i = 0; i < tuples.size(); ++i) {
            if (!keepsDuplicates && haveSameBytes(tuples[i], tuple)) {
                return static_cast<unsigned int>(i);
            }
        }
        tuples.push_back(tuple);
        return static_cast<unsigned int>(tuples.size() - 1);
    }
};

struct ModelMapping {
    StreamSemantic semantic;
    boost::shared_ptr<ModelStream> stream;
    int offset;
};

/// A fresh mesh with one primitive.
struct FaceModel {
    std::vector<ModelMapping> vertices, mappings;
    std::vector<boost::shared_ptr<ModelStream>> streams;
    Indices indices;
    Floats lowest = Floats(3, std::numeric_limits<float>::max());
    Floats highest = Floats(3, std::numeric_limits<float>::lowest());

    bool addFace(const std::vector<Corner>& corners, bool deduplicate) {
        for (const auto& corner : corners) {
            for (const auto& value : corner) {
                const auto stream = prepare(value, deduplicate);
                if (stream && stream->stride != value.floats.size()) return false;
            }
        }
        for (const auto& corner : corners) {
            Indices record(stride(), 0);
            for (const auto& value : corner) {
                if (!store(value, record)) return false;
            }
            indices.insert(indices.end(), record.begin(), record.end());
        }
        return true;
    }

    std::size_t stride() const {
        std::set<int> offsets;
        for (const auto& mapping : mappings) offsets.insert(mapping.offset);
        return offsets.size();
    }

private:
    static const ModelMapping* find(const std::vector<ModelMapping>& list,
                                    StreamSemantic semantic) {
        for (const auto& mapping : list) {
            if (mapping.semantic == semantic) return &mapping;
        }
        return nullptr;
    }

    boost::shared_ptr<ModelStream> resolve(StreamSemantic semantic) const {
        if (const auto* own = find(mappings, semantic)) return own->stream;
        const auto* shared = find(vertices, semantic);
        return shared ? shared->stream : nullptr;
    }

    boost::shared_ptr<ModelStream> prepare(const Value& value, bool deduplicate) {
        if (const auto stream = resolve(value.semantic)) return stream;
        const auto make = [&](const std::string& name) {
            return boost::make_shared<ModelStream>(
                ModelStream{name, value.floats.size(), !deduplicate, {}});
        };
        if (value.semantic != POSITION) {
            const auto stream = make(streamSemanticToString(value.semantic) + "_stream");
            streams.push_back(stream);
            mappings.push_back({value.semantic, stream, static_cast<int>(stride())});
            return stream;
        }
        if (vertices.empty()) {
            streams.push_back(make("position_stream"));
            vertices.push_back({POSITION, streams.back(), 0});
        }
        if (!resolve(VERTEX)) mappings.push_back({VERTEX, make("model_vertices"), 0});
        return nullptr;
    }

    bool store(const Value& value, Indices& record) {
        if (value.semantic == POSITION) {
            for (std::size_t axis = 0; axis < 3; ++axis) {
                const float sample = axis < value.floats.size() ? value.floats[axis] : 0;
                if (!(sample > lowest[axis])) lowest[axis] = sample;
                if (!(highest[axis] > sample)) highest[axis] = sample;
            }
        }
        const auto stream = resolve(value.semantic);
        const auto tuple = stream->insert(value.floats);
        const int slot = offsetOf(stream->keepsDuplicates ? VERTEX : value.semantic);
        if (slot < 0) return false;
        record[static_cast<std::size_t>(slot)] = tuple;
        return true;
    }

    int offsetOf(StreamSemantic semantic) const {
        const ModelMapping* last = nullptr;
        for (const auto& mapping : mappings) {
            if (mapping.semantic == semantic) return mapping.offset;
            if (mapping.semantic == VERTEX) last = &mapping;
        }
        return last && find(vertices, semantic) ? last->offset : -1;
    }
};

class RandomFaces {
public:
    explicit RandomFaces(unsigned int seed) : random_(seed) {
        // Mostly one layout for all corners; every layout has another order.
        for (const auto semantic : {POSITION, NORMAL, COLOR, TEXCOORD0, TEXCOORD3, INVALID}) {
            if (semantic == POSITION || below(2) == 0) layout_.push_back(semantic);
        }
        std::shuffle(layout_.begin(), layout_.end(), random_);
    }

    std::vector<Corner> next(std::size_t count) {
        std::vector<Corner> corners(count);
        for (auto& corner : corners) {
            for (const auto semantic : layout_) {
                if (below(40) != 0) corner.push_back({semantic, floats(semantic)});
            }
        }
        return corners;
    }

    unsigned int below(unsigned int limit) { return static_cast<unsigned int>(random_()) % limit; }

private:
    Floats floats(StreamSemantic semantic) {
        std::size_t size = semantic == TEXCOORD0 ? 2 : 3;
        if (below(150) == 0) size = 1 + below(3);
        const Floats choice = {0.0f, -0.0f, 1.0f, 2.0f, std::numeric_limits<float>::quiet_NaN()};
        Floats values;
        while (values.size() < size) values.push_back(choice[below(below(20) == 0 ? 5 : 4)]);
        return values;
    }

    std::mt19937 random_;
    std::vector<StreamSemantic> layout_;
};

void set(const Value& value, Vertex& vertex) {
    switch (value.semantic) {
        case POSITION:
            return vertex.setPosition(value.floats);
        case NORMAL:
            return vertex.setNormal(value.floats);
        case COLOR:
            return vertex.setColor(value.floats);
        case TEXCOORD0:
            return vertex.setTextCoord(0, value.floats);
        case TEXCOORD3:
            return vertex.setTextCoord(3, value.floats);
        default:
            return vertex.setTextCoord(8, value.floats);
    }
}

boost::shared_ptr<Vertex> toVertex(const Corner& corner, bool bySetters) {
    const auto vertex = boost::make_shared<Vertex>();
    for (const auto& value : corner) {
        if (bySetters) {
            set(value, *vertex);
            continue;
        }
        vertex->addElement(
            VertexElement::create(value.semantic, static_cast<int>(value.floats.size()),
                                  value.floats.data()),
            true);
    }
    return vertex;
}

Floats joined(const std::vector<Floats>& tuples) {
    Floats all;
    for (const auto& tuple : tuples) all.insert(all.end(), tuple.begin(), tuple.end());
    return all;
}

struct FaceModelTest : QuietTest, ::testing::WithParamInterface<unsigned int> {
    boost::shared_ptr<Mesh> mesh = boost::make_shared<Mesh>("model", "");
    FaceModel model;
    RandomFaces faces{GetParam()};
    const bool deduplicate = GetParam() % 4 != 0;

    void compare(IMeshPrimitive& primitive) {
        ASSERT_EQ(primitive.getIndexStream(), model.indices);
        const auto& mappings = primitive.getStreamMapping();
        ASSERT_EQ(mappings.size(), model.mappings.size());
        for (std::size_t i = 0; i < mappings.size(); ++i) {
            EXPECT_EQ(mappings[i].semantic, model.mappings[i].semantic);
            EXPECT_EQ(mappings[i].offset, model.mappings[i].offset);
            EXPECT_EQ(mappings[i].stream->name, model.mappings[i].stream->name);
        }
        compareStreams();
        const auto low = minimumOf(primitive), high = maximumOf(primitive);
        EXPECT_TRUE(haveSameBytes({low[0], low[1], low[2]}, model.lowest));
        EXPECT_TRUE(haveSameBytes({high[0], high[1], high[2]}, model.highest));
    }

    /// Somebody writes to the streams: their first tuple over another one.
    void repeatFirstTuples() {
        for (std::size_t i = 0; i < model.streams.size(); ++i) {
            auto& tuples = model.streams[i]->tuples;
            if (tuples.empty()) continue;
            tuples[faces.below(static_cast<unsigned int>(tuples.size()))] = tuples.front();
            mesh->getStreams()[i]->values = joined(tuples);
        }
    }

    /// Or changes what says where values go.
    void changeStreams() {
        const auto position = faces.below(static_cast<unsigned int>(model.streams.size()));
        auto& changed = *model.streams[position];
        changed.keepsDuplicates = !changed.keepsDuplicates;
        mesh->getStreams()[position]->allowDuplicates = changed.keepsDuplicates;
        if (faces.below(2) == 0) return;
        const auto other = boost::make_shared<ModelStream>(ModelStream{"other", 3, false, {}});
        model.streams.push_back(other);
        model.vertices.front().stream = other;
        const auto stream = boost::make_shared<Stream>("other", 3, false);
        mesh->addStream(stream);
        mesh->setVertices({StreamMapping(POSITION, stream, 0)});
    }

    /// Adds a face while a stream has another stride.
    void refuseFace(TriangleMeshPrimitive& primitive) {
        for (std::size_t i = 0; i < model.streams.size(); ++i) {
            ++model.streams[i]->stride;
            ++mesh->getStreams()[i]->stride;
            addTriangle(primitive);
            --model.streams[i]->stride;
            --mesh->getStreams()[i]->stride;
        }
    }

    void addTriangle(TriangleMeshPrimitive& primitive) {
        const auto corners = faces.next(3);
        const auto vertex = [&](const Corner& corner) {
            return toVertex(corner, faces.below(4) != 0);
        };
        const auto triangle = boost::make_shared<Triangle>(vertex(corners[0]), vertex(corners[1]),
                                                           vertex(corners[2]));
        ASSERT_EQ(primitive.addTriangle(triangle, deduplicate),
                  model.addFace(corners, deduplicate));
    }

    void compareStreams() {
        ASSERT_EQ(mesh->getStreams().size(), model.streams.size());
        for (std::size_t i = 0; i < model.streams.size(); ++i) {
            const auto stream = mesh->getStreams()[i];
            EXPECT_EQ(stream->name, model.streams[i]->name);
            EXPECT_EQ(stream->stride, static_cast<int>(model.streams[i]->stride));
            EXPECT_EQ(stream->count, static_cast<int>(model.streams[i]->tuples.size()));
            EXPECT_TRUE(haveSameBytes(stream->values, joined(model.streams[i]->tuples)));
        }
    }
};

TEST_P(FaceModelTest, TrianglesAreStoredByTheRules) {
    TriangleMeshPrimitive primitive(mesh, {});
    for (int i = 0; i < 120; ++i) {
        addTriangle(primitive);
        if (faces.below(30) == 0) repeatFirstTuples();
        if (faces.below(40) == 0) changeStreams();
        if (faces.below(60) == 0) refuseFace(primitive);
    }
    compare(primitive);
}

TEST_P(FaceModelTest, PolygonsAreStoredByTheSameRules) {
    PolygonMeshPrimitive primitive(mesh, {});
    Indices polygons;
    for (int i = 0; i < 80; ++i) {
        const auto corners = faces.next(faces.below(6));
        const auto start = static_cast<unsigned int>(model.indices.size());
        const auto polygon = boost::make_shared<Polygon>();
        for (const auto& corner : corners) polygon->addVertex(toVertex(corner, i % 2 == 0));
        const bool isAdded = model.addFace(corners, deduplicate);
        ASSERT_EQ(primitive.addPolygon(polygon, deduplicate), isAdded);
        if (!isAdded) continue;
        polygons.push_back(static_cast<unsigned int>(corners.size()));
        polygons.push_back(start);
    }
    compare(primitive);
    EXPECT_EQ(primitive.getPolygonStream(), polygons);
}

INSTANTIATE_TEST_SUITE_P(Layouts, FaceModelTest, ::testing::Range(0u, 40u));

}  // namespace
}  // namespace vantorix::scene
