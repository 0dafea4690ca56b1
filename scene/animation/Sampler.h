#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "scene/SceneExport.h"

namespace vantorix::scene {

class Stream;

/// Binds streams by their role in an animation: key times, key values, interpolation names and
/// tangents.
///
/// Ownership: streams are shared; a copy shares them too. Threads: not locked.
class VANTORIX_SCENE_EXPORT Sampler {
public:
    /// The text that addInput takes is the enumerator's name: "INPUT" (key times in seconds, one
    /// float per key), "OUTPUT" (stride floats per key), "IN_TANGENT", "OUT_TANGENT" and
    /// "INTERPOLATION" (one name per key).
    enum Semantic : int {
        INPUT = 0,
        OUTPUT = 1,
        IN_TANGENT = 2,
        OUT_TANGENT = 3,
        INTERPOLATION = 4
    };

    explicit Sampler(std::string id);
    Sampler(const Sampler& other);
    Sampler& operator=(const Sampler& other);
    virtual ~Sampler();

    std::string getId() const { return id_; }

    /// Appends @p stream, which may be empty, under the semantic whose name @p semantic is, letter
    /// by letter. Another text changes nothing.
    /// Deliberate: a second stream of the same semantic is appended but never found.
    void addInput(std::string semantic, boost::shared_ptr<Stream> stream);

    /// The first stream of this semantic; empty when there is none.
    boost::shared_ptr<Stream> getStreamBySemantic(Semantic semantic) const;

    /// One entry per input, in order of addition.
    const std::vector<Semantic>& getInputsSemantics() const { return semantics_; }

private:
    std::string id_;
    std::vector<Semantic> semantics_;
    std::vector<boost::shared_ptr<Stream>> streams_;
};

}  // namespace vantorix::scene
