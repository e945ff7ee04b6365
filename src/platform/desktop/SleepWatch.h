#pragma once

#include <QDBusConnection>
#include <QObject>

namespace vormel {

/// Hears from the login manager when the machine wakes up. Where there is none, nothing is ever heard. UI thread only.
class SleepWatch final : public QObject
{
    Q_OBJECT

public:
    /// Nothing before follow().
    explicit SleepWatch(QObject* parent = nullptr);

    /// The bus is the system's, or one that plays it.
    void follow(QDBusConnection bus);

Q_SIGNALS:
    /// The machine has slept, and sleeps no more.
    void wokeUp();

private Q_SLOTS:
    void prepareForSleep(bool isGoingToSleep);
};

} // namespace vormel
