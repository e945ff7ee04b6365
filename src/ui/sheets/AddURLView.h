#pragma once

#include "ui/sheets/LinkPaste.h"

#include <QDialog>

#include <optional>

class QStackedLayout;

namespace vormel {

class AppSettings;
class HostChooser;
class HostProfiles;
class LinkForm;

/// The sheet for adding links. Where the direct links lie on several hosts it asks which one is meant before it is
/// done. Settings and resolvers must outlive it.
class AddURLView final : public QDialog
{
    Q_OBJECT

public:
    AddURLView(AppSettings& settings, const ResolverTables& resolvers, QWidget* parent);

    /// False while it asks for a host: what is chosen among must not change then.
    [[nodiscard]] bool takesLinks() const;
    /// Puts links that come from elsewhere behind those in the editor.
    void append(const std::vector<Link>& links);

    /// Escape: one step back, out of the choice or out of the sheet.
    void reject() override;

Q_SIGNALS:
    /// It takes links again.
    void formShown();
    void added(const std::vector<vormel::Link>& urls, const std::optional<QString>& containerPassword);

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void showTitle();
    void addOrAsk();
    void addGroup(int group);
    void addAll();
    void finish(const std::vector<Link>& urls);
    void showForm();
    void showChooser();

    AppSettings& m_settings;
    const HostProfiles& m_profiles;
    LinkForm* m_form;
    HostChooser* m_chooser;
    QStackedLayout* m_pages;
    std::vector<PendingHostSelection::HostGroup> m_groups;
};

} // namespace vormel
