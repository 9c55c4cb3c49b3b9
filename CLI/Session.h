#pragma once

#include "CLI/Arguments.h"
#include "CLI/Output.h"
#include "CLI/Terminal.h"
#include "Core/HID/HIDMonitor.h"
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

    /// The monitor, watching from the first call on. That the mice which are present are listed does not
    /// mean that watching works: see `isMonitoring`.
    HIDMonitor &monitor();

private:
    Options m_options;
    Platform m_platform;
    Output *m_output;
    Terminal m_terminal;
    std::unique_ptr<HIDMonitor> m_monitor;
};

} // namespace kelmoth
