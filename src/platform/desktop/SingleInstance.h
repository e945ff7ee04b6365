#pragma once

#include "platform/storage/FileDescriptor.h"

#include <QObject>

#include <memory>

class QSocketNotifier;

namespace vormel {

/// One running program per user: holds a lock that the system releases with the process, however that ends. A later
/// start finds the lock taken and can ask the running program to come forward, and hand it a text. UI thread only.
class SingleInstance final : public QObject
{
    Q_OBJECT

public:
    /// The folder is made when needed; lock and socket lie in it. Without a usable folder every start counts as the
    /// first.
    explicit SingleInstance(const QString& folder, QObject* parent = nullptr);
    ~SingleInstance() override;

    [[nodiscard]] bool isFirst() const { return m_isFirst; }
    /// Takes the lock if it is free by now; isFirst() then.
    [[nodiscard]] bool tryToBecomeFirst();
    /// From now on a later start is told that nobody listens. The lock is kept.
    void stopListening();
    /// Asks the program that holds the lock to come forward and to take the text. False if it does not listen, or the
    /// text is too long for an InstanceMessage.
    [[nodiscard]] bool askFirstToShow(const QString& text = {}) const;

Q_SIGNALS:
    /// The user started the program a second time. The text is whatever that start handed over, mostly nothing.
    void showRequested(const QString& text);

private:
    void listen();
    void takeRequests();

    [[nodiscard]] bool takeLock() const;

    QByteArray m_socketPath;
    FileDescriptor m_lock;
    FileDescriptor m_socket;
    std::unique_ptr<QSocketNotifier> m_notifier;
    bool m_isFirst = true;
};

} // namespace vormel
