#include "host/ui/qt_application.h"

#include <QApplication>
#include <QMainWindow>
#include <clocale>
#include <cstdio>

namespace vk::ui {

namespace {

// Qt takes the locale of the environment over for the whole process; numbers of ours are in that of C.
class NumbersInC {
public:
    ~NumbersInC() { std::setlocale(LC_NUMERIC, "C"); }
};

// Qt's remarks on the platform are no business of whoever runs a script.
void sayWhatMatters(QtMsgType kind, const QMessageLogContext&, const QString& message)
{
    if (kind == QtCriticalMsg || kind == QtFatalMsg)
        std::fprintf(stderr, "%s\n", qPrintable(message));
}

}

void ensureApplication()
{
    if (qobject_cast<QApplication*>(QCoreApplication::instance()))
        return;
    delete QCoreApplication::instance();  // pictures have been painted: their kind has no widgets
    const NumbersInC restored;
    qInstallMessageHandler(sayWhatMatters);
    static QByteArray platform = qEnvironmentVariable("VEKAD_QT_PLATFORM", "offscreen").toLocal8Bit();
    static char name[] = "vekad", option[] = "-platform";
    static char* arguments[] = {name, option, platform.data(), nullptr};
    static int count = 3;
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    // Never deleted: what Qt keeps in statics of its own goes after ours.
    new QApplication(count, arguments);
    QApplication::setQuitOnLastWindowClosed(false);
}

QWidget* mainWindow()
{
    if (!qobject_cast<QApplication*>(QCoreApplication::instance()))
        return nullptr;
    for (QWidget* window : QApplication::topLevelWidgets())
        if (qobject_cast<QMainWindow*>(window))
            return window;
    return nullptr;
}

bool isPersonThere()
{
    const QWidget* window = mainWindow();
    return window && window->isVisible();
}

}  // namespace vk::ui
