#include "Core/Services/LoginItem.h"
#include "Platform/Simulated/MemoryDefaults.h"
#include "Tests/Core/RecordedLog.h"
#include "Tests/Services/FakeLoginItemService.h"

#include <gtest/gtest.h>

namespace kelmoth {

using enum LoginItemStatus;

constexpr auto pathKey = "loginItemRegisteredPath";
const std::string here = "/Applications/Link/Kelmoth";
using Calls = std::vector<std::string>;
using Path = std::optional<std::string>;

TEST(LoginItemTest, RegistersUnregistersAndRepairsTheEntry)
{
    const auto log = RecordedLog::install();
    const auto defaults = std::make_shared<MemoryDefaults>();
    const auto service = std::make_shared<FakeLoginItemService>();
    LoginItem item(service, defaults);
    enum Step { on, off, start };
    struct Row {
        Step step;
        LoginItemStatus before;
        Path storedBefore;
        Calls calls;
        Path storedAfter;
        Calls said = {}; ///< by the error of a switch, by the log at the start
        Path registerFailure = {};
        Path unregisterFailure = {};
        bool isInApplications = true;
    };
    const std::string move = "Move Kelmoth to the Applications folder to launch it at login.";
    const auto mended = "✅ Launch at Login now points to " + here;
    const std::string failed = "❌ Launch at Login repair failed: ";
    const std::vector<Row> rows{
        {on, notRegistered, {}, {"register"}, here},
        {on, enabled, "/old", {}, here},
        {on, requiresApproval, {}, {"register"}, here},
        {on, notRegistered, "/old", {}, "/old", {move}, {}, {}, false},
        {on, notRegistered, "/old", {"register"}, "/old", {"no"}, "no"},
        {off, enabled, here, {"unregister"}, {}},
        {off, notRegistered, here, {}, {}, {}, {}, {}, false},
        {off, notFound, here, {"unregister"}, here, {"no"}, {}, "no"},
        {start, enabled, here, {}, here},
        {start, enabled, "/old", {"unregister", "register"}, here, {mended}},
        {start, enabled, {}, {"unregister", "register"}, here, {mended}},
        {start, enabled, "/old", {}, "/old", {}, {}, {}, false},
        {start, requiresApproval, "/old", {}, "/old"},
        {start, enabled, "/old", {"unregister", "register"}, "/old", {failed + "full"}, "full"},
        {start, enabled, "/old", {"unregister"}, "/old", {failed + "busy"}, {}, "busy"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(&row - rows.data());
        defaults->values.clear();
        if (row.storedBefore) {
            defaults->setData(pathKey, *row.storedBefore);
        }
        service->now = row.before;
        service->isInApplications = row.isInApplications;
        service->registerFailure = row.registerFailure;
        service->unregisterFailure = row.unregisterFailure;
        auto said = Calls();
        if (row.step == start) {
            item.repairIfNeeded();
            said = log->takeLines();
        } else {
            item.setEnabled(row.step == on, [&said](const auto &error) {
                said = error ? Calls{localizedDescription(*error)} : Calls();
            });
        }
        EXPECT_EQ(service->takeCalls(), row.calls);
        EXPECT_EQ(defaults->dataForKey(pathKey), row.storedAfter);
        EXPECT_EQ(said, row.said);
    }
    Platform::setCurrent({});
}

TEST(LoginItemTest, WithoutAServiceIsOffAndCannotBeSwitchedOn)
{
    LoginItem item(nullptr, std::make_shared<MemoryDefaults>());
    item.repairIfNeeded();
    for (const bool on : {true, false}) {
        bool isDone = !on;
        item.setEnabled(on, [&](const auto &error) { isDone = !error; });
        EXPECT_EQ(isDone, !on);
    }
    EXPECT_EQ(item.status(), notRegistered);
}

} // namespace kelmoth
