#pragma once

namespace kelmoth {

/// Keeps the numbers of the standard streams from being given to a device node when the program was started
/// without them: what is then written as output would reach the mouse. To be called before any file is
/// opened.
void reserveStandardStreams();

} // namespace kelmoth
