#include "scene/material/MaterialParameter.h"

#include <ostream>
#include <utility>

namespace vantorix::scene {

MaterialParameter::MaterialParameter(std::string name, std::string type, std::string value)
    : name_(std::move(name)), type_(std::move(type)), value_(std::move(value)) {}

MaterialParameter::~MaterialParameter() = default;

std::string MaterialParameter::getName() const { return name_; }

std::string MaterialParameter::getType() const { return type_; }

std::string MaterialParameter::getValue() const { return value_; }

void MaterialParameter::setName(std::string name) { name_ = std::move(name); }

void MaterialParameter::setValue(std::string value) { value_ = std::move(value); }

std::ostream& operator<<(std::ostream& out, const MaterialParameter& parameter) {
    return out << "  Parameter Name: " << parameter.getName() << ", Value: " << parameter.getValue()
               << '\n';
}

}  // namespace vantorix::scene
