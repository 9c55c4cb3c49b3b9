#include "CLI/SettingPlan.h"

#include <CLI/CLI.hpp>
#include <QFile>

#include <unistd.h>

namespace kelmoth {

namespace {

/// Far larger than any record of settings.
constexpr qint64 largestFile = qint64{1024} * 1024;

/// Writes the settings of a file to a mouse.
class ImportCommand : public MouseCommand {
public:
    ImportCommand()
        : MouseCommand({"import", "Give a mouse the settings of a file",
                        "Each setting that differs and that the model supports is written and reported."},
                       Need::changing)
    {
    }

    void declare(CLI::App &parser) override
    {
        parser.add_option("FILE", m_file, "The file to read, or - for standard input")
            ->required()
            ->option_text("REQUIRED");
    }

protected:
    std::optional<Failure> prepare() override
    {
        QFile file(QFile::decodeName(m_file.c_str()));
        const bool isOpen =
            m_file == "-" ? file.open(STDIN_FILENO, QIODevice::ReadOnly) : file.open(QIODevice::ReadOnly);
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
        } else {
            m_settings = decodeSettingsFile(text.toStdString(), &reason);
        }
        const auto name = m_file == "-" ? "standard input" : m_file;
        return m_settings ? std::nullopt : std::optional(Failure{Failure::Code::usage, name + ": " + reason});
    }

    QCoro::Task<std::optional<Failure>> work(Mouse *mouse) override
    {
        return takeSteps(planSettings(*m_settings, mouse->reading, mouse->device()), mouse);
    }

private:
    std::string m_file; ///< "-" stands for standard input
    std::optional<SettingsFile> m_settings;
};

} // namespace

constinit const CommandFactory importCommand = [] { return CommandPointer(new ImportCommand); };

} // namespace kelmoth
