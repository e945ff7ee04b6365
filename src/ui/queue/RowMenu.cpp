#include "ui/queue/RowMenu.h"

#include "ui/kit/GlyphIcon.h"

namespace vormel {

RowMenu::RowMenu(AppLanguage language, QWidget* parent)
    : QMenu(parent)
    , m_language(language)
{
    setObjectName(QStringLiteral("rowMenu"));
    setAttribute(Qt::WA_DeleteOnClose);
}

void RowMenu::addButtons(const std::vector<RowButton>& buttons, const std::function<void(RowButton)>& run)
{
    for (const RowButton button : buttons) {
        const ButtonLook look = buttonLook(button);
        if (look.isDestructive && !isEmpty())
            addSeparator();
        const QAction* const action = addAction(glyphIcon(look.glyph), buttonText(button, m_language));
        connect(action, &QAction::triggered, this, [run, button] { run(button); });
    }
}

void RowMenu::addRename(const std::function<void()>& rename)
{
    addSeparator();
    connect(addAction(pair(m_language, u"Rename group…", u"Rinomina gruppo…")), &QAction::triggered, this, rename);
}

void RowMenu::addResetName(const std::function<void()>& reset)
{
    connect(addAction(pair(m_language, u"Reset name", u"Ripristina nome")), &QAction::triggered, this, reset);
}

} // namespace vormel
