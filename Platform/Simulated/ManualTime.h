#pragma once

#include "Platform/Simulated/SimulatedMouse.h"
#include "Platform/Sleeper.h"

#include <condition_variable>
#include <utility>

namespace kelmoth {

/// Time that passes only when someone sleeps or it is told to. Any thread.
class ManualTime : public Sleeper {
public:
    /// Sleeping takes no time: it moves this time on, and is remembered.
    void sleep(std::chrono::microseconds duration) override
    {
        std::function<void()> action;
        {
            std::unique_lock lock(m_mutex);
            m_released.wait(lock, [this] { return !m_isHeld; });
            m_now += duration;
            m_pauses.push_back(duration);
            if (m_action && m_pausesToAction-- == 0) {
                action = std::exchange(m_action, nullptr);
            }
        }
        if (action) {
            action();
        }
    }

    /// Whoever sleeps from now on waits until time is released.
    void hold() { setHeld(true); }
    void release() { setHeld(false); }

    /// Lets something happen once, during the pause that comes after so many others, on the thread that
    /// sleeps.
    void duringPause(int pausesBefore, std::function<void()> action)
    {
        const std::scoped_lock lock(m_mutex);
        m_pausesToAction = pausesBefore;
        m_action = std::move(action);
    }

    /// Lets time pass unremembered.
    void advance(std::chrono::microseconds duration)
    {
        const std::scoped_lock lock(m_mutex);
        m_now += duration;
    }

    std::chrono::microseconds now() const
    {
        const std::scoped_lock lock(m_mutex);
        return m_now;
    }

    /// The clock that shows this time; valid as long as this object lives.
    SimulatedMouse::Clock clock()
    {
        return [this] { return now(); };
    }

    /// Every pause slept so far, oldest first, and forgets them.
    std::vector<std::chrono::microseconds> takePauses()
    {
        const std::scoped_lock lock(m_mutex);
        return std::exchange(m_pauses, {});
    }

private:
    void setHeld(bool isHeld)
    {
        const std::scoped_lock lock(m_mutex);
        m_isHeld = isHeld;
        m_released.notify_all();
    }

    mutable std::mutex m_mutex;
    std::chrono::microseconds m_now{};
    std::vector<std::chrono::microseconds> m_pauses;
    std::condition_variable m_released;
    bool m_isHeld = false;
    std::function<void()> m_action;
    int m_pausesToAction = 0;
};

} // namespace kelmoth
