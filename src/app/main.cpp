#include "app/StartUp.h"

#include <QApplication>
#include <QWidget>

int main(int argc, char* argv[]) {
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("LabQuiz"));
    QApplication::setOrganizationName(QStringLiteral("Laborix"));
    QWidget* main = StartUp(QApplication::arguments());
    if (!main)
        return 0;
    main->setAttribute(Qt::WA_DeleteOnClose);
    return app.exec();
}
