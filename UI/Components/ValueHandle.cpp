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
    connect(this, &Operable::valueWished, this, &ValueHandle::edit);
    connect(this, &Operable::valueChanged, this, &ValueHandle::fractionChanged);
    connect(this, &Operable::rangeChanged, this, &ValueHandle::fractionChanged);
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
    if (const auto wish = wishOf(event->key())) {
        edit(*wish);
    } else {
        event->ignore();
    }
}

void ValueHandle::mousePressEvent(QMouseEvent *event)
{
    setKeepMouseGrab(true); // from a page that scrolls
    forceActiveFocus(Qt::MouseFocusReason);
    setEditing(true);
    Q_EMIT moved(valueAt(event->position().x()));
}

void ValueHandle::mouseMoveEvent(QMouseEvent *event)
{
    if (m_editing) {
        Q_EMIT moved(valueAt(event->position().x()));
    }
}

void ValueHandle::mouseReleaseEvent(QMouseEvent *)
{
    setKeepMouseGrab(false);
    setEditing(false);
}

void ValueHandle::mouseUngrabEvent()
{
    setEditing(false);
}

} // namespace kelmoth
