#pragma once

#include "Platform/DesktopSettings.h"

namespace kelmoth {

/// A desktop whose settings a test changes.
class FakeDesktopSettings : public DesktopSettings {
public:
    ColorScheme scheme = ColorScheme::noPreference;
    std::optional<std::uint32_t> accent;
    bool isMotionReduced = false;
    bool isTransparencyReduced = false;
    double scaleOfTexts = 1;
    std::function<void()> handler;

    ColorScheme colorScheme() const override { return scheme; }
    std::optional<std::uint32_t> accentColor() const override { return accent; }
    bool reduceMotion() const override { return isMotionReduced; }
    bool reduceTransparency() const override { return isTransparencyReduced; }
    double textScale() const override { return scaleOfTexts; }
    void setChangeHandler(std::function<void()> newHandler) override { handler = std::move(newHandler); }
};

} // namespace kelmoth
