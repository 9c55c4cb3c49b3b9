#pragma once

namespace kelmoth {

/// Opens missing standard streams, so that no device node gets their descriptor numbers: output would then
/// reach the mouse. Call it before any file is opened.
void reserveStandardStreams();

} // namespace kelmoth
