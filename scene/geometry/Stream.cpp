#include "scene/geometry/Stream.h"

#include <algorithm>
#include <cstring>

#include <boost/make_shared.hpp>

#include "scene/geometry/InsideTuples.h"
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
    if (liesIn(values, value)) {
        return insert(copyFromInside(values, static_cast<std::size_t>(stride), value).data());
    }
    return insert(value);
}

void Stream::insertValues(int tupleStride, const float* tuples, std::size_t tupleCount,
                          int* indices) {
    if (!indices) return;
    if (tupleStride != stride || stride <= 0 || !tuples) {
        for (std::size_t i = 0; i < tupleCount; ++i) indices[i] = insertValue(tupleStride, tuples);
    } else if (liesIn(values, tuples)) {
        const auto size = tupleCount * static_cast<std::size_t>(stride);
        insertEach(copyFromInside(values, size, tuples).data(), tupleCount, indices, nullptr);
    } else {
        insertEach(tuples, tupleCount, indices, nullptr);
    }
}

void Stream::insertEach(const float* tuples, std::size_t tupleCount, int* indices,
                        const int* keys) {
    const auto tupleSize = static_cast<std::size_t>(stride);
    std::size_t done = 0;
    for (; done < tupleCount && !canInsertTogether(tupleCount); ++done) {
        indices[done] = insert(tuples + done * tupleSize);
    }
    if (done == tupleCount) return;
    if (!index_) index_ = std::make_unique<TupleIndex>();
    const std::size_t before = values.size();
    const auto countAppended = [&] {
        if (values.size() == before) return;
        // As in appendTuple.
        const auto appended = static_cast<unsigned int>((values.size() - before) / tupleSize);
        count = static_cast<int>(static_cast<unsigned int>(count) + appended);
    };
    try {
        index_->insertAll(values, tupleSize, tuples + done * tupleSize, tupleCount - done,
                          indices + done, keys ? keys + done : nullptr);
    } catch (...) {
        countAppended();  // What came in before the memory ended stays.
        throw;
    }
    countAppended();
}

int Stream::insert(const float* value) {
    if (allowDuplicates) return appendTuple(value);
    const auto tupleSize = static_cast<std::size_t>(stride);
    if (isIndexUseful()) return insert(value, TupleIndex::hashOf(value, tupleSize));
    const auto tuple = scan(values, tupleSize, value);
    return tuple == TupleIndex::none ? appendTuple(value) : static_cast<int>(tuple);
}

int Stream::insert(const float* value, std::uint32_t hash) {
    if (!index_) index_ = std::make_unique<TupleIndex>();
    const auto tuple = index_->find(values, static_cast<std::size_t>(stride), value, hash);
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

void Stream::makeRoomFor(std::size_t tupleCount) {
    const std::size_t size = values.size() + tupleCount * static_cast<std::size_t>(stride);
    // At least twice what there was: many calls are to copy each value a few times only.
    if (size > values.capacity()) values.reserve(std::max(size, 2 * values.capacity()));
}

bool Stream::isKnownDistinct() const {
    return index_ && stride > 0 && index_->isDistinctOn(values, static_cast<std::size_t>(stride));
}

bool Stream::canInsertTogether(std::size_t tupleCount) const {
    if (allowDuplicates || !isIndexUseful()) return false;
    // That the values end with a whole tuple is mostly known without a division.
    const auto tupleSize = static_cast<std::size_t>(stride);
    if (!(index_ && index_->isCompleteOn(values, tupleSize)) && values.size() % tupleSize != 0) {
        return false;
    }
    return values.size() + tupleCount * tupleSize < TupleIndex::mostTuples * tupleSize;
}

bool Stream::isIndexUseful() const {
    // Compared in floats: a division would cost as much as the search.
    const auto tupleSize = static_cast<std::size_t>(stride);
    return values.size() >= smallestIndexedCount * tupleSize &&
           values.size() < TupleIndex::mostTuples * tupleSize && TupleIndex::isUsableOn(values);
}

}  // namespace vantorix::scene
