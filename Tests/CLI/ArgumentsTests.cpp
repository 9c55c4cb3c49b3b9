#include "CLI/Arguments.h"

#include <gmock/gmock.h>

namespace kelmoth {
namespace {

using testing::HasSubstr;

class ArgumentsTest : public testing::Test {
protected:
    ParsedArguments parse(std::vector<const char *> words) const
    {
        words.insert(words.begin(), "kelmothctl");
        return parseArguments(static_cast<int>(words.size()), words.data(), commands);
    }

    const Commands commands = allCommands();
};

TEST_F(ArgumentsTest, OptionsStandOnEitherSideOfTheCommand)
{
    const std::vector<std::vector<const char *>> lines{
        {"--json", "-v", "--simulate", "a,b", "--product", "0x00aA", "read"},
        {"read", "--product=170", "--simulate=a,b", "--json", "--verbose"},
        {"--json", "--product", "0170", "read", "-v", "--simulate", "a,b"},
    };
    for (const auto &line : lines) {
        const auto parsed = parse(line);
        ASSERT_TRUE(std::holds_alternative<Invocation>(parsed)) << std::get<UsageError>(parsed).message;
        const auto &invocation = std::get<Invocation>(parsed);
        EXPECT_EQ(invocation.command->name(), "read");
        EXPECT_TRUE(invocation.options.json);
        EXPECT_TRUE(invocation.options.verbose);
        EXPECT_EQ(invocation.options.simulate, "a,b");
        EXPECT_EQ(invocation.options.productID, 0x00AA);
    }
    const auto plain = std::get<Invocation>(parse({"watch"})).options;
    EXPECT_FALSE(plain.json || plain.verbose || plain.simulate || plain.productID);
}

TEST_F(ArgumentsTest, NonsenseIsNamed)
{
    const struct {
        std::vector<const char *> words;
        const char *message;
    } rows[]{
        {{}, "list, read, watch, doctor"},
        {{"lst"}, "\"lst\""},
        {{"list", "read"}, "read"},
        {{"list", "--colour"}, "--colour"},
        {{"--product"}, "--product"},
        {{"--product", "0x", "list"}, "\"0x\""},
        {{"--product", "0x10000", "list"}, "0x10000"},
        {{"--product", "-1", "list"}, "--product"},
        {{"--product", "12a", "list"}, "12a"},
        {{"--product", "1", "--product", "2", "list"}, "--product"},
        {{"list", "--json=maybe"}, "--json"},
    };
    for (const auto &row : rows) {
        const auto parsed = parse(row.words);
        ASSERT_TRUE(std::holds_alternative<UsageError>(parsed)) << row.message;
        EXPECT_THAT(std::get<UsageError>(parsed).message, HasSubstr(row.message));
    }
}

TEST_F(ArgumentsTest, EveryCommandHelpsWithAnExample)
{
    for (const auto &command : commands) {
        EXPECT_THAT(std::get<Information>(parse({command->name().data(), "-h"})).text,
                    HasSubstr("Example:\n  kelmothctl " + std::string(command->name())));
    }
}

} // namespace
} // namespace kelmoth
