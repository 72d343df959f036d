#include "extraction/Extraccion.h"
#include "extraction/NombresDistintos.h"

#include <QDirIterator>
#include <QHash>
#include <QSet>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace vellora::Extraccion
{

namespace
{

/// Names of the recordings that lie in the trash: those that have a day on which they go for good.
QSet<QString> nombresEliminados(const QString &desde)
{
    QSet<QString> nombres;
    const auto base = abrirPublico(buscarPublico(u"CloudRecordings.db"_s, desde));
    if (base)
        base->porCadaFila("SELECT ZPATH FROM ZCLOUDRECORDING WHERE ZEVICTIONDATE IS NOT NULL AND ZPATH <> ''", "",
                          [&](const Fila &fila) { nombres.insert(fila.texto(0).section(u'/', -1)); });
    return nombres;
}

/// The recordings under a folder, in the order of their paths.
QStringList grabacionesDe(const QString &carpeta)
{
    static const QStringList sonidos{u"m4a"_s, u"qta"_s, u"wav"_s, u"mp3"_s, u"caf"_s};
    QStringList ficheros;
    QDirIterator recorrido(carpeta, QDir::Files | QDir::Hidden | QDir::NoSymLinks, QDirIterator::Subdirectories);
    while (recorrido.hasNext()) {
        const QFileInfo fichero(recorrido.next());
        if (sonidos.contains(fichero.suffix().toLower()))
            ficheros << fichero.filePath();
    }
    ficheros.sort();
    return ficheros;
}

bool sonIguales(const QString &uno, const QString &otro)
{
    QFile primero(uno);
    QFile segundo(otro);
    if (primero.size() != segundo.size() || !primero.open(QIODevice::ReadOnly) || !segundo.open(QIODevice::ReadOnly))
        return false;
    constexpr qint64 trozo = 1 << 16;
    while (!primero.atEnd()) {
        const auto bytes = primero.read(trozo);
        if (bytes.isEmpty() || segundo.read(trozo) != bytes)
            return false;
    }
    return true;
}

/// Recordings put into one folder of the results. Two of one name both stay, unless they are the same.
class Estante
{
public:
    Estante(CarpetaDeDestino &laCarpeta, QByteArray laRelativa) : carpeta(laCarpeta), relativa(std::move(laRelativa)) {}

    void poner(const QString &fichero)
    {
        const QFileInfo info(fichero);
        auto &deEseNombre = puestos[info.fileName().toCaseFolded()];
        if (std::any_of(deEseNombre.cbegin(), deEseNombre.cend(),
                        [&](const QString &otro) { return sonIguales(otro, fichero); }))
            return;
        const auto nombre = nombres.tomar(info.completeBaseName().toUtf8(), '.' + info.suffix().toUtf8());
        if (!copiarFichero(fichero, carpeta, QString::fromUtf8(relativa + nombre)))
            return;
        deEseNombre << fichero;
        ++cuantas;
    }

    qint64 cuantas = 0;

private:
    CarpetaDeDestino &carpeta;
    QByteArray relativa;
    NombresDistintos nombres;
    QHash<QString, QStringList> puestos;
};

} // namespace

std::optional<QString> notasDeVoz(const QString &desde, const QString &a)
{
    auto carpeta = CarpetaDeDestino::abrir(a);
    if (!carpeta)
        return {};
    // Of two with one name, that of the first of these keeps it.
    constexpr std::array fuentes{u"/MediaDomain/Media/Recordings", u"/MediaDomain/Recordings",
                                 u"/AppDomainGroup-group.com.apple.VoiceMemos.shared/Recordings", u"/Grabadora"};
    const auto tiradas = nombresEliminados(desde);
    Estante vivas(*carpeta, "Grabadora/");
    Estante eliminadas(*carpeta, carpetaDeLoEliminado + QByteArray("Grabadora/"));
    for (const auto *fuente : fuentes) {
        for (const auto &fichero : grabacionesDe(desde + QString::fromUtf16(fuente)))
            (tiradas.contains(fichero.section(u'/', -1)) ? eliminadas : vivas).poner(fichero);
    }
    QStringList lineas;
    if (vivas.cuantas > 0)
        lineas << u"Grabadora: %1 grabaciones (carpeta Grabadora)"_s.arg(vivas.cuantas);
    if (eliminadas.cuantas > 0)
        lineas << u"Grabaciones eliminadas hace poco: %1 (carpeta Eliminado hace poco)"_s.arg(eliminadas.cuantas);
    return lineas.isEmpty() ? std::nullopt : std::optional(lineas.join(u'\n'));
}

} // namespace vellora::Extraccion
