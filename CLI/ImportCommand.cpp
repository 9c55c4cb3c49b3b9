#include "CLI/ImportCommand.h"

#include "CLI/FullRead.h"
#include "CLI/ImportPlan.h"
#include "CLI/MouseSummary.h"
#include "CLI/Session.h"
#include "CLI/SettingsFile.h"

#include <CLI/CLI.hpp>
#include <QFile>

#include <unistd.h>

namespace kelmoth {

namespace {

/// No record of settings comes near it.
constexpr qint64 largestFile = qint64{1024} * 1024;

/// Reads the settings of a file. None when there are none in it; `failure` then says why.
std::optional<SettingsFile> readSettings(const std::string &path, std::string *failure)
{
    QFile file(QFile::decodeName(path.c_str()));
    const bool isOpen =
        path == "-" ? file.open(STDIN_FILENO, QIODevice::ReadOnly) : file.open(QIODevice::ReadOnly);
    QByteArray text;
    while (isOpen && text.size() <= largestFile) {
        const auto more = file.read(largestFile + 1 - text.size());
        if (more.isEmpty()) {
            break;
        }
        text += more;
    }
    std::string reason;
    if (file.error() != QFile::NoError) {
        reason = file.errorString().toStdString();
    } else if (text.size() > largestFile) {
        reason = "too large for the settings of a mouse";
    } else if (auto settings = decodeSettingsFile(text.toStdString(), &reason)) {
        return settings;
    }
    *failure = (path == "-" ? "standard input" : path) + ": " + reason;
    return std::nullopt;
}

/// How a step went.
struct Result {
    const char *word; ///< "done", "failed" or "unsupported"
    std::string reason;
};

QCoro::Task<Result> perform(ImportStep step, RazerDevice device, Session *session)
{
    Result result{"done", {}};
    if (step.kind == ImportStep::Kind::unsupported) {
        result = {"unsupported", step.reason};
    } else if (step.kind == ImportStep::Kind::unanswered) {
        result = {"failed", "the mouse did not say what it has now"};
    } else {
        session->dismissToasts();
        const bool isDone = co_await step.write(session->manager());
        if (!isDone) {
            result = {"failed", session->refusal(device)};
        }
    }
    co_return result;
}

std::string shown(const nlohmann::ordered_json &value)
{
    if (value.is_null()) {
        return "none";
    }
    return value.is_string() ? value.get<std::string>() : value.dump();
}

/// "DPI of stage 2: 800 -> 900: done"
std::string resultLine(const ImportStep &step, const Result &result)
{
    const std::string word(result.word);
    return step.setting + ": " + shown(step.from) + " -> " + shown(step.to) + ": " +
           (word == "unsupported" ? "not supported by this mouse" : word) +
           (result.reason.empty() ? "" : " (" + result.reason + ')');
}

nlohmann::ordered_json resultJSON(const ImportStep &step, const Result &result)
{
    nlohmann::ordered_json json{
        {"setting", step.setting}, {"from", step.from}, {"to", step.to}, {"result", result.word}};
    json["reason"] = nullptr;
    if (!result.reason.empty()) {
        json["reason"] = result.reason;
    }
    return json;
}

/// Writes what differs and says of each setting how it went. True when nothing failed.
QCoro::Task<bool> performAll(std::vector<ImportStep> steps, RazerDevice device, Session *session)
{
    const bool isJSON = session->options().json;
    auto results = nlohmann::ordered_json::array();
    bool isWell = true;
    for (const auto &step : steps) {
        const Result result = co_await perform(step, device, session);
        isWell = isWell && std::string_view(result.word) != "failed";
        if (isJSON) {
            results.push_back(resultJSON(step, result));
        } else {
            session->output().print(session->terminal().styled(resultLine(step, result), Style::plain) +
                                    '\n');
        }
    }
    if (isJSON) {
        session->output().printJSON(results);
    } else if (steps.empty()) {
        session->output().print("the mouse has these settings already\n");
    }
    co_return isWell;
}

} // namespace

std::string_view ImportCommand::details() const
{
    return R"(Takes a file as "kelmothctl export" writes it, and writes each setting that differs
and that the model supports. Each is reported; when one fails the exit status is 1,
and 5 when the mouse took all of it, but it could not be saved.

Example:
  kelmothctl import basilisk.json)";
}

void ImportCommand::declare(CLI::App &parser)
{
    parser.add_option("FILE", m_file, "The file to read, or - for standard input")
        ->required()
        ->option_text("REQUIRED");
}

QCoro::Task<ExitStatus> ImportCommand::run(Session *session)
{
    std::string obstacle;
    const auto settings = readSettings(m_file, &obstacle);
    if (!settings) {
        co_return session->report({ExitStatus::usage, obstacle});
    }
    const auto choice = chooseMouse(session->monitor(), session->options().productID);
    if (const auto *none = std::get_if<Failure>(&choice)) {
        co_return session->report(*none);
    }
    const RazerDevice device = std::get<MouseSummary>(choice).device;
    ChangeLock lock;
    const auto failure = co_await readToChange(session, device, &lock);
    if (failure) {
        co_return session->report(*failure);
    }
    const auto &manager = session->manager();
    const auto steps = importPlan(*settings, answeredSettings(manager, manager.unanswered()), device);
    const bool isWell = co_await performAll(steps, device, session);
    const auto loss = session->flushDefaults();
    if (loss) {
        session->report(*loss);
    }
    if (!isWell) {
        co_return session->report({ExitStatus::failed, "the mouse did not take every setting", true});
    }
    co_return loss ? loss->status : ExitStatus::done;
}

} // namespace kelmoth
