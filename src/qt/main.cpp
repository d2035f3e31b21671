// Zentavia: the desktop program.

#include "qt/application.h"

#include <QApplication>

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName("Zentavia");
    QApplication::setOrganizationName("Norvale Systems");

    zv::qt::Application zentavia;
    zentavia.start();
    return QApplication::exec();
}
