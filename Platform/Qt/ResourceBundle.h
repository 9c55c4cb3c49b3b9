#pragma once

#include "Platform/Bundle.h"

#include <QString>
#include <QTranslator>

#include <map>

namespace kelmoth {

/// A bundle in a directory, on disk or built into the program (":/…"). Each folder "CODE.lproj" is a
/// language, with the compiled string table "Localizable.qm"; without it the language has no texts.
class ResourceBundle : public Bundle {
public:
    ResourceBundle(QString identifier, QString version, QString directory);

    std::string identifier() const override { return m_identifier.toStdString(); }
    std::string version() const override { return m_version.toStdString(); }

    /// The user's preferred languages that have a folder here; "en", the language of the keys, when none has.
    std::vector<std::string> preferredLocalizations() const override;
    std::optional<std::string> pathForResource(std::string_view name, std::string_view type) const override;
    std::shared_ptr<const Bundle> bundleAtPath(const std::string &path) const override;
    std::string localizedString(std::string_view key, std::string_view value) const override;

private:
    QString m_identifier;
    QString m_version;
    QString m_directory;
    QTranslator m_table; ///< empty unless this is a language folder
    mutable std::map<std::string, std::shared_ptr<const Bundle>> m_opened; ///< by path
};

} // namespace kelmoth
