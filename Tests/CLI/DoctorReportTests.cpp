#include "CLI/DoctorReport.h"

#include <gmock/gmock.h>

#include <cerrno>

namespace kelmoth {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

HIDNodeFact protocolNode()
{
    return {.node = "/dev/hidraw3",
            .vendorID = 0x1532,
            .productID = 0x0099,
            .name = "Razer Razer Basilisk V3",
            .transport = "USB",
            .interface = 3,
            .driver = "hid-generic",
            .access = 0,
            .maxFeatureReportSize = 91};
}

TEST(DoctorReportTest, JudgesByTheNodeThatTakesCommands)
{
    const struct {
        const char *why;
        void (*change)(HIDNodeFact &);
        ExitStatus expected;
    } rows[]{
        {"all is well", [](HIDNodeFact &) {}, ExitStatus::done},
        {"forbidden", [](HIDNodeFact &node) { node.access = EACCES; }, ExitStatus::noPermission},
        {"broken", [](HIDNodeFact &node) { node.access = EIO; }, ExitStatus::noMouse},
        {"another interface", [](HIDNodeFact &node) { node.maxFeatureReportSize = 16; }, ExitStatus::noMouse},
        {"no feature reports", [](HIDNodeFact &node) { node.maxFeatureReportSize = {}; },
         ExitStatus::noMouse},
        {"Bluetooth", [](HIDNodeFact &node) { node.transport = "Bluetooth"; }, ExitStatus::noMouse},
        {"another vendor", [](HIDNodeFact &node) { node.vendorID = 0x068E; }, ExitStatus::noMouse},
        {"another model", [](HIDNodeFact &node) { node.productID = 0x0084; }, ExitStatus::noMouse},
        {"no 16-bit ID", [](HIDNodeFact &node) { node.productID = 0x10099; }, ExitStatus::noMouse},
    };
    for (const auto &row : rows) {
        Examination examination;
        examination.hidNodes = {protocolNode()};
        row.change(examination.hidNodes.front());
        EXPECT_EQ(verdict(examination), row.expected) << row.why;
        EXPECT_EQ(examinationJSON(examination)["canConfigure"], row.expected == ExitStatus::done) << row.why;
        // One mouse that works makes up for another that does not.
        examination.hidNodes.push_back(protocolNode());
        EXPECT_EQ(verdict(examination), ExitStatus::done) << row.why;
    }
    EXPECT_EQ(verdict({}), ExitStatus::noMouse);
}

TEST(DoctorReportTest, ShowsFactsProblemsAndRemediesHarmlessly)
{
    auto node = protocolNode();
    node.name = "Mouse\x1b[2J\nA mouse can be configured.";
    node.access = EACCES;
    Examination examination;
    examination.usbDevices.emplace_back().node = "/dev/bus/usb/001/004";
    examination.hidNodes = {node};
    examination.problems = {{DoctorProblem::Kind::noAccess, "One is refused.", "Install it."},
                            {DoctorProblem::Kind::rulesMissing, "The rule is missing.", "Install it."}};
    const auto text = renderExamination(examination, {});
    EXPECT_THAT(text, AllOf(HasSubstr("/dev/bus/usb/001/004"), HasSubstr("/dev/hidraw3"),
                            HasSubstr("interface 3, takes commands"), HasSubstr("no permission"),
                            HasSubstr("udev rule: not installed"),
                            HasSubstr("One is refused.\nThe rule is missing.\n  Install it.\n"),
                            HasSubstr("you may not open it"), Not(HasSubstr("\x1b")),
                            Not(HasSubstr("\nA mouse can"))));

    const auto json = examinationJSON(examination);
    EXPECT_EQ(json["hidNodes"][0]["name"], *node.name);
    EXPECT_EQ(json["hidNodes"][0]["takesCommands"], true);
    EXPECT_EQ(json["rulesFile"], nullptr);
    EXPECT_EQ(json["problems"][1]["kind"], "rulesMissing");
}

} // namespace
} // namespace kelmoth
