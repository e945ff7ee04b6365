#include "ui/help/ProgramHeader.h"

#include "config/Services.h"
#include "kit/GlyphIcon.h"

#include <QHBoxLayout>
#include <QLabel>

using namespace Qt::StringLiterals;

namespace vormel {

QLayout* programHeader(const ProgramLabels& labels, QWidget* parent)
{
    constexpr int iconSize = 56;
    labels.name->setText(u"Vormel"_s);
    labels.version->setText(u'v' + QString(programVersion));
    auto* name = new QHBoxLayout;
    name->setSpacing(8);
    name->addWidget(labels.name, 0, Qt::AlignBaseline);
    name->addWidget(labels.version, 0, Qt::AlignBaseline);
    name->addStretch();
    auto* texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addStretch();
    texts->addLayout(name);
    texts->addWidget(labels.kind);
    texts->addStretch();
    auto* icon = new QLabel(parent); // no GlyphLabel, for it keeps its own colours
    icon->setPixmap(programIcon().pixmap(QSize(iconSize, iconSize), parent->devicePixelRatioF()));
    auto* row = new QHBoxLayout;
    row->setSpacing(14);
    row->addWidget(icon);
    row->addLayout(texts, 1);
    return row;
}

} // namespace vormel
