#pragma once

#include "Core/Device/DeviceDefaults.h"
#include "Core/HID/USBRazerDevice.h"

namespace kelmoth {

/// How many programs use a mouse at once in a soak: the panel and two of kelmothctl.
inline constexpr int soakPrograms = 3;

/// The longest that one transfer is held up on purpose, and it happens once in a storm.
inline constexpr std::chrono::milliseconds soakHang{500};

/// How long the kernel lets a transfer hang, and how long a program may then take to end: as long, and half a
/// second to be told and to stop.
inline constexpr std::chrono::milliseconds kernelTimeout{5000};
inline constexpr std::chrono::milliseconds longestQuit{5500};

/// What the protocol allows so many commands to take when all of them fail: five attempts on each of two
/// paths, each of which may have to let every other program finish one of its own, and between attempts a
/// pause. Two transfers are counted with 5 ms.
inline std::chrono::milliseconds longestTime(int commands, const RazerDevice &device)
{
    using namespace std::chrono;
    const microseconds exchange(basiliskModel(*device.model()).waitTimeUs + 5000);
    const auto attempt = soakPrograms * exchange + transactRetryPause;
    return duration_cast<milliseconds>(commands * 2 * transactAttempts * attempt) + soakHang;
}

/// The commands of a full read.
inline int commandsOfFullRead(const RazerDevice &device)
{
    return static_cast<int>(2 + 2 * device.capabilities().rgbZones.size() +
                            defaultButtonMappings(device).size());
}

} // namespace kelmoth
