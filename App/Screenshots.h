#pragma once

#include <optional>
#include <string>
#include <vector>

namespace kelmoth {

/// Draws the panel's scenes, with simulated mice, in each language and scheme, to
/// DIRECTORY/SCENE-LANGUAGE-SCHEME.png; keeps a picture that differs only by rounding. Draws all scenes when
/// `wanted` is empty. Needs `stillPlatform` installed; prints the name of each picture. None on success, else
/// the reason. Main thread, offscreen.
std::optional<std::string> drawScreenshots(const std::string &directory,
                                           const std::vector<std::string> &wanted);

} // namespace kelmoth
