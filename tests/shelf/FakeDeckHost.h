#pragma once

#include "base/Clock.h"
#include "shelf/DeckController.h"
#include "shelf/DeckHost.h"
#include "shelf/DeckPanelPort.h"

#include <QHash>
#include <algorithm>
#include <memory>
#include <vector>

namespace vuro::testing {

// A clock and a set of timers that move only when the test says so.
class ManualTime {
public:
    class Timer final : public DeckTimer {
    public:
        explicit Timer(ManualTime& time) : _time(time) { _time._timers.push_back(this); }
        ~Timer() override { std::erase(_time._timers, this); }
        void start(std::chrono::milliseconds delay, bool repeating, std::function<void()> job) override {
            _due = _time.now().addMSecs(delay.count());
            _period = repeating ? delay : std::chrono::milliseconds(-1);
            _job = std::move(job);
            _active = true;
            _sequence = ++_time._sequence;
        }
        void stop() override { _active = false; }
        bool isActive() const override { return _active; }

    private:
        friend class ManualTime;
        ManualTime& _time;
        QDateTime _due;
        std::chrono::milliseconds _period{-1};
        std::function<void()> _job;
        bool _active = false;
        quint64 _sequence = 0;
    };

    ManualTime() : _clock(QDateTime(QDate(2026, 5, 1), QTime(9, 0), Qt::UTC)) {}
    QDateTime now() const { return Clock::now(); }

    // Moves the clock forward, firing every timer that falls due on the way, in order.
    void advance(qint64 milliseconds) {
        const QDateTime target = now().addMSecs(milliseconds);
        for (;;) {
            Timer* next = nullptr;
            for (Timer* timer : _timers)
                if (timer->_active && timer->_due <= target &&
                    (!next || timer->_due < next->_due ||
                     (timer->_due == next->_due && timer->_sequence < next->_sequence)))
                    next = timer;
            if (!next) break;
            _clock.set(next->_due);
            if (next->_period.count() >= 0)
                next->_due = next->_due.addMSecs(std::max<qint64>(next->_period.count(), 1));
            else
                next->_active = false;
            const auto job = next->_job;
            job();
        }
        _clock.set(target);
    }

private:
    Clock::Override _clock;
    std::vector<Timer*> _timers;
    quint64 _sequence = 0;
};

class FakePanel final : public DeckPanelPort {
public:
    QList<QRect> frames;
    bool front = false;
    bool key = false;
    void setFrame(const QRect& frame) override {
        if (frames.isEmpty() || frames.last() != frame) frames.append(frame);
    }
    QRect frame() const override { return frames.isEmpty() ? QRect() : frames.last(); }
    void orderFront() override { front = true; }
    void orderOut() override { front = key = false; }
    void makeKeyAndFront() override { front = key = true; }
    bool isKey() const override { return key; }
};

class FakeDeckHost final : public DeckHost {
public:
    explicit FakeDeckHost(ManualTime& time) : _time(time) {}

    QPointF pointerAt{0, 0};
    bool alt = false;
    bool recording = false;
    QList<DeckScreen> screenList{{1, {0, 0, 1600, 1000}, {0, 30, 1600, 970}}};
    QStringList floating;
    QStringList opened;
    int activations = 0;
    int deactivations = 0;
    double fontDelta = 0;
    QHash<quint32, FakePanel*> panels;

    QPointF pointer() const override { return pointerAt; }
    bool altHeld() const override { return alt; }
    QList<DeckScreen> screens() const override { return screenList; }
    std::unique_ptr<DeckTimer> makeTimer() override { return std::make_unique<ManualTime::Timer>(_time); }
    std::unique_ptr<DeckPanelPort> makePanel(DeckController& controller) override;
    bool recorderBusy() const override { return recording; }
    bool bringFloatingNoteToFront(const QString& id) override { return floating.contains(id); }
    void setOpenNote(const QString& id) override { opened.append(id); }
    void activateApplication() override { ++activations; }
    void deactivateApplication() override { ++deactivations; }
    void changeFontSize(double delta) override { fontDelta += delta; }

private:
    ManualTime& _time;
};

}  // namespace vuro::testing

namespace vuro::testing {

inline std::unique_ptr<DeckPanelPort> FakeDeckHost::makePanel(DeckController& controller) {
    auto panel = std::make_unique<FakePanel>();
    panels.insert(controller.displayID(), panel.get());
    return panel;
}

}  // namespace vuro::testing
