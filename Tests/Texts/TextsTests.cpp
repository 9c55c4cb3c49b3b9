#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QXmlStreamReader>
#include <gmock/gmock.h>

namespace kelmoth {
namespace {

using testing::IsEmpty;

const auto root = QStringLiteral(KELMOTH_ROOT "/");

using Faults = std::vector<std::string>;
using Table = QMap<QString, QString>;

QString readFile(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
    return QString::fromUtf8(file.readAll());
}

/// A string table; what is not a finished entry is reported.
Table table(const QString &text, Faults &faults)
{
    Table table;
    QString key;
    QXmlStreamReader xml(text);
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        if (xml.name() == QLatin1String("source")) {
            key = xml.readElementText();
        } else if (xml.name() == QLatin1String("translation")) {
            const bool isFinished = !xml.attributes().hasAttribute(QStringLiteral("type"));
            const auto translation = xml.readElementText();
            if (!isFinished || translation.trimmed().isEmpty() || table.contains(key)) {
                faults.push_back("unfinished or twice: " + key.toStdString());
            }
            table.insert(key, translation);
        }
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
    return table;
}

Table tableOf(const char *language)
{
    Faults faults;
    const auto path = QStringLiteral("Resources/%1.lproj/Localizable.ts").arg(QLatin1String(language));
    const auto result = table(readFile(root + path), faults);
    EXPECT_THAT(faults, IsEmpty()) << language;
    EXPECT_FALSE(result.isEmpty());
    return result;
}

/// The placeholders of a format and the line ends of a text, in their order; what is filled in may begin a
/// line.
QStringList skeleton(const QString &text)
{
    static const QRegularExpression part(QStringLiteral("%%|%lld|%[@a-z0-9]|\n(?!%)|•|[:.!?…]$"));
    QStringList parts;
    for (auto matches = part.globalMatch(text); matches.hasNext();) {
        parts.append(matches.next().captured());
    }
    return parts;
}

/// One string literal of a source file, escapes undone; literals that the compiler joins are one.
struct SourceLiteral {
    QString file;
    QString function; ///< that it is the first argument of; empty: of none
    QString text;
};

/// The literals of a C++ or QML source. Those in comments, and what is included, are left out.
std::vector<SourceLiteral> sourceLiterals(QString source, const QString &file)
{
    static const QRegularExpression noise(
        QStringLiteral(
            R"RE(("(?:[^"\\\n]|\\.)*")|//[^\n]*|/\*.*?\*/|#include[^\n]*|(?<!\w)'(?:[^'\\\n]|\\.)*')RE"),
        QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression seam(QStringLiteral(R"RE((?<!\\)"\s*\+?\s*")RE"));
    static const QRegularExpression literal(QStringLiteral(R"RE((?:([\w:]+)\(\s*)?"((?:[^"\\]|\\.)*)")RE"));
    static const QRegularExpression escape(QStringLiteral(R"RE(\\(.))RE"));
    source.replace(noise, QStringLiteral("\\1")).replace(seam, QString());
    std::vector<SourceLiteral> literals;
    for (auto matches = literal.globalMatch(source); matches.hasNext();) {
        const auto match = matches.next();
        auto text = match.captured(2).replace(QStringLiteral("\\n"), QStringLiteral("\n"));
        literals.push_back({file, match.captured(1), text.replace(escape, QStringLiteral("\\1"))});
    }
    return literals;
}

/// Where texts for the user stand in the sources.
std::vector<SourceLiteral> literalsOfTheProgram()
{
    std::vector<SourceLiteral> literals;
    for (const auto *room : {"App", "Core", "UI"}) {
        QDirIterator files(root + QLatin1String(room),
                           {QStringLiteral("*.h"), QStringLiteral("*.cpp"), QStringLiteral("*.qml")},
                           QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const auto path = files.next();
            const auto found = sourceLiterals(readFile(path), path.mid(root.size()));
            literals.insert(literals.end(), found.begin(), found.end());
        }
    }
    EXPECT_GT(literals.size(), 300U);
    return literals;
}

bool matches(const QString &text, const char *pattern)
{
    return QRegularExpression(QLatin1String(pattern)).match(text).hasMatch();
}

/// Whether a literal is a text that the user will read. In the files that hold texts, without handing them to
/// a translating function, every one of them begins with a capital letter, and hardly anything else does but
/// names of products, fonts and things between programs, which are the same in every language.
bool isShown(const SourceLiteral &literal)
{
    return matches(literal.function, "^(qsTr|L10n::text|L10n::formatted)$") ||
           (matches(literal.file,
                    R"(^(UI/|Core/Device/|Core/Services/|Core/HID/DeviceManagerWriters.cpp))") &&
            !matches(literal.function, "^(log|resolvedUrl)$") && matches(literal.text, R"(^\p{Lu}[\s\S])") &&
            !matches(literal.text,
                     "^(Razer Basilisk V3.*|Basilisk V3.*|Kelmoth[A-Z].*|Unknown|[A-Z]+_[A-Z_]+|"
                     "Invalid number of keys.*|Quicksand|Nunito|Comfortaa|Varela Round)$"));
}

Faults untranslated(const std::vector<SourceLiteral> &literals, const Table &table)
{
    Faults faults;
    for (const auto &literal : literals) {
        if (isShown(literal) && !table.contains(literal.text)) {
            faults.push_back((literal.file + QLatin1String(": ") + literal.text).toStdString());
        }
    }
    return faults;
}

TEST(Texts, EveryTextIsTranslatedAndEveryEntryUsed)
{
    const auto literals = literalsOfTheProgram();
    const auto polish = tableOf("pl");
    EXPECT_THAT(untranslated(literals, polish), IsEmpty());
    for (const auto &key : polish.keys()) {
        EXPECT_NE(std::ranges::count(literals, key, &SourceLiteral::text), 0) << key.toStdString();
    }
}

TEST(Texts, TranslationsHaveTheFormOfTheirKeys)
{
    const auto english = tableOf("en");
    const auto polish = tableOf("pl");
    EXPECT_EQ(english.keys(), polish.keys());
    for (auto entry = polish.begin(); entry != polish.end(); ++entry) {
        const auto key = entry.key().toStdString();
        EXPECT_EQ(english[entry.key()].toStdString(), key);
        EXPECT_EQ(skeleton(entry.value()), skeleton(entry.key())) << key;
        EXPECT_TRUE(entry.value().front().isUpper() || !entry.key().front().isUpper()) << key;
        EXPECT_EQ(entry.value(), entry.value().trimmed()) << key;
    }
}

TEST(Texts, DetectsFaults)
{
    const auto source = QStringLiteral(R"SOURCE(
        // "In a comment" /* "In another" */
        #include "Core/Device/File.h"
        text: qsTr("lower case") + "Plain \"text\"\n" /* between */
              "goes on"
        const auto icon = "gearshape.fill", character = '"', million = 1'000'000; log("Said %d", 'x');
        "Basilisk V3", qsTr(isOn ? "On" : "Known")
    )SOURCE");
    EXPECT_THAT(untranslated(sourceLiterals(source, QStringLiteral("UI/F")),
                             {{QStringLiteral("Known"), QStringLiteral("x")}}),
                testing::ElementsAre("UI/F: lower case", "UI/F: Plain \"text\"\ngoes on", "UI/F: On"));

    Faults faults;
    table(QStringLiteral("<TS><message><source>A</source><translation>a</translation></message>"
                         "<message><source>A</source><translation>b</translation></message>"
                         "<message><source>B</source><translation type='unfinished'>b</translation></message>"
                         "<message><source>C</source><translation/></message></TS>"),
          faults);
    EXPECT_EQ(faults.size(), 3U);
}

} // namespace
} // namespace kelmoth
