// What the printers show: checkPrinters.py stops in look() and prints the locals of main().
#include <boost/make_shared.hpp>

#include "core_api/core_api.h"

#include "scene/scene.h"

namespace {

void look(...) {}

}  // namespace

int main() {
    using namespace vantorix;
    const auto scene =
        boost::make_shared<scene::SceneManager>(boost::make_shared<core::event::EventManager>());
    const auto family = boost::make_shared<scene::Node>(scene);
    family->setID("family");
    family->setName("the \"family\"");
    const auto child = boost::make_shared<scene::Node>(scene);
    child->setID("child");
    child->setName("");
    family->addNode(child);
    family->addNode(boost::make_shared<scene::Node>(scene));

    const auto stream = boost::make_shared<scene::Stream>("position_stream", 3, true);
    scene::Stream empty("empty", 0, false);
    for (int i = 0; i < 6; ++i) {
        const float tuple[] = {static_cast<float>(i), 0.5f, -1.0f};
        stream->insertValue(3, tuple);
    }
    scene::Mesh mesh("cube", "a cube");
    mesh.addStream(stream);

    core::utils::Matrix matrix(true);
    matrix[12] = 2.5f;
    const core::utils::Vector<float, 3> vector(1.0f, 2.0f, 3.0f);
    const core::utils::Vector<float, 3> nothing;
    const core::event::EventType type("NodeNewChild");
    core::event::EventType source("SceneUpdate");
    const core::event::EventType target(std::move(source));
    const core::event::EventData shortText("family,child");
    const core::event::EventData longText("a payload of more than twenty-three bytes");
    const auto moved = core::event::EventData::withMatrix("family", matrix);

    look(&family, &child, &stream, &empty, &mesh, &vector, &nothing, &type, &source, &target,
         &shortText, &longText, &moved);
    scene->stop();
}
