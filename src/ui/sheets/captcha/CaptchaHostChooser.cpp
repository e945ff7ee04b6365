#include "ui/sheets/captcha/CaptchaHostChooser.h"

#include "kit/SheetButton.h"
#include "kit/StyledLabel.h"

#include <QListView>
#include <QShortcut>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace vormel {

CaptchaHostChooser::CaptchaHostChooser(QWidget* parent)
    : QWidget(parent)
    , m_title(new StyledLabel(StyledLabel::Style::title, Tint::text, this))
    , m_text(new StyledLabel(StyledLabel::Style::body, Tint::secondary, this))
    , m_model(new HostGroupModel(this))
    , m_hosts(new QListView(this))
    , m_all(new SheetButton(u"Add all hosts"_s, this))
    , m_cancel(new SheetButton(u"Cancel"_s, this))
{
    setUpParts();
    layOut();
    connectParts();
}

void CaptchaHostChooser::setUpParts()
{
    constexpr int iconSize = 24;
    m_title->setObjectName(u"captchaChooserTitle"_s);
    m_title->setText(u"Choose Download Server"_s);
    m_text->setObjectName(u"captchaChooserText"_s);
    m_text->setWordWrap(true);
    m_hosts->setObjectName(u"captchaHosts"_s);
    m_hosts->setAccessibleName(m_title->text());
    m_hosts->setModel(m_model);
    m_hosts->setUniformItemSizes(true);
    m_hosts->setIconSize({iconSize, iconSize});
    m_hosts->setSpacing(4);
    m_hosts->setTextElideMode(Qt::ElideMiddle);
    m_hosts->setEditTriggers(QListView::NoEditTriggers);
    m_hosts->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_hosts->setTabKeyNavigation(false);
    m_all->setObjectName(u"addAllCaptchaHosts"_s);
    m_cancel->setObjectName(u"cancelCaptchaChoice"_s);
    for (QPushButton* button : {m_all, m_cancel})
        button->setAutoDefault(false);
}

void CaptchaHostChooser::layOut()
{
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_all);
    buttons->addStretch();
    buttons->addWidget(m_cancel);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(20, 18, 20, 18);
    column->setSpacing(10);
    column->addWidget(m_title);
    column->addWidget(m_text);
    column->addWidget(m_hosts, 1);
    column->addLayout(buttons);
}

void CaptchaHostChooser::connectParts()
{
    // Not `activated`, which some styles tell together with a click.
    connect(m_hosts, &QListView::clicked, this, [this](const QModelIndex& host) { Q_EMIT chosen(host.row()); });
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        const auto* take = new QShortcut(QKeySequence(key), m_hosts, nullptr, nullptr, Qt::WidgetShortcut);
        connect(take, &QShortcut::activated, this, [this] {
            if (m_hosts->currentIndex().isValid())
                Q_EMIT chosen(m_hosts->currentIndex().row());
        });
    }
    connect(m_all, &QPushButton::clicked, this, &CaptchaHostChooser::allChosen);
    connect(m_cancel, &QPushButton::clicked, this, &CaptchaHostChooser::cancelled);
}

void CaptchaHostChooser::offer(const HostGroupModel::Groups& groups)
{
    m_model->setGroups(groups);
    m_text->setText(
        u"Links are available on %1 servers. Select the one you have a premium account for."_s.arg(groups.size()));
    m_hosts->setCurrentIndex(m_model->index(0));
    m_hosts->setFocus();
}

} // namespace vormel
