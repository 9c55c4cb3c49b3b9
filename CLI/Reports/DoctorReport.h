#pragma once

#include "CLI/Session.h"
#include "Platform/Linux/Doctor.h"

namespace kelmoth {

/// The text of Resources/70-kelmoth.rules.
extern const std::string_view udevRule;

/// What was found out, and on what.
struct Diagnosis {
    Examination examination;
    bool isSimulated = false; ///< nothing of this system has been looked at
    ExitStatus verdict = ExitStatus::noMouse;
};

/// Everything that was found, for people: the system, facts, problems with their remedies, and the verdict.
std::string renderDiagnosis(const Diagnosis &diagnosis, const Terminal &terminal);

/// The same for programs.
nlohmann::ordered_json diagnosisJSON(const Diagnosis &diagnosis);

} // namespace kelmoth
