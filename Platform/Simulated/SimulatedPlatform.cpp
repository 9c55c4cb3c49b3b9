#include "Platform/Simulated/SimulatedPlatform.h"

#include "Platform/Log.h"
#include "Platform/Platform.h"
#include "Platform/Simulated/SimulatedHID.h"
#include "Platform/Simulated/SimulatedUSB.h"

#include <chrono>

namespace kelmoth {

namespace {

std::chrono::microseconds realTime()
{
    return std::chrono::duration_cast<std::chrono::microseconds>(
        std::chrono::steady_clock::now().time_since_epoch());
}

std::string unknownModel(std::string_view word)
{
    std::string text = R"(no simulated mouse is called ")" + printable(word) + R"("; the names are )";
    for (const auto &name : SimulatedModel::names()) {
        text += name + ", ";
    }
    return text + R"(and each but "unknown" also with ":bluetooth")";
}

} // namespace

SimulatedMachine simulatedMachine(std::vector<std::shared_ptr<SimulatedMouse>> mice)
{
    auto hid = makeSimulatedHIDService(mice);
    auto usb = makeSimulatedUSBService(mice);
    return {std::move(mice), std::move(hid), std::move(usb)};
}

std::optional<SimulatedMachine> simulatedMachine(std::string_view list, std::string *failure)
{
    std::vector<std::shared_ptr<SimulatedMouse>> mice;
    for (bool isLast = false; !isLast;) {
        const auto comma = list.find(',');
        isLast = comma == std::string_view::npos;
        const auto word = list.substr(0, comma);
        list.remove_prefix(isLast ? list.size() : comma + 1);
        const auto model = SimulatedModel::named(word);
        if (!model) {
            if (failure != nullptr) {
                *failure = unknownModel(word);
            }
            return std::nullopt;
        }
        mice.push_back(std::make_shared<SimulatedMouse>(*model, realTime));
    }
    return simulatedMachine(std::move(mice));
}

bool simulateMice(std::string_view list, Platform &platform, std::string *failure)
{
    auto machine = simulatedMachine(list, failure);
    if (!machine) {
        return false;
    }
    platform.hid = std::move(machine->hid);
    platform.usb = std::move(machine->usb);
    return true;
}

} // namespace kelmoth
