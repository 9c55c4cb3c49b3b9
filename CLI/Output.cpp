#include "CLI/Output.h"

#include "Platform/FileDescriptor.h"
#include "Platform/Log.h"

#include <cerrno>
#include <iostream>
#include <string>

namespace kelmoth {

Output::Output(int standardOutput, int standardError)
    : m_standardOutput(standardOutput), m_standardError(standardError)
{
}

bool Output::print(std::string_view text)
{
    m_hasPrinted = true;
    if (m_error == 0) {
        m_error = writeAll(m_standardOutput, text);
    }
    return m_error == 0;
}

bool Output::printJSON(const nlohmann::ordered_json &document)
{
    return print(document.dump(-1, ' ', true, nlohmann::ordered_json::error_handler_t::replace) + '\n');
}

bool Output::ask(std::string_view question) const
{
    writeAll(m_standardError, printable(question) + " [y/N] ");
    std::string answer;
    std::getline(std::cin, answer);
    return answer.starts_with('y') || answer.starts_with('Y');
}

void Output::complain(std::string_view text)
{
    m_complaints += "kelmothctl: ";
    while (true) {
        const auto end = text.find('\n');
        m_complaints += printable(text.substr(0, end)) + '\n';
        if (end == std::string_view::npos) {
            break;
        }
        text.remove_prefix(end + 1);
    }
}

void Output::fail(const Failure &failure, bool json)
{
    complain(failure.remedy.empty() ? failure.message : failure.message + '\n' + failure.remedy);
    if (json && !m_hasPrinted) {
        printJSON({{"schema", schema}, {"error", errorJSON(failure)}});
    }
}

void Output::showComplaints()
{
    // Ignore errors: there is no other channel to report them.
    writeAll(m_standardError, m_complaints);
    m_complaints.clear();
}

bool Output::isReaderGone() const
{
    return m_error == EPIPE;
}

} // namespace kelmoth
