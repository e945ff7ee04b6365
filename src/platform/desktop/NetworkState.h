#pragma once

#include <QObject>

namespace vormel {

/// What the desktop knows of the machine's way to the network. UI thread only.
class NetworkState : public QObject
{
    Q_OBJECT

public:
    /// False only where the desktop is sure that there is none.
    [[nodiscard]] virtual bool isOnline() const = 0;

Q_SIGNALS:
    void changed();
};

} // namespace vormel
