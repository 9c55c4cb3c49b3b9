#pragma once

#include <QString>

#include <string>
#include <vector>

namespace kelmoth {

/// One string literal of a source file, escapes undone; literals that the compiler joins are one.
struct SourceLiteral {
    QString text;
    QString before; ///< the code before it on its line, or on the last line with any; no comments, no spaces
                    ///< at its end
    std::string place; ///< "file:line"

    bool isArgumentOf(const char *function) const
    {
        return before.endsWith(QLatin1String(function) + QLatin1Char('('));
    }
};

/// The literals of a C++ or QML source, those in comments left out.
std::vector<SourceLiteral> sourceLiterals(const QString &source, const QString &fileName);

} // namespace kelmoth
