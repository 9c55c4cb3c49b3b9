#pragma once

#include "Platform/Qt/QtPlatform.h"
#include "Tests/Manager/DeviceManagerFixture.h"
#include "Tests/Services/FakeDesktopSettings.h"
#include "Tests/Services/FakeLoginItemService.h"
#include "UI/Views/ContentModel.h"

#include <QSignalSpy>

namespace kelmoth {

/// A panel without a screen on simulated mice.
class PanelTest : public DeviceManagerTest {
protected:
    PanelTest()
    {
        Platform platform;
        platform.log = log;
        platform.userDefaults = defaults;
        platform.mainBundle = resourceMainBundle();
        Platform::setCurrent(std::move(platform));
        defaults->setInteger("languageMode", 2);
    }

    /// "stranger" is a mouse of the other maker.
    SimulatedModel simulated(const std::string &name) override
    {
        auto model = DeviceManagerTest::simulated(name == "stranger" ? "basilisk-v3" : name);
        if (name == "stranger") {
            model.vendorID = otherVendorID;
        }
        return model;
    }

    /// Plugs mice in and shows a new panel.
    void open(const std::vector<std::string> &models)
    {
        panel.reset();
        plugIn(models);
        panel = std::make_unique<ContentModel>(*manager, *toasts, preferences, appearance, loginItem);
        panel->panelShown();
        (void)log->takeLines();
    }

    /// Waits for the write that a page has started.
    static void finishWrite(const TabModel &page)
    {
        while (page.isApplying()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }

    /// The lines of the log since the last look, without those of the wire.
    std::vector<std::string> takeLines()
    {
        auto lines = log->takeLines();
        std::erase_if(lines, [](const std::string &line) { return line.find(" USB ") != std::string::npos; });
        return lines;
    }

    /// The mouse refuses the next command of this kind.
    void refuse(int commandClass, int commandID)
    {
        mouse().addFault({.kind = Kind::rejected,
                          .commandClass = static_cast<std::uint8_t>(commandClass),
                          .commandID = static_cast<std::uint8_t>(commandID)});
    }

    /// The values of that name in every row.
    static std::vector<std::string> texts(const RowsModel *rows, const QByteArray &name)
    {
        std::vector<std::string> all;
        for (int row = 0; row < rows->count(); ++row) {
            all.push_back(rows->value(row, name).toString().toStdString());
        }
        return all;
    }

    /// The rows of which this is true.
    static std::vector<int> rowsThatAre(const RowsModel *rows, const QByteArray &name)
    {
        std::vector<int> all;
        for (int row = 0; row < rows->count(); ++row) {
            if (rows->value(row, name).toBool()) {
                all.push_back(row);
            }
        }
        return all;
    }

    std::shared_ptr<RecordedLog> log = std::make_shared<RecordedLog>();
    std::shared_ptr<FakeDesktopSettings> desktop = std::make_shared<FakeDesktopSettings>();
    std::shared_ptr<FakeLoginItemService> loginService = std::make_shared<FakeLoginItemService>();
    Preferences preferences{defaults};
    Appearance appearance{preferences, desktop};
    LoginItem loginItem{loginService, defaults};
    std::unique_ptr<ContentModel> panel;
};

/// A panel on one of its pages.
template <ContentModel::AppTab page> class TabTest : public PanelTest {
protected:
    void open(const std::vector<std::string> &models)
    {
        PanelTest::open(models);
        panel->selectTab(page);
        QCoreApplication::processEvents();
    }
};

} // namespace kelmoth
