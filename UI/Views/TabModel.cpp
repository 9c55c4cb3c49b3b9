#include "UI/Views/TabModel.h"

#include "Core/Services/OwnThread.h"

#include <QPointer>

namespace kelmoth {

TabModel::TabModel(DeviceManager &deviceManager, QObject *parent)
    : QObject(parent), m_deviceManager(deviceManager)
{
    connect(&m_deviceManager, &DeviceManager::isSyncingChanged, this, &TabModel::isEnabledChanged);
}

void TabModel::reset()
{
    assertOwnThread(*this);
    ++m_life;
    setIsApplying(false);
}

void TabModel::perform(Write write, Finished finished)
{
    assertOwnThread(*this);
    if (m_isApplying) {
        return;
    }
    setIsApplying(true);
    QMetaObject::invokeMethod(
        this,
        [this, write = std::move(write), finished = std::move(finished), life = m_life] {
            run(write, finished, life);
        },
        Qt::QueuedConnection);
}

QCoro::Task<void> TabModel::run(Write write, Finished finished, int life)
{
    const QPointer<TabModel> self(this);
    const bool ok = co_await write(m_deviceManager);
    if (!self) {
        co_return;
    }
    const bool isSamePage = life == m_life;
    finished(ok, isSamePage);
    if (isSamePage) {
        setIsApplying(false);
    }
}

void TabModel::setIsApplying(bool isApplying)
{
    assertOwnThread(*this);
    if (isApplying == m_isApplying) {
        return;
    }
    m_isApplying = isApplying;
    Q_EMIT isApplyingChanged();
    Q_EMIT isEnabledChanged();
}

} // namespace kelmoth
