#include "scene/geometry/Stream.h"

#include <algorithm>
#include <cstring>
#include <functional>

#include <boost/make_shared.hpp>

#include "scene/geometry/TupleIndex.h"

namespace vantorix::scene {
namespace {

// Below this number of tuples a scan is as fast as an index, and needs no memory.
constexpr std::size_t smallestIndexedCount = 16;

std::size_t scan(const FloatArray& values, std::size_t stride, const float* value) {
    const std::size_t tuples = values.size() / stride;
    const float* tuple = values.data();
    for (std::size_t i = 0; i < tuples; ++i, tuple += stride) {
        // The first float tells most tuples apart without a call.
        if (std::memcmp(tuple, value, sizeof(float)) == 0 &&
            std::memcmp(tuple, value, stride * sizeof(float)) == 0) {
            return i;
        }
    }
    return TupleIndex::none;
}

/// @p value as it reads when its floats are appended to @p values one by one: a tuple that starts
/// inside the array and runs past its end meets itself there. Empty when @p value is elsewhere.
std::vector<float> overlappingTuple(const FloatArray& values, std::size_t stride,
                                    const float* value) {
    const float* const begin = values.data();
    const float* const end = begin + values.size();
    const std::less<> before;
    if (before(value, begin) || !before(value, end)) return {};
    std::vector<float> tuple(value,
                             value + std::min(stride, static_cast<std::size_t>(end - value)));
    for (std::size_t i = 0; tuple.size() < stride; ++i) tuple.push_back(tuple[i]);
    return tuple;
}

}  // namespace

Stream::Stream(const std::string& streamName, int streamStride, bool duplicates)
    : name(streamName), stride(streamStride), count(0), allowDuplicates(duplicates) {}

Stream::Stream(const Stream& other)
    : name(other.name),
      stride(other.stride),
      count(other.count),
      allowDuplicates(other.allowDuplicates),
      params(other.params),
      values(other.values),
      stringValues(other.stringValues) {}

Stream& Stream::operator=(const Stream& other) {
    name = other.name;
    stride = other.stride;
    count = other.count;
    allowDuplicates = other.allowDuplicates;
    params = other.params;
    values = other.values;
    stringValues = other.stringValues;
    return *this;
}

Stream::~Stream() = default;

boost::shared_ptr<Stream> Stream::clone() const {
    const auto copy = boost::make_shared<Stream>(name, stride, allowDuplicates);
    copy->count = count;
    copy->values = values;
    return copy;
}

int Stream::insertValue(int tupleStride, const float* value) {
    if (tupleStride != stride || stride == 0 || !value) return -1;
    if (stride < 0) return appendTuple(nullptr);
    const auto overlap = overlappingTuple(values, static_cast<std::size_t>(stride), value);
    if (!overlap.empty()) value = overlap.data();
    return allowDuplicates ? appendTuple(value) : insertDistinct(value);
}

int Stream::insertDistinct(const float* value) {
    const auto tupleSize = static_cast<std::size_t>(stride);
    if (!isIndexUseful()) {
        const auto tuple = scan(values, tupleSize, value);
        return tuple == TupleIndex::none ? appendTuple(value) : static_cast<int>(tuple);
    }
    if (!index_) index_ = std::make_unique<TupleIndex>();
    const auto tuple = index_->find(values, tupleSize, value);
    if (tuple != TupleIndex::none) return static_cast<int>(tuple);
    const int added = appendTuple(value);
    index_->noteAppended(values);
    return added;
}

int Stream::appendTuple(const float* value) {
    const auto size = static_cast<long long>(values.size());
    if (stride > 0) values.append(value, static_cast<std::size_t>(stride));
    // Unsigned: a counter that a caller has set to the largest number wraps around.
    count = static_cast<int>(static_cast<unsigned int>(count) + 1u);
    return static_cast<int>(size / stride);
}

bool Stream::isIndexUseful() const {
    const auto tuples = values.size() / static_cast<std::size_t>(stride);
    return tuples >= smallestIndexedCount && tuples < TupleIndex::mostTuples &&
           TupleIndex::isUsableOn(values);
}

}  // namespace vantorix::scene
