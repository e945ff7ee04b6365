#include "kit/QtTranslation.h"

#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "fixtures/QtTranslated.h"
#include "fixtures/RealTools.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>

#include <gtest/gtest.h>

namespace vormel {
namespace {

class QtTranslationTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        if (fixtures::isQtTranslated())
            return;
        if (fixtures::areToolsRequired())
            FAIL() << "Qt's own translation is not installed";
        GTEST_SKIP() << "Qt's own translation is not installed";
    }
    void use(AppLanguage language)
    {
        engine.settings().language.set(language);
        fixtures::turnEventLoop();
    }
    template <typename Field>
    static QString menuOf(Field& field)
    {
        const std::unique_ptr<QMenu> menu(field.createStandardContextMenu());
        QStringList texts;
        for (const QAction* action : menu->actions()) {
            if (!action->isSeparator())
                texts << action->text().section(u'\t', 0, 0).remove(u'&');
        }
        return texts.join(u'|');
    }

    fixtures::EngineOnScript engine;
    QtTranslation translation{engine.settings()};
};

TEST_F(QtTranslationTest, MenusOfTextFieldsSpeakTheLanguageOfTheSettings)
{
    const std::string english = "Undo|Redo|Cut|Copy|Paste|Delete|Select All";
    const std::string italian = "Annulla|Rifai|Taglia|Copia|Incolla|Elimina|Seleziona tutto";
    QLineEdit line;
    QPlainTextEdit editor;
    EXPECT_EQ(menuOf(line).toStdString(), english);
    EXPECT_EQ(menuOf(editor).toStdString(), english);
    use(AppLanguage::italian);
    EXPECT_EQ(menuOf(line).toStdString(), italian);
    EXPECT_EQ(menuOf(editor).toStdString(), italian);
    use(AppLanguage::english);
    EXPECT_EQ(menuOf(line).toStdString(), english);
    use(AppLanguage::italian);
    EXPECT_EQ(menuOf(line).toStdString(), italian);
}

TEST_F(QtTranslationTest, ADialogThatIsOpenFollows)
{
    QFileDialog dialog;
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.show();
    const auto cancel = [&dialog] {
        QStringList texts;
        for (const QPushButton* button : dialog.findChildren<QPushButton*>())
            texts << button->text().remove(u'&');
        return texts.join(u'|');
    };
    EXPECT_TRUE(cancel().contains(u"Cancel")) << qPrintable(cancel());
    use(AppLanguage::italian);
    EXPECT_TRUE(cancel().contains(u"Annulla")) << qPrintable(cancel());
    use(AppLanguage::english);
    EXPECT_TRUE(cancel().contains(u"Cancel")) << qPrintable(cancel());
}

TEST_F(QtTranslationTest, BeginsInTheStoredLanguageAndGoesWithItsOwner)
{
    use(AppLanguage::italian);
    fixtures::EngineOnScript italian;
    italian.settings().language.set(AppLanguage::italian);
    use(AppLanguage::english);
    QLineEdit line;
    {
        const QtTranslation other(italian.settings());
        EXPECT_TRUE(menuOf(line).startsWith(u"Annulla"));
    }
    EXPECT_TRUE(menuOf(line).startsWith(u"Undo"));
}

} // namespace
} // namespace vormel
