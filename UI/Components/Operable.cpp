#include "UI/Components/Operable.h"

#include "UI/Components/OperableInterface.h"

#include <QAccessible>

namespace kelmoth {
namespace {

void tell(QObject *item, QAccessible::Event what)
{
    if (QAccessible::isActive()) {
        QAccessibleEvent event(item, what);
        QAccessible::updateAccessibility(&event);
    }
}

void tell(QObject *item, QAccessible::State changed)
{
    if (QAccessible::isActive()) {
        QAccessibleStateChangeEvent event(item, changed);
        QAccessible::updateAccessibility(&event);
    }
}

} // namespace

Operable::Operable(QQuickItem *parent) : QQuickItem(parent)
{
    connect(this, &QQuickItem::enabledChanged, this, &Operable::tellOperable);
}

void Operable::announce()
{
    QAccessible::installFactory(&OperableInterface::make);
}

void Operable::setText(const QString &text)
{
    if (m_text != text) {
        m_text = text;
        Q_EMIT textChanged();
        tell(this, QAccessible::NameChanged);
    }
}

void Operable::setDescription(const QString &description)
{
    if (m_description != description) {
        m_description = description;
        Q_EMIT descriptionChanged();
        tell(this, QAccessible::DescriptionChanged);
    }
}

void Operable::setUsable(bool usable)
{
    if (m_usable != usable) {
        m_usable = usable;
        setEnabled(usable || hasActiveFocus());
        tellOperable();
        Q_EMIT usableChanged();
        constexpr int moment = 250; // milliseconds
        if (usable) {
            m_dimming.stop();
            setDimmed(false);
        } else {
            m_dimming.start(moment, this);
        }
    }
}

void Operable::takeFocus()
{
    setEnabled(true);
    forceActiveFocus(Qt::OtherFocusReason);
    setEnabled(m_usable || hasActiveFocus());
}

void Operable::itemChange(ItemChange change, const ItemChangeData &data)
{
    QQuickItem::itemChange(change, data);
    if (change == ItemActiveFocusHasChanged && !data.boolValue && !m_usable) {
        setEnabled(false);
    }
}

void Operable::tellOperable()
{
    if (m_wasOperable != isOperable()) {
        m_wasOperable = isOperable();
        QAccessible::State changed;
        changed.disabled = true;
        tell(this, changed);
    }
}

void Operable::setDimmed(bool dimmed)
{
    if (m_dimmed != dimmed) {
        m_dimmed = dimmed;
        Q_EMIT dimmedChanged();
    }
}

void Operable::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == m_dimming.timerId()) {
        m_dimming.stop();
        setDimmed(true);
    }
}

void Operable::setRole(int role)
{
    if (m_role != role) {
        m_role = role;
        Q_EMIT roleChanged();
    }
}

void Operable::setSelectable(bool selectable)
{
    if (m_selectable != selectable) {
        m_selectable = selectable;
        Q_EMIT selectableChanged();
    }
}

void Operable::setSelected(bool selected)
{
    if (m_selected != selected) {
        m_selected = selected;
        Q_EMIT selectedChanged();
        QAccessible::State changed;
        changed.selected = true;
        tell(this, changed);
    }
}

void Operable::setCheckable(bool checkable)
{
    if (m_checkable != checkable) {
        m_checkable = checkable;
        Q_EMIT checkableChanged();
    }
}

void Operable::setChecked(bool checked)
{
    if (m_checked != checked) {
        m_checked = checked;
        Q_EMIT checkedChanged();
        QAccessible::State changed;
        changed.checked = true;
        tell(this, changed);
    }
}

void Operable::setExpanded(bool expanded)
{
    if (m_expanded != expanded) {
        m_expanded = expanded;
        Q_EMIT expandedChanged();
        QAccessible::State changed;
        changed.expanded = true;
        tell(this, changed);
    }
}

void Operable::setValue(double value)
{
    if (m_value != value) {
        m_value = value;
        Q_EMIT valueChanged();
        if (QAccessible::isActive()) {
            QAccessibleValueChangeEvent event(this, value);
            QAccessible::updateAccessibility(&event);
        }
    }
}

} // namespace kelmoth
