#pragma once

#include "contenido/Azar.h"
#include "contenido/Contenido.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>

#include <mutex>
#include <optional>
#include <vector>

namespace simulado
{

class Base;

/// The phone's "now": 2026-11-20 18:30:00 UTC. Everything on the phone happened before it.
constexpr qint64 ahoraDelTelefono = 1'795'199'400;
/// Seconds between 1970 and 2001, where the phone's own dates begin.
constexpr qint64 principioApple = 978'307'200;
constexpr double apple(qint64 unix)
{
    return static_cast<double>(unix - principioApple);
}

/// Someone the owner knows.
struct Persona {
    QString nombre;
    QString apellidos;
    QString empresa;
    QString apodo;
    QString ciudad;
    QString nota;
    QStringList telefonos; ///< as typed by the owner; the first one is a mobile
    QStringList correos;
    qint64 cumple = 0; ///< seconds since 1970, 0 when unknown

    /// The first telephone as "+34600112233".
    [[nodiscard]] QString movil() const;
    [[nodiscard]] QString completo() const { return (nombre + QLatin1Char(' ') + apellidos).trimmed(); }
};

/// One file of the camera roll, planned before anything is written.
struct Foto {
    enum Clase { Jpeg, Heic, VivaImagen, VivaVideo, Captura, Video, Retoque, Aae, Rafaga };

    Clase clase = Jpeg;
    QString carpeta; ///< "100APPLE"
    QString fichero; ///< "IMG_0001.HEIC"
    qint64 momento = 0;
    int ancho = 0;
    int alto = 0;
    double duracion = 0; ///< seconds, videos only
    std::optional<double> latitud;
    std::optional<double> longitud;
    QString ciudad;
    QString vinculo; ///< content identifier, the same in both halves of a Live Photo
    QString rafaga;  ///< the burst's identifier, empty outside one
    qint64 bytes = 0;
    int motivo = 0; ///< which picture stands in it
    int album = -1;
    bool favorita = false;
    bool oculta = false;
    bool borrada = false;
    bool retocada = false;
    int variante = 0;   ///< pictures of one burst differ by a small movement
    int defecto = 0;    ///< 0 none, 1 out of focus, 2 far too dark
    qint64 igualA = -1; ///< place in the roll of the picture that this file repeats byte by byte

    [[nodiscard]] bool esVideo() const { return clase == Video || clase == VivaVideo; }
    /// Whether the Photos app counts it as an item of its own (the halves, edits and side files are not).
    [[nodiscard]] bool esElemento() const { return clase != VivaVideo && clase != Retoque && clase != Aae; }
};

/// What the makers of the single databases share.
struct Contexto {
    OpcionesContenido opciones;
    QString raiz; ///< the folder being made
    std::vector<Persona> gente;
    std::vector<Foto> carrete;
    QString numeroPropio;
    QStringList fallos;
    QHash<QString, qint64> fechas; ///< files whose date matters, seconds since 1970; the rest get one by name

    [[nodiscard]] Azar azar(const char *tema) const { return Azar(opciones.semilla, tema); }
    /// The value for the size asked for.
    template <class T> [[nodiscard]] T segun(T minimo, T normal, T grande) const
    {
        return opciones.tamano == OpcionesContenido::Minimo   ? minimo
               : opciones.tamano == OpcionesContenido::Normal ? normal
                                                              : grande;
    }
    [[nodiscard]] bool conHerramientas() const { return opciones.tamano != OpcionesContenido::Minimo; }

    /// The absolute path of a file of a backup domain, its folders made.
    QString dominio(const char *nombre, const QString &ruta);
    /// The same under the root of the media partition.
    QString media(const QString &ruta);
    /// Notes a failure; any thread.
    void falla(const QString &motivo);
    /// Writes one file; a failure is noted. Returns its path. Any thread, as are the paths above.
    QString escribe(const QString &ruta, const QByteArray &datos);
    /// Takes over the failure of a database, if any.
    void recoge(const Base &base);

private:
    std::mutex m_cerrojo; ///< of `fallos`
};

/// Makers, one file each, called in a fixed order.
std::vector<Persona> inventaGente(const OpcionesContenido &opciones);
void ponDatosDelTelefono(Contexto &c);
void ponAplicaciones(Contexto &c);
void planeaCarrete(Contexto &c);
void ponCarrete(Contexto &c);
void ponCarreteGrande(Contexto &c);
void ponAjusteDeFoto(Contexto &c, Foto &foto);
void ponFotosSqlite(Contexto &c);
void ponMensajes(Contexto &c);
void ponWhatsApp(Contexto &c);
void ponLlamadas(Contexto &c);
void ponBuzon(Contexto &c);
void ponNotas(Contexto &c);
void ponCalendario(Contexto &c);
void ponRecordatorios(Contexto &c);
void ponSafari(Contexto &c);
void ponSalud(Contexto &c);
void ponAgenda(Contexto &c);
void ponGrabadora(Contexto &c);
void ponUsoDeRed(Contexto &c);
void ponAjustes(Contexto &c);
void ponClaves(Contexto &c);

} // namespace simulado
