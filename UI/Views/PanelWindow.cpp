#include "UI/Views/PanelWindow.h"

#include "UI/Components/ShapePath.h"
#include "UI/Views/AboutModel.h"
#include "UI/Views/Views.h"

#include <QIcon>
#include <QImage>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QRegion>

#include <cmath>

namespace kelmoth {

namespace {

constexpr double cornerRadius = 12;
constexpr int shadowMargin = 28;

constexpr auto popoverFlags =
    Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::NoDropShadowWindowHint;
constexpr auto windowFlags = Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                             Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint |
                             Qt::WindowCloseButtonHint;

/// The same at each corner: what the panel's outline covers at least half of.
QRegion rounded(const QRect &rect, double radius)
{
    QImage corner(QSize(1, 1) * std::ceil(2 * radius), QImage::Format_ARGB32_Premultiplied);
    corner.fill(Qt::white);
    cut(corner, continuousRectangle(QRectF({}, rect.size()), radius));
    QRegion region(rect);
    for (int y = 0; y < corner.height(); ++y) {
        int inset = 0;
        while (qAlpha(corner.pixel(inset, y)) < 128) {
            ++inset;
        }
        for (const int line : {rect.top() + y, rect.bottom() - y}) {
            region -= QRect(rect.left(), line, inset, 1);
            region -= QRect(rect.right() - inset + 1, line, inset, 1);
        }
    }
    return region;
}

} // namespace

void PanelWindow::chooseRenderer()
{
    if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND") && !qEnvironmentVariableIsSet("QSG_RHI_BACKEND")) {
        setGraphicsApi(QSGRendererInterface::Software);
    }
}

PanelWindow::PanelWindow(ContentModel &model, PanelTranslator &translator)
{
    useViews(*engine());
    connect(&translator, &PanelTranslator::retranslate, engine(), &QQmlEngine::retranslate);
    setFlags(Qt::FramelessWindowHint);
    setTitle(QStringLiteral("Kelmoth"));
    auto format = this->format();
    format.setAlphaBufferSize(8);
    setFormat(format);
    setColor(Qt::transparent);
    setResizeMode(SizeRootObjectToView);
    setMinimumSize(panelSize);
    setMaximumSize(panelSize);
    setInitialProperties({{QStringLiteral("model"), QVariant::fromValue(&model)}});
    setSource(QUrl(QStringLiteral("qrc:/qt/qml/Kelmoth/Views/PanelFrame.qml")));
    connect(this, &QWindow::screenChanged, this, [this] {
        if (rootObject()) {
            fitToPixels();
        }
    });
}

void PanelWindow::become(Kind kind)
{
    m_kind = kind;
    const Qt::WindowFlags wanted = kind == Kind::window ? windowFlags : popoverFlags;
    if (flags() != wanted) {
        destroy(); // window managers look once
        setFlags(wanted);
    }
    if (kind == Kind::window && icon().isNull()) { // others are in no list of windows
        setIcon(QIcon(AboutModel::appIcon()));
    }
    setMargin(kind == Kind::shadowedPopover ? shadowMargin : 0, kind == Kind::window ? 0 : cornerRadius);
}

QRect PanelWindow::area() const
{
    const double scale = devicePixelRatio();
    // The renderer draws whole logical pixels alone.
    const auto whole = [scale](int length) {
        return static_cast<int>(std::floor(std::floor(std::round(length * scale) / scale) * scale));
    };
    const int margin = qRound(m_margin * scale);
    return {margin, margin, whole(m_panel.width()), whole(m_panel.height())};
}

QRegion PanelWindow::shape() const
{
    return m_kind == Kind::plainPopover ? rounded(area(), cornerRadius * devicePixelRatio()) : QRegion();
}

void PanelWindow::setMargin(int margin, double radius)
{
    m_margin = margin;
    const auto whole = m_panel.grownBy(QMargins(margin, margin, margin, margin));
    setMinimumSize(whole);
    setMaximumSize(whole);
    resize(whole);
    if (auto *frame = rootObject()) {
        frame->setProperty("margin", margin);
        frame->setProperty("cornerRadius", radius);
        frame->setProperty("zoom", m_zoom);
        fitToPixels();
    }
}

void PanelWindow::setPanelSize(const QSize &size, double zoom)
{
    if (size != m_panel || zoom != m_zoom) {
        m_panel = size;
        m_zoom = zoom;
        become(m_kind);
    }
}

void PanelWindow::fitToPixels()
{
    const double scale = devicePixelRatio();
    const QRect pixels = area();
    rootObject()->setProperty("area",
                              QRectF(QPointF(pixels.topLeft()) / scale, QSizeF(pixels.size()) / scale));
}

void PanelWindow::putPanelAt(const QPoint &position)
{
    setPosition(position - QPoint(m_margin, m_margin));
}

void PanelWindow::appear(bool isAnimated)
{
    if (isAnimated && rootObject()) {
        QMetaObject::invokeMethod(rootObject(), "fadeIn");
    }
    show();
}

/// Escape closes what nothing inside it is closed by.
void PanelWindow::keyPressEvent(QKeyEvent *event)
{
    QQuickView::keyPressEvent(event);
    if (event->key() == Qt::Key_Escape && !event->isAccepted()) {
        hide();
    }
}

/// A press on the shadow is one beside the panel.
void PanelWindow::mousePressEvent(QMouseEvent *event)
{
    const QRect panel(QPoint(m_margin, m_margin), m_panel);
    if (panel.contains(event->position().toPoint())) {
        QQuickView::mousePressEvent(event);
    } else {
        hide();
    }
}

} // namespace kelmoth
