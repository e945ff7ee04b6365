#pragma once

#include <QPlainTextEdit>

namespace vormel {

/// Where links are typed and pasted, one on each line.
class LinkEditor final : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit LinkEditor(QWidget* parent = nullptr);

    /// Replaces the text. The end is ready to be typed at, and of long lines the beginning is seen.
    void fill(const QString& text);
    /// Puts the text on lines of its own behind all others. Cursor and selection stay where they are, as somebody may
    /// be typing; it can be undone.
    void append(const QString& text);

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
};

} // namespace vormel
