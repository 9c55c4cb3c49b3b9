#pragma once

#include "UI/Views/ContentModel.h"

#include <optional>
#include <random>

class QWindow;

namespace kelmoth {

/// What somebody at the panel does, chosen at random: the same after the same seed. What the controls call of
/// the panel's models is called. Main thread.
class SoakGestures {
public:
    /// What a control was asked for; whether it did anything its page tells.
    struct Gesture {
        const TabModel *page;
        const char *what; ///< for messages
        int commands;     ///< for the mouse, at most
    };

    void seed(unsigned seed) { m_random.seed(seed); }

    /// A number from 0 to `last`, 0 for negative ones.
    int upTo(int last);

    /// Uses a control of the page that is shown. None when that asks nothing of the mouse.
    std::optional<Gesture> use(ContentModel &panel);

    /// Goes elsewhere in the panel, or hides its window. True when another page may be shown.
    bool turnPages(ContentModel &panel, QWindow &window);

private:
    std::optional<Gesture> useDPI(ContentModel &panel);
    std::optional<Gesture> useLight(ContentModel &panel);
    std::optional<Gesture> useButtons(ContentModel &panel);
    std::optional<Gesture> useSettings(ContentModel &panel);
    double fraction();

    std::mt19937 m_random;
};

} // namespace kelmoth
