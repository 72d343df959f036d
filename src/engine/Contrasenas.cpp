#include "core/CarpetaDeTrabajo.h"
#include "core/FicheroAjeno.h"
#include "engine/DeLaCopia.h"
#include "engine/Ordenes.h"
#include "engine/backup/CopiaAbierta.h"
#include "engine/backup/FicheroDescifrado.h"
#include "engine/backup/LlaveroDeCopia.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <sys/mman.h>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

// A keychain has some thousands of items; far more is no keychain.
constexpr qint64 maximoDelLlavero = 256LL * 1024 * 1024;

/// The ciphered keychain out of the backup, deciphered as far as every file of it is. It stands in memory and never on
/// a disk. Absent when the backup has none, or it cannot be read.
std::optional<QByteArray> sacarLlavero(const CopiaAbierta &copia)
{
    std::optional<DatosDeFichero> datos;
    QString nombre;
    copia.porCadaFichero([&](const CopiaAbierta::Entrada &entrada) {
        if (entrada.dominio != "KeychainDomain" || entrada.ruta != "keychain-backup.plist")
            return true;
        datos = leerDatosDeFichero(entrada.archivo);
        nombre = copia.carpeta() + u'/' + QString::fromLatin1(nombreEnLaCopia(entrada.id));
        return false;
    });
    if (!datos)
        return {};
    const auto origen = abrirAjeno(nombre);
    const Descriptor memoria(memfd_create("llavero", MFD_CLOEXEC));
    const auto clave = copia.claves().abrir(datos->clave);
    if (!origen || !memoria || !clave)
        return {};
    std::vector<unsigned char> almacen;
    if (pasarFichero(*origen, *memoria, clave, Relleno::Quitar, almacen) != FinDeFichero::Entero)
        return {};
    QFile leido;
    if (!leido.open(*memoria, QIODevice::ReadOnly) || leido.size() > maximoDelLlavero || !leido.seek(0))
        return {};
    return leido.readAll();
}

QJsonObject enJson(const ClaveDelLlavero &una)
{
    return {{u"tipo"_s, una.tipo}, {u"donde"_s, una.donde}, {u"usuario"_s, una.usuario}, {u"clave"_s, una.clave}};
}

/// In notices that are short enough for one line each: what is longer goes through a file, and these must not. Gives
/// how many were told; one that no line can hold is none that anybody types.
qint64 contar(const QList<ClaveDelLlavero> &claves, Avisos &avisar)
{
    constexpr qsizetype sobra = 100; // for the frame of the notice
    const auto largo = [](const QJsonObject &objeto) {
        return QJsonDocument(objeto).toJson(QJsonDocument::Compact).size() + 1;
    };
    QJsonArray lista;
    qsizetype lleno = 0;
    qint64 contadas = 0;
    const auto soltar = [&] {
        avisar.avisar(u"contrasenas"_s, {{u"lista"_s, lista}});
        lista = {};
        lleno = 0;
    };
    for (const auto &una : claves) {
        const auto objeto = enJson(una);
        const auto suyo = largo(objeto);
        if (suyo > Avisos::largoMaximo - sobra)
            continue;
        if (lleno + suyo > Avisos::largoMaximo - sobra)
            soltar();
        lista << objeto;
        lleno += suyo;
        ++contadas;
    }
    soltar();
    return contadas;
}

} // namespace

int contrasenas(const QStringList &argumentos, Avisos &avisar)
{
    const auto privada = CarpetaDeTrabajo::nueva();
    if (!privada)
        return avisar.error(privada.motivo());
    const auto deTrabajo = CarpetaDeDestino::abrir(privada->ruta());
    if (!deTrabajo)
        return avisar.error(deTrabajo.motivo());
    const auto copia = abrirLaCopia(argumentos[0], argumentos[1], *deTrabajo, avisar);
    if (!copia)
        return avisar.error(copia.motivo());
    if (!copia->cifrada()) {
        avisar.avisar(u"sin_cifrar"_s);
        return 0;
    }
    const auto llavero = sacarLlavero(*copia);
    const auto abierto = llavero ? abrirLlavero(*llavero, copia->claves()) : std::nullopt;
    if (!abierto)
        return avisar.error(u"La copia no trae las contraseñas del iPhone, o esa parte está dañada. Haz una copia "
                            "cifrada nueva."_s);
    const auto contadas = contar(abierto->claves, avisar);
    const auto sinTexto = abierto->sinTexto + abierto->claves.size() - contadas;
    avisar.avisar(u"fin"_s, {{u"cuantas"_s, contadas}, {u"cerradas"_s, abierto->cerradas}, {u"sin_texto"_s, sinTexto}});
    return 0;
}

} // namespace vellora::motor
