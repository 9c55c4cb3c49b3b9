#include "CLI/DoctorCommand.h"

#include "CLI/BatteryReadings.h"
#include "CLI/DoctorReport.h"
#include "CLI/MouseSummary.h"
#include "CLI/Session.h"

namespace kelmoth {

namespace {

/// Simulated mice have nothing of this system between them and the user, and it is not looked at: what it
/// would show is not what the other commands are given.
ExitStatus examineSimulation(Session &session)
{
    const auto choice = chooseMouse(session.monitor(), session.options().productID);
    const auto *none = std::get_if<Failure>(&choice);
    if (session.options().json) {
        session.output().printJSON(
            nlohmann::ordered_json{{"simulated", true}, {"canConfigure", none == nullptr}});
    } else {
        session.output().print("These mice are simulated: nothing of this system has been looked at.\n");
    }
    return none ? session.report(*none) : ExitStatus::done;
}

void keepOnly(std::uint16_t productID, Examination &examination)
{
    const auto isOther = [productID](const auto &fact) { return fact.productID != productID; };
    std::erase_if(examination.usbDevices, isOther);
    std::erase_if(examination.hidNodes, isOther);
}

} // namespace

std::string_view DoctorCommand::details() const
{
    return R"(Looks at device nodes, permissions, the udev rule and drivers. Sends nothing to a
mouse and changes nothing. The exit status is 0 when a mouse can be configured.

Example:
  kelmothctl doctor)";
}

QCoro::Task<ExitStatus> DoctorCommand::run(Session *session)
{
    if (session->options().simulate) {
        co_return examineSimulation(*session);
    }
    auto examination = examine();
    if (session->options().productID) {
        keepOnly(*session->options().productID, examination);
    }
    if (session->options().json) {
        session->output().printJSON(examinationJSON(examination));
    } else {
        session->output().print(renderExamination(examination, session->terminal()));
    }
    co_return verdict(examination);
}

} // namespace kelmoth
