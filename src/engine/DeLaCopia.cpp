#include "engine/DeLaCopia.h"

#include "core/Formato.h"
#include "engine/Interrupcion.h"
#include "platform/Llavero.h"

#include <QFile>
#include <QStringList>

#include <utility>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

constexpr qint64 holgura = 64LL * 1000 * 1000;
constexpr qint64 maximoDeQuejas = 20;
// What a job's log keeps room for, one a line and then many; nobody reads further.
constexpr qsizetype faltasDeUnaEnUna = 100;
constexpr qsizetype letrasPorLinea = 900;
constexpr qsizetype maximoDeFaltas = 10'000;

/// What could not be taken out, to be told at the end. Files that are missing are named whatever else went wrong.
class Quejas
{
public:
    void anotar(const QByteArray &ruta, const QString &motivo)
    {
        if (motivo != QString::fromUtf16(Sacador::falta)) {
            if (otras.size() < maximoDeQuejas)
                otras << linea(ruta, motivo);
        } else if (++cuantasFaltan <= maximoDeFaltas) {
            faltan << QString::fromUtf8(ruta);
        }
    }
    void contar(Avisos &avisar) const
    {
        for (const auto &una : otras)
            avisar.linea(una);
        for (const auto &ruta : faltan.first(std::min(faltasDeUnaEnUna, faltan.size())))
            avisar.linea(linea(ruta.toUtf8(), QString::fromUtf16(Sacador::falta)));
        QString juntas;
        for (const auto &ruta : faltan.mid(faltasDeUnaEnUna)) {
            if (juntas.size() + ruta.size() > letrasPorLinea)
                avisar.linea(std::exchange(juntas, QString()));
            juntas += (juntas.isEmpty() ? u"También faltan en la copia: "_s : u", "_s) + ruta;
        }
        if (!juntas.isEmpty())
            avisar.linea(juntas);
        if (cuantasFaltan > maximoDeFaltas)
            avisar.linea(u"Y faltan %1 más."_s.arg(cuantasFaltan - maximoDeFaltas));
    }

private:
    static QString linea(const QByteArray &ruta, const QString &motivo)
    {
        return u"No se pudo sacar %1: %2."_s.arg(QString::fromUtf8(ruta), motivo);
    }

    QStringList otras;
    QStringList faltan;
    qint64 cuantasFaltan = 0;
};

} // namespace

std::optional<QString> faltaDeSitio(qint64 bytes, const CarpetaDeDestino &carpeta)
{
    const auto libres = carpeta.libres();
    if (!libres || bytes == 0 || bytes <= *libres - holgura)
        return {};
    return u"No hay sitio en el disco: hacen falta %1 y quedan %2. Libera espacio y vuelve a intentarlo."_s.arg(
        Formato::tamano(bytes + holgura), Formato::tamano(*libres));
}

Resultado<CopiaAbierta> abrirLaCopia(const QString &udid, const QString &copias, const CarpetaDeDestino &deTrabajo,
                                     Avisos &avisar, CopiaAbierta::Cierre *cierre)
{
    auto estado = Llavero::Estado::Hallada;
    const auto contrasena = [&] {
        auto lectura = Llavero::consultar(udid);
        estado = lectura.estado;
        if (estado != Llavero::Estado::Hallada)
            return std::optional<QString>();
        avisar.linea(u"Abriendo la copia con su contraseña; tarda unos segundos."_s);
        return std::optional(lectura.clave);
    };
    const auto carpeta = QFile::exists(copias + u"/Manifest.db"_s) ? copias : copias + u'/' + udid;
    auto copia = CopiaAbierta::abrir(carpeta, contrasena, deTrabajo, cierre);
    // A store that is locked, silent or missing says nothing of the password.
    const bool sinAlmacen = estado != Llavero::Estado::Hallada && estado != Llavero::Estado::SinClave;
    if (!copia && sinAlmacen)
        return Resultado<CopiaAbierta>::fallo(u"La copia está cifrada. "_s + Llavero::porQue(estado));
    return copia;
}

int sacarDeLaCopia(const Sacador &sacador, const QString &destino, const Sacador::Avance &avance, Avisos &avisar,
                   Cuenta &cuenta)
{
    Quejas quejas;
    const auto queja = [&](const QByteArray &ruta, const QString &motivo) {
        quejas.anotar(ruta, motivo);
    };
    const auto parada = sacador.sacar(destino, avance, queja, cuenta);
    quejas.contar(avisar);
    if (Interrupcion::pedida())
        return Interrupcion::estado;
    if (parada)
        return avisar.error(*parada);
    if (cuenta.copiados == 0 && cuenta.fallidos > 0)
        return avisar.error(u"La copia está dañada: no se ha podido sacar nada de ella. Haz una copia nueva."_s);
    return 0;
}

} // namespace vellora::motor
