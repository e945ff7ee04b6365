#pragma once

#include "ui/sheets/captcha/HostGroupModel.h"

#include <QWidget>

class QListView;
class QPushButton;

namespace vormel {

class StyledLabel;

/// The choice of one of the hosts that a container has its files on, however many these are. Texts are in English only.
class CaptchaHostChooser final : public QWidget
{
    Q_OBJECT

public:
    explicit CaptchaHostChooser(QWidget* parent);

    /// Puts the focus on the first.
    void offer(const HostGroupModel::Groups& groups);

Q_SIGNALS:
    /// The place of the chosen one among the offered groups.
    void chosen(int group);
    void allChosen();
    void cancelled();

private:
    void setUpParts();
    void layOut();
    void connectParts();

    StyledLabel* m_title;
    StyledLabel* m_text;
    HostGroupModel* m_model;
    QListView* m_hosts;
    QPushButton* m_all;
    QPushButton* m_cancel;
};

} // namespace vormel
