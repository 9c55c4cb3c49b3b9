#pragma once

#include "UI/Components/Operable.h"

#include <QAccessibleObject>

namespace kelmoth {

/// What assistive tools see of an Operable and do to it.
class OperableInterface : public QAccessibleObject,
                          public QAccessibleActionInterface,
                          public QAccessibleValueInterface {
public:
    explicit OperableInterface(Operable *item);

    /// The interface of an Operable; none for any other object.
    static QAccessibleInterface *make(const QString &className, QObject *object);

    QWindow *window() const override;
    QAccessibleInterface *parent() const override;
    QAccessibleInterface *child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    QString text(QAccessible::Text which) const override;
    QRect rect() const override;
    QAccessible::Role role() const override;
    QAccessible::State state() const override;
    void *interface_cast(QAccessible::InterfaceType type) override;

    QStringList actionNames() const override;
    void doAction(const QString &actionName) override;
    QStringList keyBindingsForAction(const QString &) const override { return {}; }

    QVariant currentValue() const override;
    void setCurrentValue(const QVariant &value) override;
    QVariant maximumValue() const override;
    QVariant minimumValue() const override;
    QVariant minimumStepSize() const override;

private:
    Operable *item() const;
    bool hasValue() const { return role() == QAccessible::Slider; }
};

} // namespace kelmoth
