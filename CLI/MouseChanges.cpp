#include "CLI/MouseChanges.h"

#include <algorithm>

namespace kelmoth {

std::vector<MouseChange> changesBetween(const std::vector<RazerDevice> &before,
                                        const std::vector<RazerDevice> &after)
{
    std::vector<MouseChange> changes;
    for (const auto &device : before) {
        if (std::ranges::find(after, device) == after.end()) {
            changes.push_back({MouseChange::Kind::detached, device});
        }
    }
    for (const auto &device : after) {
        const auto known = std::ranges::find(before, device);
        if (known == before.end()) {
            changes.push_back({MouseChange::Kind::attached, device});
        }
        const bool wasRead = known != before.end() && known->batteryLevel == device.batteryLevel &&
                             known->isCharging == device.isCharging;
        if (device.batteryLevel && !wasRead) {
            changes.push_back({MouseChange::Kind::battery, device});
        }
    }
    return changes;
}

} // namespace kelmoth
