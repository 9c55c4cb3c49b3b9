#include "UI/Views/AboutModel.h"

#include "Core/Services/Application.h"
#include "Core/Services/L10n.h"
#include "UI/Views/Texts.h"

#include <QFile>

#include <array>

namespace kelmoth {

namespace {

struct Feature {
    std::string_view label; ///< English, a translation key
    std::string_view icon;
    std::string_view colorName;
};

constexpr std::array featureTable{
    Feature{"DPI stages by model", "target", "orange"},
    Feature{"RGB lighting effects & colors", "lightbulb.fill", "yellow"},
    Feature{"Button remapping", "hand.tap.fill", "blue"},
    Feature{"Battery monitoring", "battery.100", "green"},
};

struct Device {
    std::string_view name;
    std::string_view dpi;
};

constexpr std::array deviceTable{
    Device{"Basilisk V3", "26K"},
    Device{"Basilisk V3 Pro", "30K"},
    Device{"Basilisk V3 X HyperSpeed", "18K"},
};

/// Seconds from one row's animation to the next one's.
double delayOf(qsizetype row)
{
    return static_cast<double>(row) / 10;
}

} // namespace

AboutModel::AboutModel(Preferences &preferences, QObject *parent) : QObject(parent)
{
    connect(&preferences, &Preferences::languageModeChanged, this, &AboutModel::versionTextChanged);
}

QString AboutModel::versionText() const
{
    return panelText(L10n::formatted("Version %@", application::version()));
}

QString AboutModel::appIcon()
{
    const auto file = QStringLiteral(":/kelmoth/AppIcon.svg");
    return QFile::exists(file) ? file : QString();
}

QVariantList AboutModel::features() const
{
    QVariantList rows;
    for (const auto &feature : featureTable) {
        rows.append(QVariantMap{{QStringLiteral("icon"), panelText(feature.icon)},
                                {QStringLiteral("colorName"), panelText(feature.colorName)},
                                {QStringLiteral("label"), panelText(feature.label)},
                                {QStringLiteral("delay"), delayOf(rows.size())}});
    }
    return rows;
}

QVariantList AboutModel::devices() const
{
    QVariantList rows;
    for (const auto &device : deviceTable) {
        rows.append(QVariantMap{{QStringLiteral("name"), panelText(device.name)},
                                {QStringLiteral("badge"), panelText(device.dpi) + QStringLiteral(" DPI")},
                                {QStringLiteral("delay"), delayOf(rows.size())}});
    }
    return rows;
}

void AboutModel::reset()
{
    m_appeared = false;
    Q_EMIT entranceChanged();
}

void AboutModel::shown()
{
    m_appeared = true;
    Q_EMIT entranceChanged();
}

} // namespace kelmoth
