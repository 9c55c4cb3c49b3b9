#include "CLI/DiagnosticLog.h"
#include "CLI/Output.h"
#include "CLI/Table.h"
#include "Tests/CLI/MemoryFile.h"

#include <gmock/gmock.h>

namespace kelmoth {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr Terminal trueColor{.hasColor = true, .hasTrueColor = true};

TEST(TableTest, AlignsWhatTheTerminalShows)
{
    Table table;
    table.addRow({{"e\u0301te\u0301"}, {"1", Style::plain, true}, {"a"}});
    table.addRow({{"鼠标"}, {"100", Style::plain, true}, {}});
    table.addRow({{"x\x1b[31my"}, {}, {"c", Style::good}});
    EXPECT_EQ(table.render({}, 1), " e\u0301te\u0301        1  a\n"
                                   " 鼠标     100\n"
                                   " x␛[31my       c\n");
    // Colour adds no columns.
    EXPECT_EQ(table.render(trueColor, 1), " e\u0301te\u0301        1  a\n"
                                          " 鼠标     100\n"
                                          " x␛[31my       \x1b[32mc\x1b[0m\n");
}

TEST(TableTest, ShowsASwatchOnlyWhereItsColourCanBeShown)
{
    Table table;
    table.addRow({{"#102030", Style::plain, false, RGBColor{0x10, 0x20, 0x30}}, {"a"}});
    table.addRow({{"none"}, {"b"}});
    EXPECT_EQ(table.render(trueColor), "\x1b[48;2;16;32;48m  \x1b[0m #102030  a\nnone        b\n");
    EXPECT_EQ(table.render({.hasColor = true}), "#102030  a\nnone     b\n");
}

TEST(OutputTest, JSONSteersNoTerminal)
{
    const MemoryFile file;
    Output output(file.descriptor(), STDERR_FILENO);
    const std::string name = "caf\u00e9 \u009b31m\x1b[0m \x7f \xff";
    EXPECT_TRUE(output.printJSON({{"name", name}}));
    EXPECT_EQ(file.text(), R"({"name":"caf\u00e9 \u009b31m\u001b[0m \u007f \ufffd"})"
                           "\n");
}

TEST(DiagnosticLogTest, KeepsTheLatestLinesUntilTheyAreWanted)
{
    const MemoryFile file;
    DiagnosticLog log(file.descriptor(), false);
    for (std::size_t i = 0; i < DiagnosticLog::capacity + 3; ++i) {
        log.write("line " + std::to_string(i) + "\x1b\n");
    }
    EXPECT_EQ(file.text(), "");
    log.show();
    EXPECT_THAT(file.text(), AllOf(HasSubstr("(3 earlier lines"), Not(HasSubstr("line 2␛")),
                                   HasSubstr("line 3␛␊\n"), HasSubstr("line 66␛␊\n")));
}

} // namespace
} // namespace kelmoth
