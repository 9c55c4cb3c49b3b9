#include "Platform/Log.h"
#include "Tests/Core/RecordedLog.h"

#include <gmock/gmock.h>

namespace kelmoth {
namespace {

TEST(Log, KeepsLinesOfAnyLengthAsTheyAre)
{
    const auto recorded = RecordedLog::install();
    const std::string name(5000, '%');
    log("✅ %s (PID: 0x%04X)", name.c_str(), 0x99U);
    EXPECT_THAT(recorded->takeLines(), testing::ElementsAre("✅ " + name + " (PID: 0x0099)"));
    Platform::setCurrent({});
    log("nobody listens");
}

TEST(Log, PrintsTextFromHardwareHarmlessly)
{
    EXPECT_EQ(printable("Mysz ✅ 100% %s"), "Mysz ✅ 100% %s");
    EXPECT_EQ(printable("a\x1B[2Jb\nc\td\x7F"), "a␛[2Jb␊c␉d\uFFFD");
    EXPECT_EQ(printable("\xC2\x9B"
                        "2J"),
              "\uFFFD"
              "2J");                                        // the 8-bit control sequence introducer
    EXPECT_EQ(printable("bad\xFF\xC3"), "bad\uFFFD\uFFFD"); // not UTF-8
    EXPECT_EQ(printable("\u202Eevil\u2066\u2028"), "\uFFFDevil\uFFFD\uFFFD"); // turns the text around
    EXPECT_EQ(printable(std::string_view("\0", 1)), "␀");
}

} // namespace
} // namespace kelmoth
