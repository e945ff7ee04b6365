#pragma once

#include <QWidget>

class QAction;
class QHBoxLayout;
class QToolButton;

namespace vormel {

class DownloadManager;
struct ViewPorts;

/// The commands for the whole queue, the speed control and the donation. Shows texts beside the icons of the commands
/// where there is room for them. The ports outlive it.
class QueueToolBar final : public QWidget
{
    Q_OBJECT

public:
    explicit QueueToolBar(const ViewPorts& ports, QWidget* parent = nullptr);

    /// Those for the whole queue, in their order.
    [[nodiscard]] QList<QAction*> commands() const;

    [[nodiscard]] QSize minimumSizeHint() const override;

Q_SIGNALS:
    void addRequested();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    [[nodiscard]] QToolButton* makeButton(QAction* action, const QString& name);
    void layOut();
    void showTexts();
    void fitTexts();

    DownloadManager& m_manager;
    QAction* m_add;
    QAction* m_startAll;
    QAction* m_pauseAll;
    QAction* m_clearCompleted;
    QAction* m_clearExtracted;
    QAction* m_donate;
    QList<QToolButton*> m_buttons; ///< of the commands
    QToolButton* m_donation = nullptr;
};

} // namespace vormel
