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
    // As numbers: a cursor that stands at the end would go along.
    const int anchor = textCursor().anchor();
    const int position = textCursor().position();
    QTextCursor end(document());
    end.movePosition(QTextCursor::End);
    // A last line that is empty is taken, unless it waits for what is typed.
    const bool isLineFree = end.block().text().isEmpty() && end.block() != textCursor().block();
    end.insertText(isLineFree ? text : u'\n' + text);
    QTextCursor kept(document());
    kept.setPosition(anchor);
    kept.setPosition(position, QTextCursor::KeepAnchor);
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
