#include "fixtures/Palettes.h"
#include "kit/ReadableStyle.h"
#include "screenshots/Scenes.h"

#include <QApplication>
#include <QDir>
#include <QStyle>

#include <iostream>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::screenshots;

namespace {

struct Look
{
    QString name;
    QPalette palette;
    AppLanguage language;
    QSize size;
};

std::vector<Look> allLooks()
{
    constexpr QSize usual(980, 640);
    constexpr QSize smallest(700, 450);
    constexpr QSize widest(2560, 900);
    return {
        {u"light"_s, fixtures::lightPalette(), AppLanguage::english, usual},
        {u"dark"_s, fixtures::darkPalette(), AppLanguage::english, usual},
        {u"italian"_s, fixtures::lightPalette(), AppLanguage::italian, usual},
        {u"wide"_s, fixtures::lightPalette(), AppLanguage::english, widest},
        {u"smallest"_s, fixtures::darkPalette(), AppLanguage::italian, smallest},
    };
}

} // namespace

// Takes the folder for the pictures, and after it the looks that are wanted, or none for all of them.
int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QApplication::setStyle(new ReadableStyle);
    const QStringList arguments = QApplication::arguments();
    const QStringList wanted = arguments.mid(2);
    int count = 0;
    for (const Look& look : allLooks()) {
        if (!wanted.isEmpty() && !wanted.contains(look.name))
            continue;
        const QString folder = arguments.at(1) + u'/' + look.name;
        QDir().mkpath(folder);
        QPalette palette = look.palette;
        QApplication::style()->polish(palette); // as the desktop's is in the program
        QApplication::setPalette(palette);
        for (const Scene& scene : allScenes()) {
            Stage stage(look.language, look.size);
            scene.set(stage);
            const QString path = u"%1/%2.png"_s.arg(folder, QString::fromLatin1(scene.name));
            if (!stage.picture().save(path)) {
                std::cerr << "cannot write " << path.toStdString() << std::endl;
                return EXIT_FAILURE;
            }
            ++count;
        }
    }
    std::cout << count << " pictures" << std::endl;
    return EXIT_SUCCESS;
}
