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
    std::string path; ///< path of its device node; empty once it is detached
    Obstacle obstacle = Obstacle::none;
};

/// The current state of the mouse. Opens its device node, sends nothing.
ListedMouse look(const RazerDevice &device, const HIDMonitor &monitor);

/// The selected mice, in attach order. Opens device nodes, sends nothing.
std::vector<ListedMouse> listMice(Session *session);

/// Whether a mouse has been unplugged, also before the system reports it to the monitor.
bool isGone(const RazerDevice &device, const HIDMonitor &monitor);

/// Reads the battery of a mouse, until the deadline at most, and updates the mouse from the list. False when
/// it is detached.
QCoro::Task<bool> readBattery(ListedMouse *mouse, HIDMonitor *monitor, QDeadlineTimer deadline);

/// The failure when the system cannot enumerate mice.
inline const Failure noView{Failure::Code::failed, "the system does not show its mice"};

/// "no supported mouse is attached", or none with the requested product ID.
std::string noneAttached(const Options &options);

/// The mouse to configure: the first configurable one, as DeviceManager chooses, if it can be opened.
std::variant<ListedMouse, Failure> chooseMouse(Session *session);

} // namespace kelmoth
