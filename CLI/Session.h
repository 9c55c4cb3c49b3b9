#pragma once

#include "CLI/Arguments.h"
#include "CLI/Output.h"
#include "CLI/Terminal.h"
#include "Core/HID/DeviceManager.h"
#include "Platform/Platform.h"

#include <memory>

namespace kelmoth {

/// What one run of a command works with. Main thread.
class Session {
public:
    /// `output` outlives the session.
    Session(Options options, Platform platform, Output *output);

    const Options &options() const { return m_options; }
    Output &output() const { return *m_output; }
    const Terminal &terminal() const { return m_terminal; }

    /// The monitor, watching from the first call on, and batteries too if that says so. That the mice which
    /// are present are listed does not mean that watching works: see `isMonitoring`.
    HIDMonitor &monitor(bool watchesBatteries = false);

    /// The listed mice that are meant: all, or those with the product ID that was asked for.
    std::vector<RazerDevice> devices();

    /// The owner of the settings of the first of these that can be configured. From the first call on it
    /// reads that mouse.
    DeviceManager &manager();

    /// Tells the user of a failure, and programs when nothing has been printed for them yet; its status.
    ExitStatus report(const Failure &failure);

    /// Whether a failure of the mouse was among those reported.
    bool hasMouseFailed() const { return m_hasMouseFailed; }

    /// Waits, some seconds at most, until what the manager saved has reached the disk. The failure when it
    /// has not.
    std::optional<Failure> flushDefaults() const;

private:
    Options m_options;
    Platform m_platform;
    Output *m_output;
    Terminal m_terminal;
    ToastManager m_toasts; ///< nobody looks
    std::unique_ptr<HIDMonitor> m_monitor;
    std::unique_ptr<DeviceManager> m_manager;
    bool m_hasMouseFailed = false;
};

} // namespace kelmoth
