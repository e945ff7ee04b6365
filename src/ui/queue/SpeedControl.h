#pragma once

#include <QWidget>

class QComboBox;

namespace vormel {

class DownloadManager;
class StyledLabel;

/// The speed of all transfers together, and the cap on it. The manager must outlive it.
class SpeedControl final : public QWidget
{
    Q_OBJECT

public:
    explicit SpeedControl(DownloadManager& manager, QWidget* parent = nullptr);

private:
    void layOut();
    void retranslate();
    void showSpeed();
    void fillCaps();
    void showCap();
    void chooseCap(int row);

    DownloadManager& m_manager;
    StyledLabel* m_speed;
    QComboBox* m_cap;
};

} // namespace vormel
