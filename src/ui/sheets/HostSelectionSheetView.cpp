#include "ui/sheets/HostSelectionSheetView.h"

#include "kit/BoundText.h"
#include "ui/sheets/HostChooser.h"

#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace vormel {

HostSelectionSheetView::HostSelectionSheetView(PendingHostSelection pending, const AppSettings& settings,
                                               QWidget* parent)
    : QDialog(parent)
    , m_pending(std::move(pending))
{
    constexpr int width = 480;
    constexpr int usualHeight = 400;
    constexpr HostChooser::Look look{32, 20, Qt::AlignCenter};
    setObjectName(u"hostSelectionSheet"_s);
    setWindowModality(Qt::WindowModal);
    setFixedWidth(width);
    resize(width, usualHeight);
    auto* chooser = new HostChooser(settings, look, this);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(chooser);
    chooser->offer(m_pending.groups);
    connect(chooser, &HostChooser::chosen, this,
            [this](int group) { confirm(m_pending.groups.at(static_cast<std::size_t>(group)).urls); });
    connect(chooser, &HostChooser::allChosen, this, [this] { confirm(m_pending.allURLs); });
    connect(chooser, &HostChooser::cancelled, this, &HostSelectionSheetView::reject);
    bindText(this, &QWidget::setWindowTitle, settings, {u"Choose Download Server", u"Scegli il server di download"});
}

void HostSelectionSheetView::confirm(const std::vector<Link>& urls)
{
    accept();
    Q_EMIT confirmed(urls);
}

} // namespace vormel
