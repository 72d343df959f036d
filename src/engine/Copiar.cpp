#include "core/CerrojoDeCarpeta.h"
#include "engine/DeLaCopia.h"
#include "engine/Interrupcion.h"
#include "engine/Ordenes.h"
#include "engine/roll/Copiador.h"
#include "engine/roll/Rutas.h"
#include "engine/roll/SinCopia.h"

#include <future>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

/// Why what is missing cannot be written there; absent when it can.
std::optional<QString> impedimento(const std::vector<FicheroDelCarrete> &ficheros, const Copiadas &copiadas,
                                   const QString &destino)
{
    qint64 bytes = 0;
    for (const auto &fichero : ficheros) {
        if (copiadas.juzgar(fichero).juicio == Copiadas::Juicio::Falta)
            bytes += fichero.ficha.tamano;
    }
    const auto carpeta = CarpetaDeDestino::abrir(destino);
    return carpeta ? faltaDeSitio(bytes, *carpeta) : std::optional(carpeta.motivo());
}

/// What the phone lists and this copy does not bring.
void contarLoQueNoSeCopia(Conexiones &conexiones, const Carrete &carrete, Avisos &avisar)
{
    const auto lista = leerListaDeFotos(conexiones.primera());
    for (const auto &frase : lista ? contarSinCopia(*lista, carrete).frases() : QStringList())
        avisar.linea(frase);
}

/// What is there already is read while the phone is being asked.
std::future<Copiadas> leyendo(const QString &destino, const QString &udid)
{
    return std::async(std::launch::async, &Copiadas::leer, destino, udid);
}

/// Copies the files and tells of it; the exit status.
int copiarFicheros(Conexiones &conexiones, const std::vector<FicheroDelCarrete> &ficheros, Copiadas copiadas,
                   const QString &destino, const std::vector<std::pair<QString, QString>> &perdidos, Avisos &avisar,
                   CuentaDeCopia &cuenta)
{
    const auto queja = [&](const QString &fichero, const QString &motivo) {
        avisar.avisar(u"fallo"_s, {{u"fichero"_s, fichero}, {u"motivo"_s, motivo}});
    };
    avisar.total(static_cast<qint64>(ficheros.size()));
    for (const auto &[fichero, motivo] : perdidos)
        queja(fichero, motivo);
    const auto cerrojo = CerrojoDeCarpeta::tomar(destino);
    if (const auto motivo = cerrojo.impedimento())
        return avisar.error(*motivo);
    if (const auto aviso = cerrojo.aviso())
        avisar.linea(*aviso);
    CarpetaDeDestino::limpiar(destino);
    if (const auto motivo = impedimento(ficheros, copiadas, destino))
        return avisar.error(*motivo);
    const auto avance = [&](const CuentaDeCopia &hasta, const QString &fichero) {
        avisar.progreso(hasta.hechos(), {{u"copiados"_s, hasta.copiados},
                                         {u"saltados"_s, hasta.saltados},
                                         {u"bytes"_s, hasta.bytes},
                                         {u"fichero"_s, fichero}});
    };
    const auto motivo = Copiador(conexiones, copiadas, destino).copiar(ficheros, avance, queja, cuenta);
    if (Interrupcion::pedida())
        return Interrupcion::estado;
    if (motivo)
        return avisar.error(*motivo);
    const auto fallos = cuenta.fallos + static_cast<qint64>(perdidos.size());
    avisar.avisar(u"fin"_s, {{u"copiados"_s, cuenta.copiados},
                             {u"saltados"_s, cuenta.saltados},
                             {u"fallos"_s, fallos},
                             {u"bytes"_s, cuenta.bytes}});
    return fallos == 0 ? 0 : 1;
}

} // namespace

int copiar(const QStringList &argumentos, Avisos &avisar)
{
    auto copiadas = leyendo(argumentos[1], argumentos[0]);
    return conElTelefono(argumentos[0], avisar, [&](Conexiones &conexiones) {
        const auto carrete = leerCarrete(conexiones);
        if (!carrete)
            return avisar.error(carrete.motivo());
        std::vector<std::pair<QString, QString>> perdidos;
        for (const auto &problema : carrete->problemas)
            perdidos.emplace_back(u"una parte del carrete"_s, problema);
        auto ficheros = carrete->ficheros;
        ficheros.insert(ficheros.end(), carrete->aparte.begin(), carrete->aparte.end());
        CuentaDeCopia cuenta;
        const auto estado =
            copiarFicheros(conexiones, ficheros, copiadas.get(), argumentos[1], perdidos, avisar, cuenta);
        // The phone's list is long: it is not read again for an owner who has been told.
        if (estado != Interrupcion::estado && !conexiones.primera().perdido() &&
            (cuenta.copiados > 0 || ficheros.empty()))
            contarLoQueNoSeCopia(conexiones, *carrete, avisar);
        return estado;
    });
}

int copiarElegidas(const QStringList &argumentos, Avisos &avisar)
{
    const auto rutas = leerRutas(argumentos[1], RutasAdmitidas::LasQueSeCopian);
    if (!rutas)
        return avisar.error(rutas.motivo());
    auto copiadas = leyendo(argumentos[2], argumentos[0]);
    return conElTelefono(argumentos[0], avisar, [&](Conexiones &conexiones) {
        const auto [ficheros, perdidos, negados] = buscarRutas(conexiones, *rutas);
        CuentaDeCopia cuenta;
        return copiarFicheros(conexiones, ficheros, copiadas.get(), argumentos[2], perdidos, avisar, cuenta);
    });
}

} // namespace vellora::motor
