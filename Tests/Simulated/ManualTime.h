#pragma once

#include "Platform/Simulated/SimulatedMouse.h"
#include "Platform/Sleeper.h"

#include <chrono>
#include <mutex>
#include <utility>
#include <vector>

namespace kelmoth {

/// Time that passes only when someone sleeps or a test says so. Any thread.
class ManualTime : public Sleeper {
public:
    /// Sleeping takes no time: it moves this time on, and is remembered.
    void sleep(std::chrono::microseconds duration) override
    {
        const std::lock_guard lock(m_mutex);
        m_now += duration;
        m_pauses.push_back(duration);
    }

    /// Lets time pass unremembered.
    void advance(std::chrono::microseconds duration)
    {
        const std::lock_guard lock(m_mutex);
        m_now += duration;
    }

    std::chrono::microseconds now() const
    {
        const std::lock_guard lock(m_mutex);
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
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_pauses, {});
    }

private:
    mutable std::mutex m_mutex;
    std::chrono::microseconds m_now{};
    std::vector<std::chrono::microseconds> m_pauses;
};

} // namespace kelmoth
