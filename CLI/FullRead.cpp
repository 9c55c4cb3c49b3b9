#include "CLI/FullRead.h"

#include "CLI/MouseSummary.h"

#include <QCoroFuture>

namespace kelmoth {

FullRead::FullRead(const DeviceManager &manager, RazerDevice device)
    : m_manager(manager), m_device(std::move(device))
{
    m_promise.start();
    connect(&manager, &DeviceManager::isConnectedChanged, this, &FullRead::followDevice);
    connect(&manager, &DeviceManager::isSyncingChanged, this, &FullRead::followReading);
}

void FullRead::followDevice()
{
    if (m_manager.connectedDevice() != m_device) {
        m_promise.finish();
    }
}

void FullRead::followReading()
{
    m_hasBegun = m_hasBegun || m_manager.isSyncing();
    if (m_hasBegun && !m_manager.isSyncing()) {
        m_promise.finish();
    }
}

QCoro::Task<std::optional<Failure>> readFully(Session *session, RazerDevice device)
{
    const auto &manager = session->manager();
    const FullRead reading(manager, device);
    co_await reading.finished();
    std::optional<Failure> failure;
    if (isGone(device, session->monitor())) {
        failure = {ExitStatus::failed, "the " + device.name() + " was unplugged while it was read", true};
    } else if (!manager.isAnswering()) {
        failure = {ExitStatus::failed, "the " + device.name() + " does not answer", true};
    }
    co_return failure;
}

QCoro::Task<std::optional<Failure>> readToChange(Session *session, RazerDevice device, ChangeLock *lock)
{
    const auto obstacle = co_await lock->take();
    if (obstacle) {
        std::optional<Failure> failure{{ExitStatus::failed, *obstacle}};
        co_return failure;
    }
    co_return co_await readFully(session, device);
}

DeviceReading answeredSettings(const DeviceManager &manager, const UnansweredItems &unanswered)
{
    DeviceReading reading{manager.deviceState(), manager.liftOffLevel(), unanswered, manager.isAnswering()};
    auto &state = reading.state;
    if (unanswered.dpiStages) {
        state.dpiStages.clear();
        state.currentDPIStage = 0;
    }
    for (const auto zone : unanswered.zones) {
        state.rgbSettings.erase(zone);
    }
    for (const auto button : unanswered.buttons) {
        state.buttonMappings.erase(button);
    }
    return reading;
}

} // namespace kelmoth
