#pragma once

#include "ui/sheets/LinkPaste.h"

#include <QWidget>

#include <optional>

class QLineEdit;
class QPushButton;

namespace vormel {

class AppSettings;
class CountLabel;
class LinkEditor;
class StyledLabel;

/// Where links are pasted: the editor, what was recognised in it, and the password for containers. Settings and
/// resolvers must outlive it.
class LinkForm final : public QWidget
{
    Q_OBJECT

public:
    LinkForm(AppSettings& settings, const ResolverTables& resolvers, QWidget* parent = nullptr);

    [[nodiscard]] const LinkPaste& links() const { return m_links; }
    /// For containers; nothing when the field is empty.
    [[nodiscard]] std::optional<QString> password() const;

    /// Puts the clipboard's links into an editor that is empty, and the cursor behind them.
    void prefill();
    /// Puts the links behind what is in the editor, which stays.
    void append(const std::vector<Link>& links);
    [[nodiscard]] QPushButton* addButton() const { return m_add; }

Q_SIGNALS:
    void accepted();
    void cancelled();

private:
    void setUpParts();
    void layOut();
    [[nodiscard]] QWidget* makePasswordBlock();
    void connectParts();
    void bindTexts();
    void readText();
    void showCounts();

    AppSettings& m_settings;
    const ResolverTables& m_resolvers;
    LinkPaste m_links;
    StyledLabel* m_title;
    StyledLabel* m_prompt;
    LinkEditor* m_editor;
    CountLabel* m_directCount;
    CountLabel* m_containerCount;
    QWidget* m_passwordBlock;
    CountLabel* m_passwordLabel;
    QLineEdit* m_password;
    QPushButton* m_cancel;
    QPushButton* m_add;
};

} // namespace vormel
