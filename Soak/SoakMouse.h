#pragma once

#include "Core/Device/BasiliskProductID.h"
#include "Core/Device/DeviceState.h"
#include "Core/Device/RazerDevice.h"
#include "Testbed/MockMouse.h"

#include <QObject>

#include <random>
#include <set>

namespace kelmoth {

/// One mouse of a soak, mocked at the kernel's side, that fails at random and is pulled out and put back.
/// Main thread.
class SoakMouse : public QObject {
public:
    SoakMouse(std::shared_ptr<MockTestbed> testbed, const BasiliskModel &model);

    const RazerDevice &device() const { return m_device; }
    const BasiliskModel &model() const { return m_model; }
    bool isAttached() const { return m_attached != nullptr; }

    /// Plugs it in at the next of three ports, counted from `firstPort`. The nodes of each have other names.
    void attach(int firstPort);
    void detach();

    /// Lets something go wrong soon, or the charge be another.
    void addFault(std::mt19937 &random);
    /// From now on it refuses every change of which it then holds nothing.
    void refuseChanges();
    /// The kernel holds the next request up for so long.
    void hang(std::chrono::milliseconds duration) { *m_hang = duration.count(); }
    void clearFaults();
    /// From now on each of its transfers hangs for so long and fails; zero ends that.
    void hangTransfers(std::chrono::milliseconds duration) { protocolNode().hang = duration; }
    /// How many such transfers have begun in this attach.
    int hangs() const { return protocolNode().hangs; }

    /// Looks through what went over the wire since the last time.
    void watchWire();
    int requests() const { return m_requests; }
    std::map<SimulatedFault::Kind, int> metFaults() const { return m_mouse->metFaults(); }

    /// The names of the settings of which a program cannot know what holds, since `forget`:
    /// - a request was not answered, or a button or a brightness was refused, which are parts of a change;
    /// - the mouse swallowed a request and gave its answer to the one before, which nothing tells apart.
    std::set<std::string> unknown();
    void forget();
    /// The last transfers about a setting, a line each.
    std::string wireOf(const std::string &name) const;

    /// The names of the settings that are other than the mouse holds; what is unknown differs.
    std::set<std::string> differences(const DeviceState &state, std::optional<Int> liftOff) const;
    /// Whether a battery reading is the mouse's, a percent for the time in between.
    bool isBattery(std::optional<Int> level, bool isCharging) const;

private:
    MockHidraw &protocolNode() const { return m_attached->hidraw(m_mouse->protocolInterface()); }
    void noteRequest(const std::string &name, const SimulatedMouse::Transfer &request);
    void takeAnswer(std::span<const std::uint8_t> asked, std::span<const std::uint8_t> answer);

    const BasiliskModel &m_model;
    const std::shared_ptr<MockTestbed> m_testbed;
    const std::shared_ptr<std::atomic<std::int64_t>> m_hang = std::make_shared<std::atomic<std::int64_t>>(0);
    const std::shared_ptr<SimulatedMouse> m_mouse;
    std::unique_ptr<MockMouse> m_attached;
    RazerDevice m_device;
    std::vector<std::uint8_t> m_lastRequest;
    std::map<std::string, std::map<int, int>>
        m_open;                             ///< by setting: the parts of changes, how often sent in vain
    std::map<std::string, int> m_readBacks; ///< by setting, to be read back: how often asked for so far
    std::set<std::string> m_misled;
    int m_requests = 0;
    int m_attaches = 0;
    std::deque<std::pair<std::string, std::string>> m_wire; ///< the last transfers: setting, and what went
};

} // namespace kelmoth
