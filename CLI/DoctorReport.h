#pragma once

#include "CLI/ExitStatus.h"
#include "CLI/Terminal.h"
#include "Platform/Linux/Doctor.h"

#include <nlohmann/json.hpp>

#include <string>

namespace kelmoth {

/// `done` when a mouse can be configured, `noPermission` when one could but for the access right, else
/// `noMouse`.
ExitStatus verdict(const Examination &examination);

/// Everything that was found, for people: facts, problems with their remedies, and the verdict.
std::string renderExamination(const Examination &examination, const Terminal &terminal);

/// The same for programs.
nlohmann::ordered_json examinationJSON(const Examination &examination);

} // namespace kelmoth
