#include "ui/sheets/LinkEditor.h"

#include "kit/AcceptCopy.h"

#include <QScrollBar>
#include <QTextBlock>

namespace vormel {

namespace {

/// Within this program texts may be moved; from others they are copied. False if it is refused.
bool copyFromOthers(QDropEvent& event)
{
    return event.source() || acceptCopy(event);
}

} // namespace

LinkEditor::LinkEditor(QWidget* parent)
    : QPlainTextEdit(parent)
{
    constexpr int minHeight = 100;
    constexpr int margin = 8;
    setMinimumHeight(minHeight);
    document()->setDocumentMargin(margin);
    setTabChangesFocus(true);
    setLineWrapMode(NoWrap);
    setViewportMargins(1, 1, 1, 1); // room for the ring of the focus, which is wider than the frame
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);
}

void LinkEditor::fill(const QString& text)
{
    setPlainText(text);
    moveCursor(QTextCursor::End);
    horizontalScrollBar()->setValue(horizontalScrollBar()->minimum());
}

void LinkEditor::append(const QString& text)
{
    const QTextCursor before = textCursor();
    QTextCursor end(document());
    end.movePosition(QTextCursor::End);
    // A last line that is empty is taken, unless it waits for what is typed.
    const bool isLineFree = end.block().text().isEmpty() && end.block() != before.block();
    end.insertText(isLineFree ? text : u'\n' + text);
    // One that stood at the end has gone along.
    QTextCursor kept(document());
    kept.setPosition(before.anchor());
    kept.setPosition(before.position(), QTextCursor::KeepAnchor);
    setTextCursor(kept);
}

void LinkEditor::dragEnterEvent(QDragEnterEvent* event)
{
    QPlainTextEdit::dragEnterEvent(event);
    if (event->isAccepted())
        event->setAccepted(copyFromOthers(*event));
}

void LinkEditor::dragMoveEvent(QDragMoveEvent* event)
{
    QPlainTextEdit::dragMoveEvent(event);
    if (event->isAccepted())
        event->setAccepted(copyFromOthers(*event));
}

void LinkEditor::dropEvent(QDropEvent* event)
{
    if (!copyFromOthers(*event))
        return;
    event->ignore();
    QPlainTextEdit::dropEvent(event);
    if (event->isAccepted())
        event->setAccepted(copyFromOthers(*event)); // it has taken what was proposed
}

} // namespace vormel
