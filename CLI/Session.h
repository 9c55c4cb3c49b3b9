#pragma once

#include "CLI/Arguments.h"
#include "CLI/Output.h"
#include "CLI/Terminal.h"
#include "Core/HID/DeviceManager.h"
#include "Platform/Platform.h"

#include <memory>

namespace kelmoth {

/// The context of one run of a command. Main thread.
class Session {
public:
    /// `output` outlives the session.
    Session(Options options, Platform platform, Output *output);

    const Options &options() const { return m_options; }
    Output &output() const { return *m_output; }
    const Terminal &terminal() const { return m_terminal; }

    /// The monitor, started by the first call, which also decides about batteries. The present mice are
    /// listed even when watching fails: see `isMonitoring`.
    HIDMonitor &monitor(bool watchesBatteries = false);

    /// The selected mice in the list: all, or those with the requested product ID.
    std::vector<RazerDevice> devices();

    /// The manager of the first configurable one of them. It starts reading that mouse at the first call.
    DeviceManager &manager();

    /// Reports a failure as Output does, and returns its exit status.
    ExitStatus report(const Failure &failure);

    /// Whether a failure of the mouse was reported.
    bool hasMouseFailed() const { return m_hasMouseFailed; }

    /// Waits, some seconds at most, until the saved settings are on the disk. None on success, else the
    /// failure.
    std::optional<Failure> flushDefaults() const;

private:
    Options m_options;
    Platform m_platform;
    Output *m_output;
    Terminal m_terminal;
    ToastManager m_toasts; ///< not shown
    std::unique_ptr<HIDMonitor> m_monitor;
    std::unique_ptr<DeviceManager> m_manager;
    bool m_hasMouseFailed = false;
};

} // namespace kelmoth
