#include "UI/Views/Revealer.h"

#include <QQuickWindow>

#include <algorithm>
#include <cmath>
#include <utility>

namespace kelmoth {

void Revealer::setFlickable(QQuickItem *flickable)
{
    if (m_flickable == flickable) {
        return;
    }
    if (m_flickable) {
        disconnect(m_flickable, nullptr, this, nullptr);
    }
    m_flickable = flickable;
    if (flickable) {
        connect(flickable, &QQuickItem::windowChanged, this, &Revealer::follow);
        // The toolkit declares its Flickable in no public header.
        connect(flickable, SIGNAL(contentHeightChanged()), this, SLOT(revealAgain()));
        connect(flickable, SIGNAL(movementStarted()), this, SLOT(forget()));
        connect(flickable, &QQuickItem::visibleChanged, this, &Revealer::forget);
        follow(flickable->window());
    }
    Q_EMIT flickableChanged();
}

void Revealer::follow(QQuickWindow *window)
{
    disconnect(m_focus);
    if (window) {
        m_focus = connect(window, &QQuickWindow::activeFocusItemChanged, this, [this, window] {
            if (m_active) {
                reveal(window->activeFocusItem());
            }
        });
    }
}

/// What folds lets the rest be where it is.
void Revealer::revealAgain()
{
    const double height = m_flickable->property("contentHeight").toDouble();
    if (height > std::exchange(m_contentHeight, height)) {
        reveal(m_revealed);
    }
}

void Revealer::reveal(QQuickItem *item)
{
    auto *content = m_flickable ? m_flickable->property("contentItem").value<QQuickItem *>() : nullptr;
    if (!item || !content || !content->isAncestorOf(item)) {
        return;
    }
    m_revealed = item;
    constexpr double margin = 4;
    const double height = m_flickable->height();
    const QRectF place = item->mapRectToItem(content, {0, 0, item->width(), item->height()});
    const double lowest = std::max(0.0, m_flickable->property("contentHeight").toDouble() - height);
    double y = m_flickable->property("contentY").toDouble();
    y = std::max(y, place.bottom() + margin - height);
    y = std::min(y, place.top() - margin);
    m_flickable->setProperty("contentY", std::round(std::clamp(y, 0.0, lowest)));
}

} // namespace kelmoth
