#include "Core/Services/ToastManager.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTimer>
#include <gmock/gmock.h>

namespace kelmoth {
namespace {

TEST(ToastManager, ShowsOneMessageForItsTime)
{
    ToastManager manager;
    QSignalSpy changes(&manager, &ToastManager::currentToastChanged);
    manager.error("first");
    EXPECT_EQ(manager.currentToast()->duration, 4.0);
    manager.success("second");
    EXPECT_EQ(manager.currentToast()->duration, 2.5);
    manager.show(ToastType::info, "short", 0.001);
    EXPECT_TRUE(changes.wait());
    EXPECT_EQ(changes.count(), 4);
    EXPECT_EQ(manager.currentToast(), std::nullopt);
}

TEST(ToastManager, ATimerNeverHidesTheSuccessorOfItsToast)
{
    ToastManager manager;
    manager.show(ToastType::error, "first", 0.0);
    // When its time is up, and its going is queued, the second one comes.
    QTimer::singleShot(0, &manager, [&] { manager.show(ToastType::error, "second", 60.0); });
    for (int turn = 0; turn < 5; ++turn) {
        QCoreApplication::processEvents();
    }
    ASSERT_TRUE(manager.isShowing());
    EXPECT_EQ(manager.currentToast()->message, "second");
}

} // namespace
} // namespace kelmoth
