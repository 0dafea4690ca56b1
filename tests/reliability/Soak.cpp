// vantorix_soak MINUTES FILE FILE: reads both models, plays the first, merges the second into it
// and lets go of everything, for as long as it is told. Prints the resident memory and the open
// file descriptors over time, and the slope of each through the second half.

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <string>
#include <vector>

#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <boost/make_shared.hpp>

#include "core_api/event/EventManager.h"
#include "core_api/logger/Logger.h"

#include "apps/import/ModelImporter.h"
#include "scene/animation/Animation.h"
#include "scene/animation/AnimationManager.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/graph/SceneManager.h"

namespace vantorix::test {
namespace {

using namespace vantorix::scene;
using Clock = std::chrono::steady_clock;

struct Reading {
    double minutes;
    double kibibytes;
    double descriptors;
};

double residentKibibytes() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        double value = 0;
        if (word == "VmRSS:" && status >> value) return value;
    }
    return 0;
}

double openDescriptors() {
    const std::filesystem::directory_iterator descriptors("/proc/self/fd");
    return static_cast<double>(std::distance(begin(descriptors), end(descriptors)));
}

/// Of the line with the least squares of deviations, per minute.
double slopeOf(const std::vector<Reading>& readings, double Reading::*value) {
    double meanTime = 0, meanValue = 0, covariance = 0, variance = 0;
    const auto count = static_cast<double>(readings.size());
    for (const auto& reading : readings) {
        meanTime += reading.minutes / count;
        meanValue += reading.*value / count;
    }
    for (const auto& reading : readings) {
        covariance += (reading.minutes - meanTime) * (reading.*value - meanValue);
        variance += (reading.minutes - meanTime) * (reading.minutes - meanTime);
    }
    return variance > 0 ? covariance / variance : 0;
}

boost::shared_ptr<SceneManager> load(const std::string& file) {
    const auto scene =
        boost::make_shared<SceneManager>(boost::make_shared<core::event::EventManager>());
    const auto result = apps::import::ModelImporter().importFile(file, scene);
    if (result.status == apps::import::ImportResult::DONE) return scene;
    std::cerr << result.reason << '\n';
    std::exit(EXIT_FAILURE);
}

void play(const boost::shared_ptr<SceneManager>& scene) {
    const auto animations = scene->getAnimationsLibrary();
    const auto player = boost::make_shared<AnimationManager>();
    scene->setAnimationManager(player);
    scene->addSceneController(player);
    scene->lockScene();
    if (!animations.empty()) player->setAnimation(animations.front());
    player->resume();
    for (int frame = 0; frame < 10; ++frame) player->update(boost::posix_time::milliseconds(40));
    scene->unlockScene();
}

void runOnce(const std::string& first, const std::string& second) {
    const auto scene = load(first), other = load(second);
    play(scene);
    scene->lockScene();
    scene->mergeSceneManager(other, 0, "");
    for (const auto& id : scene->getGeometryManager()->getIDs()) {
        scene->getGeometryManager()->recalculateVertexNormals(id);
    }
    scene->unlockScene();
    other->stop();  // The other scene is only let go.
}

int soak(double minutes, const std::string& first, const std::string& second) {
    std::vector<Reading> readings;
    const auto start = Clock::now();
    const double interval = minutes / 60;
    long runs = 0;
    std::cout << std::fixed << std::setprecision(1) << "minutes  runs  KiB  descriptors\n";
    for (double elapsed = 0; elapsed < minutes; ++runs) {
        runOnce(first, second);
        elapsed = std::chrono::duration<double, std::ratio<60>>(Clock::now() - start).count();
        if (!readings.empty() && elapsed < readings.back().minutes + interval) continue;
        readings.push_back({elapsed, residentKibibytes(), openDescriptors()});
        std::cout << elapsed << "  " << runs + 1 << "  " << readings.back().kibibytes << "  "
                  << readings.back().descriptors << std::endl;
    }
    // The first half fills caches and tables that are kept.
    readings.erase(readings.begin(), readings.begin() + static_cast<long>(readings.size() / 2));
    std::cout << "slope: " << slopeOf(readings, &Reading::kibibytes) << " KiB and "
              << slopeOf(readings, &Reading::descriptors) << " descriptors per minute, " << runs
              << " runs\n";
    return EXIT_SUCCESS;
}

}  // namespace
}  // namespace vantorix::test

int main(int count, char** texts) {
    if (count != 4) {
        std::cerr << "usage: vantorix_soak MINUTES FILE FILE\n";
        return EXIT_FAILURE;
    }
    vantorix::core::logger::Logger::active = false;
    return vantorix::test::soak(std::atof(texts[1]), texts[2], texts[3]);
}
