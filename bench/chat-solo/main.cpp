#include "Fotogramas.h"
#include "extraction/Conversaciones.h"
#include "extraction/ExportarPDF.h"
#include "platform/Apariencia.h"
#include "ui/Interfaz.h"
#include "ui/sesion/Programa.h"

#include <QApplication>
#include <QEventLoop>
#include <QFile>

#include <cstdio>
#include <functional>

using namespace Qt::StringLiterals;
using namespace vellora;

namespace
{

constexpr int fotogramas = 600;
constexpr double pasoDeLaRueda = 400; // points a frame: faster than anybody reads

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

int ventana(const QString &fichero)
{
    prepararAspecto();
    Apariencia apariencia;
    Programa programa([](const QString &) { return Llavero::Estado::Hallada; });
    QQmlApplicationEngine motor;
    auto *abierta = abrirVentanaPrincipal(motor, {programa, apariencia, {}});
    Fotogramas::uno(*abierta);
    const auto antes = Fotogramas::residente();
    QElapsedTimer reloj;
    reloj.start();
    programa.visor.verChats(fichero);
    auto &chats = *programa.visor.property("conversaciones").value<Conversaciones *>();
    QEventLoop carga;
    QObject::connect(&chats, &Conversaciones::chatCargado, &carga, &QEventLoop::quit);
    carga.exec();
    Fotogramas::uno(*abierta);
    const auto primera = Fotogramas::milisegundos(reloj);
    auto *lista = listaDeMensajes(abierta->contentItem());
    const auto tiempos = Fotogramas::recorriendo(*abierta, lista, -pasoDeLaRueda, fotogramas);
    std::printf("%d %.1f %.2f %.2f %.1f\n", chats.cuantos(), primera,
                tiempos.empty() ? -1 : tiempos[tiempos.size() / 2], tiempos.empty() ? -1 : tiempos.back(),
                Fotogramas::residente() - antes);
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
    std::printf("%.1f\n", Fotogramas::milisegundos(reloj));
    return 0;
}

int pagina(const QString &datos)
{
    QElapsedTimer reloj;
    reloj.start();
    if (!Extraccion::chatsEnPagina(datos))
        return 1;
    std::printf("%.1f\n", Fotogramas::milisegundos(reloj));
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
