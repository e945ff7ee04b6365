#pragma once

#include <QObject>

class QMainWindow;
class QSplitter;

namespace vormel {

class UserDefaults;

/// Brings a window back to where and how large it was, with its splitter. Remembers both when the window is closed.
class WindowPlace final : public QObject
{
    Q_OBJECT

public:
    /// Without anything remembered, or with what cannot be understood, the window stays as it is. All must outlive it.
    WindowPlace(QMainWindow& window, QSplitter& splitter, UserDefaults& defaults);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void restore();
    void remember();

    QMainWindow& m_window;
    QSplitter& m_splitter;
    UserDefaults& m_defaults;
};

} // namespace vormel
