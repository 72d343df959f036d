#include "engine/roll/CarreteEnCopia.h"

#include "core/CarpetaDeTrabajo.h"
#include "core/Plist.h"
#include "engine/DeLaCopia.h"
#include "engine/Interrupcion.h"
#include "engine/roll/SinCopia.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cstdlib>
#include <sys/stat.h>
#include <unordered_map>
#include <unordered_set>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

using PorRuta = std::unordered_map<std::string, const FicheroDelCarrete *>;

constexpr qint64 bloqueDeCifrado = 16;

/// Why the folder holds no backup of that phone that came to its end; absent when it does.
std::optional<QString> noVale(const QString &carpeta, const QString &udid)
{
    const auto estado = Plist::leer(carpeta + u"/Status.plist"_s);
    const auto manifiesto = Plist::leer(carpeta + u"/Manifest.plist"_s);
    if (!QFile::exists(carpeta + u"/Manifest.db"_s) || !estado || !manifiesto ||
        estado->raiz()["SnapshotState"].texto() != u"finished"_s)
        return u"No hay una copia de seguridad terminada de este iPhone."_s;
    if (manifiesto->raiz()["Lockdown"]["UniqueDeviceID"].texto().value_or(QString()).compare(udid,
                                                                                             Qt::CaseInsensitive) != 0)
        return u"La copia de seguridad que hay no es de este iPhone."_s;
    return {};
}

/// The backup's own file is there with all that its list says of it.
bool estaEntero(const CopiaAbierta &copia, const QByteArray &id, const DatosDeFichero &datos)
{
    const auto nombre = QFile::encodeName(copia.carpeta()) + '/' + id.first(2) + '/' + id;
    struct stat como = {};
    if (lstat(nombre.constData(), &como) != 0 || !S_ISREG(como.st_mode))
        return false;
    if (!copia.cifrada())
        return como.st_size == datos.tamano;
    // Padding fills the last block, and is a block of its own behind a whole one.
    const auto cifrado = (datos.tamano / bloqueDeCifrado + 1) * bloqueDeCifrado;
    return (datos.tamano == 0 || como.st_size == cifrado) && copia.claves().abrir(datos.clave).has_value();
}

/// The phone's file is still what the backup took: the list keeps whole seconds.
bool esElMismo(const FicheroDelCarrete &fichero, const DatosDeFichero &datos)
{
    return fichero.ficha.tamano == datos.tamano &&
           std::abs(fichero.ficha.modificado.toSecsSinceEpoch() - datos.modificado) <= 1;
}

/// The files of the roll that the backup does not hold.
std::optional<PorRuta> faltanEn(const CopiaAbierta &copia, const Carrete &carrete)
{
    PorRuta faltan;
    for (const auto &fichero : carrete.ficheros)
        faltan.emplace(bytesDeRuta(fichero.ruta).toStdString(), &fichero);
    const bool leida = copia.porCadaFichero([&](const CopiaAbierta::Entrada &entrada) {
        constexpr QByteArrayView media("Media/");
        if (entrada.dominio != "CameraRollDomain" || !entrada.ruta.startsWith(media) || entrada.id.size() < 2 ||
            entrada.id.contains('/'))
            return !Interrupcion::pedida();
        const auto suyo = faltan.find(entrada.ruta.sliced(media.size() - 1).toStdString());
        const auto datos = suyo == faltan.end() ? std::nullopt : leerDatosDeFichero(entrada.archivo);
        if (datos && esElMismo(*suyo->second, *datos) && estaEntero(copia, entrada.id, *datos))
            faltan.erase(suyo);
        return !Interrupcion::pedida();
    });
    return leida && !Interrupcion::pedida() ? std::optional(std::move(faltan)) : std::nullopt;
}

/// Photos of the roll none of whose files is missing.
qint64 contarEnteras(const Carrete &carrete, const PorRuta &faltan)
{
    std::unordered_set<std::string> todas;
    std::unordered_set<std::string> rotas;
    for (const auto &fichero : carrete.ficheros) {
        const auto suya = elementoDe(fichero.relativa).toStdString();
        if (tipoDe(fichero.relativa) != TipoDeFichero::Ajustes)
            todas.insert(suya);
        if (faltan.count(bytesDeRuta(fichero.ruta).toStdString()) != 0)
            rotas.insert(suya);
    }
    return std::count_if(todas.begin(), todas.end(), [&](const auto &una) { return rotas.count(una) == 0; });
}

} // namespace

Resultado<CarreteEnCopia> buscarEnLaCopia(const QString &udid, const QString &copias, Conexiones &conexiones,
                                          const Carrete &carrete, Avisos &avisar)
{
    const auto no = [](const QString &motivo) {
        return Resultado<CarreteEnCopia>::fallo(motivo);
    };
    const auto carpeta = copias + u'/' + udid;
    if (const auto motivo = noVale(carpeta, udid))
        return no(*motivo);
    const auto trabajo = CarpetaDeTrabajo::nueva();
    if (!trabajo)
        return no(trabajo.motivo());
    const auto deTrabajo = CarpetaDeDestino::abrir(trabajo->ruta());
    if (!deTrabajo)
        return no(deTrabajo.motivo());
    const auto copia = abrirLaCopia(udid, carpeta, *deTrabajo, avisar);
    if (!copia)
        return no(copia.motivo());
    const auto faltan = faltanEn(*copia, carrete);
    if (!faltan)
        return no(u"La lista de la copia de seguridad no se puede leer entera. Haz una copia nueva."_s);
    constexpr int ejemplos = 5;
    int dichos = 0;
    for (const auto &[ruta, fichero] : *faltan) {
        if (dichos++ == ejemplos)
            break;
        avisar.linea(u"No está en la copia de seguridad tal como está ahora en el iPhone: %1"_s.arg(fichero->ruta));
    }
    const auto manifiesto = Plist::leer(carpeta + u"/Manifest.plist"_s);
    CarreteEnCopia hallado;
    hallado.telefono =
        manifiesto ? manifiesto->raiz()["Lockdown"]["DeviceName"].texto().value_or(QString()) : QString();
    hallado.fecha = QFileInfo(carpeta + u"/Manifest.db"_s).lastModified().toSecsSinceEpoch();
    hallado.fotos = contarEnteras(carrete, *faltan);
    hallado.faltan = static_cast<qint64>(faltan->size());
    if (const auto lista = leerListaDeFotos(conexiones.primera())) {
        const auto fuera = contarSinCopia(*lista, carrete);
        hallado.soloICloud = fuera.soloICloud;
        hallado.alQuitarLaLista = fuera.alQuitarLaLista().value_or(QString());
    }
    return hallado;
}

} // namespace vellora::motor
