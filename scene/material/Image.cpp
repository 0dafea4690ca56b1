#include "scene/material/Image.h"

#include <utility>

namespace vantorix::scene {

Image::Image(std::string id, std::string fileName, std::string name)
    : id_(std::move(id)), name_(std::move(name)), fileName_(std::move(fileName)) {}

const std::string& Image::getID() const { return id_; }

const std::string& Image::getName() const { return name_; }

const std::string& Image::getFilename() const { return fileName_; }

void Image::setID(const std::string& /*id*/) {}  // An image's ID is fixed by its constructor.

void Image::setName(const std::string& name) { name_ = name; }

void Image::setFileName(const std::string& fileName) { fileName_ = fileName; }

}  // namespace vantorix::scene
