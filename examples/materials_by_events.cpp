// Makes and edits a material without touching the scene: only events are sent to it.
//
// This is how a panel or a loader that knows nothing but the event manager changes materials.

#include <core_api/core_api.h>
#include <cstdlib>
#include <iostream>
#include <scene/scene.h>

#include <boost/make_shared.hpp>

using namespace vantorix::core::event;
using namespace vantorix::scene;

int main() {
    const auto events = boost::make_shared<EventManager>();
    const auto scene = boost::make_shared<SceneManager>(events);
    int updates = 0;
    EventBase renderer(events);
    renderer.registerHandler(EventType("SceneUpdate"), [&](const Event&) { ++updates; });

    // Events whose names begin with "L_" are received by the scene. Their values are joined by
    // commas; where one is missing, nothing happens.
    events->triggerEvent("L_NewEffect", "lacquer,lacquer.cgfx");
    events->triggerEvent("L_NewMaterial", "red,lacquer");
    events->triggerEvent("L_MaterialParameterUpdated", "red,shininess,0.8,float");
    // A texture is named by its file; the parameter then holds the ID of an image, which is made.
    events->triggerEvent("L_MaterialParameterUpdated", "red,diffuseMap,grain.png,texture");
    events->triggerEvent("L_MaterialTechniqueChanged", "red,glossy");
    events->triggerEvent("L_NewMaterial", "nameless,");

    const auto red = scene->getMaterialWithID("red");
    const auto image = scene->getImageByFilename("grain.png");
    scene->stop();
    if (!red || !image || scene->getMaterialWithID("nameless")) return EXIT_FAILURE;

    std::cout << red->toString() << "technique: " << red->getTechnique() << "\n"
              << updates << " updates announced\n";
    const bool isRight = red->getEffectID() == "lacquer" && red->getTechnique() == "glossy" &&
                         red->getParameterByName("shininess")->getValue() == "0.8" &&
                         red->getParameterByName("diffuseMap")->getValue() == image->getID();
    return isRight ? EXIT_SUCCESS : EXIT_FAILURE;
}
