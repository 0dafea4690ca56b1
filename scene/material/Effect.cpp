#include "scene/material/Effect.h"

#include <utility>

namespace vantorix::scene {

Effect::Effect(std::string id, std::string fileName, std::string name)
    : id_(std::move(id)), name_(std::move(name)), fileName_(std::move(fileName)) {}

const std::string& Effect::getID() const { return id_; }

const std::string& Effect::getName() const { return name_; }

const std::string& Effect::getFilename() const { return fileName_; }

void Effect::setID(const std::string& id) { id_ = id; }

void Effect::setName(const std::string& name) { name_ = name; }

void Effect::setFileName(const std::string& fileName) { fileName_ = fileName; }

}  // namespace vantorix::scene
