#include "App/PanelPopover.h"

#include "App/PopoverPlacement.h"
#include "Core/Services/Application.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <utility>

namespace kelmoth {

namespace {

std::optional<QRect> rectOf(const std::optional<ScreenRect> &rect)
{
    return rect ? std::optional(QRect(rect->x, rect->y, rect->width, rect->height)) : std::nullopt;
}

/// Estimated height of a window frame: the real one is known too late.
constexpr int usualTitleBar = 32;

const QScreen &screenAt(const std::optional<QRect> &item, const std::optional<QPoint> &click)
{
    const auto place = item ? std::optional(item->center()) : click;
    const auto *screen = place ? QGuiApplication::screenAt(*place) : nullptr;
    return screen ? *screen : *QGuiApplication::primaryScreen();
}

} // namespace

PanelPopover::PanelPopover(ContentModel &model, PanelTranslator &translator,
                           std::shared_ptr<const PopoverScreen> screen)
    : m_model(model), m_translator(translator), m_screen(std::move(screen))
{
}

PanelWindow::Kind PanelPopover::kind() const
{
    if (m_isWindow || !m_screen->canPlaceWindows()) {
        return PanelWindow::Kind::window;
    }
    return m_screen->canShowShadows() ? PanelWindow::Kind::shadowedPopover : PanelWindow::Kind::plainPopover;
}

void PanelPopover::build()
{
    m_window = std::make_unique<PanelWindow>(m_model, m_translator);
    if (m_window->status() != QQuickView::Ready) {
        log("❌ The panel cannot be shown");
    }
    connect(m_window.get(), &QWindow::visibleChanged, this, [this](bool isVisible) {
        if (!isVisible) {
            Q_EMIT didClose();
        }
    });
    connect(&m_model, &ContentModel::appearanceChanged, m_window.get(), [this] {
        if (isShown() && kind() == PanelWindow::Kind::window) {
            fit();
        }
    });
    connect(m_screen.get(), &PopoverScreen::shadowsChanged, m_window.get(), [this] {
        if (isShown() && !m_isWindow) {
            const auto position = m_window->panelPosition();
            m_window->become(kind());
            m_window->putPanelAt(position);
            m_screen->cut(*m_window, m_window->shape());
        }
    });
}

void PanelPopover::show(Place place, const std::optional<ScreenRect> &item)
{
    if (isShown()) {
        return;
    }
    Q_EMIT willShow();
    if (!m_window) {
        build();
    }
    m_isWindow = place == Place::asWindow;
    m_window->become(kind());
    const bool isPlaced = kind() != PanelWindow::Kind::window;
    if (isPlaced) {
        m_screen->keepOutOfLists(*m_window);
        put(place, item);
    } else {
        fit();
    }
    m_window->appear(m_animates && isPlaced);
}

/// Limits the window's height to the screen, wherever it is placed.
void PanelPopover::fit()
{
    const auto available =
        QGuiApplication::primaryScreen()->availableGeometry().adjusted(0, usualTitleBar, 0, 0);
    const double zoom = zoomWithin(available);
    const QSize wanted = PanelWindow::panelSize * zoom;
    m_window->setPanelSize({wanted.width(), heightWithin(available, wanted.height())}, zoom);
}

/// The panel's scale: the text scaling, limited by the screen's size.
double PanelPopover::zoomWithin(const QRect &available) const
{
    const double wanted = PopoverScreen::leavesTextsToProgram() ? m_model.textScale() : 1;
    const double room = std::min(double(available.width()) / PanelWindow::panelSize.width(),
                                 double(available.height()) / leastHeight);
    return std::min(wanted, std::max(room, 1.0));
}

void PanelPopover::put(Place place, const std::optional<ScreenRect> &item)
{
    const auto frame = rectOf(item);
    const auto click =
        place == Place::atPointer && m_screen->knowsPointer() ? std::optional(QCursor::pos()) : std::nullopt;
    const auto &screen = screenAt(frame, click);
    const double zoom = zoomWithin(screen.availableGeometry());
    const auto area = popoverArea(
        {.screen = screen.geometry(), .available = screen.availableGeometry(), .item = frame, .click = click},
        PanelWindow::panelSize * zoom);
    m_window->setPanelSize(area.size(), zoom);
    m_window->putPanelAt(area.topLeft());
    m_screen->cut(*m_window, m_window->shape());
}

void PanelPopover::follow(const ScreenRect &item)
{
    if (isShown() && kind() != PanelWindow::Kind::window) {
        put(Place::atItem, item);
    }
}

void PanelPopover::performClose()
{
    if (m_window) {
        m_window->hide();
    }
}

void PanelPopover::makeKeyAndOrderFront()
{
    if (isShown()) {
        m_window->raise();
        m_window->requestActivate();
    }
}

} // namespace kelmoth
