#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QVariantMap>

namespace vormel {

/// The program as the desktop's shell knows it: org.freedesktop.Application on a bus, under the program's own name. A
/// later start brings the running program forward through it, with the token that allows its window to take the focus,
/// and hands over what it was started with. UI thread only.
class DesktopActivation final : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    enum class Answer
    {
        reached,
        nobody, ///< has the name
        silent, ///< somebody has it, who may or may not have heard
    };

    /// Takes the name. Without a bus, or where the name is taken, nothing is ever requested.
    explicit DesktopActivation(QDBusConnection bus, QObject* parent = nullptr);
    ~DesktopActivation() override;

    /// Asks the program that has the name on this bus to come forward, and to open the addresses, of which there may be
    /// none. Waits at most two seconds for its answer.
    [[nodiscard]] static Answer askRunning(const QDBusConnection& bus, const QStringList& uris, const QString& token);

Q_SIGNALS:
    /// The token may be empty.
    void showRequested(const QString& token);
    /// Whoever sent them; nobody has looked at them yet.
    void openRequested(const QStringList& uris, const QString& token);

public Q_SLOTS:
    Q_SCRIPTABLE void Activate(const QVariantMap& platformData);
    Q_SCRIPTABLE void Open(const QStringList& uris, const QVariantMap& platformData);
    /// The program offers no actions of its own to the shell.
    Q_SCRIPTABLE void ActivateAction(const QString& name, const QVariantList& parameters,
                                     const QVariantMap& platformData);

private:
    QDBusConnection m_bus;
    bool m_hasName = false;
};

} // namespace vormel
