#pragma once

#include <cstdint>
#include <functional>
#include <optional>

namespace kelmoth {

/// Which scheme of colours the user's desktop asks programs for.
enum class ColorScheme { noPreference, dark, light };

/// How the user's desktop wants programs to look. What a desktop does not say is absent or false. Main
/// thread; no call waits.
class DesktopSettings {
public:
    virtual ~DesktopSettings() = default;

    virtual ColorScheme colorScheme() const = 0;

    /// 0xRRGGBB; none when the desktop names none.
    virtual std::optional<std::uint32_t> accentColor() const = 0;

    /// Whether nothing shall move on screen.
    virtual bool reduceMotion() const = 0;

    /// Whether nothing shall shine through.
    virtual bool reduceTransparency() const = 0;

    /// How much larger than usual texts shall be, 0.5 to 3; 1 when the desktop does not say.
    virtual double textScale() const = 0;

    /// Called on the main thread whenever one of the settings has changed. One handler: it replaces the
    /// last one; an empty one ends the calls.
    virtual void setChangeHandler(std::function<void()> handler) = 0;
};

} // namespace kelmoth
