#pragma once

#include "Platform/Platform.h"

#include <mutex>
#include <utility>
#include <vector>

namespace kelmoth {

/// Keeps the lines of the log. Any thread.
class RecordedLog : public Log {
public:
    void write(std::string_view line) override
    {
        const std::scoped_lock lock(m_mutex);
        m_lines.emplace_back(line);
    }

    /// Every line so far, oldest first, and forgets them.
    std::vector<std::string> takeLines()
    {
        const std::scoped_lock lock(m_mutex);
        return std::exchange(m_lines, {});
    }

    /// A log that is the installed platform's.
    static std::shared_ptr<RecordedLog> install()
    {
        Platform platform;
        const auto log = std::make_shared<RecordedLog>();
        platform.log = log;
        Platform::setCurrent(std::move(platform));
        return log;
    }

private:
    std::mutex m_mutex;
    std::vector<std::string> m_lines;
};

} // namespace kelmoth
