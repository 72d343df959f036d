#include "core/CarpetaDeTrabajo.h"
#include "engine/DeLaCopia.h"
#include "engine/Ordenes.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

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

/// The reminders' own databases, one for each account, each with a name of its own.
bool esDeRecordatorios(const QByteArray &ruta, const QByteArray &nombre)
{
    return ruta.contains("Container_v1/Stores/") && nombre.startsWith("Data-") &&
           (nombre.endsWith(".sqlite") || nombre.endsWith(".sqlite-wal") || nombre.endsWith(".sqlite-shm"));
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
    const bool esAudio =
        (dominio == "MediaDomain" && (ruta.startsWith("Media/Recordings/") || ruta.startsWith("Recordings/"))) ||
        (dominio == "HomeDomain" && ruta.startsWith("Library/Voicemail/") && nombre.endsWith(".amr"));
    const auto esSuya = [&](const char *base) {
        return esBase(nombre, base);
    };
    if (esAudio ||
        (esDeApple(dominio) && (esDeRecordatorios(ruta, nombre) || std::any_of(bases.begin(), bases.end(), esSuya))))
        return dominio + '/' + ruta;
    return {};
}

std::optional<QByteArray> sitioDeLaAgenda(const CopiaAbierta::Entrada &entrada)
{
    const auto nombre = entrada.ruta.sliced(entrada.ruta.lastIndexOf('/') + 1);
    return nombre.startsWith("AddressBook") ? sitioDe(entrada) : std::nullopt;
}

} // namespace

int extraer(const QStringList &argumentos, Avisos &avisar)
{
    const auto deTrabajo = CarpetaDeDestino::abrir(argumentos[2]);
    if (!deTrabajo)
        return avisar.error(deTrabajo.motivo());
    const bool soloLaAgenda = argumentos.value(3) == "agenda"_L1;
    // Should the program that asked for this die, the folder is not cleared away under the work.
    const auto dentro = soloLaAgenda ? Descriptor() : CarpetaDeTrabajo::entrar(argumentos[2]);
    if (!soloLaAgenda && !dentro)
        return avisar.error(u"La carpeta de trabajo %1 no es de quien la usa."_s.arg(argumentos[2]));
    const auto copia = abrirLaCopia(argumentos[0], argumentos[1], *deTrabajo, avisar);
    if (!copia)
        return avisar.error(copia.motivo());

    const Sacador sacador(*copia, soloLaAgenda ? &sitioDeLaAgenda : &sitioDe);
    const auto plan = sacador.planear();
    if (const auto falta = faltaDeSitio(plan.bytes, *deTrabajo))
        return avisar.error(*falta);
    avisar.total(plan.ficheros);

    const auto avance = [&](const Cuenta &cuenta) {
        avisar.progreso(cuenta.hechos(), {{u"copiados"_s, cuenta.copiados}});
    };
    Cuenta cuenta;
    if (const auto estado = sacarDeLaCopia(sacador, argumentos[2], avance, avisar, cuenta); estado != 0)
        return estado;
    avisar.avisar(u"fin"_s,
                  {{u"copiados"_s, cuenta.copiados}, {u"fallidos"_s, cuenta.fallidos}, {u"bytes"_s, cuenta.bytes}});
    return 0;
}

} // namespace vellora::motor
