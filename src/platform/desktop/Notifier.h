#pragma once

#include "platform/async/Lifetime.h"
#include "platform/desktop/BusCalls.h"

#include <QObject>
#include <QString>

#include <functional>
#include <vector>

namespace vormel {

/// A word that the desktop shows for a while, beside all windows. The texts are plain.
struct Notification
{
    struct Action
    {
        QString key;
        QString label;
    };

    /// What a click on the notification itself means.
    static inline const QString clicked = QStringLiteral("default");

    QString title;
    QString text;
    QString category; ///< as the desktop knows it: "transfer.complete"
    std::vector<Action> actions;
};

/// Has the desktop show notifications.
class Notifier
{
public:
    /// What the user chose, and the token that allows a window to take the focus for it; that may be empty.
    using Chosen = std::function<void(const QString& action, const QString& token)>;

    Notifier() = default;
    Notifier(const Notifier&) = delete;
    Notifier& operator=(const Notifier&) = delete;
    virtual ~Notifier() = default;

    /// Returns at once; failures are not reported. `chosen` is called at most once, and never after this has gone.
    virtual void show(Notification notification, Chosen chosen) = 0;
};

/// Through org.freedesktop.Notifications on a bus. Where nobody answers there, nothing is shown. UI thread only.
class DesktopNotifier final : public QObject, public Notifier
{
    Q_OBJECT

public:
    explicit DesktopNotifier(QDBusConnection bus);

    void show(Notification notification, Chosen chosen) override;

private:
    Q_SLOT void actionInvoked(uint id, const QString& action, const QDBusMessage& message);
    Q_SLOT void activationToken(uint id, const QString& token, const QDBusMessage& message);
    Q_SLOT void notificationClosed(uint id, uint reason, const QDBusMessage& message);

    /// A notification that is shown: by which server, under which number.
    struct Shown
    {
        QString server;
        uint id = 0;
        Chosen chosen;
        QString token;
    };

    void listen();
    QCoro::Task<> tell(Notification notification, Chosen chosen);
    [[nodiscard]] std::vector<Shown>::iterator find(uint id, const QDBusMessage& message);

    BusCalls m_calls;
    bool m_isListening = false;
    std::vector<Shown> m_shown; ///< the oldest first
    Lifetime m_lifetime;        ///< ends first: calls that are given up go on for a last time
};

} // namespace vormel
