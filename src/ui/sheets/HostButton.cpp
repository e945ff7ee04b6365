#include "ui/sheets/HostButton.h"

#include "kit/GlyphLabel.h"
#include "kit/StyledLabel.h"
#include "ui/sheets/FileCount.h"

#include <QHBoxLayout>

using namespace Qt::StringLiterals;

namespace vormel {

HostButton::HostButton(const PendingHostSelection::HostGroup& group, QWidget* parent)
    : QPushButton(parent)
{
    const QString count = fileCountText(group.urls.size());
    setAccessibleName(group.displayName + u", "_s + count);
    setAutoDefault(true); // Return on the focused host takes it
    layOut(group.displayName, count);
}

void HostButton::layOut(const QString& host, const QString& count)
{
    constexpr int iconSize = 24;
    auto* name = new StyledLabel(StyledLabel::Style::headline, Tint::text, this);
    auto* files = new StyledLabel(StyledLabel::Style::caption, Tint::secondary, this);
    name->setObjectName(u"hostName"_s);
    name->setText(host);
    files->setObjectName(u"fileCount"_s);
    files->setText(count);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addWidget(name);
    texts->addWidget(files);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(14, 10, 14, 10);
    row->setSpacing(12);
    row->addWidget(new GlyphLabel(Glyph::serverRack, Tint::blue, iconSize, this));
    row->addLayout(texts, 1);
    for (QWidget* part : findChildren<QWidget*>())
        part->setAttribute(Qt::WA_TransparentForMouseEvents);
}

QSize HostButton::sizeHint() const
{
    return layout()->sizeHint();
}

QSize HostButton::minimumSizeHint() const
{
    return layout()->minimumSize();
}

} // namespace vormel
