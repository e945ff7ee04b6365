#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

namespace vormel {

class AppSettings;

/// Shows the help window, of which there is at most one. It is closed with its owner.
class HelpWindowController final : public QObject
{
    Q_OBJECT

public:
    /// The settings must outlive it. The window is centred on the screen of its owner, and speaks of Filestore by its
    /// domain.
    HelpWindowController(const AppSettings& settings, QString filestore, QWidget& owner);
    ~HelpWindowController() override;

    /// Brings the window forward, and makes it first if it is not open.
    void showWindow();

private:
    [[nodiscard]] QWidget* makeWindow() const;

    const AppSettings& m_settings;
    QString m_filestore;
    QWidget& m_owner;
    QPointer<QWidget> m_window; ///< null while closed
};

} // namespace vormel
