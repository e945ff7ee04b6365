#pragma once

#include "model/PendingQuestions.h"

#include <QWidget>

class QPushButton;
class QVBoxLayout;

namespace vormel {

class AppSettings;
class StyledLabel;

/// The choice of one of several hosts for the same links. The settings must outlive it.
class HostChooser final : public QWidget
{
    Q_OBJECT

public:
    struct Look
    {
        int padding = 20;
        int spacing = 10;
        Qt::Alignment texts = Qt::AlignLeading;
    };
    HostChooser(const AppSettings& settings, const Look& look, QWidget* parent = nullptr);

    /// Offers these instead of what was offered before, and puts the focus on the first.
    void offer(const std::vector<PendingHostSelection::HostGroup>& groups);

Q_SIGNALS:
    /// The place of the chosen one among the offered groups.
    void chosen(int group);
    void allChosen();
    void cancelled();

private:
    void layOut(const Look& look);
    [[nodiscard]] QWidget* makeHostList();
    void bindTexts();
    void showCount();

    const AppSettings& m_settings;
    int m_groupCount = 0;
    StyledLabel* m_title;
    StyledLabel* m_text;
    QWidget* m_hosts;
    QVBoxLayout* m_hostColumn;
    QPushButton* m_all;
    QPushButton* m_cancel;
};

} // namespace vormel
