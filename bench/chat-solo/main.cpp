#include "extraction/Conversaciones.h"
#include "extraction/ExportarPDF.h"
#include "platform/Apariencia.h"
#include "ui/Interfaz.h"
#include "ui/sesion/Programa.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QQuickItem>
#include <QQuickWindow>

#include <algorithm>
#include <cstdio>
#include <functional>

using namespace Qt::StringLiterals;
using namespace vellora;

namespace
{

constexpr int fotogramas = 600;
constexpr double pasoDeLaRueda = 400; // points a frame: faster than anybody reads

double milisegundos(const QElapsedTimer &reloj)
{
    return static_cast<double>(reloj.nsecsElapsed()) / 1e6;
}

/// MiB in memory, now.
double residente()
{
    QFile estado(u"/proc/self/status"_s);
    if (!estado.open(QIODevice::ReadOnly))
        return 0;
    for (const auto &linea : estado.readAll().split('\n')) {
        if (linea.startsWith("VmRSS:"))
            return linea.simplified().split(' ').value(1).toDouble() / 1024;
    }
    return 0;
}

QQuickItem *listaDeMensajes(QQuickItem *desde)
{
    if (desde->property("reuseItems").isValid() && desde->property("nombre").toString().startsWith(u"Mensajes de"_s))
        return desde;
    for (auto *hijo : desde->childItems()) {
        if (auto *hallada = listaDeMensajes(hijo))
            return hallada;
    }
    return nullptr;
}

void unFotograma(QQuickWindow &ventana)
{
    QEventLoop espera;
    QObject::connect(&ventana, &QQuickWindow::frameSwapped, &espera, &QEventLoop::quit);
    ventana.update();
    espera.exec();
}

int ventana(const QString &fichero)
{
    prepararAspecto();
    Apariencia apariencia;
    Programa programa([](const QString &) { return std::optional(true); });
    QQmlApplicationEngine motor;
    auto *abierta = abrirVentanaPrincipal(motor, {programa, apariencia, {}});
    unFotograma(*abierta);
    const auto antes = residente();
    QElapsedTimer reloj;
    reloj.start();
    programa.visor.verChats(fichero);
    auto &chats = *programa.visor.property("conversaciones").value<Conversaciones *>();
    QEventLoop carga;
    QObject::connect(&chats, &Conversaciones::chatCargado, &carga, &QEventLoop::quit);
    carga.exec();
    unFotograma(*abierta);
    const auto primera = milisegundos(reloj);
    auto *lista = listaDeMensajes(abierta->contentItem());
    std::vector<double> tiempos;
    for (int i = 0; lista != nullptr && i < fotogramas; ++i) {
        reloj.restart();
        lista->setProperty("contentY", lista->property("contentY").toDouble() - pasoDeLaRueda);
        unFotograma(*abierta);
        tiempos.push_back(milisegundos(reloj));
    }
    std::sort(tiempos.begin(), tiempos.end());
    std::printf("%d %.1f %.2f %.2f %.1f\n", chats.cuantos(), primera,
                tiempos.empty() ? -1 : tiempos[tiempos.size() / 2], tiempos.empty() ? -1 : tiempos.back(),
                residente() - antes);
    return 0;
}

int pdf(const QString &fichero, const QString &salida)
{
    QElapsedTimer reloj;
    reloj.start();
    const auto bytes = ExportarPDF::pdf(Mensajes::leer(fichero), u"Ana"_s);
    QFile escrito(salida);
    if (!bytes || !escrito.open(QIODevice::WriteOnly) || escrito.write(*bytes) != bytes->size())
        return 1;
    std::printf("%.1f\n", milisegundos(reloj));
    return 0;
}

int pagina(const QString &datos)
{
    QElapsedTimer reloj;
    reloj.start();
    if (!Extraccion::chatsEnPagina(datos))
        return 1;
    std::printf("%.1f\n", milisegundos(reloj));
    return 0;
}

} // namespace

/// chat-solo ventana FILE: messages, milliseconds to their first screen, to a usual and to the longest frame while
/// scrolling, and MiB that they took. chat-solo pdf FILE OUT, chat-solo pagina DIR: milliseconds.
int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    const auto argumentos = QApplication::arguments();
    if (argumentos.value(1) == u"ventana")
        return ventana(argumentos.value(2));
    return argumentos.value(1) == u"pdf" ? pdf(argumentos.value(2), argumentos.value(3)) : pagina(argumentos.value(2));
}
