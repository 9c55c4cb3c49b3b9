#pragma once

#include "UI/Views/ContentModel.h"
#include "UI/Views/PanelTranslator.h"

#include <QQuickView>

namespace kelmoth {

/// The panel as a window of its own: frameless, 340 × 610, its scene built at once and kept. Main thread.
class PanelWindow : public QQuickView {
    Q_OBJECT

public:
    static constexpr QSize panelSize{340, 610};

    /// Has Qt Quick draw with its software renderer, unless the environment names another: it needs half the
    /// memory and no graphics driver. Before the application object is made.
    static void chooseRenderer();

    /// The model outlives the window. Without the panel in it (`status` is not `Ready`) when it could not be
    /// built; `errors` then say why.
    PanelWindow(ContentModel &model, PanelTranslator &translator);
};

} // namespace kelmoth
