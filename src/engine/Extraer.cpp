#include "core/Formato.h"
#include "engine/Interrupcion.h"
#include "engine/Ordenes.h"
#include "engine/backup/Sacador.h"
#include "platform/Llavero.h"

#include <QFile>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

// Left free on the disk for everything else.
constexpr qint64 holgura = 64LL * 1000 * 1000;
constexpr qint64 maximoDeQuejas = 20;

constexpr auto dominioDeWhatsApp = "AppDomainGroup-group.net.whatsapp.WhatsApp.shared";
constexpr auto dominioDeNotasDeVoz = "AppDomainGroup-group.com.apple.VoiceMemos.shared";

// Databases are known by their names wherever a version of iOS keeps them.
constexpr std::array bases{"sms.db",           "AddressBook.sqlitedb", "AddressBookImages.sqlitedb",
                           "NoteStore.sqlite", "Calendar.sqlitedb",    "CallHistory.storedata",
                           "History.db",       "Bookmarks.db",         "healthdb_secure.sqlite",
                           "voicemail.db"};

/// Apps of others have databases of the same names.
bool esDeApple(const QByteArray &dominio)
{
    return !dominio.startsWith("AppDomain") || dominio.startsWith("AppDomain-com.apple.") ||
           dominio.startsWith("AppDomainGroup-group.com.apple.");
}

/// The database and what SQLite keeps beside it, without which its last changes are lost.
bool esBase(const QByteArray &nombre, const char *base)
{
    for (const char *cola : {"", "-wal", "-shm"}) {
        if (nombre == QByteArray(base) + cola)
            return true;
    }
    return false;
}

/// Where the extractors look for a file of the phone; absent for what none of them reads.
std::optional<QByteArray> sitioDe(const CopiaAbierta::Entrada &entrada)
{
    const auto &[id, dominio, ruta, archivo] = entrada;
    const auto nombre = ruta.sliced(ruta.lastIndexOf('/') + 1);
    if (dominio == dominioDeWhatsApp) {
        if (esBase(ruta, "ChatStorage.sqlite"))
            return "WhatsApp/" + ruta;
        if (ruta.startsWith("Message/Media/"))
            return "WhatsApp/" + ruta.sliced(qstrlen("Message/"));
        return {};
    }
    if (dominio == dominioDeNotasDeVoz && ruta.startsWith("Recordings/"))
        return "Grabadora/" + ruta.sliced(qstrlen("Recordings/"));
    const bool esAudio = (dominio == "MediaDomain" && ruta.startsWith("Recordings/")) ||
                         (dominio == "HomeDomain" && ruta.startsWith("Library/Voicemail/") && nombre.endsWith(".amr"));
    const auto esSuya = [&](const char *base) {
        return esBase(nombre, base);
    };
    if (esAudio || (esDeApple(dominio) && std::any_of(bases.begin(), bases.end(), esSuya)))
        return dominio + '/' + ruta;
    return {};
}

std::optional<QByteArray> sitioDeLaAgenda(const CopiaAbierta::Entrada &entrada)
{
    const auto nombre = entrada.ruta.sliced(entrada.ruta.lastIndexOf('/') + 1);
    return nombre.startsWith("AddressBook") ? sitioDe(entrada) : std::nullopt;
}

/// The second argument is the folder of the backups or that of one backup.
QString carpetaDeLaCopia(const QString &copias, const QString &udid)
{
    return QFile::exists(copias + u"/Manifest.db"_s) ? copias : copias + u'/' + udid;
}

/// Why the disk cannot take what is planned; absent when it can, or when that cannot be told.
std::optional<QString> faltaDeSitio(const Plan &plan, std::optional<qint64> libres)
{
    if (!libres || plan.bytes <= *libres - holgura)
        return {};
    return u"No hay sitio en el disco: hacen falta %1 y quedan %2. Libera espacio y vuelve a intentarlo."_s.arg(
        Formato::tamano(plan.bytes), Formato::tamano(*libres));
}

} // namespace

int extraer(const QStringList &argumentos, Avisos &avisar)
{
    const auto &udid = argumentos[0];
    const auto deTrabajo = CarpetaDeDestino::abrir(argumentos[2]);
    if (!deTrabajo)
        return avisar.error(deTrabajo.motivo());
    const auto contrasena = [&] {
        auto guardada = Llavero::leer(udid);
        if (guardada)
            avisar.linea(u"Abriendo la copia con su contraseña; tarda unos segundos."_s);
        return guardada;
    };
    const auto copia = CopiaAbierta::abrir(carpetaDeLaCopia(argumentos[1], udid), contrasena, *deTrabajo);
    if (!copia)
        return avisar.error(copia.motivo());

    const bool soloLaAgenda = argumentos.value(3) == "agenda"_L1;
    const Sacador sacador(*copia, soloLaAgenda ? &sitioDeLaAgenda : &sitioDe);
    const auto plan = sacador.planear();
    if (const auto falta = faltaDeSitio(plan, deTrabajo->libres()))
        return avisar.error(*falta);
    avisar.total(plan.ficheros);

    const auto avance = [&](const Cuenta &cuenta) {
        avisar.progreso(cuenta.hechos(), {{u"copiados"_s, cuenta.copiados}});
    };
    QStringList quejas;
    const auto queja = [&](const QByteArray &ruta, const QString &motivo) {
        if (quejas.size() < maximoDeQuejas)
            quejas << u"No se pudo sacar %1: %2."_s.arg(QString::fromUtf8(ruta), motivo);
    };
    Cuenta cuenta;
    const auto parada = sacador.sacar(argumentos[2], avance, queja, cuenta);
    for (const auto &linea : quejas)
        avisar.linea(linea);
    if (Interrupcion::pedida())
        return Interrupcion::estado;
    if (parada)
        return avisar.error(*parada);
    if (cuenta.copiados == 0 && cuenta.fallidos > 0)
        return avisar.error(u"La copia está dañada: no se ha podido sacar nada de ella. Haz una copia nueva."_s);
    avisar.avisar(u"fin"_s,
                  {{u"copiados"_s, cuenta.copiados}, {u"fallidos"_s, cuenta.fallidos}, {u"bytes"_s, cuenta.bytes}});
    return 0;
}

} // namespace vellora::motor
