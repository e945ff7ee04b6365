#include "app/ServicesAlert.h"

#include "fixtures/EventLoop.h"
#include "fixtures/Sandbox.h"
#include "model/AppSettings.h"
#include "platform/storage/FileWriter.h"
#include "platform/storage/UserDefaults.h"

#include <QAbstractButton>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

class ServicesAlertTest : public ::testing::Test
{
protected:
    /// The one alert over the window, or null.
    [[nodiscard]] QMessageBox* alert() const
    {
        const QList<QMessageBox*> alerts = window.findChildren<QMessageBox*>();
        EXPECT_LE(alerts.size(), 1);
        return alerts.value(0);
    }

    const ServicesProblem problem{ServicesProblem::Reason::unknownKey, 3, u"<b>domain</b>"_s, {}};
    fixtures::Sandbox sandbox;
    FileWriter writer;
    UserDefaults defaults{sandbox.path(u"preferences.json"_s), writer};
    AppSettings settings{defaults, sandbox.root()};
    QWidget window;
};

TEST_F(ServicesAlertTest, SaysNothingWithoutAProblem)
{
    tellOfServices(std::nullopt, settings, window);
    EXPECT_EQ(alert(), nullptr);
}

TEST_F(ServicesAlertTest, NamesLineAndKeyAsTheyStandAndBlocksNothing)
{
    tellOfServices(problem, settings, window);
    ASSERT_TRUE(alert());
    EXPECT_TRUE(alert()->isVisible());
    EXPECT_FALSE(alert()->isModal());
    EXPECT_EQ(alert()->text(), u"The file of services can't be used");
    EXPECT_EQ(alert()->informativeText(), u"<p>services.json, line 3, &lt;b&gt;domain&lt;/b&gt;: There is no such key."
                                          u"</p><p>Until it is mended, Vormel uses its own addresses.</p>");
    EXPECT_EQ(alert()->textFormat(), Qt::RichText);
}

TEST_F(ServicesAlertTest, SpeaksItalian)
{
    settings.language.set(AppLanguage::italian);
    tellOfServices(problem, settings, window);
    EXPECT_EQ(alert()->text(), u"Impossibile usare il file dei servizi");
    EXPECT_EQ(alert()->informativeText(),
              u"<p>services.json, riga 3, &lt;b&gt;domain&lt;/b&gt;: Questa chiave non esiste."
              u"</p><p>Finché non è corretto, Vormel usa gli indirizzi propri.</p>");
}

TEST_F(ServicesAlertTest, GoesWithItsButton)
{
    tellOfServices(problem, settings, window);
    ASSERT_EQ(alert()->buttons().size(), 1);
    EXPECT_EQ(alert()->buttons().front()->text(), u"OK");
    alert()->buttons().front()->click();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    fixtures::turnEventLoop();
    EXPECT_EQ(alert(), nullptr);
}

} // namespace
} // namespace vormel
