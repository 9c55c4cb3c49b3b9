#include "UI/Views/ToastModel.h"

#include "UI/Views/Texts.h"

#include <array>

namespace kelmoth {

namespace {

struct Look {
    std::string_view icon;
    std::string_view colorName;
};

/// One row for each type, in declaration order.
constexpr std::array looks{
    Look{"xmark.circle.fill", "red"},
    Look{"exclamationmark.triangle.fill", "orange"},
    Look{"checkmark.circle.fill", "green"},
    Look{"info.circle.fill", "blue"},
};
static_assert(looks.size() == static_cast<std::size_t>(ToastType::info) + 1);

constexpr const Look &look(ToastType type)
{
    return looks[static_cast<std::size_t>(type)];
}

} // namespace

ToastModel::ToastModel(ToastManager &toastManager, QObject *parent)
    : QObject(parent), m_toastManager(toastManager)
{
    connect(&toastManager, &ToastManager::currentToastChanged, this, &ToastModel::follow);
    follow();
}

void ToastModel::follow()
{
    m_last = m_toastManager.currentToast().value_or(m_last);
    Q_EMIT changed();
}

QString ToastModel::message() const
{
    return panelText(m_last.message);
}

QString ToastModel::icon() const
{
    return panelText(look(m_last.type).icon);
}

QString ToastModel::colorName() const
{
    return panelText(look(m_last.type).colorName);
}

void ToastModel::hide()
{
    m_toastManager.hide();
}

} // namespace kelmoth
