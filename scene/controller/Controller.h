#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "scene/SceneExport.h"

namespace vantorix::scene {

class IGeometry;
class Morph;
class Skin;
class Stream;

/// A deformation of a source geometry, by a skin or by a morph. It may hold both; the skin wins.
///
/// Ownership: skin and morph are shared, streams are values. Threads: not locked.
class VANTORIX_SCENE_EXPORT Controller {
public:
    Controller(std::string id, std::string name);
    Controller(const Controller& other);
    Controller& operator=(const Controller& other);
    virtual ~Controller();

    std::string getID() const;
    std::string getName() const;

    boost::shared_ptr<Skin> getSkin() const;
    void setSkin(boost::shared_ptr<Skin> skin);
    boost::shared_ptr<Morph> getMorph() const;
    void setMorph(boost::shared_ptr<Morph> morph);

    const std::vector<Stream>& getStreams() const;
    void setStreams(const std::vector<Stream>& streams);

    /// That of the skin, else that of the morph, else empty.
    boost::shared_ptr<IGeometry> getSourceGeometry() const;

private:
    std::string id_;
    std::string name_;
    std::vector<Stream> streams_;
    boost::shared_ptr<Skin> skin_;
    boost::shared_ptr<Morph> morph_;
};

}  // namespace vantorix::scene
