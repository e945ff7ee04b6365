#pragma once

#include "platform/web/WebPage.h"

#include <QWidget>

namespace vormel {

class AppSettings;
class ElidedLabel;
class GlyphLabel;

/// Says in one line whose page is shown, and whether the connection to it is verified, so that nobody types a password
/// into a stranger's page. Of a long host the middle is left out: what it ends in tells whose it is. The settings must
/// outlive it.
class HostLine final : public QWidget
{
    Q_OBJECT

public:
    HostLine(const AppSettings& settings, QWidget* parent);

    /// Without a page the line is empty, but keeps its place.
    void showPage(const std::optional<Link>& url, WebPage::Connection connection);

protected:
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void showTexts();

    const AppSettings& m_settings;
    QString m_shownHost; ///< as it stands in the net; empty without a page
    bool m_isVerified = false;
    GlyphLabel* m_lock;
    ElidedLabel* m_text;
};

} // namespace vormel
