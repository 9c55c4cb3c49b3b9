#pragma once

#include "CLI/Arguments.h"
#include "CLI/Failure.h"
#include "CLI/Output.h"
#include "CLI/Terminal.h"
#include "Core/HID/DeviceManager.h"
#include "Core/HID/HIDMonitor.h"
#include "Core/Services/ToastManager.h"
#include "Platform/Platform.h"

#include <memory>

namespace kelmoth {

/// What one run of a command works with. Main thread.
class Session {
public:
    /// `output` outlives the session. When a product ID is asked for, mice with others are not seen.
    Session(Options options, Platform platform, Output *output);

    const Options &options() const { return m_options; }
    Output &output() const { return *m_output; }
    const Terminal &terminal() const { return m_terminal; }

    /// The monitor, watching from the first call on, and batteries too if that says so. That the mice which
    /// are present are listed does not mean that watching works: see `isMonitoring`.
    HIDMonitor &monitor(bool watchesBatteries = false);

    /// The owner of the settings. From the first call on it reads the mouse that it chooses.
    DeviceManager &manager();

    /// Why the manager did not make a change of this mouse.
    std::string refusal(const RazerDevice &device) const;

    /// Tells the user of a failure; its status.
    ExitStatus report(const Failure &failure);

    /// Whether a failure of the mouse was among those reported.
    bool hasMouseFailed() const { return m_hasMouseFailed; }

    /// Forgets what the manager has said so far.
    void dismissToasts() { m_toasts.hide(); }

    /// Waits, some seconds at most, until what the manager saved has reached the disk. The failure when it
    /// has not.
    std::optional<Failure> flushDefaults() const;

private:
    Options m_options;
    Platform m_platform;
    Output *m_output;
    Terminal m_terminal;
    ToastManager m_toasts;
    std::unique_ptr<HIDMonitor> m_monitor;
    std::unique_ptr<DeviceManager> m_manager;
    bool m_hasMouseFailed = false;
};

} // namespace kelmoth
