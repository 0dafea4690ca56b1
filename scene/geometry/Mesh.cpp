#include "scene/geometry/Mesh.h"

#include <algorithm>
#include <utility>

#include <boost/make_shared.hpp>

#include "scene/geometry/BoxRules.h"
#include "scene/geometry/MappingSearch.h"
#include "scene/geometry/MeshPrimitiveBase.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/TupleReader.h"

namespace vantorix::scene {
namespace {

Eigen::Vector3f toEigen(const core::utils::Vector<float, 3>& vector) {
    return Eigen::Vector3f(vector[0], vector[1], vector[2]);
}

}  // namespace

Mesh::Mesh(const std::string& id, const std::string& name)
    : id_(id),
      name_(name),
      verticesID_(id + "_vertices"),
      type_(MESH),
      bvValid_(false),
      bvMin_(Eigen::Vector3f::Zero()),
      bvMax_(Eigen::Vector3f::Zero()),
      bvCenter_(Eigen::Vector3f::Zero()),
      bvSampleDivisor_(100000) {}

Mesh::Mesh(const Mesh& other) = default;

Mesh& Mesh::operator=(const Mesh& other) = default;

Mesh::~Mesh() = default;

std::string Mesh::getID() { return id_; }

void Mesh::setID(const std::string& id) { id_ = id; }

std::string Mesh::getName() { return name_; }

void Mesh::setName(const std::string& name) { name_ = name; }

void Mesh::setType(Type type) { type_ = type; }

IGeometry::Type Mesh::getType() { return type_; }

void Mesh::print() {
    const auto primitives = primitives_;
    for (const auto& primitive : primitives) primitive->print();
}

boost::shared_ptr<IGeometry> Mesh::clone() {
    const auto copy = boost::make_shared<Mesh>(id_, name_);
    cloneContentsTo(copy);
    return copy;
}

void Mesh::cloneContentsTo(const boost::shared_ptr<Mesh>& target) const {
    for (const auto& stream : streams_) {
        target->addStream(stream ? stream->clone() : boost::shared_ptr<Stream>());
    }
    target->setVertices(vertices_);  // Not rebound to the clones of the streams, on purpose.
    const auto primitives = primitives_;
    for (const auto& primitive : primitives) target->addPrimitive(primitive->clone(target));
}

Eigen::Vector3f Mesh::getBVCenter() {
    if (!bvValid_) calculateBV();
    return bvCenter_;
}

Eigen::Vector3f Mesh::getBVMin() {
    if (!bvValid_) calculateBV();
    return bvMin_;
}

Eigen::Vector3f Mesh::getBVMax() {
    if (!bvValid_) calculateBV();
    return bvMax_;
}

void Mesh::recalculateVertexNormals() {
    const auto primitives = primitives_;
    for (const auto& primitive : primitives) primitive->recalculateVertexNormals();
}

void Mesh::subDivide(boost::shared_ptr<Controller> controller) {
    const auto primitives = primitives_;
    for (const auto& primitive : primitives) primitive->subDivide(controller);
}

std::string Mesh::getVerticesID() const { return verticesID_; }

void Mesh::setVerticesID(const std::string& id) { verticesID_ = id; }

void Mesh::addStream(boost::shared_ptr<Stream> stream) { streams_.push_back(std::move(stream)); }

void Mesh::removeStream(boost::shared_ptr<Stream> stream) {
    const auto place = std::find(streams_.begin(), streams_.end(), stream);
    if (place != streams_.end()) streams_.erase(place);
}

boost::shared_ptr<Stream> Mesh::getStream(const std::string& name) const {
    for (const auto& stream : streams_) {
        if (stream && stream->name == name) return stream;
    }
    return {};
}

std::vector<boost::shared_ptr<Stream>> Mesh::getStreams() const { return streams_; }

void Mesh::setStreams(const std::vector<boost::shared_ptr<Stream>>& streams) { streams_ = streams; }

void Mesh::clearStreams() { streams_.clear(); }

void Mesh::addVerticesMapping(const StreamMapping& mapping) {
    if (!findBySemantic(vertices_, mapping.semantic)) vertices_.push_back(mapping);
}

const std::vector<StreamMapping>& Mesh::getVertices() const { return vertices_; }

void Mesh::setVertices(const std::vector<StreamMapping>& vertices) { vertices_ = vertices; }

void Mesh::clearVertices() { vertices_.clear(); }

void Mesh::addPrimitive(boost::shared_ptr<IMeshPrimitive> primitive) {
    if (!primitive) return;
    auto* const base = dynamic_cast<MeshPrimitiveBase*>(primitive.get());
    primitives_.push_back(std::move(primitive));
    // Released last: the primitive may have been the only one to keep this mesh alive.
    const auto kept = base ? base->releaseMesh(*this) : boost::shared_ptr<Mesh>();
}

const std::vector<boost::shared_ptr<IMeshPrimitive>>& Mesh::getMeshPrimitives() const {
    return primitives_;
}

unsigned int Mesh::getPrimitiveCount() const {
    return static_cast<unsigned int>(primitives_.size());
}

boost::shared_ptr<IMeshPrimitive> Mesh::getPrimitive(unsigned int index) const {
    return index < primitives_.size() ? primitives_[index] : boost::shared_ptr<IMeshPrimitive>();
}

void Mesh::calculateBV() {
    const auto primitives = primitives_;  // A primitive's own code may add others.
    bvMax_ = calculateCorner<UpperBound>(primitives, &IMeshPrimitive::getBVMax);
    bvMin_ = calculateCorner<LowerBound>(primitives, &IMeshPrimitive::getBVMin);
    if (primitives.empty()) {
        bvCenter_ = bvMin_ + (bvMax_ - bvMin_) * 0.5f;
    } else {
        Eigen::Vector3f sumOfCenters = Eigen::Vector3f::Zero();
        for (const auto& primitive : primitives) sumOfCenters += primitive->getBVCenter();
        bvCenter_ = sumOfCenters;  // Sum, not mean: defined so for meshes of several primitives.
    }
    bvValid_ = true;  // For good: whatever is added later does not change the answers.
}

void Mesh::calculateBVMin() {
    bvMin_ = calculateCorner<LowerBound>(Primitives(primitives_), &IMeshPrimitive::getBVMin);
}

void Mesh::calculateBVMax() {
    bvMax_ = calculateCorner<UpperBound>(Primitives(primitives_), &IMeshPrimitive::getBVMax);
}

template <typename Rule>
Eigen::Vector3f Mesh::calculateCorner(const Primitives& primitives, BoxCorner corner) const {
    if (primitives.empty()) return cornerOfPositions<Rule>();
    Eigen::Vector3f result = toEigen((primitives.front().get()->*corner)());
    for (std::size_t i = 1; i < primitives.size(); ++i) {
        extend<Rule>(result, toEigen((primitives[i].get()->*corner)()));
    }
    return result;
}

template <typename Rule>
Eigen::Vector3f Mesh::cornerOfPositions() const {
    const auto* const mapping = findBySemantic(vertices_, POSITION);
    // The counter of the stream, not the length of its values, says how many positions there are.
    if (!mapping || !mapping->stream || mapping->stream->count <= 0) return Eigen::Vector3f::Zero();
    const TupleReader positions(*mapping->stream);
    const auto count =
        std::min<std::size_t>(static_cast<std::size_t>(mapping->stream->count), positions.count());
    const float* const first = positions.find(0);
    if (positions.size() == 0 || count == 0) return Eigen::Vector3f::Zero();
    requireSampleSize(positions.size());
    const std::size_t step =
        mapping->stream->values.size() / static_cast<std::size_t>(bvSampleDivisor_);
    if (step < 2 && positions.size() == 3) return cornerOf<Rule>(first, count);
    Eigen::Vector3f result = positions.toVector(first);
    for (std::size_t i = 0; i < count; i += std::max<std::size_t>(step, 1)) {
        extend<Rule>(result, positions.toVector(positions.find(i)));
    }
    return result;
}

}  // namespace vantorix::scene
