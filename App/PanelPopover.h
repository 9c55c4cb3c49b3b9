#pragma once

#include "App/Popover.h"
#include "Platform/Qt/PopoverScreen.h"
#include "UI/Views/ContentModel.h"
#include "UI/Views/PanelTranslator.h"
#include "UI/Views/PanelWindow.h"

#include <memory>

namespace kelmoth {

/// The panel as a popover: frameless, rounded, on top, not in task bars. Its scene is created when it is
/// first shown, and kept.
class PanelPopover : public Popover {
    Q_OBJECT

public:
    /// The collaborators outlive the popover.
    PanelPopover(ContentModel &model, PanelTranslator &translator,
                 std::shared_ptr<const PopoverScreen> screen);

    bool isShown() const override { return m_window && m_window->isVisible(); }
    bool isWindow() const override { return m_isWindow; }
    void setAnimates(bool animates) override { m_animates = animates; }
    void show(Place place, const std::optional<ScreenRect> &item) override;
    void follow(const ScreenRect &item) override;
    void performClose() override;
    void makeKeyAndOrderFront() override;

private:
    void build();
    PanelWindow::Kind kind() const;
    void fit();
    double zoomWithin(const QRect &available) const;
    void put(Place place, const std::optional<ScreenRect> &item);

    ContentModel &m_model;
    PanelTranslator &m_translator;
    const std::shared_ptr<const PopoverScreen> m_screen;
    bool m_animates = true;
    bool m_isWindow = false;
    std::unique_ptr<PanelWindow> m_window; ///< null before it is first shown
};

} // namespace kelmoth
