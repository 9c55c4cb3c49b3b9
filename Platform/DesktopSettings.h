#pragma once

#include <cstdint>
#include <functional>
#include <optional>

namespace kelmoth {

/// The colour scheme that the user's desktop prefers.
enum class ColorScheme { noPreference, dark, light };

/// Appearance settings of the user's desktop. Settings that the desktop does not provide are absent or false.
/// Main thread; no call blocks.
class DesktopSettings {
public:
    virtual ~DesktopSettings() = default;

    virtual ColorScheme colorScheme() const = 0;

    /// 0xRRGGBB; none when the desktop has none.
    virtual std::optional<std::uint32_t> accentColor() const = 0;

    /// Whether animations are to be avoided.
    virtual bool reduceMotion() const = 0;

    /// Whether transparency is to be avoided.
    virtual bool reduceTransparency() const = 0;

    /// Text scaling factor, 0.5 to 3; 1 when the desktop does not provide it.
    virtual double textScale() const = 0;

    /// Sets the handler, called on the main thread after each change of a setting. It replaces the last
    /// handler; an empty one removes it.
    virtual void setChangeHandler(std::function<void()> handler) = 0;
};

} // namespace kelmoth
