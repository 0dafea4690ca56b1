// Keeps an outline of a scene up to date, as an editor does, from nothing but the scene's events.

#include <core_api/core_api.h>
#include <cstdlib>
#include <iostream>
#include <scene/scene.h>
#include <string>
#include <vector>

#include <boost/make_shared.hpp>

using namespace vantorix::core::event;
using namespace vantorix::scene;

namespace {

/// Anything that derives from EventBase can listen. Handlers run on the thread that made the
/// change, before the call that made it returns.
class Outline : public EventBase {
public:
    explicit Outline(const boost::shared_ptr<EventManager>& events) : EventBase(events) {
        registerHandler(EventType("NodeNewChild"), [this](const Event& event) {
            const auto data = event.getEventData();  // values count from 1
            note(data.getArg(2) + " below " + data.getArg(1));
        });
        registerHandler(EventType("NodeTransformationUpdate"), [this](const Event& event) {
            note(event.getEventData().getArg(1) + " moved");
        });
        registerHandler(EventType("NodeAddedLayer"), [this](const Event& event) {
            note(event.getEventData().getArg(1) + " is " + event.getEventData().getArg(2));
        });
    }

    ~Outline() override { endDeliveries(); }  // first of all, while the handlers' lines still stand

    const std::vector<std::string>& lines() const { return lines_; }

private:
    void note(const std::string& line) {
        std::cout << line << '\n';
        lines_.push_back(line);
    }

    std::vector<std::string> lines_;
};

}  // namespace

int main() {
    const auto events = boost::make_shared<EventManager>();
    const auto scene = boost::make_shared<SceneManager>(events);
    scene->getRoot()->setID("root");
    const Outline outline(events);

    const auto lamp = boost::make_shared<Node>(scene);
    lamp->setID("lamp");
    lamp->setName("Desk lamp");  // announced to nobody
    scene->getRoot()->addNode(
        lamp);  // the new child announces its place, then the parent the child
    lamp->addTranslation(0, 2, 0);
    lamp->setVisible(false);  // joins the layer "hidden"

    scene->stop();
    lamp->addTranslation(0, 2, 0);  // a stopped scene announces nothing

    const std::vector<std::string> expected{"lamp moved", "lamp below root", "lamp moved",
                                            "lamp is hidden"};
    return outline.lines() == expected ? EXIT_SUCCESS : EXIT_FAILURE;
}
