#include "UI/Views/ToastModel.h"

#include "UI/Views/Texts.h"

namespace kelmoth {

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

void ToastModel::hide()
{
    m_toastManager.hide();
}

} // namespace kelmoth
