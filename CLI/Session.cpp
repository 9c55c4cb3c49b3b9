#include "CLI/Session.h"

#include "CLI/FilteredHID.h"
#include "CLI/MouseSummary.h"

#include <utility>

namespace kelmoth {

Session::Session(Options options, Platform platform, Output *output)
    : m_options(std::move(options)),
      m_platform(std::move(platform)),
      m_output(output),
      m_terminal(Terminal::detect(output->standardOutput()))
{
    if (m_options.productID) {
        m_platform.hid =
            std::make_shared<FilteredHIDService>(std::move(m_platform.hid), *m_options.productID);
    }
}

HIDMonitor &Session::monitor(bool watchesBatteries)
{
    if (!m_monitor) {
        m_monitor = std::make_unique<HIDMonitor>(m_platform);
        m_monitor->startMonitoring(watchesBatteries);
    }
    return *m_monitor;
}

DeviceManager &Session::manager()
{
    if (!m_manager) {
        m_manager = std::make_unique<DeviceManager>(monitor(), m_toasts, m_platform.userDefaults);
    }
    return *m_manager;
}

std::string Session::refusal(const RazerDevice &device) const
{
    if (!m_monitor || isGone(device, *m_monitor)) {
        return "the " + device.name() + " was unplugged while it was changed";
    }
    const auto &toast = m_toasts.currentToast();
    return toast && toast->type == ToastType::error ? toast->message : "the mouse did not take the change";
}

ExitStatus Session::report(const Failure &failure)
{
    m_output->complain(failure.message);
    m_hasMouseFailed = m_hasMouseFailed || failure.isOfMouse;
    return failure.status;
}

std::optional<Failure> Session::flushDefaults() const
{
    const auto why = m_platform.userDefaults->flush();
    return why ? std::optional(
                     Failure{ExitStatus::notSaved, "the mouse took it, but it could not be saved: " + *why})
               : std::nullopt;
}

} // namespace kelmoth
