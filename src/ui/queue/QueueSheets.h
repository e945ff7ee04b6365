#pragma once

#include "model/HostAccount.h"
#include "model/PendingQuestions.h"
#include "text/Link.h"
#include "ui/ViewPorts.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <variant>

class QDialog;
class QWidget;

namespace vormel {

/// The sheets of the queue page, one at a time: the one for adding links, and those by which the queue asks something.
/// Links that were offered go before questions. A question waits until the page is on the screen and no other sheet is
/// open, and its sheet goes when the question is taken back. The page is their parent; the ports must outlive this.
class QueueSheets final : public QObject
{
    Q_OBJECT

public:
    QueueSheets(const ViewPorts& ports, QWidget& page);

    /// Opens the sheet for adding links, unless any is open.
    void showAddURLs();
    /// Shows links that come from outside the window in the sheet for adding, behind what is in it already. While any
    /// other sheet or dialog is open, they wait for its end.
    void offerLinks(const std::vector<Link>& links);
    /// Opens another sheet of the page, which is deleted when it closes; at once if any is open.
    void show(QDialog* sheet);

Q_SIGNALS:
    /// Links are to be shown, and the page is not on the screen.
    void pageWanted();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    using Question =
        std::variant<std::monostate, PendingCaptcha, SupportedHost, PendingHostSelection, PendingExtractionPassword>;

    /// A sheet that is being answered gives way to no other question.
    [[nodiscard]] bool isStillAsked(const Question& question) const;
    [[nodiscard]] Question pending() const;
    void follow();
    /// True if the sheet for adding has the links that were offered, or is to get them before anything else opens.
    [[nodiscard]] bool placeOffered();
    [[nodiscard]] bool isCovered();
    void openAddURLs();
    void open(QDialog* sheet);
    void openQuestion(QDialog* sheet, const std::function<void()>& cancel);
    void release();
    void dismiss();
    void ask(const PendingCaptcha& question);
    void ask(const PendingHostSelection& question);
    void ask(const PendingExtractionPassword& question);
    void ask(SupportedHost host);
    void ask(std::monostate /*nothing*/) const {}

    ViewPorts m_ports;
    DownloadManager& m_manager;
    QWidget& m_page;
    QPointer<QDialog> m_sheet;
    QPointer<QWidget> m_cover; ///< somebody else's dialog, which the offered links wait for
    Question m_asked;          ///< what the sheet asks for
    std::vector<Link> m_offered;
};

} // namespace vormel
