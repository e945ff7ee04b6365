#pragma once

#include "platform/storage/FileDescriptor.h"

#include <QObject>

class QSocketNotifier;

namespace vormel {

/// One running program per user: holds a lock that the system releases with the process, however that ends. A later
/// start finds the lock taken and can ask the running program to show itself.
class SingleInstance final : public QObject
{
    Q_OBJECT

public:
    /// The folder is made when needed; lock and socket lie in it. Without a usable folder every start counts as the
    /// first.
    explicit SingleInstance(const QString& folder, QObject* parent = nullptr);
    ~SingleInstance() override;

    [[nodiscard]] bool isFirst() const { return m_isFirst; }
    /// Asks the program that holds the lock to come forward. False if it does not listen.
    [[nodiscard]] bool askFirstToShow() const;

Q_SIGNALS:
    /// Somebody started the program a second time.
    void showRequested();

private:
    void listen();
    void takeRequests();

    QByteArray m_socketPath;
    FileDescriptor m_lock;
    FileDescriptor m_socket;
    bool m_isFirst = true;
};

} // namespace vormel
