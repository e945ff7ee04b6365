#pragma once

#include <QWidget>

class QAction;
class QHBoxLayout;
class QToolButton;

namespace vormel {

class DownloadManager;

/// The commands for the whole queue and the speed control. Shows texts beside the icons where there is room for them.
/// The manager must outlive it.
class QueueToolBar final : public QWidget
{
    Q_OBJECT

public:
    explicit QueueToolBar(DownloadManager& manager, QWidget* parent = nullptr);

    [[nodiscard]] QSize minimumSizeHint() const override;

Q_SIGNALS:
    void addRequested();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    QToolButton* addCommand(QHBoxLayout& row, QAction* action, const QString& name);
    void retranslate();
    void fitTexts();
    void setTextsShown(bool isShown);

    DownloadManager& m_manager;
    QAction* m_add;
    QAction* m_startAll;
    QAction* m_pauseAll;
    QAction* m_clearCompleted;
    QAction* m_clearExtracted;
    QList<QToolButton*> m_buttons;
};

} // namespace vormel
