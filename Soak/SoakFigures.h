#pragma once

#include "Soak/SoakErrands.h"
#include "Soak/SoakMouse.h"

#include <nlohmann/json.hpp>

#include <chrono>
#include <memory>
#include <utility>
#include <vector>

namespace kelmoth {

/// What a run has counted.
struct SoakFigures {
    int rounds = 0;
    int storms = 0;
    int attaches = 0; ///< within storms
    int openings = 0;
    int compared = 0;
    int excused = 0; ///< settings whose state nobody can know
    int disagreements = 0;
    int faults = 0; ///< of the program: whatever is wrong, disagreements too
    int quits = 0;  ///< while a transfer hung
    std::chrono::milliseconds slowestQuit{0};

    /// To be called after each round, with the process of the panel.
    void readMemory(qint64 process);

    /// Whether the panel's memory has grown by more than a tenth since its first rounds.
    bool memoryGrows() const;

    /// `panel` is what the panel said last.
    void print(std::chrono::seconds duration, const std::vector<std::unique_ptr<SoakMouse>> &mice,
               const SoakErrands &errands, const nlohmann::ordered_json &panel) const;

private:
    using Memory = std::pair<long, long>; ///< RSS and PSS in KB

    const Memory &warmMemory() const;

    std::vector<Memory> memory; ///< of the panel, after each round
};

} // namespace kelmoth
