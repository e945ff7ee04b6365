#pragma once

#include <QObject>
#include <QString>

namespace vormel {

/// The text that was copied last, by whichever program. UI thread only.
class Clipboard : public QObject
{
    Q_OBJECT

public:
    /// Was it copied in this program?
    [[nodiscard]] virtual bool isOurs() const = 0;
    /// Empty where something else than text was copied, or the desktop does not let it be read.
    [[nodiscard]] virtual QString text() const = 0;

Q_SIGNALS:
    /// Something may have been copied; also told when the same is there still.
    void changed();
};

/// The desktop's own. Where only the window with the focus may read it, changes are told when that is one of ours.
class DesktopClipboard final : public Clipboard
{
    Q_OBJECT

public:
    DesktopClipboard();

    [[nodiscard]] bool isOurs() const override;
    [[nodiscard]] QString text() const override;
};

} // namespace vormel
