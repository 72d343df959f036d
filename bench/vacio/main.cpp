#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QUrl>

/// The peer of the start-up measure: the least program that shows a window of the same size.
int main(int argc, char **argv)
{
    QGuiApplication app(argc, argv);
    QQmlApplicationEngine motor;
    motor.loadData("import QtQuick\nWindow { visible: true; width: 1280; height: 820; Text { text: 'Hola' } }");
    return QGuiApplication::exec();
}
