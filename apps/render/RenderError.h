#pragma once

#include <stdexcept>

namespace vantorix::apps::render {

/// Why no picture could be made or stored; what() is one line for the user.
class RenderError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The scene is larger than what is drawn at most.
class RenderLimit : public RenderError {
public:
    using RenderError::RenderError;
};

}  // namespace vantorix::apps::render
