#include "CLI/Session.h"

#include <utility>

namespace kelmoth {

Session::Session(Options options, Platform platform, Output *output)
    : m_options(std::move(options)),
      m_platform(std::move(platform)),
      m_output(output),
      m_terminal(Terminal::detect(output->standardOutput()))
{
}

HIDMonitor &Session::monitor()
{
    if (!m_monitor) {
        m_monitor = std::make_unique<HIDMonitor>(m_platform);
        m_monitor->startMonitoring();
    }
    return *m_monitor;
}

} // namespace kelmoth
