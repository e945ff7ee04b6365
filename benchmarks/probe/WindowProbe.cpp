#include "app/MainWindow.h"
#include "app/Program.h"

#include <QApplication>
#include <QEvent>
#include <QFile>
#include <QTextStream>
#include <QTimer>

#include <chrono>

using namespace Qt::StringLiterals;

namespace {

/// Says so on standard output when the window has painted its first frame, and after a rest what memory the process
/// holds.
class FirstFrame final : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (event->type() == QEvent::Paint && !m_isSeen) {
            m_isSeen = true;
            // Behind the paint itself.
            QTimer::singleShot(0, this, [this] { tell(); });
        }
        return QObject::eventFilter(object, event);
    }

private:
    void tell()
    {
        QTextStream(stdout) << "painted" << Qt::endl;
        QTimer::singleShot(std::chrono::milliseconds(1500), this, [] {
            QFile memory(u"/proc/self/smaps_rollup"_s);
            if (memory.open(QIODevice::ReadOnly)) {
                for (const QByteArray& line : memory.readAll().split('\n')) {
                    if (line.startsWith("Pss:"))
                        QTextStream(stdout) << line.mid(4).trimmed().split(' ').first() << Qt::endl;
                }
            }
            QApplication::quit();
        });
    }

    bool m_isSeen = false;
};

} // namespace

// The program as main() makes it, on a given profile, which ends by itself after its first frame and a rest.
int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    vormel::Program program(vormel::Folders::below(QApplication::arguments().at(1)));
    vormel::MainWindow window(program.viewPorts(), program.updater());
    FirstFrame firstFrame;
    window.installEventFilter(&firstFrame);
    window.show();
    return QApplication::exec();
}
