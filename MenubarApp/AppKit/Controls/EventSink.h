#pragma once

#include "MenubarApp/View/ViewHost.h"

#include <memory>
#include <optional>
#include <utility>

namespace menubar {

/// Where the controls of one window report what a person does. It drops whatever a call of the host brings about. The
/// window may be gone when `send` returns: a control keeps itself and this object alive across it. Main thread.
class EventSink {
public:
    void setEvents(std::weak_ptr<ViewEvents> events) { m_events = std::move(events); }

    /// `event` takes the ViewEvents to call.
    template <class Event>
    void send(const Event& event) const {
        if (m_silences > 0) {
            return;
        }
        if (const auto events = m_events.lock()) {
            event(*events);
        }
    }

    /// A control has the insertion point. Only one does: another that has not said so yet has lost it.
    void beginEditing(ControlId id) {
        if (m_editing != id) {
            if (m_editing) {
                endEditing(*m_editing);
            }
            m_editing = id;
            send([id](ViewEvents& events) { events.editingBegan(id); });
        }
    }

    void endEditing(ControlId id) {
        if (m_editing == id) {
            m_editing.reset();
            send([id](ViewEvents& events) { events.editingEnded(id); });
        }
    }

    /// The control is about to go: it has nothing to end.
    void forget(ControlId id) {
        if (m_editing == id) {
            m_editing.reset();
        }
    }

    /// While one of these lives nothing is reported.
    class Silence {
    public:
        explicit Silence(std::shared_ptr<EventSink> sink) : m_sink(std::move(sink)) { ++m_sink->m_silences; }

        Silence(const Silence&) = delete;
        Silence& operator=(const Silence&) = delete;

        ~Silence() { --m_sink->m_silences; }

    private:
        std::shared_ptr<EventSink> m_sink;
    };

private:
    std::weak_ptr<ViewEvents> m_events;
    std::optional<ControlId> m_editing;
    int m_silences = 0;
};

/// Who a control reports to, and as whom.
struct Reporter {
    ControlId id = windowContent;
    std::shared_ptr<EventSink> sink;

    /// Tells one of the events of ViewEvents. The control, and this object with it, may be gone when it returns.
    template <class... Parameters, class... Arguments>
    void tell(void (ViewEvents::*event)(ControlId, Parameters...), const Arguments&... arguments) const {
        const auto strong = sink;
        strong->send([&, self = id](ViewEvents& events) { (events.*event)(self, arguments...); });
    }
};

} // namespace menubar
