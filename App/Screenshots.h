#pragma once

#include <optional>
#include <string>
#include <vector>

namespace kelmoth {

/// Draws the panel in its states, with simulated mice, in each language and scheme, as
/// DIRECTORY/SCENE-LANGUAGE-SCHEME.png; a picture that would only differ by rounding stays as it is. All
/// scenes without a `wanted` one. On the platform `stillPlatform`, installed; names each picture on standard
/// output. None on success, else what went wrong. Main thread, without a screen.
std::optional<std::string> drawScreenshots(const std::string &directory,
                                           const std::vector<std::string> &wanted);

} // namespace kelmoth
