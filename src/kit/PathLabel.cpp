#include "kit/PathLabel.h"

#include "kit/StyledLabel.h"

#include <QDir>
#include <QEvent>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace vormel {

QString withTilde(const QString& path, const QString& home)
{
    if (path == home)
        return u"~"_s;
    return path.startsWith(home + u'/') ? u'~' + path.mid(home.size()) : path;
}

PathLabel::PathLabel(QWidget* parent)
    : QWidget(parent)
    , m_label(new StyledLabel(StyledLabel::Style::caption, Tint::secondary, this))
{
    m_label->setObjectName(u"path"_s);
    m_label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_label);
}

void PathLabel::setPath(const QString& path)
{
    m_path = path;
    m_label->setAccessibleName(path);
    setToolTip(path);
    showPath();
}

void PathLabel::showPath()
{
    const QString text = withTilde(m_path, QDir::homePath());
    m_label->setText(QFontMetrics(m_label->font()).elidedText(text, Qt::ElideMiddle, width()));
}

void PathLabel::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    showPath();
}

void PathLabel::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        showPath();
}

} // namespace vormel
