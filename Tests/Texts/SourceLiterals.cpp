#include "Tests/Texts/SourceLiterals.h"

#include <QRegularExpression>

namespace kelmoth {

namespace {

/// A token that matters: a comment (what is included is none of our texts either), a literal, or a stretch of
/// code without either.
const QRegularExpression &token()
{
    static const QRegularExpression expression(
        QStringLiteral(
            R"RE((?<comment>//[^\n]*|#include[^\n]*|/\*.*?\*/)|R"\((?<raw>.*?)\)"|"(?<text>(?:[^"\\\n]|\\.)*)")RE"
            R"RE(|(?<=\w)'|'(?:[^'\\\n]|\\.)*'|[^#/"'R]+|.)RE"),
        QRegularExpression::DotMatchesEverythingOption);
    return expression;
}

QString unescaped(const QString &text)
{
    static const QRegularExpression escape(QStringLiteral(R"(\\(u[0-9a-fA-F]{4}|.))"));
    QString result;
    qsizetype from = 0;
    for (auto matches = escape.globalMatch(text); matches.hasNext();) {
        const auto match = matches.next();
        result += text.mid(from, match.capturedStart() - from);
        from = match.capturedEnd();
        const auto code = match.captured(1);
        if (code.size() > 1) {
            result += QChar(code.mid(1).toUShort(nullptr, 16));
        } else {
            result += code == QLatin1String("n") ? QStringLiteral("\n") : code;
        }
    }
    return result + text.mid(from);
}

} // namespace

std::vector<SourceLiteral> sourceLiterals(const QString &source, const QString &fileName)
{
    std::vector<SourceLiteral> literals;
    QString code; // since the last literal
    bool isFirst = true;
    for (auto matches = token().globalMatch(source); matches.hasNext();) {
        const auto match = matches.next();
        if (match.hasCaptured(QStringLiteral("comment"))) {
            continue;
        }
        const bool isRaw = match.hasCaptured(QStringLiteral("raw"));
        if (!isRaw && !match.hasCaptured(QStringLiteral("text"))) {
            code += match.captured();
            continue;
        }
        const auto text =
            isRaw ? match.captured(QStringLiteral("raw")) : unescaped(match.captured(QStringLiteral("text")));
        const auto between = code.trimmed();
        if (!isFirst && (between.isEmpty() || between == QLatin1String("+"))) {
            literals.back().text += text;
        } else {
            const auto line = source.left(match.capturedStart()).count(QLatin1Char('\n')) + 1;
            literals.push_back({text, between.section(QLatin1Char('\n'), -1),
                                (fileName + QLatin1Char(':') + QString::number(line)).toStdString()});
        }
        isFirst = false;
        code.clear();
    }
    return literals;
}

} // namespace kelmoth
