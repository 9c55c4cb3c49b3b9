#include "Soak/SoakMouse.h"

#include "Core/Device/DeviceDefaults.h"
#include "Core/HID/RazerProtocol.h"
#include "Core/HID/USBRazerDevice.h"

#include <thread>

namespace kelmoth {

namespace {

using namespace std::chrono;
using Kind = SimulatedFault::Kind;
namespace code = RazerProtocol::code;

std::string lightName(RGBZone zone)
{
    return "lighting of " + std::string(rawValue(zone));
}

std::string buttonName(MouseButton button)
{
    return "button " + std::string(rawValue(button));
}

/// The setting that a request is about; empty for the battery.
std::string nameOf(std::span<const std::uint8_t> request)
{
    const auto commandClass = request[6];
    if (commandClass == code::setDPIStages.commandClass) {
        return "DPI stages";
    }
    if (commandClass == code::setLiftOff.commandClass) {
        return "lift-off distance";
    }
    for (std::size_t i = 0; i < RawValues<RGBZone>::table.size(); ++i) {
        const auto zone = static_cast<RGBZone>(i);
        if (commandClass == code::setRGB.commandClass && RazerProtocol::ledID(zone) == request[9]) {
            return lightName(zone);
        }
    }
    for (std::size_t i = 0; i < RawValues<MouseButton>::table.size(); ++i) {
        const auto button = static_cast<MouseButton>(i);
        if (commandClass == code::setButtonMapping.commandClass &&
            RazerProtocol::buttonID(button) == request[9]) {
            return buttonName(button);
        }
    }
    return {};
}

/// The code that stands in an effect report, and whether a colour follows.
std::pair<int, bool> effectOf(RGBEffect effect)
{
    switch (effect) {
    case RGBEffect::staticColor:
        return {1, true};
    case RGBEffect::breathing:
        return {2, true};
    case RGBEffect::spectrum:
        return {3, false};
    case RGBEffect::wave:
        return {4, false};
    case RGBEffect::reactive:
        return {5, true};
    default:
        return {0, false};
    }
}

/// Which part of a change a request is: a button is assigned in two profiles.
int partOf(std::span<const std::uint8_t> request)
{
    return request[6] == code::setButtonMapping.commandClass ? request[7] << 8 | request[8] : request[7];
}

bool isWrite(std::span<const std::uint8_t> request)
{
    return request[7] < 0x80;
}

/// Whether a program reads back what it has changed.
bool isReadBack(std::span<const std::uint8_t> request)
{
    return request[6] == code::setButtonMapping.commandClass || request[6] == code::setLiftOff.commandClass;
}

bool isSame(const RGBSetting &setting, const SimulatedMouse::State::Light &light)
{
    const auto [effect, hasColor] = effectOf(setting.effect);
    const auto &p = light.parameters;
    return light.effect == effect && std::abs(setting.brightness * 255 - light.brightness) < 1.0 &&
           (!hasColor || p[2] == 0 || setting.color == RGBColor{p[3], p[4], p[5]});
}

} // namespace

SoakMouse::SoakMouse(std::shared_ptr<MockTestbed> testbed, const BasiliskModel &model)
    : m_model(model),
      m_testbed(std::move(testbed)),
      m_mouse(
          std::make_shared<SimulatedMouse>(*SimulatedModel::named(model.commandLineName), [hang = m_hang] {
              std::this_thread::sleep_for(milliseconds(hang->exchange(0)));
              return duration_cast<microseconds>(steady_clock::now().time_since_epoch());
          }))
{
    m_device.vendorID = razerVendorID;
    m_device.productID = rawValue(model.productID);
    m_device.transport = "USB";
    m_mouse->setAttachmentCallback([this](bool) {
        // Pulled out in the middle of a transfer: the kernel's events follow.
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (!m_mouse->isAttached()) {
                    detach();
                }
            },
            Qt::QueuedConnection);
    });
}

void SoakMouse::attach(int firstPort)
{
    detach();
    const int port = firstPort + m_attaches++ % 3;
    m_attached = std::make_unique<MockMouse>(m_testbed, m_mouse, MockMouseOptions{}, port);
    m_attached->attach();
}

void SoakMouse::detach()
{
    if (const auto attached = std::exchange(m_attached, nullptr)) {
        attached->detach();
    }
}

void SoakMouse::addFault(std::mt19937 &random)
{
    const auto upTo = [&random](int last) { return std::uniform_int_distribution(0, last)(random); };
    if (upTo(9) == 0) {
        constexpr std::array<std::uint8_t, 6> charges{0, 1, 2, 128, 254, 255};
        auto state = m_mouse->state();
        state.battery = charges.at(static_cast<std::size_t>(upTo(5)));
        state.isCharging = upTo(1) == 0;
        m_mouse->setState(std::move(state));
    }
    constexpr std::array kinds{Kind::noAnswer,       Kind::notReady,  Kind::rejected, Kind::otherCommand,
                               Kind::failedTransfer, Kind::shortRead, Kind::unplug};
    constexpr std::array errors{EIO, EPIPE, ETIMEDOUT, EPROTO, EAGAIN, EINVAL};
    constexpr std::array<std::uint8_t, 3> statuses{0x03, 0x04, 0x05};
    const auto kind = kinds.at(static_cast<std::size_t>(upTo(upTo(3) == 0 ? 6 : 5)));
    // Mostly less than the program makes up for; now and then more than all its attempts on both ways.
    const int times = kind == Kind::rejected || kind == Kind::unplug ? 1 : 1 + upTo(upTo(5) == 0 ? 24 : 3);
    // Half of them wait for a change: most of what is sent are reads.
    constexpr std::array changes{code::setDPIStages, code::setRGB, code::setBrightness,
                                 code::setButtonMapping, code::setLiftOff};
    const auto change =
        upTo(1) == 0 ? std::optional(changes.at(static_cast<std::size_t>(upTo(4)))) : std::nullopt;
    m_mouse->addFault({.kind = kind,
                       .commandClass = change ? std::optional(change->commandClass) : std::nullopt,
                       .commandID = change ? std::optional(change->commandID) : std::nullopt,
                       .skip = upTo(change ? 1 : 20),
                       .times = times,
                       .status = statuses.at(static_cast<std::size_t>(upTo(2))),
                       .error = errors.at(static_cast<std::size_t>(upTo(5)))});
}

void SoakMouse::refuseChanges()
{
    for (const auto &change : {code::setDPIStages, code::setRGB, code::setLiftOff}) {
        m_mouse->addFault({.kind = Kind::rejected,
                           .commandClass = change.commandClass,
                           .commandID = change.commandID,
                           .times = -1});
    }
}

void SoakMouse::clearFaults()
{
    *m_hang = 0;
    m_mouse->clearFaults();
}

void SoakMouse::watchWire()
{
    for (auto &transfer : m_mouse->takeTransfers()) {
        const auto about = transfer.isSet && transfer.bytes.size() >= 90 ? nameOf(transfer.bytes)
                           : m_lastRequest.empty()                       ? std::string()
                                                                         : nameOf(m_lastRequest);
        m_wire.emplace_back(about,
                            (transfer.isSet ? "  > " : "  < ") + RazerProtocol::hexPrefix(transfer.bytes) +
                                (transfer.status != 0 ? " errno " + std::to_string(transfer.status) : ""));
        if (m_wire.size() > 1000) {
            m_wire.pop_front();
        }
        if (transfer.isSet && transfer.bytes.size() < 90) {
            continue;
        }
        if (transfer.isSet) {
            ++m_requests;
            noteRequest(about, transfer);
            m_lastRequest = transfer.status == 0 ? std::move(transfer.bytes) : std::vector<std::uint8_t>();
        } else if (!m_lastRequest.empty() && transfer.status == 0) {
            transfer.bytes.resize(90); // what a short answer lacks is read as zeros
            takeAnswer(m_lastRequest, transfer.bytes);
        }
    }
}

void SoakMouse::noteRequest(const std::string &name, const SimulatedMouse::Transfer &request)
{
    if (!isWrite(request.bytes)) {
        if (const auto pending = m_readBacks.find(name); pending != m_readBacks.end()) {
            ++pending->second;
        }
        return;
    }
    if (isReadBack(request.bytes)) {
        m_readBacks[name] = 0;
    }
    // A change that never reached the mouse changes nothing, unless it is a part of one.
    if (request.status == 0 || request.bytes[6] != code::setDPIStages.commandClass) {
        ++m_open[name][partOf(request.bytes)];
    }
}

void SoakMouse::takeAnswer(std::span<const std::uint8_t> asked, std::span<const std::uint8_t> answer)
{
    if (answer[6] != asked[6] || answer[7] != asked[7]) {
        return;
    }
    const auto name = nameOf(asked);
    const bool isAccepted = answer[0] == 0x02;
    const bool isRefused = answer[0] >= 0x03;
    const bool isButton = asked[6] == code::setButtonMapping.commandClass;
    if (!isWrite(asked)) {
        // Whoever has made the change gives up after so many tries, and at a refusal.
        const auto pending = m_readBacks.find(name);
        if (pending != m_readBacks.end() && isAccepted && pending->second <= 2 * transactAttempts) {
            m_readBacks.erase(pending);
        } else if (pending != m_readBacks.end() && isRefused) {
            pending->second = 2 * transactAttempts;
        }
    } else {
        // Refused at once, most changes change nothing. Not so parts: of a button, of a brightness which is
        // to be as it was. Busy counts as accepted, and may still fail.
        auto &sent = m_open[name][partOf(asked)];
        const bool isWhole = !isButton && asked[7] != code::setBrightness.commandID;
        sent = isAccepted || (isRefused && isWhole && sent == 1) ? 0 : sent;
    }
    // A write comes back whole, a read of a light or a button with which it was about.
    const std::size_t echoed = isWrite(asked)                          ? 80
                               : isButton                              ? 3
                               : asked[6] == code::setRGB.commandClass ? 2
                                                                       : 0;
    if (isAccepted && !std::ranges::equal(asked.subspan(8, echoed), answer.subspan(8, echoed))) {
        m_misled.insert(name);
    }
}

std::string SoakMouse::wireOf(const std::string &name) const
{
    std::string text;
    int lines = 0;
    for (auto line = m_wire.rbegin(); line != m_wire.rend() && lines < 40; ++line) {
        if (line->first == name) {
            text.insert(0, '\n' + line->second);
            ++lines;
        }
    }
    return text;
}

std::set<std::string> SoakMouse::unknown()
{
    watchWire();
    auto names = m_misled;
    for (const auto &[name, reads] : m_readBacks) {
        names.insert(name);
    }
    for (const auto &[name, parts] : m_open) {
        if (std::ranges::any_of(parts, [](const auto &part) { return part.second > 0; })) {
            names.insert(name);
        }
    }
    return names;
}

void SoakMouse::forget()
{
    watchWire();
    m_misled.clear();
    m_open.clear();
    m_readBacks.clear();
}

std::set<std::string> SoakMouse::differences(const DeviceState &state, std::optional<Int> liftOff) const
{
    const auto held = m_mouse->state();
    std::set<std::string> names;
    const bool isSameStages = std::ranges::equal(state.dpiStages, held.dpiStages, {}, &DPIStage::dpi) &&
                              state.currentDPIStage + 1 == held.activeStage;
    if (!isSameStages) {
        names.insert("DPI stages");
    }
    for (const auto &[zone, light] : held.lights) {
        if (!state.rgbSettings.contains(zone) || !isSame(state.rgbSettings.at(zone), light)) {
            names.insert(lightName(zone));
        }
    }
    for (const auto &[button, action] : defaultButtonMappings(m_device)) {
        const auto found = state.buttonMappings.find(button);
        if (found == state.buttonMappings.end() ||
            found->second.toButtonFunction() != held.buttons.at(std::tuple(0, button, false))) {
            names.insert(buttonName(button));
        }
    }
    if (liftOff != Int{held.liftOff}) {
        names.insert("lift-off distance");
    }
    return names;
}

bool SoakMouse::isBattery(std::optional<Int> level, bool isCharging) const
{
    const auto &capabilities = m_device.capabilities();
    const auto held = m_mouse->state();
    return !capabilities.hasBattery || (level && std::abs(*level - held.battery * 100 / 255) <= 1 &&
                                        isCharging == (capabilities.reportsCharging && held.isCharging));
}

} // namespace kelmoth
