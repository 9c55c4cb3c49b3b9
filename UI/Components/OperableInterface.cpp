#include "UI/Components/OperableInterface.h"

#include <QQuickWindow>

namespace kelmoth {

OperableInterface::OperableInterface(Operable *item) : QAccessibleObject(item) {}

QAccessibleInterface *OperableInterface::make(const QString &, QObject *object)
{
    auto *item = qobject_cast<Operable *>(object);
    return item ? new OperableInterface(item) : nullptr; // the toolkit takes it over
}

Operable *OperableInterface::item() const
{
    return static_cast<Operable *>(object());
}

QWindow *OperableInterface::window() const
{
    return item()->window();
}

/// The next item above that is in the tree, else the window.
QAccessibleInterface *OperableInterface::parent() const
{
    QQuickItem *const top = item()->window() ? item()->window()->contentItem() : nullptr;
    for (QQuickItem *above = item()->parentItem(); above && above != top; above = above->parentItem()) {
        if (QAccessibleInterface *known = QAccessible::queryAccessibleInterface(above)) {
            return known;
        }
    }
    return QAccessible::queryAccessibleInterface(item()->window());
}

QString OperableInterface::text(QAccessible::Text which) const
{
    switch (which) {
    case QAccessible::Name:
        return item()->text();
    case QAccessible::Description:
        return item()->description();
    case QAccessible::Value:
        return hasValue() ? QString::number(item()->value()) : QString();
    default:
        return {};
    }
}

QRect OperableInterface::rect() const
{
    if (!item()->window()) {
        return {};
    }
    const QRect inWindow = item()->mapRectToScene(item()->boundingRect()).toRect();
    return {item()->window()->mapToGlobal(inWindow.topLeft()), inWindow.size()};
}

QAccessible::Role OperableInterface::role() const
{
    return static_cast<QAccessible::Role>(item()->role());
}

QAccessible::State OperableInterface::state() const
{
    const auto *window = item()->window();
    const bool shown =
        window != nullptr && window->isVisible() && item()->isVisible() && item()->opacity() > 0;
    const QRectF inWindow = item()->mapRectToScene(item()->boundingRect());
    QAccessible::State state;
    state.disabled = !item()->isOperable();
    state.invisible = !shown;
    state.offscreen = shown && !inWindow.intersects(QRectF(QPointF(), window->size()));
    state.focusable = item()->activeFocusOnTab();
    state.focused = item()->hasActiveFocus();
    state.selectable = item()->isSelectable();
    state.selected = item()->isSelected() && item()->isSelectable();
    state.checkable = item()->isCheckable();
    state.checked = item()->isChecked() && item()->isCheckable();
    state.expandable = item()->isExpandable();
    state.expanded = item()->isExpanded() && item()->isExpandable();
    state.collapsed = !item()->isExpanded() && item()->isExpandable();
    return state;
}

void *OperableInterface::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::ActionInterface) {
        return static_cast<QAccessibleActionInterface *>(this);
    }
    if (type == QAccessible::ValueInterface && hasValue()) {
        return static_cast<QAccessibleValueInterface *>(this);
    }
    return nullptr;
}

QStringList OperableInterface::actionNames() const
{
    QStringList names;
    if (hasValue()) {
        names << increaseAction() << decreaseAction();
    } else {
        names << pressAction();
        if (item()->isCheckable()) {
            names << toggleAction();
        }
    }
    if (item()->activeFocusOnTab()) {
        names << setFocusAction();
    }
    return names;
}

void OperableInterface::doAction(const QString &actionName)
{
    if (!item()->isOperable() || !actionNames().contains(actionName)) {
        return;
    }
    if (actionName == setFocusAction()) {
        item()->forceActiveFocus();
    } else if (actionName == increaseAction()) {
        Q_EMIT item()->valueWished(item()->value() + item()->stepSize());
    } else if (actionName == decreaseAction()) {
        Q_EMIT item()->valueWished(item()->value() - item()->stepSize());
    } else {
        Q_EMIT item()->pressWished();
    }
}

QVariant OperableInterface::currentValue() const
{
    return item()->value();
}

void OperableInterface::setCurrentValue(const QVariant &value)
{
    bool isNumber = false;
    const double wish = value.toDouble(&isNumber);
    if (isNumber && item()->isOperable()) {
        Q_EMIT item()->valueWished(wish);
    }
}

QVariant OperableInterface::maximumValue() const
{
    return item()->maximumValue();
}

QVariant OperableInterface::minimumValue() const
{
    return item()->minimumValue();
}

QVariant OperableInterface::minimumStepSize() const
{
    return item()->stepSize();
}

} // namespace kelmoth
