#include "extraction/MisDatos.h"

#include "core/Formato.h"
#include "core/SegundoPlano.h"
#include "extraction/Textos.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

#include <array>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

constexpr qint64 bytesQueSeNotan = 50'000; // less is told as "0 MB"

/// How the things of a kind are counted.
enum class Cuenta { Ficheros, Filas, Lineas };

struct Especie {
    const char16_t *titulo;
    const char16_t *icono;
    MisDatos::Clase clase;
    const char16_t *sitio;
    Cuenta cuenta;
    const char *empiezaPor; ///< of the lines that count
    const char16_t *una;
    const char16_t *varias;
};

constexpr std::array especies{
    Especie{u"WhatsApp", u"message.fill", MisDatos::Chats, u"/WhatsApp/Chats", Cuenta::Ficheros, "", u"chat", u"chats"},
    Especie{u"Mensajes", u"bubble.left.and.bubble.right.fill", MisDatos::Chats, u"/Mensajes", Cuenta::Ficheros, "",
            u"conversación", u"conversaciones"},
    Especie{u"Contactos", u"person.crop.circle.fill", MisDatos::Tabla, u"/Contactos.csv", Cuenta::Filas, "", u"fila",
            u"filas"},
    Especie{u"Llamadas", u"phone.fill", MisDatos::Tabla, u"/Llamadas.csv", Cuenta::Filas, "", u"llamada", u"llamadas"},
    Especie{u"Notas", u"note.text", MisDatos::Texto, u"/Notas.txt", Cuenta::Lineas, "── ", u"nota", u"notas"},
    Especie{u"Calendario", u"calendar", MisDatos::Tabla, u"/Calendario.csv", Cuenta::Filas, "", u"cita", u"citas"},
    Especie{u"Recordatorios", u"checkmark.circle", MisDatos::Texto, u"/Recordatorios.txt", Cuenta::Lineas, "[",
            u"recordatorio", u"recordatorios"},
    Especie{u"Historial de Safari", u"clock", MisDatos::Tabla, u"/Safari - historial.csv", Cuenta::Filas, "", u"visita",
            u"visitas"},
    Especie{u"Marcadores de Safari", u"globe", MisDatos::Texto, u"/Safari - marcadores.txt", Cuenta::Lineas, "    ",
            u"marcador", u"marcadores"},
    Especie{u"Salud", u"heart.fill", MisDatos::Tabla, u"/Salud.csv", Cuenta::Filas, "", u"tipo de medición",
            u"tipos de medición"},
    Especie{u"Grabadora", u"mic.fill", MisDatos::Carpeta, u"/Grabadora", Cuenta::Ficheros, "", u"grabación",
            u"grabaciones"},
    Especie{u"Buzón de voz", u"recordingtape", MisDatos::Carpeta, u"/Buzón de voz", Cuenta::Ficheros, "", u"archivo",
            u"archivos"},
    Especie{u"Fotos y audios de WhatsApp", u"photo.on.rectangle.angled", MisDatos::Carpeta, u"/WhatsApp/Fotos y audios",
            Cuenta::Ficheros, "", u"archivo", u"archivos"},
    Especie{u"Todas las conversaciones en una página", u"doc.richtext", MisDatos::Pagina, u"/Mis conversaciones.html",
            Cuenta::Lineas, "<details", u"chat", u"chats"},
    Especie{u"Eliminado hace poco del iPhone", u"trash", MisDatos::Carpeta, u"/Eliminado hace poco", Cuenta::Ficheros,
            "", u"archivo", u"archivos"},
};

/// Absent when there is nothing of that kind.
std::optional<MisDatos::Entrada> leer(const Especie &especie, const QString &datos)
{
    const auto ruta = datos + QString::fromUtf16(especie.sitio);
    const QFileInfo info(ruta);
    if (!info.exists() || info.isSymLink())
        return {};
    MisDatos::Entrada entrada{QString::fromUtf16(especie.titulo),
                              QString::fromUtf16(especie.icono),
                              especie.clase,
                              ruta,
                              {},
                              info.isDir() ? 0 : info.size(),
                              info.lastModified()};
    qint64 cuantos = 0;
    if (especie.cuenta == Cuenta::Ficheros) {
        QDirIterator recorrido(ruta, QDir::Files | QDir::Hidden | QDir::NoSymLinks, QDirIterator::Subdirectories);
        while (recorrido.hasNext()) {
            entrada.bytes += recorrido.nextFileInfo().size();
            ++cuantos;
        }
    } else {
        porCadaLinea(ruta, [&](QByteArrayView linea) {
            cuantos += linea.startsWith(especie.empiezaPor) ? 1 : 0;
            return true;
        });
        cuantos -= especie.cuenta == Cuenta::Filas ? 1 : 0; // the heading
    }
    if (cuantos <= 0)
        return {};
    entrada.cuenta = Formato::entero(cuantos) + u' ' + QString::fromUtf16(cuantos == 1 ? especie.una : especie.varias);
    return entrada;
}

} // namespace

void MisDatos::mirar(const QString &datos)
{
    mirando_ = true;
    emit cambio();
    const auto trabajo = [datos] {
        QList<Entrada> leidas;
        for (const auto &especie : especies) {
            if (const auto una = leer(especie, datos))
                leidas << *una;
        }
        return leidas;
    };
    enSegundoPlano(this, trabajo, [this](const QList<Entrada> &leidas) {
        mirando_ = false;
        beginResetModel();
        entradas = leidas;
        endResetModel();
        emit cambio();
    });
}

std::optional<MisDatos::Entrada> MisDatos::entrada(int fila) const
{
    return fila >= 0 && fila < entradas.size() ? std::optional(entradas[fila]) : std::nullopt;
}

int MisDatos::rowCount(const QModelIndex &padre) const
{
    return padre.isValid() ? 0 : static_cast<int>(entradas.size());
}

QVariant MisDatos::data(const QModelIndex &indice, int papel) const
{
    if (!checkIndex(indice, CheckIndexOption::IndexIsValid))
        return {};
    const auto &una = entradas[indice.row()];
    switch (papel) {
    case PapelTitulo:
        return una.titulo;
    case PapelIcono:
        return una.icono;
    case PapelCuenta:
        return una.cuenta;
    case PapelTamano:
        return una.bytes < bytesQueSeNotan ? QString() : Formato::tamano(una.bytes);
    case PapelFecha:
        return Formato::espanol().toString(una.fecha, u"d 'de' MMMM 'de' yyyy, HH:mm"_s);
    case PapelVerbo:
        return una.clase == Carpeta  ? u"Abrir la carpeta"_s
               : una.clase == Pagina ? u"Abrir en el navegador"_s
                                     : u"Ver"_s;
    default:
        return {};
    }
}

QHash<int, QByteArray> MisDatos::roleNames() const
{
    return {{PapelTitulo, "titulo"}, {PapelIcono, "icono"}, {PapelCuenta, "cuenta"},
            {PapelTamano, "tamano"}, {PapelFecha, "fecha"}, {PapelVerbo, "verbo"}};
}

} // namespace vellora
