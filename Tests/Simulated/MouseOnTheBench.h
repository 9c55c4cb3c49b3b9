#pragma once

#include "Core/Device/RazerDevice.h"
#include "Core/HID/RazerProtocol.h"
#include "Platform/Simulated/SimulatedMouse.h"
#include "Tests/Simulated/ManualTime.h"

#include <memory>
#include <string_view>

namespace kelmoth {

/// A simulated mouse of a command-line name, on a clock that only the test moves.
struct MouseOnTheBench {
    explicit MouseOnTheBench(std::string_view name) : model(SimulatedModel::named(name).value())
    {
        device.vendorID = model.vendorID;
        device.productID = model.productID;
        device.transport = model.transport;
    }

    int send(const Data &report) { return mouse->setReport(mouse->protocolInterface(), report); }

    Data read()
    {
        Data answer(RazerProtocol::reportSize);
        const auto result = mouse->getReport(mouse->protocolInterface(), answer);
        answer.resize(result.length);
        return answer;
    }

    /// Sends a report, waits as long as any mouse takes, and reads.
    Data ask(const Data &report)
    {
        send(report);
        time.advance(std::chrono::milliseconds{60});
        return read();
    }

    Data ask(const RazerCommand &command) { return ask(RazerProtocol::createReport(command, device)); }

    /// Whether the mouse carries the command out.
    bool accepts(const RazerCommand &command)
    {
        const auto request = RazerProtocol::createReport(command, device);
        const auto answer = ask(request);
        return RazerProtocol::classify(answer, request) == ResponseStatus::success && answer[0] == 0x02;
    }

    SimulatedModel model;
    RazerDevice device;
    ManualTime time;
    std::shared_ptr<SimulatedMouse> mouse = std::make_shared<SimulatedMouse>(model, time.clock());
};

} // namespace kelmoth
