#pragma once

#include "App/AppDelegate.h"
#include "App/Arguments.h"
#include "App/Composition.h"
#include "Core/HID/BatteryNotifier.h"
#include "UI/Views/ContentModel.h"
#include "UI/Views/PanelTranslator.h"

#include <memory>
#include <optional>

namespace kelmoth {

/// The application: owns the panel's model and the app delegate. Main thread, from the application object's
/// creation to the event loop's end.
class KelmothApp {
public:
    /// Runs the program. Exit status: 0 done, 1 failed, 2 wrong usage.
    static int main(int argc, char **argv);

    /// The composition's platform must be installed.
    explicit KelmothApp(const Composition &composition);

    /// Runs until the user, the session or a signal ends it. `opensPanel` shows the panel at once. Does not
    /// return when the display is lost: the process then exits cleanly.
    int run(bool opensPanel);

private:
    std::unique_ptr<Popover> makePopover();
    AppDelegate::Parts parts();
    void finish();
    static void finishWithoutDisplay();

    static KelmothApp *running; ///< null outside `run`

    const Composition &m_composition;
    PanelTranslator m_translator;
    std::optional<ContentModel> m_model; ///< created with the popover, kept until the end
    AppDelegate m_appDelegate;
    BatteryNotifier m_batteryNotifier;
};

} // namespace kelmoth
