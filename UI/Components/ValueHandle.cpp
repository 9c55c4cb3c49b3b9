#include "UI/Components/ValueHandle.h"

#include <QAccessible>
#include <QKeyEvent>

#include <algorithm>
#include <cmath>

namespace kelmoth {

ValueHandle::ValueHandle(QQuickItem *parent) : Operable(parent)
{
    setRole(QAccessible::Slider);
    setActiveFocusOnTab(true);
    setAcceptedMouseButtons(Qt::LeftButton);
    setAcceptHoverEvents(true);
    connect(this, &Operable::valueWished, this, &ValueHandle::edit);
    connect(this, &Operable::valueChanged, this, &ValueHandle::fractionChanged);
    connect(this, &Operable::rangeChanged, this, &ValueHandle::fractionChanged);
    connect(this, &ValueHandle::fractionChanged, this, &ValueHandle::updateKnob);
}

double ValueHandle::fraction() const
{
    const double range = maximumValue() - minimumValue();
    return range > 0 ? std::clamp((value() - minimumValue()) / range, 0.0, 1.0) : 0.0;
}

/// The nearest value that can be chosen.
double ValueHandle::possible(double wish) const
{
    if (m_step > 0) {
        wish = minimumValue() + std::round((wish - minimumValue()) / m_step) * m_step;
    }
    return std::max(minimumValue(), std::min(wish, maximumValue())); // also where the range is none
}

double ValueHandle::valueAt(double x) const
{
    const double length = std::max(width() - 2 * m_inset, 1.0);
    return possible(minimumValue() + (x - m_inset) / length * (maximumValue() - minimumValue()));
}

double ValueHandle::knobX() const
{
    return m_inset + fraction() * (width() - 2 * m_inset);
}

bool ValueHandle::isOnKnob(double x) const
{
    return std::abs(x - knobX()) <= m_knobWidth / 2;
}

bool ValueHandle::contains(const QPointF &point) const
{
    return QQuickItem::contains({isOnKnob(point.x()) ? width() / 2 : point.x(), point.y()});
}

/// An edit that begins and ends at once.
void ValueHandle::edit(double wish)
{
    const double wanted = possible(wish);
    if (std::isnan(wish) || m_editing || wanted == value()) {
        return;
    }
    Q_EMIT editingStarted();
    Q_EMIT moved(wanted);
    Q_EMIT editingEnded();
}

void ValueHandle::setEditing(bool editing)
{
    if (m_editing == editing) {
        return;
    }
    m_editing = editing;
    m_heldKey = editing ? m_heldKey : 0;
    updateKnob();
    Q_EMIT editingChanged();
    if (editing) {
        Q_EMIT editingStarted();
    } else {
        Q_EMIT editingEnded();
    }
}

/// Where a key leads; none for a key that does not.
std::optional<double> ValueHandle::wishOf(int key) const
{
    constexpr int page = 5;
    switch (key) {
    case Qt::Key_Left:
    case Qt::Key_Down:
        return value() - stepSize();
    case Qt::Key_Right:
    case Qt::Key_Up:
        return value() + stepSize();
    case Qt::Key_PageDown:
        return value() - page * stepSize();
    case Qt::Key_PageUp:
        return value() + page * stepSize();
    case Qt::Key_Home:
        return minimumValue();
    case Qt::Key_End:
        return maximumValue();
    default:
        return std::nullopt;
    }
}

void ValueHandle::keyPressEvent(QKeyEvent *event)
{
    const auto wish = wishOf(event->key());
    if (!wish || !isUsable()) {
        event->ignore();
    } else if (m_heldKey == 0 && !event->isAutoRepeat()) {
        edit(*wish);
    } else if (m_heldKey != 0 || (!m_editing && possible(*wish) != value())) {
        m_heldKey = event->key();
        setEditing(true);
        Q_EMIT moved(possible(*wish));
    }
}

void ValueHandle::keyReleaseEvent(QKeyEvent *event)
{
    if (m_heldKey != 0 && event->key() == m_heldKey && !event->isAutoRepeat()) {
        setEditing(false);
    } else {
        event->ignore();
    }
}

void ValueHandle::focusOutEvent(QFocusEvent *event)
{
    Operable::focusOutEvent(event);
    if (m_heldKey != 0) {
        setEditing(false);
    }
}

void ValueHandle::hoverEnterEvent(QHoverEvent *event)
{
    followPointer(event->position().x());
}

void ValueHandle::hoverMoveEvent(QHoverEvent *event)
{
    followPointer(event->position().x());
}

void ValueHandle::hoverLeaveEvent(QHoverEvent *)
{
    followPointer(std::nullopt);
}

void ValueHandle::followPointer(std::optional<double> x)
{
    m_pointer = x;
    updateKnob();
}

void ValueHandle::updateKnob()
{
    const bool isDragged = m_editing && m_heldKey == 0;
    const bool isHovered = isDragged || (m_pointer && isOnKnob(*m_pointer));
    if (m_isKnobHovered != isHovered) {
        m_isKnobHovered = isHovered;
        Q_EMIT knobHoveredChanged();
    }
}

void ValueHandle::mousePressEvent(QMouseEvent *event)
{
    if (!isUsable()) {
        event->ignore();
        return;
    }
    setKeepMouseGrab(true); // from a page that scrolls
    forceActiveFocus(Qt::MouseFocusReason);
    const double x = event->position().x();
    const bool isHeld = isOnKnob(x);
    m_hold = isHeld ? x - knobX() : 0;
    setEditing(true);
    if (!isHeld) {
        Q_EMIT moved(valueAt(x));
    }
}

void ValueHandle::mouseMoveEvent(QMouseEvent *event)
{
    if (m_editing) {
        Q_EMIT moved(valueAt(event->position().x() - m_hold));
    }
}

void ValueHandle::mouseReleaseEvent(QMouseEvent *event)
{
    setKeepMouseGrab(false);
    followPointer(event->position().x());
    setEditing(false);
}

void ValueHandle::mouseUngrabEvent()
{
    setEditing(false);
}

} // namespace kelmoth
