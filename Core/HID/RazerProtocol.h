#pragma once

#include "Core/Device/RazerDevice.h"
#include "Core/Device/Types.h"
#include "Core/HID/RazerCommand.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace kelmoth {

/// Result of matching a received report to a request.
enum class ResponseStatus {
    success,  ///< the mouse accepted the command; the report carries its answer
    rejected, ///< the mouse answered this command with a failure code
    noMatch,  ///< no usable answer to this request yet: too short, for another command, or not final
};

/// The 90-byte vendor reports. Pure functions, any thread. Parsers take reports that `classify` accepted;
/// for one of fewer than 90 bytes they give no result.
///
/// The frame: byte 0 status (0 in a request), 1 transaction id, 2-3 remaining packets (0), 4 protocol type
/// (0), 5 data size, 6 command class, 7 command id (bit 7 set reads, clear writes), 8-87 arguments, 88 CRC
/// (XOR of bytes 2 to 87), 89 reserved (0). Values of several bytes are big-endian.
namespace RazerProtocol {

inline constexpr std::size_t reportSize = 90;

/// Offsets of the frame's fields.
namespace offset {
inline constexpr std::size_t status = 0;
inline constexpr std::size_t transactionID = 1;
inline constexpr std::size_t dataSize = 5;
inline constexpr std::size_t commandClass = 6;
inline constexpr std::size_t commandID = 7;
inline constexpr std::size_t arguments = 8;
inline constexpr std::size_t buttonFunction = 11; ///< seven bytes, in both button-mapping commands
inline constexpr std::size_t crc = 88;
} // namespace offset

/// Class, id and data size of a command: bytes 6, 7 and 5.
struct CommandCode {
    std::uint8_t commandClass;
    std::uint8_t commandID;
    std::uint8_t dataSize;
};

namespace code {
inline constexpr CommandCode setDPIStages{0x04, 0x06, 0x26};
inline constexpr CommandCode getDPIStages{0x04, 0x86, 0x26};
inline constexpr CommandCode setRGB{0x0F, 0x02, 0x06}; ///< 0x09 for the effects with a colour
inline constexpr CommandCode getRGB{0x0F, 0x82, 0x0C};
inline constexpr CommandCode setBrightness{0x0F, 0x04, 0x03};
inline constexpr CommandCode getBrightness{0x0F, 0x84, 0x03};
inline constexpr CommandCode prepareLiftOff{0x0B, 0x03, 0x03};
inline constexpr CommandCode setLiftOff{0x0B, 0x0B, 0x04};
inline constexpr CommandCode getLiftOff{0x0B, 0x8B, 0x04};
inline constexpr CommandCode getBatteryLevel{0x07, 0x80, 0x02};
inline constexpr CommandCode getChargingStatus{0x07, 0x84, 0x02};
inline constexpr CommandCode setButtonMapping{0x02, 0x0C, 0x0A};
inline constexpr CommandCode getButtonMapping{0x02, 0x8C, 0x0A};
} // namespace code

/// Byte 9 of the lighting commands.
std::uint8_t ledID(RGBZone zone);

/// Byte 9 of the button-mapping commands.
std::uint8_t buttonID(MouseButton button);

/// XOR of bytes 2 to 87; the report must hold at least 88 bytes.
std::uint8_t crc(std::span<const std::uint8_t> report);

/// The complete request for a command. Values out of range are clamped; it cannot fail. Of the device only
/// the model is used: it determines the transaction id of the DPI-stage commands.
Data createReport(const RazerCommand &command, const RazerDevice &device);

/// Stage count, active stage (clamped to the stages there are) and each stage's DPI, on both axes.
Data createSetDPIStagesReport(std::span<const DPIStage> stages, Int activeStage, const RazerDevice &device);
/// Effect and, where the effect has one, colour.
Data createSetRGBReport(RGBZone zone, const RGBSetting &setting, const RazerDevice &device);
/// Brightness times 255, clamped and truncated; 255 for a brightness that is not a number.
std::uint8_t brightnessByte(double brightness);
/// Byte 10: `brightnessByte`.
Data createSetBrightnessReport(RGBZone zone, double brightness, const RazerDevice &device);
/// Profile clamped to 0 to 5, button, layer, and the action's seven bytes at 11 to 17.
Data createSetButtonMappingReport(MouseButton button, const ButtonAction &action, Int profile,
                                  bool hypershift, const RazerDevice &device);
/// Profile clamped to 0 to 5, button, layer; the answer carries the assignment in bytes 11 to 17.
Data createGetButtonMappingReport(MouseButton button, Int profile, bool hypershift,
                                  const RazerDevice &device);

/// Whether `response` answers `request`: by length, by the echoed class and id, and by the status byte. The
/// transaction id, data size and CRC of an answer are ignored.
ResponseStatus classify(std::span<const std::uint8_t> response, std::span<const std::uint8_t> request);

/// The DPI stages as the mouse holds them.
struct DPIStages {
    Int active = 0;        ///< 0-based
    std::vector<Int> dpis; ///< resolution of each stage, 1 to 5 stages

    bool operator==(const DPIStages &) const = default;
};

/// Reads an accepted answer to `getDPIStages`: byte 9 active stage (1-based), byte 10 count, stage i's DPI
/// big-endian at 12 + 7i. None for a count outside 1 to 5, an active stage that does not exist, or a DPI of
/// 0.
std::optional<DPIStages> parseDPIStages(std::span<const std::uint8_t> response);

/// Reads accepted answers to `getRGB` (byte 10 effect code, byte 13 not 0 where a colour stands in 14-16) and
/// `getBrightness` (byte 10) of one zone; `fallbackColor` stands in where the mouse gave no colour. Speed is
/// 0.5. None for an effect code above 5.
std::optional<RGBSetting> parseRGB(std::span<const std::uint8_t> effect,
                                   std::span<const std::uint8_t> brightness, RGBColor fallbackColor);

/// Reads an accepted answer to `getLiftOff`: the level in byte 11, 0 to 2; none when byte 10 is not 1 or the
/// level is larger.
std::optional<Int> parseLiftOff(std::span<const std::uint8_t> response);

/// Reads an accepted answer to `getButtonMapping`: the assignment in bytes 11 to 17.
std::optional<ButtonAction> parseButtonMapping(std::span<const std::uint8_t> response);

/// Reads an accepted answer to `getBatteryLevel`: byte 9 of 255, as percent, truncated.
std::optional<Int> parseBatteryLevel(std::span<const std::uint8_t> response);

/// Reads an accepted answer to `getChargingStatus`: byte 9 equals 1.
bool parseChargingStatus(std::span<const std::uint8_t> response);

/// The first 16 bytes of a report for the log: "00 1F 00 …".
std::string hexPrefix(std::span<const std::uint8_t> report);

} // namespace RazerProtocol

} // namespace kelmoth
