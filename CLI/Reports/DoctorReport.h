#pragma once

#include "CLI/Session.h"
#include "Platform/Linux/Doctor.h"

namespace kelmoth {

/// The text of Resources/70-kelmoth.rules.
extern const std::string_view udevRule;

/// The result of an examination, and its system.
struct Diagnosis {
    Examination examination;
    bool isSimulated = false; ///< this system has not been examined
    ExitStatus verdict = ExitStatus::noMouse;
};

/// The report as text: the system, facts, problems with remedies, and the verdict.
std::string renderDiagnosis(const Diagnosis &diagnosis, const Terminal &terminal);

/// The report as JSON.
nlohmann::ordered_json diagnosisJSON(const Diagnosis &diagnosis);

} // namespace kelmoth
