#pragma once

#include <chrono>
#include <cstdint>

namespace vantorix::apps::import {

/// What one model file may cost. Meeting any of these ends the import with its name and numbers.
struct ImportLimits {
    std::uint64_t fileBytes = std::uint64_t{1} << 30;    ///< The model file and each file it names.
    std::uint64_t memoryBytes = std::uint64_t{2} << 30;  ///< Address space of the worker.
    std::uint64_t answerBytes = std::uint64_t{1} << 30;  ///< What the worker may send back.
    std::chrono::seconds cpuTime{60};                    ///< Processor time of the worker.
    std::chrono::milliseconds wallTime{120000};          ///< From its start to its end.

    std::uint64_t nodes = 1000000;
    std::uint64_t depth = 10000;  ///< Nodes on the longest way down, the model's root included.
    std::uint64_t vertices = 30000000;
    std::uint64_t faces = 30000000;
    std::uint64_t corners = 90000000;     ///< Of all faces: three for each triangle.
    std::uint64_t influences = 60000000;  ///< Of bones on vertices.
    std::uint64_t keys = 2000000;         ///< Of all animations: positions, rotations and scales.
    std::uint64_t items = 100000;  ///< Of each other kind: meshes, materials, images, lights, ...
};

}  // namespace vantorix::apps::import
