#pragma once

#include "model/ItemId.h"

#include <QSet>
#include <QWidget>

class QComboBox;

namespace vormel {

class AppSettings;
class DownloadManager;
class StyledLabel;

/// The speed of all transfers together, while there are any, and the cap on it. The manager must outlive it.
class SpeedControl final : public QWidget
{
    Q_OBJECT

public:
    explicit SpeedControl(DownloadManager& manager, QWidget* parent = nullptr);

private:
    void layOut();
    void bindTexts(const AppSettings& settings);
    void followTransfers();
    void noteStatus(const ItemId& id);
    void showSpeed();
    void fillCaps();
    void showCap();
    void chooseCap(int row);

    DownloadManager& m_manager;
    QSet<ItemId> m_downloading; ///< the manager's speed stays when the last of them has ended
    StyledLabel* m_speed;
    QComboBox* m_cap;
};

} // namespace vormel
