#pragma once

#include "CLI/Failure.h"

namespace kelmoth {

/// The program's two output streams, unbuffered: a line is written when the call returns. Main thread.
class Output {
public:
    /// Both descriptors stay the caller's.
    explicit Output(int standardOutput, int standardError);

    /// Writes a text to standard output. Writes nothing after a failure. False when it was not written.
    bool print(std::string_view text);

    /// Writes one JSON document as one line of ASCII, so that no name in it can control a terminal.
    bool printJSON(const nlohmann::ordered_json &document);

    /// Whether anything has been printed.
    bool hasPrinted() const { return m_hasPrinted; }

    /// Asks a question; true when the answer, a line of standard input, begins with yes.
    bool ask(std::string_view question) const;

    /// Keeps a message for the end, after all diagnostic lines. Line ends stay; other control characters are
    /// made visible.
    void complain(std::string_view text);

    /// Reports a failure; also in JSON if that is requested and nothing has been printed yet.
    void fail(const Failure &failure, bool json);

    /// Writes the messages to standard error, each after the program's name.
    void showComplaints();

    /// The errno of the first failed write to standard output; 0 while there was none.
    int error() const { return m_error; }

    /// Whether the reader of standard output is gone: not a failure, but a reason to stop.
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
