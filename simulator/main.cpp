#include "Ajustes.h"
#include "Averias.h"
#include "Identidad.h"
#include "Mux.h"
#include "Ordenes.h"
#include "Telefono.h"
#include "contenido/Contenido.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QHash>
#include <QStandardPaths>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace simulado;

namespace
{

int quejarse(const QString &frase)
{
    std::fprintf(stderr, "iphone-simulado: %s\n", qUtf8Printable(frase));
    return EXIT_FAILURE;
}

/// Reads the command line; a sentence when something in it is wrong.
QString leerOrden(const QCoreApplication &aplicacion, Ajustes &ajustes)
{
    QCommandLineParser orden;
    orden.setApplicationDescription(u"Un iPhone simulado detrás de un socket de usbmuxd"_s);
    orden.addHelpOption();
    orden.addOptions({
        {u"socket"_s, u"Socket UNIX en el que escuchar"_s, u"ruta"_s},
        {u"estado"_s, u"Teléfonos, en JSON"_s, u"fichero"_s},
        {u"contenido"_s, u"Carpeta de los contenidos"_s, u"carpeta"_s,
         QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + "/iphone-simulado"_L1},
        {u"semilla"_s, u"Semilla de lo que se genera"_s, u"numero"_s, u"1"_s},
        {u"tamano"_s, u"minimo, normal o grande"_s, u"tamano"_s, u"normal"_s},
        {u"solo-generar"_s, u"Genera los contenidos y termina"_s},
        {u"traza"_s, u"Dice cada petición por la salida de errores"_s},
    });
    orden.process(aplicacion);
    bool esNumero = false;
    ajustes.socket = orden.value(u"socket"_s);
    ajustes.contenido = QDir(orden.value(u"contenido"_s)).absolutePath();
    ajustes.semilla = orden.value(u"semilla"_s).toUInt(&esNumero);
    ajustes.tamano = orden.value(u"tamano"_s);
    ajustes.soloGenerar = orden.isSet(u"solo-generar"_s);
    Averias::traza = orden.isSet(u"traza"_s);
    if (!esNumero)
        return u"La semilla no es un número"_s;
    if (ajustes.socket.isEmpty() && !ajustes.soloGenerar)
        return u"Falta --socket"_s;
    if (orden.isSet(u"estado"_s))
        return leerEstado(orden.value(u"estado"_s), ajustes.telefonos);
    ajustes.telefonos.append(telefonoDeMarta(ajustes.semilla));
    return {};
}

/// The phone's folder, made when it is not there yet.
QString prepararContenido(const Ajustes &ajustes, const AjustesTelefono &telefono, const QString &carpeta)
{
    static const QHash<QString, OpcionesContenido::Tamano> tamanos{{u"minimo"_s, OpcionesContenido::Minimo},
                                                                   {u"normal"_s, OpcionesContenido::Normal},
                                                                   {u"grande"_s, OpcionesContenido::Grande}};
    if (!tamanos.contains(ajustes.tamano))
        return u"El tamaño es minimo, normal o grande"_s;
    if (telefono.ruido || QFile::exists(carpeta + "/telefono.json"_L1))
        return {};
    // An empty folder is as good as none; anything else in it belongs to somebody.
    if (QDir(carpeta).exists() && !QDir().rmdir(carpeta))
        return u"Falta %1/telefono.json"_s.arg(carpeta);
    OpcionesContenido opciones;
    opciones.udid = telefono.udid;
    if (!telefono.nombre.isEmpty())
        opciones.nombre = telefono.nombre;
    if (!telefono.producto.isEmpty())
        opciones.producto = telefono.producto;
    if (!telefono.version.isEmpty())
        opciones.version = telefono.version;
    opciones.semilla = ajustes.semilla;
    opciones.tamano = tamanos[ajustes.tamano];
    return generarContenido(carpeta, opciones);
}

QString darDeAlta(Mux *mux, const Ajustes &ajustes, const std::shared_ptr<const Identidad> &identidad,
                  const AjustesTelefono &telefono)
{
    const QString carpeta =
        telefono.contenido.isEmpty() ? ajustes.contenido + u'/' + telefono.udid : telefono.contenido;
    if (const QString fallo = prepararContenido(ajustes, telefono, carpeta); !fallo.isEmpty())
        return fallo;
    if (!mux)
        return {};
    const auto nuevo =
        std::make_shared<Telefono>(telefono, carpeta, identidad, ajustes.contenido + "/emparejamientos"_L1);
    if (const QString fallo = nuevo->cargar(); !fallo.isEmpty())
        return fallo;
    return mux->anadir(nuevo) ? QString() : u"Ya hay un teléfono con ese udid"_s;
}

/// Obeys standard input until it ends or a signal asks to finish.
void atender(Ordenes &ordenes, int senales)
{
    QByteArray pendiente;
    while (!ordenes.salir()) {
        pollfd esperas[2] = {{STDIN_FILENO, POLLIN, 0}, {senales, POLLIN, 0}};
        if (poll(esperas, 2, -1) < 0 && errno != EINTR)
            return;
        if (esperas[1].revents)
            return;
        if (!esperas[0].revents)
            continue;
        char bloque[4096];
        const ssize_t n = read(STDIN_FILENO, bloque, sizeof bloque);
        if (n <= 0)
            return;
        pendiente.append(bloque, n);
        for (qsizetype fin = 0; (fin = pendiente.indexOf('\n')) >= 0 && !ordenes.salir();) {
            const QByteArray linea = pendiente.left(fin).trimmed();
            pendiente.remove(0, fin + 1);
            if (linea.isEmpty())
                continue;
            std::printf("%s\n", ordenes.obedecer(linea).constData());
            std::fflush(stdout);
        }
    }
}

} // namespace

int main(int argc, char **argv)
{
    std::signal(SIGPIPE, SIG_IGN);
    sigset_t finales;
    sigemptyset(&finales);
    sigaddset(&finales, SIGTERM);
    sigaddset(&finales, SIGINT);
    // Before any thread starts, so that all of them leave these signals to the descriptor.
    pthread_sigmask(SIG_BLOCK, &finales, nullptr);
    const int senales = signalfd(-1, &finales, SFD_CLOEXEC);

    const QCoreApplication aplicacion(argc, argv);
    Ajustes ajustes;
    if (const QString fallo = leerOrden(aplicacion, ajustes); !fallo.isEmpty())
        return quejarse(fallo);
    const auto identidad = std::make_shared<Identidad>();
    if (const QString fallo = identidad->cargar(ajustes.contenido + "/identidad"_L1); !fallo.isEmpty())
        return quejarse(fallo);

    Mux mux(identidad);
    const auto alta = [&](const AjustesTelefono &telefono) {
        return darDeAlta(ajustes.soloGenerar ? nullptr : &mux, ajustes, identidad, telefono);
    };
    for (const AjustesTelefono &telefono : std::as_const(ajustes.telefonos)) {
        if (const QString fallo = alta(telefono); !fallo.isEmpty())
            return quejarse(fallo);
    }
    if (ajustes.soloGenerar)
        return EXIT_SUCCESS;
    if (const QString fallo = mux.escuchar(ajustes.socket); !fallo.isEmpty())
        return quejarse(fallo);
    std::printf("LISTO\n");
    std::fflush(stdout);
    Ordenes ordenes(mux, alta);
    atender(ordenes, senales);
    mux.parar();
    // A phone in the middle of a restart may still wait in its own thread; nothing of it needs an orderly end.
    std::fflush(nullptr);
    std::_Exit(EXIT_SUCCESS);
}
