#pragma once

#include <QString>
#include <gtest/gtest.h>

namespace kelmoth {

/// While it lives, warnings of QML and of the toolkit fail the test.
class NoWarnings {
public:
    NoWarnings() { s_previous = qInstallMessageHandler(&NoWarnings::message); }
    ~NoWarnings() { qInstallMessageHandler(s_previous); }
    NoWarnings(const NoWarnings &) = delete;
    NoWarnings &operator=(const NoWarnings &) = delete;

private:
    static void message(QtMsgType type, const QMessageLogContext &context, const QString &text)
    {
        if (type != QtDebugMsg && type != QtInfoMsg) {
            ADD_FAILURE() << text.toStdString();
        }
        s_previous(type, context, text);
    }

    static inline QtMessageHandler s_previous = nullptr;
};

} // namespace kelmoth
