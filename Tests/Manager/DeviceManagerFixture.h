#pragma once

#include "Core/HID/DeviceManager.h"
#include "Core/HID/RazerProtocol.h"
#include "Tests/Manager/SimulatedMachineTest.h"

#include <QCoreApplication>
#include <QCoroTask>

namespace kelmoth {

/// A manager on simulated mice.
class DeviceManagerTest : public SimulatedMachineTest {
protected:
    /// Plugs mice in, starts to watch, and waits for the first full read. With twins, it is those that are
    /// listed: pulled out, they leave the list, and the mice still answer.
    void plugIn(const std::vector<std::string> &models, bool hasTwins = false)
    {
        mice.clear();
        std::ranges::for_each(models, [this](const auto &model) { SimulatedMachineTest::plugIn(model); });
        auto machine = platform();
        listed = mice;
        if (hasTwins) {
            mice.clear();
            std::ranges::for_each(models, [this](const auto &model) { SimulatedMachineTest::plugIn(model); });
            machine.usb = platform().usb;
        }
        manager.reset();
        monitor = std::make_unique<HIDMonitor>(machine.hid, machine.usb, machine.sleeper);
        toasts = std::make_unique<ToastManager>();
        manager = std::make_unique<DeviceManager>(*monitor, *toasts, defaults);
        QObject::connect(toasts.get(), &ToastManager::currentToastChanged, toasts.get(), [this] {
            if (toasts->currentToast()) {
                messages.push_back(toasts->currentToast()->message);
            }
        });
        monitor->startMonitoring();
        EXPECT_FALSE(manager->connectedDevice()) << "lists come through the event loop";
        settle();
        messages.clear();
    }

    /// Lets everything that is under way come to its end.
    void finishAll()
    {
        RazerDevice nobody;
        nobody.vendorID = razerVendorID;
        nobody.productID = 0x0099;
        // Each turn waits behind all that is queued now; a read under way asks again in between.
        for (int quietTurns = 0; quietTurns < 3;) {
            QCoro::waitFor(monitor->send(command::getLiftOff{}, nobody));
            QCoreApplication::processEvents();
            quietTurns = manager && manager->isSyncing() ? 0 : quietTurns + 1;
        }
    }

    /// The same, and forgets what went over the wire.
    void settle()
    {
        finishAll();
        for (const auto &attached : mice) {
            attached->takeTransfers();
        }
    }

    bool finish(QCoro::Task<bool> task)
    {
        const bool result = QCoro::waitFor(std::move(task));
        QCoreApplication::processEvents();
        return result;
    }

    /// Changes what a mouse holds, as its buttons could.
    static void change(SimulatedMouse &mouse, const std::function<void(SimulatedMouse::State &)> &action)
    {
        auto state = mouse.state();
        action(state);
        mouse.setState(state);
    }

    /// Lets a mouse's battery hold so much and reads that of the configured one.
    void charge(SimulatedMouse &mouse, Int percent, bool isCharging)
    {
        change(mouse, [&](auto &state) {
            state.battery = static_cast<std::uint8_t>((percent * 255 + 99) / 100);
            state.isCharging = isCharging;
        });
        monitor->readBatteryLevel(*manager->connectedDevice());
        finishAll();
    }

    /// Runs something on the main thread from the transfer thread, behind all that waits there now; twice
    /// around, for what is put off to the next turn of the event loop.
    void onMainThread(const std::function<void()> &action)
    {
        for (int turn = 0; turn < 3; ++turn) {
            QMetaObject::invokeMethod(QCoreApplication::instance(), [] {}, Qt::BlockingQueuedConnection);
        }
        QMetaObject::invokeMethod(QCoreApplication::instance(), action, Qt::BlockingQueuedConnection);
    }

    /// Class and id of a command; of those for buttons also the profile.
    struct Code {
        std::uint8_t first;
        std::uint8_t second;
        std::uint8_t profile = 0;

        bool operator==(const Code &) const = default;
    };

    /// The commands that went to the mouse since the last look, each once however often it was tried.
    std::vector<Code> takeCommands()
    {
        std::vector<Code> codes;
        Data last;
        for (const auto &transfer : mouse().takeTransfers()) {
            if (transfer.isSet && transfer.bytes != last) {
                last = transfer.bytes;
                codes.push_back({last[6], last[7], last[6] == 0x02 ? last[8] : std::uint8_t{0}});
            }
        }
        return codes;
    }

    std::optional<DeviceState> stored(int productID) const
    {
        const auto text = defaults->dataForKey("com.kelmoth.deviceState." + std::to_string(productID));
        return text ? decodeDeviceState(*text) : std::nullopt;
    }

    std::vector<std::shared_ptr<SimulatedMouse>> listed; ///< the mice, or their twins
    std::unique_ptr<HIDMonitor> monitor;
    std::vector<std::string> messages; ///< of every toast, in order
    std::unique_ptr<ToastManager> toasts;
    std::unique_ptr<DeviceManager> manager;
};

} // namespace kelmoth
