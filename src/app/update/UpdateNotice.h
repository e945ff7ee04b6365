#pragma once

#include "app/update/FeedUpdater.h"

#include <QPointer>

class QMessageBox;

namespace vormel {

class AppSettings;
class UrlOpener;

/// Tells the user what the updater found, in a box over the window that blocks nothing. One at a time: a newer one
/// takes the place of the one before. All that it is given must outlive it.
class UpdateNotice final : public QObject
{
    Q_OBJECT

public:
    UpdateNotice(FeedUpdater& updater, const AppSettings& settings, UrlOpener& urlOpener, QWidget& window);

private:
    void tellOfUpdate(const AppcastItem& update);
    void tellUpToDate();
    void tellFailure(FeedUpdater::Failure failure);
    QMessageBox& newBox(const QString& headline, const QString& text);
    [[nodiscard]] QString words(QStringView english, QStringView italian) const;

    const AppSettings& m_settings;
    UrlOpener& m_urlOpener;
    QWidget& m_window;
    QString m_currentVersion;
    QPointer<QMessageBox> m_box;
};

} // namespace vormel
