#pragma once

#include "ui/ViewPorts.h"
#include "ui/accounts/AccountCheck.h"

#include <QWidget>

#include <array>

class QBoxLayout;
class QToolButton;

namespace vormel {

class CheckButton;
class ElidedLabel;
class PremiumBlock;
class SheetButton;
class StatusDot;
class StyledLabel;
class TagLabel;

/// The row of one account: who it is, how its check stands, and what can be done with it. What a check tells is told
/// as long as the row lives, and a check ends with it. The ports outlive it.
class AccountRow final : public QWidget
{
    Q_OBJECT

public:
    /// What the keyboard can reach, from left to right.
    enum class Control
    {
        check,
        signOut,
        edit,
        remove,
    };
    static constexpr std::array<Control, 4> allControls{Control::check, Control::signOut, Control::edit,
                                                        Control::remove};

    AccountRow(const ViewPorts& ports, HostAccount account, QString hostLabel, QWidget* parent);

    [[nodiscard]] const HostAccount& account() const { return m_account; }
    [[nodiscard]] const AccountRowState& state() const { return m_check->state(); }
    [[nodiscard]] QWidget* control(Control control) const;
    /// Gives it the focus, or the one after it where the row has not that.
    void focusOn(Control control);
    /// Nobody is signed in to its host any more.
    void signedOut() { m_check->forget(); }

Q_SIGNALS:
    void signOutRequested();
    void editRequested();
    void deleteRequested();
    /// The keyboard wants the same control in a row so many further down.
    void stepped(int rows, vormel::AccountRow::Control control);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void nameParts();
    void setUpButtons();
    void layOut();
    void moveNotes(bool areBeside);
    void showTexts();
    void showState();
    [[nodiscard]] QString stateInWords() const;
    [[nodiscard]] bool takesKey(QObject* control, int key, bool isAutoRepeat);

    ViewPorts m_ports;
    HostAccount m_account;
    QString m_hostLabel;
    AccountCheck* m_check;
    StatusDot* m_dot;
    ElidedLabel* m_host;
    ElidedLabel* m_username;
    PremiumBlock* m_premium;
    TagLabel* m_disabled;
    StyledLabel* m_message;
    CheckButton* m_checkButton;
    SheetButton* m_signOut; ///< only where the host signs in in the browser
    SheetButton* m_edit;
    QToolButton* m_remove;
    QBoxLayout* m_line;   ///< of the names and the controls
    QBoxLayout* m_below;  ///< of the notes in a narrow row
    QBoxLayout* m_lowest; ///< of the control that not all rows have, there
    bool m_areNotesBeside = true;
};

} // namespace vormel
