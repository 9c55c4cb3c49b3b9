#pragma once

#include "Core/Services/Preferences.h"

#include <QObject>
#include <QString>
#include <QVariant>

namespace kelmoth {

/// The About sheet. The view shows of it:
/// - `versionText` (ready to show);
/// - the emblem: the picture of `appIcon`, a file; empty: there is none, and a symbol stands for it;
/// - `features`: rows of `icon`, `colorName` (of the theme), `label` (a key), `delay` (seconds);
/// - `devices`: rows of `name` and `badge` (both shown as they stand), `delay`;
/// - the entrance: these properties have their first values until the view calls `shown()`, then their last
///   ones; the view animates each from the one to the other. ContentModel puts them back before every
///   presentation.
class AboutModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString versionText READ versionText NOTIFY versionTextChanged)
    Q_PROPERTY(QString appIcon READ appIcon CONSTANT)
    Q_PROPERTY(QVariantList features READ features CONSTANT)
    Q_PROPERTY(QVariantList devices READ devices CONSTANT)
    Q_PROPERTY(bool appeared READ appeared NOTIFY entranceChanged)
    Q_PROPERTY(bool featuresAppeared READ appeared NOTIFY entranceChanged)
    Q_PROPERTY(bool devicesAppeared READ appeared NOTIFY entranceChanged)
    Q_PROPERTY(double iconScale READ iconScale NOTIFY entranceChanged)
    Q_PROPERTY(double iconRotation READ iconRotation NOTIFY entranceChanged)
    Q_PROPERTY(double glowOpacity READ glowOpacity NOTIFY entranceChanged)

public:
    explicit AboutModel(Preferences &preferences, QObject *parent = nullptr);

    /// "Version 0.1.0", in the interface language.
    QString versionText() const;
    /// The program's icon among its resources; empty: it has none.
    static QString appIcon();
    QVariantList features() const;
    QVariantList devices() const;

    bool appeared() const { return m_appeared; }
    double iconScale() const { return m_appeared ? 1.0 : 0.3; }
    /// Degrees.
    double iconRotation() const { return m_appeared ? 0.0 : -45.0; }
    double glowOpacity() const { return m_appeared ? 1.0 : 0.0; }

    /// Back to before the entrance.
    void reset();
    /// The sheet is there: the entrance begins.
    Q_INVOKABLE void shown();

Q_SIGNALS:
    void versionTextChanged();
    void entranceChanged();

private:
    bool m_appeared = false;
};

} // namespace kelmoth
