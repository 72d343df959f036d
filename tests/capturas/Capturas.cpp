#include "capturas/Fotografo.h"
#include "core/Herramientas.h"
#include "core/Preferencias.h"
#include "extraction/ExportarPDF.h"
#include "platform/Apariencia.h"
#include "support/TelefonoSimulado.h"
#include "ui/Interfaz.h"
#include "ui/sesion/Programa.h"
#include "ventana/Manos.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QJsonObject>
#include <QQuickWindow>
#include <QTest>

#include <atomic>
#include <cstdio>

using namespace Qt::StringLiterals;
using namespace vellora;

namespace
{

/// The real window on the simulated phone, and the story that its pictures tell.
class Sesion
{
public:
    explicit Sesion(const QString &carpeta) : fotografo(carpeta)
    {
        QObject::connect(&modelo, &Modelo::refrescado, &modelo, [this] { modelo.comprobarAcceso(); });
    }

    bool cuenta();
    bool soloElMarco();
    bool soloLasFotos();

private:
    bool abre(const QStringList &falta = {});
    void pulsa(const QString &nombre);
    void tecla(Qt::Key cual, Qt::KeyboardModifiers con = {}) { QTest::keyClick(ventana, cual, con); }
    void manda(const QJsonObject &orden);
    void manda(const QString &orden) { manda(QJsonObject{{u"orden"_s, orden}, {u"telefono"_s, telefono.udid()}}); }
    void frena(int bytesPorSegundo);
    void refresca();
    void espera(const char *que, const std::function<bool()> &cosa, int segundos = 60);
    void foto(const QString &nombre, const QList<int> &anchos = {960, 1280})
    {
        fotografo.retrata(*ventana, nombre, anchos);
    }

    void sinTelefono();
    void recienConectado();
    void bateria();
    void unaCopia();
    void unaCopiaQueFalla();
    void misDatos();
    void contactos();
    void contrasenas();
    void buscar();
    void fotos();
    void dosTelefonos();
    void telefonoBloqueado();
    bool acaba() const;

    TelefonoSimulado telefono;
    Apariencia apariencia;
    /// As without a store of passwords, until a picture needs one.
    std::atomic<Llavero::Estado> estadoDeClave = Llavero::Estado::NoHay;
    Programa programa{[this](const QString &) {
        return estadoDeClave.load();
    }};
    Modelo &modelo = programa.modelo;
    Copias &copias = programa.copias;
    std::unique_ptr<QQmlApplicationEngine> motor;
    QQuickWindow *ventana = nullptr;
    Fotografo fotografo;
    bool bien = true;
};

bool Sesion::abre(const QStringList &falta)
{
    motor = std::make_unique<QQmlApplicationEngine>();
    ventana = abrirVentanaPrincipal(*motor, {programa, apariencia, falta});
    return ventana && QTest::qWaitForWindowActive(ventana);
}

void Sesion::pulsa(const QString &nombre)
{
    if (Manos::pulsar(*ventana, nombre))
        return;
    std::fprintf(stderr, "There is nothing to press named \"%s\"\n", qUtf8Printable(nombre));
    bien = false;
}

void Sesion::manda(const QJsonObject &orden)
{
    const auto respuesta = telefono.orden(orden);
    if (respuesta.value(u"bien"_s).toBool())
        return;
    std::fprintf(stderr, "The phone refused an order: %s\n", qUtf8Printable(respuesta.value(u"motivo"_s).toString()));
    bien = false;
}

void Sesion::frena(int bytesPorSegundo)
{
    manda(QJsonObject{{u"orden"_s, u"frenar"_s},
                      {u"telefono"_s, telefono.udid()},
                      {u"servicio"_s, u"com.apple.mobilebackup2"_s},
                      {u"bytes_por_segundo"_s, bytesPorSegundo}});
}

void Sesion::espera(const char *que, const std::function<bool()> &cosa, int segundos)
{
    if (QTest::qWaitFor(cosa, segundos * 1000))
        return;
    std::fprintf(stderr, "Waited in vain for: %s\n", que);
    bien = false;
}

void Sesion::refresca()
{
    modelo.refrescar(false);
    espera("a refresh", [this] { return !modelo.buscando(); });
}

void Sesion::sinTelefono()
{
    manda(u"desconectar"_s);
    refresca();
    foto(u"sin-iphone"_s);
    fotografo.retrata(*ventana, u"sin-iphone-buscando"_s, {960, 1280}, [this] { modelo.refrescar(false); });
    tecla(Qt::Key_4, Qt::ControlModifier);
    foto(u"copias-sin-iphone"_s, {1280});
    tecla(Qt::Key_1, Qt::ControlModifier);
}

void Sesion::recienConectado()
{
    manda(u"conectar"_s);
    refresca();
    espera("the welcome of a new phone", [this] { return modelo.iPhoneNuevo().has_value(); });
    QTest::qWait(300);
    foto(u"bienvenida"_s);
    pulsa(u"Trabajar directamente, sin copia"_s);
    foto(u"resumen"_s, {960, 1280, 1920});
    tecla(Qt::Key_4, Qt::ControlModifier);
    foto(u"copias"_s, {960, 1280, 1920});
    estadoDeClave = Llavero::Estado::SinClave;
    emit modelo.tarea().acabada(true);
    modelo.cambioDeSesion();
    foto(u"copias-sin-clave"_s, {1280});
    pulsa(u"Hacer la copia ahora"_s);
    foto(u"copia-cifrada"_s);
    Manos::escribir(*ventana, u"rosquillas"_s);
    tecla(Qt::Key_Return);
    Manos::escribir(*ventana, u"rosquillas"_s);
    foto(u"copia-cifrada-lista"_s);
    tecla(Qt::Key_Escape);
    estadoDeClave = Llavero::Estado::NoHay;
    Copias::ponSinCifrar(modelo.seleccionado()->id);
    emit modelo.tarea().acabada(true);
    modelo.cambioDeSesion();
    pulsa(u"Avisos. 0 en marcha, 0 con problemas"_s);
    foto(u"avisos-vacio"_s);
    tecla(Qt::Key_Escape);
    tecla(Qt::Key_F10);
    foto(u"acciones"_s);
    tecla(Qt::Key_Escape);
    pulsa(u"Devolver la copia al iPhone"_s);
    foto(u"devolver"_s);
    tecla(Qt::Key_Escape);
    pulsa(u"Avisarme por Telegram"_s);
    foto(u"telegram"_s);
    pulsa(u"Cancelar"_s);
    pulsa(u"Ajustes"_s);
    foto(u"ajustes"_s, {960, 1280, 1920});
    pulsa(u"Ayuda y legal"_s);
    foto(u"ayuda"_s);
    // As on a computer that used to ask.
    Preferencias::ponLogico(u"comprobacionVista"_s, true);
    programa.cerradura.abrir();
    Preferencias::ponLogico(u"comprobacionVista"_s, false);
    foto(u"bloqueo"_s, {960, 1280, 1920});
    pulsa(u"Desbloquear"_s);
    tecla(Qt::Key_1, Qt::ControlModifier);
    bateria();
    tecla(Qt::Key_4, Qt::ControlModifier);
}

void Sesion::bateria()
{
    programa.bateria.cargarSaludBateria();
    espera("the battery", [this] { return programa.bateria.salud() > 0; });
    foto(u"resumen-bateria"_s, {960, 1280});
    const auto informes = modelo.carpetaBase() + u"/Informes"_s;
    QDir().mkpath(informes);
    QFile historial(programa.bateria.fichero());
    if (historial.open(QIODevice::WriteOnly))
        historial.write("[{\"fecha\":\"03/02/2026\",\"salud\":96},{\"fecha\":\"11/05/2026\",\"salud\":94},"
                        "{\"fecha\":\"20/08/2026\",\"salud\":92}]");
    historial.close();
    pulsa(u"Mirar la batería"_s);
    espera("the battery's view", [this] { return programa.bateria.verBateria(); });
    foto(u"bateria"_s);
    pulsa(u"Apuntar la medida de hoy"_s);
    espera("the measurement", [this] { return !programa.bateria.medida().isEmpty(); });
    foto(u"bateria-apuntada"_s);
    tecla(Qt::Key_Escape);
    manda(QJsonObject{{u"orden"_s, u"valor"_s},
                      {u"telefono"_s, telefono.udid()},
                      {u"dominio"_s, QString()},
                      {u"clave"_s, u"SIMStatus"_s},
                      {u"valor"_s, u"kCTSIMSupportSIMStatusNotInserted"_s}});
    programa.bateria.quizaMirarRed();
    espera("the networks", [this] { return programa.bateria.hayAvisoDeRed(); });
    foto(u"resumen-red"_s, {960, 1280});
}

void Sesion::unaCopia()
{
    frena(60'000);
    pulsa(u"Hacer la copia ahora"_s);
    foto(u"copias-empieza"_s, {1280});
    espera(
        "a backup that tells how long it will take", [this] { return !modelo.tarea().quedan().isEmpty(); }, 120);
    foto(u"copias-en-marcha"_s, {960, 1280, 1920});
    pulsa(u"Avisos. 1 en marcha, 0 con problemas"_s);
    foto(u"avisos-en-marcha"_s, {1280});
    tecla(Qt::Key_Escape);
    frena(0);
    espera(
        "the end of the backup", [this] { return !modelo.tarea().enMarcha(); }, 120);
    bien &= modelo.tarea().terminadaBien() == true;
    foto(u"copias-terminada"_s);
    pulsa(u"Cerrar este aviso"_s);
}

void Sesion::unaCopiaQueFalla()
{
    manda(u"bloquear"_s);
    pulsa(u"Hacer la copia ahora"_s);
    espera(
        "the failure of the backup", [this] { return !modelo.tarea().enMarcha(); }, 120);
    bien &= modelo.tarea().terminadaBien() == false;
    manda(u"desbloquear"_s);
    foto(u"copias-fallida"_s);
    pulsa(u"Ver detalles"_s);
    foto(u"copias-fallida-detalles"_s);
    pulsa(u"Cerrar este aviso"_s);
    foto(u"avisos-con-problema"_s, {1280});
    pulsa(u"Avisos. 0 en marcha, 1 con problemas"_s);
    foto(u"avisos-lleno"_s);
    tecla(Qt::Key_Escape);
}

/// What stands in the result folder, of people who do not exist.
void Sesion::misDatos()
{
    pulsa(u"Ver mis datos"_s);
    espera(
        "the data taken out", [this] { return !modelo.tarea().enMarcha() && programa.visor.vista() != 0; }, 120);
    pulsa(u"Cerrar este aviso"_s);
    espera("the inventory", [this] { return programa.visor.property("misDatos").value<MisDatos *>()->cuantos() > 5; });
    foto(u"mis-datos"_s, {960, 1280, 1920});
    const auto chats = modelo.carpetaDatos() + u"/WhatsApp/Chats/Lucía.txt"_s;
    QFile conversacion(chats);
    if (conversacion.open(QIODevice::WriteOnly))
        conversacion.write("[01/02/2026 12:04] Lucía: ¿Llegáis a comer el domingo? Hago arroz 🥘\n"
                           "[01/02/2026 12:06] YO: Sí, los cuatro. Llevo yo el postre.\n"
                           "[01/02/2026 12:06] Lucía: Perfecto. A las dos.\nTraed los bañadores por si acaso.\n"
                           "[01/02/2026 12:09] YO: Hecho 🙌\n"
                           "[08/02/2026 19:41] Lucía: Mira, la foto del verano pasado\n"
                           "[08/02/2026 19:41] Lucía: (foto, audio o adjunto)\n"
                           "[08/02/2026 19:42] Tía Rosa: ¡Qué <b>guapos</b> todos! No me acordaba de que aquel día "
                           "acabamos en la playa del faro, con los bocadillos que hizo tu madre y la sombrilla rota.\n"
                           "[08/02/2026 19:58] YO: Qué morenos estábamos…\n");
    conversacion.close();
    programa.visor.verChats(chats);
    espera("the chat",
           [this] { return programa.visor.property("conversaciones").value<Conversaciones *>()->cuantos() == 8; });
    QTest::qWait(300);
    foto(u"conversaciones"_s, {960, 1280, 1920});
    Extraccion::chatsEnPagina(modelo.carpetaDatos());
    QFile pdf(QDir::homePath() + u"/conversacion.pdf"_s);
    if (pdf.open(QIODevice::WriteOnly))
        pdf.write(ExportarPDF::pdf(Mensajes::leer(chats), u"Lucía"_s).value_or(QByteArray()));
    tecla(Qt::Key_Escape);
    programa.visor.verTabla(modelo.carpetaDatos() + u"/Calendario.csv"_s);
    QTest::qWait(300);
    foto(u"tabla"_s, {960, 1280});
    tecla(Qt::Key_Escape);
    programa.visor.verTexto(modelo.carpetaDatos() + u"/Notas.txt"_s);
    QTest::qWait(300);
    foto(u"texto"_s, {960, 1280});
    programa.visor.cerrar();
}

void Sesion::buscar()
{
    tecla(Qt::Key_5, Qt::ControlModifier);
    foto(u"buscar-todo"_s, {960, 1280});
    tecla(Qt::Key_A, Qt::ControlModifier);
    Manos::escribir(*ventana, u"domingo"_s);
    tecla(Qt::Key_Return);
    espera("the search", [this] { return !programa.buscador.buscando(); });
    foto(u"buscar-todo-hallado"_s, {960, 1280});
    tecla(Qt::Key_A, Qt::ControlModifier);
    Manos::escribir(*ventana, u"trineo"_s);
    tecla(Qt::Key_Return);
    espera("the search", [this] { return !programa.buscador.buscando(); });
    foto(u"buscar-todo-nada"_s, {960, 1280});
}

void Sesion::contactos()
{
    tecla(Qt::Key_9, Qt::ControlModifier);
    espera(
        "the address book", [this] { return !programa.contactos.vacia(); }, 60);
    foto(u"contactos"_s, {960, 1280});
    programa.contactos.elegir(1);
    QTest::qWait(300);
    foto(u"contactos-ficha"_s, {960, 1280, 1920});
    programa.contactos.abrirHoja(Contactos::Editar);
    foto(u"contactos-editar"_s, {960, 1280});
    programa.contactos.abrirHoja(Contactos::Borrar);
    foto(u"contactos-borrar"_s, {1280});
    programa.contactos.abrirHoja(Contactos::SinHoja);
}

void Sesion::contrasenas()
{
    pulsa(u"Contraseñas"_s);
    foto(u"contrasenas"_s, {960, 1280});
    pulsa(u"Buscar mis contraseñas"_s);
    espera(
        "what the backup says of passwords", [this] { return programa.contrasenas.estado() != u"empezando"; }, 60);
    pulsa(u"Cerrar este aviso"_s);
    foto(u"contrasenas-sin-cifrar"_s, {960, 1280});
    programa.contrasenas.aplicar(FalloDeClaves{u"La contraseña guardada no abre esta copia."_s});
    foto(u"contrasenas-fallo"_s, {1280});
    const auto una = [](const QString &tipo, const QString &donde, const QString &usuario, const QString &clave) {
        return ClaveGuardada{QUuid::createUuid(), tipo, donde, usuario, clave};
    };
    programa.contrasenas.aplicar(
        ClavesListas{{una(u"wifi"_s, u"Casa de la abuela"_s, {}, u"rosquillas;1957"_s),
                      una(u"wifi"_s, u"Bar El Ñandú 🍻"_s, {}, u"pide una caña"_s),
                      una(u"internet"_s, u"correo.ejemplo.es"_s, u"marta@ejemplo.es"_s, u"M@rta;2026"_s),
                      una(u"internet"_s, u"tienda.ejemplo.com"_s, u"marta.ruiz"_s, u"zapatos42"_s),
                      una(u"app"_s, u"com.ejemplo.deporte"_s, u"usuario-8871"_s, QString(120, u'k'))},
                     3});
    programa.contrasenas.ver(2, true);
    foto(u"contrasenas-listas"_s, {960, 1280, 1920});
}

void Sesion::dosTelefonos()
{
    const QJsonObject otro{{u"udid"_s, u"00008110-0000111122B2B2B2"_s},
                           {u"nombre"_s, u"iPhone de Luis"_s},
                           {u"producto"_s, u"iPhone14,5"_s},
                           {u"version"_s, u"16.7.8"_s}};
    manda(QJsonObject{{u"orden"_s, u"anadir"_s}, {u"telefono"_s, otro}});
    tecla(Qt::Key_1, Qt::ControlModifier);
    refresca();
    espera("the second phone", [this] { return modelo.dispositivos().size() == 2; });
    foto(u"dos-iphones"_s);
    pulsa(u"iPhone de Marta. Elegir otro iPhone"_s);
    foto(u"dos-iphones-elegir"_s);
    tecla(Qt::Key_Escape);
}

void Sesion::telefonoBloqueado()
{
    if (!Herramientas::pymobiledevice()) {
        std::fprintf(stderr, "Skipped: the warning of a locked phone (pymobiledevice3 is not installed)\n");
        return;
    }
    manda(u"bloquear"_s);
    modelo.comprobarAcceso();
    espera("the warning of a locked phone", [this] { return modelo.avisoAcceso().has_value(); });
    foto(u"resumen-bloqueado"_s);
}

bool Sesion::acaba() const
{
    std::printf("%d capturas\n", fotografo.hechas());
    return bien && fotografo.todasGuardadas();
}

bool Sesion::cuenta()
{
    if (!telefono.listo()) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(telefono.motivo()));
        return false;
    }
    espera("the first reading", [this] { return !modelo.buscando(); });
    if (!abre({u"libimobiledevice"_s, u"pymobiledevice3"_s}))
        return false;
    foto(u"faltan-herramientas"_s);
    if (!abre())
        return false;
    sinTelefono();
    recienConectado();
    unaCopia();
    misDatos();
    buscar();
    contactos();
    contrasenas();
    fotos();
    tecla(Qt::Key_4, Qt::ControlModifier);
    unaCopiaQueFalla();
    dosTelefonos();
    telefonoBloqueado();
    return acaba();
}

void Sesion::fotos()
{
    // A roll with something to see in it, by the phone's own pictures many times over.
    const QDir carrete(telefono.contenido(telefono.udid()) + u"/media/DCIM/100APPLE"_s);
    const auto muestras = carrete.entryList({u"IMG_000?.JPG"_s}, QDir::Files);
    for (int i = 0; i < 60; ++i)
        QFile::copy(carrete.filePath(muestras[i % muestras.size()]), carrete.filePath(u"IMG_0%1.JPG"_s.arg(200 + i)));
    pulsa(u"Fotos"_s);
    foto(u"fotos"_s, {960, 1280, 1920});
    pulsa(u"Elegir fotos a mano"_s);
    fotografo.retrata(*ventana, u"carrete-leyendo"_s, {1280});
    const auto &seleccion = programa.seleccion;
    espera("the roll", [&] { return seleccion.rowCount() > 60; });
    espera(
        "small pictures", [&] { return QDir(Galeria::carpeta()).count() > 40; }, 90);
    modelo.tarea().cerrarAviso();
    foto(u"carrete"_s, {960, 1280, 1920});
    tecla(Qt::Key_Space);
    tecla(Qt::Key_Right);
    tecla(Qt::Key_Right);
    tecla(Qt::Key_Space);
    foto(u"carrete-marcadas"_s);
    tecla(Qt::Key_Return);
    QTest::qWait(500);
    foto(u"foto-grande"_s);
    tecla(Qt::Key_Escape);
    pulsa(u"Borrar del iPhone"_s);
    foto(u"borrar-marcadas"_s);
    tecla(Qt::Key_Escape);
    pulsa(u"Papelera"_s);
    espera("those in the bin", [&] { return seleccion.rowCount() == 1; });
    foto(u"carrete-papelera"_s, {1280});
    tecla(Qt::Key_Escape);
    pulsa(u"Espacio"_s);
    foto(u"espacio"_s);
    pulsa(u"Liberar espacio"_s);
    espera("a notice", [this] { return !programa.consentimiento.aviso().isEmpty() && !modelo.tarea().enMarcha(); });
    foto(u"nada-que-liberar"_s);
    tecla(Qt::Key_Escape);
    modelo.tarea().cerrarAviso();
    manda(QJsonObject{{u"orden"_s, u"frenar"_s},
                      {u"telefono"_s, telefono.udid()},
                      {u"servicio"_s, u"com.apple.afc"_s},
                      {u"bytes_por_segundo"_s, 400'000}});
    programa.fotos.copiar();
    espera("a copy that is under way", [this] { return modelo.tarea().hechos() > 3; });
    pulsa(u"Fotos"_s);
    foto(u"fotos-copiando"_s);
    manda(QJsonObject{{u"orden"_s, u"frenar"_s},
                      {u"telefono"_s, telefono.udid()},
                      {u"servicio"_s, u"com.apple.afc"_s},
                      {u"bytes_por_segundo"_s, 0}});
    espera("the copy", [this] { return !modelo.tarea().enMarcha(); });
    foto(u"fotos-copiadas"_s);
    modelo.tarea().cerrarAviso();
    pulsa(u"Limpieza"_s);
    foto(u"limpieza"_s, {960, 1280, 1920});
    pulsa(u"Borrar lo que ya está copiado"_s);
    espera("the plan", [this] { return programa.consentimiento.abierto() && !modelo.tarea().enMarcha(); });
    foto(u"liberar"_s);
    tecla(Qt::Key_Escape);
    modelo.tarea().cerrarAviso();
    pulsa(u"BORRAR TODAS las fotos"_s);
    espera("the backup", [this] { return programa.consentimiento.abierto() && !modelo.tarea().enMarcha(); });
    foto(u"borrar-todas"_s);
    programa.consentimiento.responder(true);
    espera("the deletion", [this] { return !modelo.tarea().enMarcha() && !programa.consentimiento.aviso().isEmpty(); });
    foto(u"todo-borrado"_s);
    tecla(Qt::Key_Escape);
    modelo.tarea().cerrarAviso();
    pulsa(u"Elegir cuáles borrar"_s);
    espera("an empty roll", [&] { return seleccion.abierta() && !seleccion.cargando(); });
    foto(u"carrete-vacio"_s, {1280});
    manda(u"bloquear"_s);
    programa.seleccion.leer();
    espera("a roll that cannot be read", [&] { return seleccion.noSeLee() && !modelo.tarea().enMarcha(); });
    foto(u"carrete-no-se-lee"_s);
    manda(u"desbloquear"_s);
    tecla(Qt::Key_Escape);
    modelo.tarea().cerrarAviso();
}

bool Sesion::soloLasFotos()
{
    espera("the first reading", [this] { return modelo.iPhoneNuevo().has_value(); });
    modelo.marcarConocido(telefono.udid());
    if (!abre())
        return false;
    fotos();
    return acaba();
}

bool Sesion::soloElMarco()
{
    espera("the first reading", [this] { return modelo.iPhoneNuevo().has_value(); });
    modelo.marcarConocido(telefono.udid());
    if (!abre())
        return false;
    foto(u"resumen-doble"_s);
    tecla(Qt::Key_4, Qt::ControlModifier);
    foto(u"copias-doble"_s);
    const auto chats = modelo.carpetaDatos() + u"/WhatsApp/Chats"_s;
    QDir().mkpath(chats);
    QFile conversacion(chats + u"/Lucía.txt"_s);
    if (conversacion.open(QIODevice::WriteOnly))
        conversacion.write("[01/02/2026 12:04] Lucía: ¿Llegáis a comer el domingo? Hago arroz 🥘\n"
                           "[01/02/2026 12:06] YO: Sí, los cuatro. Llevo yo el postre.\n");
    conversacion.close();
    programa.visor.verChats(conversacion.fileName());
    QTest::qWait(500);
    foto(u"conversaciones-doble"_s);
    pulsa(u"Contraseñas"_s);
    programa.contrasenas.aplicar(
        ClavesListas{{{QUuid::createUuid(), u"wifi"_s, u"Casa de la abuela"_s, {}, u"rosquillas"_s}}, 1});
    foto(u"contrasenas-doble"_s);
    return acaba();
}

} // namespace

/// capturas DIR: every view and state of the window. capturas DIR marco: only the two sections, for other scales.
int main(int argc, char **argv)
{
    QGuiApplication app(argc, argv);
    const auto argumentos = QGuiApplication::arguments();
    if (argumentos.size() < 2)
        return 1;
    prepararAspecto();
    Sesion sesion(argumentos.at(1));
    const auto parte = argumentos.value(2);
    const bool bien = parte == u"marco"   ? sesion.soloElMarco()
                      : parte == u"fotos" ? sesion.soloLasFotos()
                                          : sesion.cuenta();
    return bien ? 0 : 1;
}
