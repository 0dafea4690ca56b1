#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <boost/date_time/posix_time/posix_time_duration.hpp>
#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>

#include "scene/SceneExport.h"

namespace vantorix::scene {

class ITransformation;
class Node;
class Sampler;
class Stream;

/// Key frames: streams of times and values, samplers that bind them, channels that lead a sampler
/// to a transformation element of a node, and child animations. AnimationManager plays it.
///
/// Ownership: everything is shared, and a copy shares it too. An animation that contains itself,
/// directly or through others, is passed over where it is met inside itself; one that is listed
/// several times counts as often (of such repetitions at most 65,536).
/// Threads: not locked; edit an animation that is playing with the scene locked.
class VANTORIX_SCENE_EXPORT Animation : public boost::enable_shared_from_this<Animation> {
public:
    /// A sampler and its target: node ID, "/", SID of a transformation element of the node, and
    /// for one component of it "." and "X", "Y", "Z", "W" or "ANGLE" in any letter case.
    using Channel = std::pair<boost::shared_ptr<Sampler>, std::string>;

    Animation(std::string id, std::string name);
    Animation(const Animation& other);
    Animation& operator=(const Animation& other);
    virtual ~Animation();

    /// @name Description
    /// @{
    std::string getID() const { return id_; }
    std::string getName() const { return name_; }
    void setName(std::string name) { name_ = std::move(name); }
    /// In milliseconds; 0 means not set, which AnimationManager::setAnimation changes.
    int getTimeRange() const { return timeRange_; }
    void setTimeRange(int milliseconds) { timeRange_ = milliseconds; }
    /// @}

    /// @name Streams and samplers
    /// Look-ups give the first match of this animation's own list, empty when there is none.
    /// @{
    std::vector<boost::shared_ptr<Stream>> getStreams() const { return streams_; }
    void setStreams(std::vector<boost::shared_ptr<Stream>> streams);
    /// By Stream::name.
    boost::shared_ptr<Stream> getStreamById(std::string id) const;
    const std::vector<boost::shared_ptr<Sampler>>& getSamplers() const { return samplers_; }
    void setSamplers(std::vector<boost::shared_ptr<Sampler>> samplers);
    boost::shared_ptr<Sampler> getSamplerById(std::string id) const;
    /// @}

    /// @name Channels and children
    /// @{
    /// Appends; neither sampler nor target is checked.
    void addChannel(boost::shared_ptr<Sampler> sampler, std::string target);
    std::vector<Channel> getChannelArray() const;
    /// Appends @p child; an empty pointer is ignored.
    void addAnimation(boost::shared_ptr<Animation> child);
    std::vector<boost::shared_ptr<Animation>> getChildAnimations() const { return children_; }

    /// The sampler that animates the element named in @p target (the node is @p nodeId, whatever
    /// the target says). When no direct child with channels was made for it yet, appends a child
    /// "<node>-node-<SID>" with empty INPUT, OUTPUT and INTERPOLATION streams: of 16 floats per key
    /// when @p transformation is a matrix, else of 1.
    boost::shared_ptr<Sampler> getChannel(std::string nodeId, std::string target,
                                          boost::shared_ptr<ITransformation> transformation);
    /// @}

    /// @name Target
    /// The IDs are set on the children that getChannel makes. The node is empty until it is set;
    /// AnimationManager::setAnimation does so for animations that name one.
    /// @{
    std::string getTargetNodeID() const { return targetNodeID_; }
    std::string getTargetTransformationSid() const { return targetSid_; }
    boost::shared_ptr<Node> getTargetNode() const { return targetNode_; }
    void setTargetNode(boost::shared_ptr<Node> node) { targetNode_ = std::move(node); }
    /// @}

    /// The last key time of the longest channel, children included, in whole milliseconds. Only
    /// key times with exactly one parameter count, whatever its name, and only as Stream::count
    /// says.
    boost::posix_time::time_duration getDuration() const;

    /// Whether the target node's elements can be driven by one animation: a matrix among them, or
    /// at most one rotation and neither translation nor scale. Without a target node, the answer
    /// of the last child, true when there is none.
    bool isValid() const;

    /// @name Key frames
    /// @p time is in seconds. The manager that plays the animation has to be told, see
    /// AnimationManager::insertKeyframe.
    /// @{
    /// Records the local matrix of @p node for each of its matrix elements. A node without elements
    /// first gets an identity matrix with the SID "transform" (see Node::addTransformation).
    void insertKeyFrame(boost::shared_ptr<Node> node, float time);

    /// Records the local matrix of @p node, row by row, as a key of @p transformation: behind the
    /// last key of an earlier time, so before those of an equal one, which stay.
    /// Deliberate: always 16 floats, and tangents get their zeros behind the first key.
    void insertTransformations(boost::shared_ptr<Node> node,
                               boost::shared_ptr<ITransformation> transformation, float time);

    /// Removes the last key less than 0.005 s away from every channel, children first.
    void removeKeyFrame(float time);
    /// @}

private:
    friend class AnimationManager;
    friend class AnimationWalk;
    friend class PlaybackTracks;
    struct ParsedChannel;
    using ChildNames = std::pair<std::string, std::string>;

    boost::shared_ptr<Animation> findChannelChild(const std::string& nodeId,
                                                  const std::string& sid) const;
    void indexChildren() const;
    bool isDrivable(bool valid) const;
    void removeOwnKeys(float time);

    std::string id_;
    std::string name_;
    std::vector<boost::shared_ptr<Stream>> streams_;
    std::vector<boost::shared_ptr<Sampler>> samplers_;
    std::vector<ParsedChannel> channels_;
    std::vector<boost::shared_ptr<Animation>> children_;
    std::int32_t timeRange_ = 0;
    std::string targetNodeID_;
    std::string targetSid_;
    boost::shared_ptr<Node> targetNode_;

    // Children by the node ID and SID that they were made for, as far as they were looked at.
    mutable std::map<ChildNames, std::size_t> childIndex_;
    mutable std::size_t indexedChildren_ = 0;
    mutable std::uint64_t indexedAssignments_ = 0;
};

}  // namespace vantorix::scene
