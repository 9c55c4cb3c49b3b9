#pragma once

#include "UI/Views/ContentModel.h"
#include "UI/Views/PanelTranslator.h"

#include <QQuickView>
#include <QRegion>

namespace kelmoth {

/// The panel as a window: 340 × 610 where there is room, its scene built at once and kept. Without a frame
/// until it becomes something else. Main thread.
class PanelWindow : public QQuickView {
    Q_OBJECT

public:
    static constexpr QSize panelSize{340, 610};

    enum class Kind {
        shadowedPopover, ///< rounded and shadowed, on top, in no list of windows
        plainPopover,    ///< the same without a shadow, for a screen that cannot show one
        window,          ///< a window like any other
    };

    /// Has Qt Quick draw with its software renderer, unless the environment names another: it needs half the
    /// memory and no graphics driver. Before the application object is made.
    static void chooseRenderer();

    /// The model outlives the window. Without the panel in it (`status` is not `Ready`) when it could not be
    /// built; `errors` then say why.
    PanelWindow(ContentModel &model, PanelTranslator &translator);

    /// Changes what it is: while it is hidden, or from one popover to the other.
    void become(Kind kind);

    /// How large the panel is from now on, and how much larger all that is in it; its pages take what height
    /// there is.
    void setPanelSize(const QSize &size, double zoom);

    /// What of the window is the panel, in pixels of the screen; empty when all of it is to be seen.
    QRegion shape() const;

    /// The place of the panel's top left corner, whatever shadow there is around it.
    QPoint panelPosition() const { return position() + QPoint(m_margin, m_margin); }

    /// Moves the panel's top left corner, whatever shadow there is around it.
    void putPanelAt(const QPoint &position);

    /// Shows it, gradually or at once.
    void appear(bool isAnimated);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    void setMargin(int margin, double cornerRadius);
    QRect area() const;
    void fitToPixels();

    Kind m_kind = Kind::plainPopover;
    QSize m_panel = panelSize;
    double m_zoom = 1;
    int m_margin = 0; ///< around the panel
};

} // namespace kelmoth
