#include <QApplication>

int main(int argc, char* argv[]) {
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Vuro"));
    QApplication::setQuitOnLastWindowClosed(false);
    return QApplication::exec();
}
