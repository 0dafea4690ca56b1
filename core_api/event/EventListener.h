#pragma once

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "core_api/CoreExport.h"

namespace vantorix::core::event {

class DeliveryGate;
class Event;

/// The root of everything that can be registered with an EventManager.
///
/// Lifetime: a listener may be destroyed at any time, also while it handles an event, and need not
/// be unregistered before: no delivery starts once its destructor has returned. When events may
/// arrive on other threads, the destructor of the derived class calls endDeliveries() first.
class VANTORIX_CORE_EXPORT EventListener {
public:
    /// Called on the thread that triggered @p event, with no lock held.
    virtual void handleEvent(Event event) = 0;
    virtual ~EventListener();

protected:
    EventListener();
    /// A copy is registered nowhere; an assignment leaves registrations as they are.
    EventListener(const EventListener& other);
    EventListener& operator=(const EventListener& other);

    /// Ends all deliveries to this object for good: none starts any more, and no other thread is
    /// inside handleEvent() when the call returns. Waits for other threads, not for calls of
    /// handleEvent() that this thread itself is in; so it is called with no lock held that
    /// handleEvent() takes, and two listeners must not destroy each other from within theirs.
    void endDeliveries();

private:
    friend class EventBase;
    friend class ListenerRegistry;
    explicit EventListener(DeliveryGate* gate);

    boost::intrusive_ptr<DeliveryGate> gate_;
};

}  // namespace vantorix::core::event
