#pragma once

#include "CLI/Session.h"

namespace kelmoth {

/// Why a listed mouse cannot be configured by this user now.
enum class Obstacle { none, bluetooth, otherVendor, unsupported, unplugged, permission, unreachable };

template <> struct RawValues<Obstacle> {
    /// `text` is for people.
    struct Row {
        std::string_view rawValue;
        std::string_view text;
    };
    static constexpr std::array table{
        Row{"none", ""},
        Row{"bluetooth", "Bluetooth: use the cable or the receiver"},
        Row{"other-vendor", "another vendor"},
        Row{"unsupported", "unknown model"},
        Row{"unplugged", "unplugged"},
        Row{"permission", "no permission: \"kelmothctl doctor\" says what to do"},
        Row{"unreachable", "cannot be opened"},
    };
};

/// A listed mouse.
struct ListedMouse {
    RazerDevice device;
    std::string path; ///< of its device node; empty once the mouse has gone
    Obstacle obstacle = Obstacle::none;
};

/// The mouse as it is now. Opens its device node, sends nothing.
ListedMouse look(const RazerDevice &device, const HIDMonitor &monitor);

/// The mice that are meant, in attach order. Opens device nodes, sends nothing.
std::vector<ListedMouse> listMice(Session *session);

/// Whether a mouse has been pulled out. The system may not have told the monitor yet.
bool isGone(const RazerDevice &device, const HIDMonitor &monitor);

/// Has the battery of a mouse read, until the deadline at most, and takes over what the list then holds.
/// False when the mouse has gone.
QCoro::Task<bool> readBattery(ListedMouse *mouse, HIDMonitor *monitor, QDeadlineTimer deadline);

/// The failure when the system gives no way to find mice.
inline const Failure noView{Failure::Code::failed, "the system does not show its mice"};

/// "no supported mouse is attached", or that none with the product ID that was asked for is.
std::string noneAttached(const Options &options);

/// The mouse to talk to: the first of a kind that can be configured, as the manager of its settings chooses,
/// if it can be opened.
std::variant<ListedMouse, Failure> chooseMouse(Session *session);

} // namespace kelmoth
