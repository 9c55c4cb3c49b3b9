#include "UI/Components/FocusGuide.h"

#include <QEvent>
#include <QGuiApplication>
#include <QQuickWindow>

#include <cstdlib>

namespace kelmoth {

FocusGuide::FocusGuide(QObject *parent) : QObject(parent)
{
    if (qGuiApp) {
        qGuiApp->installEventFilter(this);
    }
}

void FocusGuide::move(QQuickItem *container, int step) const
{
    QQuickItem *from = container && container->window() ? container->window()->activeFocusItem() : nullptr;
    if (!from || !container->isAncestorOf(from)) {
        return;
    }
    QQuickItem *to = from;
    for (int left = std::abs(step); to && left > 0; --left) {
        to = to->nextItemInFocusChain(step > 0);
        to = to && container->isAncestorOf(to) ? to : nullptr;
    }
    if (to) {
        to->forceActiveFocus(step > 0 ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    }
}

bool FocusGuide::eventFilter(QObject *watched, QEvent *event)
{
    const bool key = event->type() == QEvent::KeyPress;
    if ((key || event->type() == QEvent::MouseButtonPress) && key != m_visible) {
        m_visible = key;
        Q_EMIT visibleChanged();
    }
    return QObject::eventFilter(watched, event);
}

} // namespace kelmoth
