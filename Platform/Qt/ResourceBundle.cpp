#include "Platform/Qt/ResourceBundle.h"

#include <QDir>
#include <QLocale>

#include <algorithm>

namespace kelmoth {

namespace {

constexpr std::string_view folderType = "lproj";

/// The translation context of all texts.
constexpr auto tableName = "Localizable";

} // namespace

ResourceBundle::ResourceBundle(QString identifier, QString version, QString directory)
    : m_identifier(std::move(identifier)), m_version(std::move(version)), m_directory(std::move(directory))
{
    const auto table = QLatin1String(tableName) + QStringLiteral(".qm");
    if (QDir(m_directory).exists(table)) {
        (void)m_table.load(table, m_directory); // an unusable table is an empty one
    }
}

std::vector<std::string> ResourceBundle::preferredLocalizations() const
{
    std::vector<std::string> preferred;
    for (const QString &language : QLocale::system().uiLanguages()) {
        const auto code = language.section(QLatin1Char('-'), 0, 0).toLower().toStdString();
        if (std::ranges::find(preferred, code) == preferred.end() && pathForResource(code, folderType)) {
            preferred.push_back(code);
        }
    }
    if (preferred.empty()) {
        preferred.emplace_back("en");
    }
    return preferred;
}

std::optional<std::string> ResourceBundle::pathForResource(std::string_view name, std::string_view type) const
{
    const QDir directory(m_directory);
    const auto file = QString::fromStdString(std::string(name) + "." + std::string(type));
    if (!directory.exists(file)) {
        return std::nullopt;
    }
    return directory.filePath(file).toStdString();
}

std::shared_ptr<const Bundle> ResourceBundle::bundleAtPath(const std::string &path) const
{
    const auto directory = QString::fromStdString(path);
    if (!QDir(directory).exists()) {
        return nullptr;
    }
    auto &bundle = m_opened[path];
    if (!bundle) {
        bundle = std::make_shared<ResourceBundle>(m_identifier, m_version, directory);
    }
    return bundle;
}

std::string ResourceBundle::localizedString(std::string_view key, std::string_view value) const
{
    // Only the main bundle holds language folders.
    if (const auto folder = pathForResource(preferredLocalizations().front(), folderType)) {
        return bundleAtPath(*folder)->localizedString(key, value);
    }
    const auto text = m_table.translate(tableName, std::string(key).c_str());
    return text.isEmpty() ? std::string(value) : text.toStdString();
}

} // namespace kelmoth
