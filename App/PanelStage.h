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

/// The platform of all pictures: nothing of it is this machine's, and nothing moves unless it always does.
Platform stillPlatform();

/// A panel on simulated mice whose time nobody has to wait for. They have been read once it is made.
class PanelStage {
public:
    /// A mouse that is listed although nothing can be set on it.
    static constexpr auto foreignMouse = "foreign";

    /// `mouse` is the command-line name of the one that is attached, or `foreignMouse`; none when empty.
    PanelStage(const std::string &mouse, PanelTranslator &translator);

    /// Builds the panel's window and shows it, at the latest with the first picture.
    PanelWindow &show();

    ContentModel &panel() { return m_panel; }
    ToastManager &toasts() { return m_toasts; }

    /// Draws the panel until nothing moves any more, and gives the last picture; a null image when it does
    /// not come to rest or a part of it cannot be loaded.
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
    bool m_isWhole = false; ///< nothing of the panel has failed so far
};

} // namespace kelmoth
