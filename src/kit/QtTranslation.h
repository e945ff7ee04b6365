#pragma once

#include <QObject>
#include <QTranslator>

namespace vormel {

class AppSettings;

/// Lets what Qt itself shows (dialogs for files, menus of text fields) speak the language of the settings, also what is
/// open while that changes. Without Qt's own translation on this machine it stays English. The settings must outlive
/// it.
class QtTranslation final : public QObject
{
    Q_OBJECT

public:
    explicit QtTranslation(const AppSettings& settings, QObject* parent = nullptr);

private:
    void follow();

    const AppSettings& m_settings;
    QTranslator m_italian; ///< leaves the application when it is destroyed
};

} // namespace vormel
