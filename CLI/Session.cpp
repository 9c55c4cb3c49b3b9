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

HIDMonitor &Session::monitor(bool watchesBatteries)
{
    if (!m_monitor) {
        m_monitor = std::make_unique<HIDMonitor>(m_platform.hid, m_platform.usb, m_platform.sleeper);
        m_monitor->startMonitoring(watchesBatteries);
    }
    return *m_monitor;
}

std::vector<RazerDevice> Session::devices()
{
    auto devices = monitor().connectedDevices();
    const auto &meant = m_options.productID;
    std::erase_if(devices, [&meant](const auto &device) { return meant && device.productID != *meant; });
    return devices;
}

DeviceManager &Session::manager()
{
    if (!m_manager) {
        m_manager = std::make_unique<DeviceManager>(monitor(), m_toasts, m_platform.userDefaults);
        m_manager->configureProduct(m_options.productID);
    }
    return *m_manager;
}

ExitStatus Session::report(const Failure &failure)
{
    m_output->fail(failure, m_options.json);
    m_hasMouseFailed = m_hasMouseFailed || failure.isOfMouse();
    return statusOf(failure);
}

std::optional<Failure> Session::flushDefaults() const
{
    const auto why = m_platform.userDefaults->flush();
    return why ? std::optional(Failure{Failure::Code::notSaved,
                                       "the mouse took it, but it could not be saved: " + *why})
               : std::nullopt;
}

} // namespace kelmoth
