#pragma once

#include "Core/HID/DeviceManager.h"
#include "Core/HID/HIDMonitor.h"
#include "Core/Services/LoginItem.h"
#include "Core/Services/ToastManager.h"
#include "Platform/Platform.h"
#include "Platform/Simulated/ManualTime.h"
#include "Platform/Simulated/SimulatedMouse.h"
#include "Platform/Simulated/SimulatedPlatform.h"
#include "UI/Views/ContentModel.h"
#include "UI/Views/PanelTranslator.h"
#include "UI/Views/PanelWindow.h"

#include <QImage>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kelmoth {

/// The platform for screenshots: independent of this machine, with reduced motion.
Platform stillPlatform();

/// A panel on simulated mice with manual time. The mouse has been read when the constructor returns.
class PanelStage {
public:
    /// A mouse that is listed but not configurable.
    static constexpr auto foreignMouse = "foreign";

    /// `mouse` is the command-line name of the attached mouse, or `foreignMouse`; empty: none.
    PanelStage(const std::string &mouse, PanelTranslator &translator);

    /// Creates and shows the panel's window; the first picture does so otherwise.
    PanelWindow &show();

    ContentModel &panel() { return m_panel; }
    ToastManager &toasts() { return m_toasts; }

    /// Draws the panel until nothing moves, and returns the last picture; a null image when it does not come
    /// to rest or a part of it cannot be loaded.
    QImage settle();

private:
    bool hasRead() const;

    std::shared_ptr<ManualTime> m_time = std::make_shared<ManualTime>();
    std::vector<std::shared_ptr<SimulatedMouse>> m_mice;
    SimulatedMachine m_system;
    HIDMonitor m_monitor;
    ToastManager m_toasts;
    DeviceManager m_manager;
    LoginItem m_loginItem;
    ContentModel m_panel;
    PanelTranslator &m_translator;
    std::optional<PanelWindow> m_window;
    bool m_isWhole = false; ///< no part of the panel has failed to load so far
};

} // namespace kelmoth
