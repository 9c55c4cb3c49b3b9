#pragma once

#include "CLI/Failure.h"

namespace kelmoth {

/// The program's two output streams, written without a buffer of its own: a line is out when the call
/// returns. Main thread.
class Output {
public:
    /// Both descriptors stay the caller's.
    explicit Output(int standardOutput, int standardError);

    /// Writes a finished text to standard output. After a failure nothing more is written.
    /// False when the text did not get out.
    bool print(std::string_view text);

    /// Writes one JSON document as one line of ASCII: whatever a name holds, no terminal is steered by it.
    bool printJSON(const nlohmann::ordered_json &document);

    /// Whether anything has been printed.
    bool hasPrinted() const { return m_hasPrinted; }

    /// Shows a question at once, and whether the answer, a line of standard input, begins with a yes.
    bool ask(std::string_view question) const;

    /// Keeps a message for the user until the end, where diagnostic lines do not bury it. Line ends within
    /// the text stay; everything else that could steer a terminal is made visible.
    void complain(std::string_view text);

    /// Complains of a failure; in JSON too, when nothing has been printed yet and a program reads.
    void fail(const Failure &failure, bool json);

    /// Writes the messages to standard error, each after the program's name.
    void showComplaints();

    /// The errno of the first failed write to standard output; 0 while there was none.
    int error() const { return m_error; }

    /// Whether the one who read standard output has gone: not a failure, but a reason to stop.
    bool isReaderGone() const;

    int standardOutput() const { return m_standardOutput; }

private:
    int m_standardOutput;
    int m_standardError;
    int m_error = 0;
    bool m_hasPrinted = false;
    std::string m_complaints;
};

} // namespace kelmoth
