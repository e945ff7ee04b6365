#pragma once

#include "SealedAnswer.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusObjectPath>
#include <QObject>
#include <QString>
#include <QVariantMap>

namespace vormel::fixtures {

/// Stands in for the desktop's window in which the user gives the keyring's password. Says nothing until it is told to.
class Prompter final : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.gnome.keyring.internal.Prompter")

public:
    explicit Prompter(QDBusConnection bus);

    /// How many windows the user has seen.
    [[nodiscard]] int shown() const { return m_shown; }
    /// Does one wait for the user?
    [[nodiscard]] bool isOpen() const { return m_isOpen; }
    void dismiss();
    void answer(const QByteArray& password);

public Q_SLOTS:
    Q_SCRIPTABLE void BeginPrompting(const QDBusObjectPath& callback);
    Q_SCRIPTABLE void PerformPrompt(const QDBusObjectPath& callback, const QString& type, const QVariantMap& properties,
                                    const QString& exchange);
    Q_SCRIPTABLE void StopPrompting(const QDBusObjectPath& callback);

private:
    void tell(const QString& method, const QVariantList& arguments);

    QDBusConnection m_bus;
    SealedAnswer m_seal;
    QString m_asker;
    QString m_callback;
    int m_shown = 0;
    bool m_isOpen = false;
};

} // namespace vormel::fixtures
