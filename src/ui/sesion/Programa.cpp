#include "ui/sesion/Programa.h"

#include "backups/Catalogo.h"
#include "extraction/SacarMisDatos.h"
#include "photos/BorrarFotos.h"
#include "ui/sesion/FotosDeContactos.h"

#include <QDir>
#include <QPointer>
#include <QVariantMap>

#include <utility>

using namespace Qt::StringLiterals;

namespace vellora
{

Programa::Programa(const Copias::Consulta &consulta)
    : consentimiento(modelo, cerradura)
    , copias(modelo, consulta)
    , automaticas(modelo, copias)
    , guardadas(modelo, consentimiento)
    , devolucion(modelo, consentimiento)
    , bateria(modelo)
    , buscador(modelo)
    , contactos(modelo, &FotosDeContactos::esImagen)
    , contrasenas(modelo)
    , visor(modelo)
    , fotos(modelo, consentimiento)
    , seleccion(modelo, consentimiento)
{
    connect(&buscador, &Buscador::verChats, &visor, &VisorDeDatos::verChats);
    connect(&buscador, &Buscador::verTabla, &visor, &VisorDeDatos::verTabla);
    connect(&buscador, &Buscador::verTexto, &visor, &VisorDeDatos::verTexto);
    // What was behind the lock does not wait behind it.
    connect(&cerradura, &Cerradura::cambio, this, [this] {
        if (!cerradura.abierta())
            contrasenas.olvidar();
    });
    connect(&modelo, &Modelo::cambioDeSesion, this, &Programa::quizaOtroTelefono);
    // A new backup may tell of other people.
    connect(&modelo.tarea(), &Tarea::acabada, &contactos, &Contactos::caducar);
    connect(&copias, &Copias::preguntar, &consentimiento, &Consentimiento::plantear);
    connect(&copias, &Copias::copiaEmpezada, this,
            [this](const QString &alAcabar) { telegram.avisarAlTerminar(modelo.tarea(), alAcabar); });
}

/// What is in view of one phone's data is not taken for another's.
void Programa::quizaOtroTelefono()
{
    const auto datos = modelo.carpetaDatos();
    if (std::exchange(carpetaEnVista, datos) == datos)
        return;
    visor.cerrar();
    contactos.olvidar();
    contrasenas.olvidar();
    buscador.olvidar();
}

void Programa::pedirBorrarTodas()
{
    if (!modelo.seleccionado() || modelo.tarea().enMarcha())
        return;
    if (!copias.diasDesdeLaCopia())
        return consentimiento.avisar(avisoDeNoVaciar({}));
    fotos.prepararVaciado();
}

void Programa::recuperarFotos()
{
    if (modelo.tarea().enMarcha())
        return;
    const auto &elegido = modelo.seleccionado();
    const auto udid = elegido ? elegido->id : Catalogo::udidDeLaCopia(modelo.carpetaCopias()).value_or(u"ninguna"_s);
    recuperarCarrete(modelo.tarea(), udid, modelo.carpetaCopias(), modelo.carpetaBase() + u"/Fotos recuperadas"_s);
}

void Programa::sacarMisDatos()
{
    if (modelo.tarea().enMarcha())
        return;
    const auto &elegido = modelo.seleccionado();
    const auto udid = elegido ? std::optional(elegido->id) : Catalogo::udidDeLaCopia(modelo.carpetaCopias());
    if (udid)
        vellora::sacarMisDatos(modelo.tarea(), *udid, modelo.carpetaCopias(), modelo.carpetaDatos());
}

void Programa::verMisDatos()
{
    visor.verMisDatos();
    if (QDir(modelo.carpetaDatos()).isEmpty())
        sacarMisDatos();
}

void Programa::buscarContrasenas()
{
    if (modelo.tarea().enMarcha())
        return;
    cerradura.confirmar(Cerradura::VerContrasenas, [yo = QPointer(this)](bool confirmado) {
        if (!yo || !confirmado)
            return;
        yo->cerradura.marcarUso();
        yo->contrasenas.leer();
    });
}

void Programa::abrirMiCarpeta()
{
    modelo.abrirEnFinder(modelo.carpetaBase());
}

QVariantList Programa::piezas()
{
    const auto pieza = [](const QString &nombre, const QString &para, const QString &licencia) {
        return QVariantMap{{u"nombre"_s, nombre}, {u"para"_s, para}, {u"licencia"_s, licencia}};
    };
    return {
        pieza(u"Qt "_s + QString::fromLatin1(qVersion()), u"La ventana y todo lo que se ve en ella"_s, u"LGPL-3.0"_s),
        pieza(u"libimobiledevice"_s, u"Hablar con el iPhone por el cable y hacer las copias"_s,
              u"LGPL-2.1, y GPL-2.0 sus herramientas"_s),
        pieza(u"pymobiledevice3"_s, u"Fotos, apps y otros servicios del iPhone"_s, u"GPL-3.0"_s),
        pieza(u"mvt"_s, u"Buscar programas espía"_s, u"MVT License 1.1"_s),
        pieza(u"SQLite"_s, u"Leer los datos de una copia"_s, u"Dominio público"_s),
        pieza(u"OpenSSL"_s, u"Abrir las copias cifradas"_s, u"Apache-2.0"_s),
        pieza(u"nettle"_s, u"Abrir las contraseñas de una copia cifrada"_s, u"LGPL-3.0"_s),
        pieza(u"Evolution Data Server"_s, u"Apuntar contactos en la agenda de este Mac"_s, u"LGPL-2.1"_s),
        pieza(u"libheif"_s, u"Ver las fotos HEIC"_s, u"LGPL-3.0"_s),
        pieza(u"FFmpeg y ffmpegthumbnailer"_s, u"Ver de qué va un vídeo"_s, u"GPL-2.0"_s),
        pieza(u"libsecret"_s, u"Guardar la contraseña de las copias en el Llavero"_s, u"LGPL-2.1"_s),
        pieza(u"Bootstrap Icons"_s, u"Los dibujos"_s, u"MIT"_s),
        pieza(u"Inter y Noto"_s, u"Las letras"_s, u"OFL-1.1"_s)};
}

QString Programa::version()
{
    return QStringLiteral(VELLORA_VERSION);
}

} // namespace vellora
